#include <KxUI/files/SequenceFold_p.h>

#include <KxUI/files/NaturalOrder_p.h>

#include <algorithm>
#include <limits>
#include <numeric>

namespace Kestrel::UI {
namespace {

std::size_t digitsBegin(std::string_view name, std::size_t end) {
    while (end > 0 && isDigit(name[end - 1]))
        --end;
    return end;
}

} // namespace

std::int64_t frameCount(const Base::FrameRange& range) {
    return (std::int64_t{range.last} - range.first) / std::max(range.step, 1) + 1;
}

void SequenceRun::start(std::size_t index, const WrittenFrame& written) {
    begin = index;
    count = 1;
    firstFrame = lastFrame = written.number;
    step = 0;
    missing = 0;
    gaps.clear();
    stretches.clear();
    addFrame(stretches, written);
}

bool SequenceRun::add(const WrittenFrame& written) {
    const auto members = static_cast<std::int64_t>(count++);
    const std::int32_t previous = lastFrame;
    const std::int32_t frame = lastFrame = written.number;
    addFrame(stretches, written);
    if (frame <= previous)
        return false;
    const std::int32_t distance = frame - previous;
    if (members == 1) {
        step = distance;
    } else if (distance != step) {
        const std::int32_t divisor = std::gcd(distance, step);
        if (divisor < step) {
            // What was missing at the wider step is not carried over: 1, 5, 7, 8 miss 3 frames.
            missing = (missing + members - 1) * (step / divisor - 1);
            step = divisor;
        }
        missing += distance / step - 1;
        if (missing != 0)
            gaps.emplace_back(previous + 1, frame - 1);
    }
    return true;
}

std::vector<Base::FrameRange> SequenceRun::presentRanges() const {
    std::vector<Base::FrameRange> ranges;
    ranges.reserve(gaps.size() + 1);
    std::int32_t start = firstFrame;
    for (const auto& gap : gaps) {
        ranges.emplace_back(start, gap.first - 1);
        start = gap.last + 1;
    }
    if (start < lastFrame)
        ranges.emplace_back(start, lastFrame);
    return ranges;
}

namespace {

// The last stretch takes up a frame behind it, if it is a step away and written alike.
bool takesUp(FrameStretch& last, const WrittenFrame& frame) {
    const std::int32_t distance = frame.number - last.frames.last;
    if (last.frames.first != last.frames.last && distance != last.frames.step)
        return false;
    // Every smaller width, too, writes a number that fills its digits; a padded one has only its
    // own.
    const bool isOwnWidth = frame.digits == last.width;
    if (last.isPadded && !isOwnWidth && (frame.isPadded || frame.digits < last.width))
        return false;
    if (!last.isPadded && frame.isPadded && frame.digits > last.width)
        return false;
    last.frames.last = frame.number;
    last.frames.step = distance;
    last.width = std::min(last.width, frame.digits);
    last.isPadded = last.isPadded || frame.isPadded;
    return true;
}

// A frame of more digits may come behind greater ones: a1, a3, a02. It ends its run, so the work
// in proportion to the run is done once.
void insertFrame(std::vector<FrameStretch>& stretches, const WrittenFrame& frame) {
    std::vector<WrittenFrame> all;
    for (const FrameStretch& stretch : stretches) {
        for (std::int64_t each = stretch.frames.first; each <= stretch.frames.last;
             each += stretch.frames.step) {
            const auto number = static_cast<std::int32_t>(each);
            const auto digits = static_cast<std::int32_t>(std::to_string(number).size());
            all.push_back({number, std::max(digits, stretch.width), digits < stretch.width});
        }
    }
    const auto place = std::lower_bound(
        all.begin(), all.end(), frame.number,
        [](const WrittenFrame& each, std::int32_t number) { return each.number < number; });
    if (place != all.end() && place->number == frame.number)
        return;
    all.insert(place, frame);
    stretches.clear();
    for (const WrittenFrame& each : all)
        addFrame(stretches, each);
}

} // namespace

void addFrame(std::vector<FrameStretch>& stretches, const WrittenFrame& frame) {
    if (frame.digits == 0)
        return;
    if (!stretches.empty() && frame.number <= stretches.back().frames.last)
        insertFrame(stretches, frame);
    else if (stretches.empty() || !takesUp(stretches.back(), frame))
        stretches.push_back({{frame.number, frame.number}, frame.digits, frame.isPadded});
}

std::int64_t missingFrames(const Base::FrameRange& whole, const FrameStretch* first,
                           const FrameStretch* end) {
    if (first == end)
        return 0;
    std::int64_t missing = frameCount(whole);
    for (; first != end; ++first)
        missing -= frameCount(first->frames);
    // Frames that stand outside the step were added behind greater ones: a1, a3, a02.
    return std::max<std::int64_t>(missing, 0);
}

std::optional<PatternRules::Frame> PatternRules::frameOf(std::string_view name) {
    const std::size_t end = std::min(name.rfind('.'), name.size());
    const std::size_t begin = digitsBegin(name, end);
    if (begin == end)
        return std::nullopt;
    const std::size_t length = end - begin;
    if (length >= 2 && name[begin] == '0')
        m_narrowestPadding = std::min(m_narrowestPadding, length);
    return Frame{name.substr(0, begin), name.substr(end), length < m_narrowestPadding ? 0 : length,
                 frameNumber(name.substr(begin, length))};
}

bool PatternRules::join(const Frame& head, const Frame& next) const {
    return head.padding == next.padding && head.prefix == next.prefix && head.suffix == next.suffix;
}

std::string PatternRules::pattern(const Frame& head) {
    std::string text(head.prefix);
    text += head.padding == 0 ? "%d" : "%0" + std::to_string(head.padding) + "d";
    return text.append(head.suffix);
}

std::optional<FrameNameRules::Frame> FrameNameRules::frameOf(std::string_view name) const {
    const std::size_t dot = name.rfind('.');
    if (dot == 0 || name.empty())
        return std::nullopt;
    const bool fromEnd =
        dot == std::string_view::npos || (dot + 1 < name.size() && isDigit(name[dot + 1]));
    std::size_t last = fromEnd ? name.size() - 1 : dot;
    while (last > 0 && !isDigit(name[last]))
        --last;
    if (last == 0)
        return std::nullopt;
    const std::size_t end = last + 1;
    const std::size_t begin = digitsBegin(name, end);
    std::size_t before = begin;
    std::size_t after = name.size() - end;
    // A name may hold a # of its own.
    if (const auto hash = name.find('#'); hash != std::string_view::npos) {
        before = std::min(before, hash);
        after = std::min(after, name.size() - name.rfind('#') - 1);
    }
    const auto short32 = [](std::size_t size) { return static_cast<std::uint32_t>(size); };
    return Frame{name,
                 short32(begin),
                 short32(end - begin),
                 short32(before),
                 short32(after),
                 frameNumber(name.substr(begin, end - begin)),
                 short32(end - begin)};
}

bool FrameNameRules::join(Frame& head, const Frame& next) const {
    if (head.front() != next.front() || head.back() != next.back())
        return false;
    if (!head.mixed) {
        const bool plain = head.before + head.digits + head.after == head.name.size() &&
                           next.before + next.digits + next.after == next.name.size();
        head.mixed = plain ? head.digits != next.digits : frameName(head) != frameName(next);
    }
    head.shortest = std::min(head.shortest, next.digits);
    return true;
}

WrittenFrame FrameNameRules::written(const Frame& frame) {
    const char* const digits = frame.name.data() + frame.begin;
    const bool startsWithZero = *digits == '0';
    const bool isTooLarge =
        frame.number == 0 &&
        !std::all_of(digits, digits + frame.digits, [](char digit) { return digit == '0'; });
    return {frame.number, isTooLarge ? 0 : static_cast<std::int32_t>(frame.digits),
            startsWithZero && frame.digits > 1};
}

std::string FrameNameRules::frameName(const Frame& head) {
    std::string text;
    text.reserve(head.name.size());
    if (head.mixed)
        return text.append(head.front()).append(1, '#').append(head.back());
    return text.append(head.name, 0, head.begin)
        .append(head.digits, '#')
        .append(head.name, head.begin + head.digits, std::string_view::npos);
}

std::int32_t frameNumber(std::string_view digits) noexcept {
    std::int64_t value = 0;
    for (const char digit : digits) {
        value = value * 10 + (digit - '0');
        if (value > std::numeric_limits<std::int32_t>::max())
            return 0;
    }
    return static_cast<std::int32_t>(value);
}

std::string paddedNumber(std::int32_t number, std::int32_t width) {
    std::string text = std::to_string(number);
    if (const auto wanted = static_cast<std::size_t>(std::max(width, 0)); wanted > text.size())
        text.insert(0, wanted - text.size(), '0');
    return text;
}

std::string frameFileName(std::string_view frameName, std::int32_t frame, std::int32_t width) {
    const std::size_t first = frameName.find('#');
    if (first == std::string_view::npos)
        return std::string(frameName);
    return std::string(frameName.substr(0, first))
        .append(paddedNumber(frame, width))
        .append(frameName.substr(frameName.rfind('#') + 1));
}

} // namespace Kestrel::UI
