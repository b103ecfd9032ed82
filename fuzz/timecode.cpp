// Typed times against a slow reader written by the rules, written times against what is read back,
// and frame ranges. The last bytes choose rate, notation, offset and time.

#include <KxUI/base/FrameRange.h>
#include <KxUI/base/Timecode.h>

#include <support/Require.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Kestrel::Base;
using Kestrel::Fuzz::require;

namespace {

constexpr Time largest = 2147483647;

TimeBase baseFrom(FuzzedDataProvider& input) {
    const auto kind = input.ConsumeIntegral<std::uint8_t>();
    if (kind < 200)
        return TimeBase::standard(TimeBase::Standard(kind % 8));
    if (kind < 225)
        return TimeBase(input.ConsumeFloatingPoint<double>());
    const auto numerator = input.ConsumeIntegral<std::uint64_t>();
    return TimeBase::fromFraction(numerator,
                                  kind % 2 ? 1001 : input.ConsumeIntegral<std::uint8_t>());
}

Time wrapped(Time a, Time b, int sign) {
    const auto x = std::uint64_t(a), y = std::uint64_t(b);
    return Time(sign < 0 ? x - y : x + y);
}

std::int32_t wrap32(Time value) {
    return std::int32_t(std::uint32_t(std::uint64_t(value)));
}

// Digits as a number that stops at the largest 32-bit integer, or one more below zero.
Time number(const std::string& digits, bool negative) {
    Time value = 0;
    for (const char digit : digits)
        value = std::min(value * 10 + (digit - '0'), largest + 1);
    return negative ? -value : std::min(value, largest);
}

// The text as runs of digits and what stands between them.
struct Parts {
    bool negative = false, negativeSecond = false;
    std::vector<std::string> runs{""};
    std::string marks;

    explicit Parts(std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char c = text[i];
            if (c >= '0' && c <= '9') {
                runs.back() += c;
            } else if (c == '-' && i == 0) {
                negative = true;
            } else if (c == '-' && marks == "+" && runs.back().empty() && !negativeSecond) {
                negativeSecond = true;
            } else {
                marks += c;
                runs.emplace_back();
            }
        }
    }
    bool isPlain() const { return marks.empty() && !runs[0].empty(); }
    bool isSeparated() const {
        return !marks.empty() && marks.size() < 4 &&
               marks.find_first_not_of(":;.") == std::string::npos;
    }
    bool isSuffixed() const {
        return (marks == "h" || marks == "m" || marks == "s") && !runs[0].empty() &&
               runs[1].empty();
    }
    bool isJoined() const { return marks == "+" && !runs[0].empty() && !runs[1].empty(); }
};

Time read(std::string_view text, const TimeBase& base, Timecode::DisplayType type, Time offset) {
    const Parts parts(text);
    if (!base.isValid() ||
        !(parts.isPlain() || parts.isSeparated() || parts.isSuffixed() || parts.isJoined()))
        return InvalidTime;
    const Time first = number(parts.runs[0], parts.negative);
    if (type == Timecode::Frames)
        return wrapped(first, offset, -1);
    if (type != Timecode::Timecode && type != Timecode::DropFrameTimecode) {
        const Time feet = type == Timecode::FeetFrames40 ? 40 : 16;
        return parts.isJoined() ? first * feet + number(parts.runs[1], parts.negativeSecond)
                                : InvalidTime;
    }
    Time fields[4] = {}; // frames first
    if (parts.isSeparated()) {
        for (std::size_t i = 0; i < parts.runs.size(); ++i)
            fields[i] = number(parts.runs[parts.runs.size() - 1 - i], false);
    } else {
        Time packed = wrap32(first < 0 ? -first : first);
        if (parts.isSuffixed())
            packed *= parts.marks == "h" ? 1000000 : parts.marks == "m" ? 10000 : 100;
        packed = wrap32(packed);
        for (Time& field : fields) {
            field = packed % 100;
            packed /= 100;
        }
    }
    const Time fps = base.roundedFps();
    if (fields[2] > 59 || fields[1] > 59 || fields[0] >= std::max<Time>(fps, 1))
        return InvalidTime;
    const std::int32_t minutes = wrap32(fields[3] * 60 + fields[2]);
    Time count = fps * wrap32(Time(minutes) * 60 + fields[1]) + fields[0];
    if (type == Timecode::DropFrameTimecode && base.isDropFrameRate() && (fps == 30 || fps == 60))
        count -= fps / 15 * (Time(minutes) - minutes / 10);
    return wrapped(parts.negative ? -count : count, offset, -1);
}

void writeAndReadBack(const TimeBase& base, Timecode::DisplayType type, Time time, Time offset,
                      bool plus) {
    const std::string text = Timecode::toString(time, base, type, plus, offset);
    // In a room of just the promised size.
    const std::unique_ptr<char[]> room(new char[Timecode::MaximumLength]);
    const std::size_t length = Timecode::format(room.get(), time, base, type, plus, offset);
    require(text == std::string(room.get(), length), "format() and toString() agree");
    if (time == InvalidTime || !base.isValid())
        return;

    const Time sum = wrapped(time, offset, 1);
    const Time count = sum < 0 ? wrapped(0, sum, -1) : sum;
    if (count < 0 || (plus && sum >= 0 && type != Timecode::Frames))
        return; // nobody types what has no magnitude, or a leading plus
    const bool feet = type == Timecode::FeetFrames16 || type == Timecode::FeetFrames40;
    const Time read = Timecode::fromString(text, base, type, feet ? 0 : offset);
    if (type == Timecode::Frames && sum == wrap32(sum))
        require(read == time, "frames come back");
    // The sign before the feet is not one of the frames.
    if (feet && sum >= 0 && count / 16 <= largest)
        require(read == sum, "feet come back");
    const bool timecode = type == Timecode::Timecode || type == Timecode::DropFrameTimecode;
    const Time fps = base.roundedFps();
    if (timecode && fps > 0 && count < fps * 24 * 60 * 60 * 999 / 1000)
        require(read == time, "timecode comes back");
    if (timecode)
        require(Timecode::displayTypeOf(text) ==
                    (base.isDropFrameRate() ? type : Timecode::Timecode),
                "the notation is seen in the text");
}

void readRange(std::string_view text) {
    std::string error;
    const auto range = parseFrameRange(text, &error);
    require(range.has_value() == error.empty(), "an error where there is no range");
    if (!range)
        return;
    require(range->first <= range->last && range->step >= 1, "a range runs upwards");
    const auto again =
        parseFrameRange(std::to_string(range->first) + '-' + std::to_string(range->last) + 'x' +
                        std::to_string(range->step));
    require(again == range, "a range comes back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const TimeBase base = baseFrom(input);
    const auto type = Timecode::DisplayType(input.ConsumeIntegralInRange(0, 5));
    const auto choice = input.ConsumeIntegral<std::uint8_t>();
    const Time offset = choice % 4 == 0   ? input.ConsumeIntegral<Time>()
                        : choice % 4 == 1 ? input.ConsumeIntegral<std::int16_t>()
                                          : 0;
    const Time time =
        choice & 4 ? input.ConsumeIntegral<Time>() : input.ConsumeIntegral<std::int32_t>();
    const std::string text = input.ConsumeRemainingBytesAsString();

    if (type <= Timecode::FeetFrames16)
        require(Timecode::fromString(text, base, type, offset) == read(text, base, type, offset),
                "typed times are read by the rules");
    else
        require(Timecode::fromString(text, base, type, offset) == InvalidTime, "no such notation");
    writeAndReadBack(base, type, time, offset, choice & 8);
    readRange(text);
    return 0;
}
