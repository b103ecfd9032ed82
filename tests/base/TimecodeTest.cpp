#include <KxUI/base/Timecode.h>

#include <support/Plain.h>

#include <limits>

using namespace Kestrel::Base;
using namespace Kestrel::Base::Timecode;

namespace {

constexpr Time Largest = std::numeric_limits<Time>::max();
constexpr DisplayType Plain = Timecode::Timecode;
constexpr DisplayType Drop = DropFrameTimecode;
constexpr auto Unknown = static_cast<DisplayType>(5);
constexpr TimeBase Pal(25, false);
constexpr TimeBase Ntsc(30, true);
constexpr TimeBase Ntsc60(60, true);
constexpr TimeBase Film(24, true);
constexpr TimeBase Fast(240, false);
constexpr TimeBase Still(0.0);
constexpr TimeBase Invalid;

} // namespace

KXUI_PLAIN_TEST(TimecodeTest, formats) {
    const struct {
        Time time;
        TimeBase base;
        DisplayType type;
        std::string text;
        Time offset = 0;
        bool showPlus = false;
    } rows[] = {
        {93784, Pal, Drop, "01:02:31:09"},
        {-1, Pal, Plain, "+00:00:00:01", 2, true},
        {24 * 3600 * 25 - 1, Pal, Plain, "23:59:59:24"},
        {24 * 3600 * 25, Pal, Plain, "00:00:00:00"},
        {239, Fast, Plain, "00:00:00:239"},
        {-1800, Ntsc, Drop, "-00;01;00;02"},
        {3600, Ntsc60, Drop, "00;01;00;04"},
        {1440, Film, Drop, "00:01:00:00"},
        {7, Still, Plain, "+00:00:00:00", 0, true},
        {-1800, Invalid, Drop, "-00:00:00:00"},
        {-42, Pal, Frames, "-42", 0, true},
        {Time{1} << 31, Invalid, Frames, "-2147483648"},
        {485, Pal, FeetFrames40, "12+05"},
        {-1605, Pal, FeetFrames16, "-100+05"},
        {Time{40} << 31, Pal, FeetFrames40, "-2147483648+00"},
        {InvalidTime, Pal, Frames, "--", 5},
        {InvalidTime, Pal, Drop, "--:--:--:--", 5, true},
        {InvalidTime, Ntsc, Drop, "--;--;--;--"},
        {5, Pal, Unknown, ""},
        // Sums wrap, and the most negative one has no positive counterpart in 64 bits.
        {Largest, Pal, Plain, "00:37:12:07"},
        {Largest, Pal, Plain, "-00:37:12:08", 1},
        {Largest, Pal, FeetFrames16, "-00+00", 1},
        {Largest, Ntsc, Drop, "-22;22;16;00", 1},
    };
    for (const auto& row : rows)
        COMPARE(toString(row.time, row.base, row.type, row.showPlus, row.offset), row.text);
}

// A count of -1: left alone.
KXUI_PLAIN_TEST(TimecodeTest, parses) {
    COMPARE(displayTypeOf("1.5"), Frames);
    COMPARE(displayTypeOf("1;2:3"), Plain);
    COMPARE(displayTypeOf("1:2;3."), Drop);
    const struct {
        const char* text;
        TimeBase base;
        DisplayType type;
        Time time;
        std::int32_t fieldCount;
        Time offset = 0;
    } rows[] = {
        {"01:02:31:09", Pal, Plain, 93684, 4, 100},
        {"-1;2.3:4", Pal, Plain, -93079, 4},
        {"1::", Pal, Plain, 1500, 3},
        {"1.2.3.4.5", Pal, Plain, InvalidTime, -1},
        {"100:0:0:0", Pal, Plain, 9000000, 4},
        {"4294967296:0", Pal, Plain, InvalidTime, 2},
        {"99999999999999999999:0:0:0", Pal, Plain, -90000, 4},
        {"10203", Pal, Plain, 1553, 3},
        {"-2m", Pal, Plain, -3000, 3},
        {"90s", Pal, Plain, InvalidTime, 2},
        {"12+5", Pal, Plain, 12, 2},
        {"3000h", Pal, Plain, -8605896, 4}, // wraps at 32 bits
        {"00;01;00;02", Ntsc, Drop, 1800, 4},
        {"00;01;00;00", Ntsc, Drop, 1798, 4},
        {"7", Invalid, Frames, InvalidTime, -1},
        {"-12:30", Pal, Frames, -13, -1, 1},
        {".5", Pal, Frames, 0, -1},
        {"3000000000", Pal, Frames, 2147483647, -1},
        {"-3000000000", Pal, Frames, -2147483648, -1},
        {"12+5", Pal, FeetFrames16, 197, 4, 100},
        {"-12+-5", Pal, FeetFrames40, -485, 4},
        {"99999999999+0", Pal, FeetFrames40, 85899345880, 4},
        {"12+5", Pal, Unknown, InvalidTime, 4},
    };
    for (const auto& row : rows) {
        std::int32_t count = -1;
        const Time time = fromString(row.text, row.base, row.type, row.offset, &count);
        CHECK_FOR(time == row.time && count == row.fieldCount, row.text);
    }
}

// Counts labels the way a person would: one up, and over those that are skipped.
KXUI_PLAIN_TEST(TimecodeTest, everyFrameOfADropFrameDay) {
    for (const TimeBase& base : {Ntsc, Ntsc60}) {
        const std::int32_t fps = base.roundedFps();
        Time time = 0;
        for (std::int32_t label = 0; label < fps * 86400; ++label, ++time) {
            if (label % (fps * 60) == 0 && label % (fps * 600) != 0)
                label += fps / 15;
            std::int32_t h = 0, m = 0, s = 0, f = 0;
            toFields(time, base, true, h, m, s, f);
            if (((h * 60 + m) * 60 + s) * fps + f != label ||
                fromString(toString(time, base, Drop), base, Drop) != time)
                FAIL(toString(time, base, Drop).c_str());
        }
        COMPARE(time, Time{fps} * 86400 - 144 * 9 * (fps / 15));
    }
}

// Nothing is undefined, and every text fits.
KXUI_PLAIN_TEST(TimecodeTest, everyMagnitudeEverywhere) {
    for (int shift = 0; shift < 192; ++shift) {
        const std::uint64_t bits = (std::uint64_t{1} << shift / 3) + std::uint64_t(shift % 3) - 1;
        const auto time = static_cast<Time>(bits);
        const TimeBase huge = TimeBase::fromFraction(bits, 1);
        for (const TimeBase& base : {Pal, Ntsc, Ntsc60, Film, Fast, Still, Invalid, huge}) {
            for (const DisplayType type : {Plain, Drop, Frames, FeetFrames40, FeetFrames16}) {
                const std::string text = toString(time, base, type, true, time / 2);
                CHECK(text.size() <= MaximumLength);
                fromString(text, base, type, time);
            }
            std::int32_t h = 0, m = 0, s = 0, f = 0;
            toFields(time, base, true, h, m, s, f);
            fromFields(base, true, static_cast<std::int32_t>(bits), m, s, f);
        }
        CHECK(dropFrameOffset(time, 30) >= 0);
    }
}

KXUI_PLAIN_TEST(TimecodeTest, signOfFields) {
    std::int32_t h = 0, m = 0, s = 0, f = 0;
    for (const Time count : {3600 * 25, 60 * 25, 25, 1}) {
        toFields(-count - 1, Pal, false, h, m, s, f);
        COMPARE(((h * 60 + m) * 60 + s) * 25 + f, count == 1 ? -2 : 1 - count);
    }
}
