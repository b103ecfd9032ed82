#include <KxUI/base/Timecode.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <type_traits>

namespace Kestrel::Base::Timecode {
namespace {

constexpr std::uint64_t SecondsPerDay = 24 * 60 * 60;

struct Fields {
    std::uint32_t hours = 0;
    std::uint32_t minutes = 0;
    std::uint32_t seconds = 0;
    std::uint32_t frames = 0;
};

// Rates are compile-time constants wherever they can be: dividing by a constant is a
// multiplication.
template <std::uint32_t fps>
constexpr std::uint64_t skippedLabels(std::uint64_t count) noexcept {
    constexpr std::uint64_t labelsPerMinute = fps / 15;
    constexpr std::uint64_t framesPerMinute = fps * 60 - labelsPerMinute;
    constexpr std::uint64_t framesPerTenMinutes = fps * 600 - 9 * labelsPerMinute;
    const std::uint64_t rest = count % framesPerTenMinutes;
    // The first minute of ten drops nothing and so is longer by what another minute drops.
    const std::uint64_t minutes =
        rest < labelsPerMinute ? 0 : (rest - labelsPerMinute) / framesPerMinute;
    return labelsPerMinute * (9 * (count / framesPerTenMinutes) + minutes);
}

template <class Rate>
constexpr Fields split(std::uint64_t labels, Rate fps) noexcept {
    const std::uint64_t total = labels / fps;
    // Few times reach the second day, and the branch costs less than the division.
    const auto inDay =
        static_cast<std::uint32_t>(total < SecondsPerDay ? total : total % SecondsPerDay);
    Fields fields;
    fields.frames = static_cast<std::uint32_t>(labels - total * fps);
    fields.seconds = inDay % 60;
    fields.minutes = inDay / 60 % 60;
    fields.hours = inDay / 3600;
    return fields;
}

template <std::uint32_t fps>
constexpr Fields split(std::uint64_t labels) noexcept {
    return split(labels, std::integral_constant<std::uint32_t, fps>{});
}

constexpr bool dropsLabels(const TimeBase& base) noexcept {
    return base.denominator() == 1001 || base.isNtscRate();
}

Fields fieldsOf(std::uint64_t count, const TimeBase& base, bool drop) noexcept {
    const std::int32_t fps = base.roundedFps();
    switch (fps) {
    case 24:
        return split<24>(count);
    case 25:
        return split<25>(count);
    case 30:
        return split<30>(drop && dropsLabels(base) ? count + skippedLabels<30>(count) : count);
    case 50:
        return split<50>(count);
    case 60:
        return split<60>(drop && dropsLabels(base) ? count + skippedLabels<60>(count) : count);
    default:
        return fps < 1 ? Fields() : split(count, static_cast<std::uint32_t>(fps));
    }
}

constexpr std::uint64_t magnitudeOf(std::uint64_t bits) noexcept {
    return bits >> 63 != 0 ? 0 - bits : bits;
}

struct DigitPairs {
    constexpr DigitPairs() noexcept {
        for (std::size_t i = 0; i < 100; ++i) {
            text[2 * i] = static_cast<char>('0' + i / 10);
            text[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
    char text[200] = {};
};
constexpr DigitPairs digitPairs;

char* writePair(char* out, std::uint32_t value) noexcept {
    std::memcpy(out, digitPairs.text + 2 * value, 2);
    return out + 2;
}

char* writeInteger(char* out, std::int32_t value) noexcept {
    return std::to_chars(out, out + 11, value).ptr;
}

// As "%02d".
char* writePadded(char* out, std::int32_t value) noexcept {
    return value >= 0 && value < 100 ? writePair(out, static_cast<std::uint32_t>(value))
                                     : writeInteger(out, value);
}

char* writeFields(char* out, const Fields& fields, char separator) noexcept {
    out = writePair(out, fields.hours);
    *out++ = separator;
    out = writePair(out, fields.minutes);
    *out++ = separator;
    out = writePair(out, fields.seconds);
    *out++ = separator;
    return writePadded(out, static_cast<std::int32_t>(fields.frames));
}

char* writeFeet(char* out, std::uint64_t count, std::uint32_t framesPerFoot) noexcept {
    out = writePadded(out, static_cast<std::int32_t>(count / framesPerFoot));
    *out++ = '+';
    return writePair(out, static_cast<std::uint32_t>(count % framesPerFoot));
}

DisplayType allowedType(DisplayType type, const TimeBase& base) noexcept {
    return type == DropFrameTimecode && !base.isDropFrameRate() ? Timecode : type;
}

// A typed text after the grammar accepted it.
struct Entry {
    enum Form { Plain, Separated, Joined };
    Form form = Plain;
    bool negative = false;
    std::int32_t runs = 1;              // runs of digits, also empty ones
    std::array<std::uint32_t, 4> run{}; // as typed, left to right, saturated at 2^31
    std::int32_t joined = 0;            // the number after "+"
    char suffix = 0;                    // h, m, s or none
};

constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

constexpr bool isSeparator(char c) noexcept {
    return c == ':' || c == ';' || c == '.';
}

// Reads digits up to `end`; one more than the largest 32-bit integer stands for all beyond it.
const char* readDigits(const char* at, const char* end, std::uint32_t& value) noexcept {
    constexpr std::uint64_t limit = std::uint64_t{1} << 31;
    std::uint64_t sum = 0;
    for (; at != end && isDigit(*at); ++at)
        sum = std::min(sum * 10 + static_cast<std::uint64_t>(*at - '0'), limit);
    value = static_cast<std::uint32_t>(sum);
    return at;
}

constexpr std::int32_t withSign(std::uint32_t magnitude, bool negative) noexcept {
    const std::int64_t value = negative ? -std::int64_t{magnitude} : std::int64_t{magnitude};
    return static_cast<std::int32_t>(
        std::min<std::int64_t>(value, std::numeric_limits<std::int32_t>::max()));
}

// Answers for the pattern
//   -?\d+ | -?\d*([:;.]\d*){1,3} | -?\d+[hms] | -?\d+\+-?\d+
// against the whole text, and takes the numbers out on the way.
bool scan(std::string_view text, Entry& entry) noexcept {
    const char* at = text.data();
    const char* const end = at + text.size();
    if (at != end && *at == '-') {
        entry.negative = true;
        ++at;
    }
    const char* const first = at;
    at = readDigits(at, end, entry.run[0]);
    const bool hasDigits = at != first;
    if (at == end)
        return hasDigits;

    switch (*at) {
    case ':':
    case ';':
    case '.':
        entry.form = Entry::Separated;
        while (at != end) {
            if (!isSeparator(*at) || entry.runs == 4)
                return false;
            at = readDigits(at + 1, end, entry.run[static_cast<std::size_t>(entry.runs++)]);
        }
        return true;
    case 'h':
    case 'm':
    case 's':
        entry.suffix = *at;
        return hasDigits && at + 1 == end;
    case '+': {
        entry.form = Entry::Joined;
        ++at;
        const bool negative = at != end && *at == '-';
        if (negative)
            ++at;
        const char* const second = at;
        std::uint32_t magnitude = 0;
        at = readDigits(at, end, magnitude);
        entry.joined = withSign(magnitude, negative);
        return hasDigits && at != second && at == end;
    }
    default:
        return false;
    }
}

struct Reading {
    std::int32_t hours = 0;
    std::int32_t minutes = 0;
    std::int32_t seconds = 0;
    std::int32_t frames = 0;
    std::int32_t filled = 4;
};

Reading readSeparated(const Entry& entry) noexcept {
    const auto fromRight = [&entry](std::int32_t index) {
        return index < entry.runs
                   ? withSign(entry.run[static_cast<std::size_t>(entry.runs - 1 - index)], false)
                   : 0;
    };
    return {fromRight(3), fromRight(2), fromRight(1), fromRight(0), entry.runs};
}

// Digits without separators, in pairs from the right. The arithmetic is that of 32-bit integers
// which wrap, so an absurdly long number gives an absurd time rather than a refusal.
Reading readPacked(const Entry& entry, std::size_t length) noexcept {
    std::int32_t filled = static_cast<std::int32_t>(std::min<std::size_t>((length + 1) / 2, 4));
    std::uint32_t scale = 1;
    switch (entry.suffix) {
    case 'h':
        scale = 1000000;
        filled = 4;
        break;
    case 'm':
        scale = 10000;
        filled = 3;
        break;
    case 's':
        scale = 100;
        filled = 2;
        break;
    default:
        break;
    }
    const std::int32_t number = withSign(entry.run[0], entry.negative);
    const std::uint32_t magnitude =
        number < 0 ? 0 - static_cast<std::uint32_t>(number) : static_cast<std::uint32_t>(number);
    const auto packed = static_cast<std::int32_t>(magnitude * scale);
    return {packed / 1000000 % 100, packed / 10000 % 100, packed / 100 % 100, packed % 100, filled};
}

constexpr bool readPair(const char* at, std::int32_t& value) noexcept {
    value = (at[0] - '0') * 10 + (at[1] - '0');
    return isDigit(at[0]) && isDigit(at[1]);
}

// "HH:MM:SS:FF", what format() writes and so by far the most common text.
bool readCanonical(std::string_view text, Reading& reading) noexcept {
    const char* const at = text.data();
    return text.size() == 11 && readPair(at, reading.hours) && isSeparator(at[2]) &&
           readPair(at + 3, reading.minutes) && isSeparator(at[5]) &&
           readPair(at + 6, reading.seconds) && isSeparator(at[8]) &&
           readPair(at + 9, reading.frames);
}

constexpr Time difference(Time a, Time b) noexcept {
    return static_cast<Time>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

} // namespace

std::size_t format(char* buffer, Time time, const TimeBase& base, DisplayType type, bool showPlus,
                   Time offset) noexcept {
    if (!buffer)
        return 0;
    type = allowedType(type, base);
    const char separator = type == DropFrameTimecode ? ';' : ':';
    if (time == InvalidTime) {
        if (type == Frames) {
            std::memcpy(buffer, "--", 2);
            return 2;
        }
        const char dashes[] = {'-', '-', separator, '-', '-', separator,
                               '-', '-', separator, '-', '-'};
        std::memcpy(buffer, dashes, sizeof dashes);
        return sizeof dashes;
    }

    const std::uint64_t sum = static_cast<std::uint64_t>(time) + static_cast<std::uint64_t>(offset);
    char* out = buffer;
    if (type == Frames) {
        out = writeInteger(out, static_cast<std::int32_t>(sum));
        return static_cast<std::size_t>(out - buffer);
    }
    const std::uint64_t count = magnitudeOf(sum);
    if (sum >> 63 != 0)
        *out++ = '-';
    else if (showPlus)
        *out++ = '+';
    switch (type) {
    case Timecode:
    case DropFrameTimecode:
        out = writeFields(out, fieldsOf(count, base, type == DropFrameTimecode), separator);
        break;
    case FeetFrames40:
        out = writeFeet(out, count, 40);
        break;
    case FeetFrames16:
        out = writeFeet(out, count, 16);
        break;
    default:
        return 0;
    }
    return static_cast<std::size_t>(out - buffer);
}

std::string toString(Time time, const TimeBase& base, DisplayType type, bool showPlus,
                     Time offset) {
    // Written where it stays, because the processor stalls on copying what it only just stored in
    // pieces. Fifteen characters need no allocation; only frames of six digits need more.
    std::string text("###############");
    if (base.roundedFps() > 100000)
        text.resize(MaximumLength);
    text.erase(format(text.data(), time, base, type, showPlus, offset));
    return text;
}

Time fromString(std::string_view text, const TimeBase& base, DisplayType type, Time offset,
                std::int32_t* fieldCount) noexcept {
    if (!base.isValid())
        return InvalidTime;
    type = allowedType(type, base);
    const bool isTimecode = type == Timecode || type == DropFrameTimecode;

    Reading reading;
    Entry entry;
    if (!isTimecode || !readCanonical(text, reading)) {
        if (!scan(text, entry))
            return InvalidTime;
        if (isTimecode)
            reading = entry.form == Entry::Separated ? readSeparated(entry)
                                                     : readPacked(entry, text.size());
    }
    if (type == Frames)
        return difference(withSign(entry.run[0], entry.negative), offset);

    if (fieldCount)
        *fieldCount = reading.filled;
    switch (type) {
    case Timecode:
    case DropFrameTimecode: {
        if (reading.minutes > 59 || reading.seconds > 59 ||
            reading.frames >= std::max(base.roundedFps(), 1))
            return InvalidTime;
        const Time count = fromFields(base, type == DropFrameTimecode, reading.hours,
                                      reading.minutes, reading.seconds, reading.frames);
        return difference(entry.negative ? -count : count, offset);
    }
    case FeetFrames40:
    case FeetFrames16:
        if (entry.form != Entry::Joined)
            return InvalidTime;
        return Time{withSign(entry.run[0], entry.negative)} * (type == FeetFrames40 ? 40 : 16) +
               entry.joined;
    default:
        return InvalidTime;
    }
}

DisplayType displayTypeOf(std::string_view text) noexcept {
    const std::size_t at = text.find_last_of(":;");
    if (at == std::string_view::npos)
        return Frames;
    return text[at] == ';' ? DropFrameTimecode : Timecode;
}

void toFields(Time count, const TimeBase& base, bool drop, std::int32_t& hours,
              std::int32_t& minutes, std::int32_t& seconds, std::int32_t& frames) noexcept {
    const Fields fields = fieldsOf(magnitudeOf(static_cast<std::uint64_t>(count)), base, drop);
    hours = static_cast<std::int32_t>(fields.hours);
    minutes = static_cast<std::int32_t>(fields.minutes);
    seconds = static_cast<std::int32_t>(fields.seconds);
    frames = static_cast<std::int32_t>(fields.frames);
    if (count < 0) {
        std::int32_t& leading = hours > 0     ? hours
                                : minutes > 0 ? minutes
                                : seconds > 0 ? seconds
                                              : frames;
        leading = -leading;
    }
}

Time fromFields(const TimeBase& base, bool drop, std::int32_t hours, std::int32_t minutes,
                std::int32_t seconds, std::int32_t frames) noexcept {
    const std::int32_t fps = base.roundedFps();
    const std::uint32_t totalMinutes =
        static_cast<std::uint32_t>(hours) * 60U + static_cast<std::uint32_t>(minutes);
    const auto totalSeconds =
        static_cast<std::int32_t>(totalMinutes * 60U + static_cast<std::uint32_t>(seconds));
    Time count = Time{fps} * totalSeconds + frames;
    if (drop && (fps == 30 || fps == 60) && dropsLabels(base)) {
        const auto wrapped = static_cast<std::int32_t>(totalMinutes);
        count -= Time{fps / 15} * (Time{wrapped} - wrapped / 10);
    }
    return count;
}

Time dropFrameOffset(Time count, std::int32_t fps) noexcept {
    const std::uint64_t frames = static_cast<std::uint64_t>(std::max<Time>(count, 0));
    if (fps == 30)
        return static_cast<Time>(skippedLabels<30>(frames));
    if (fps == 60)
        return static_cast<Time>(skippedLabels<60>(frames));
    return 0;
}

} // namespace Kestrel::Base::Timecode
