#include "media/PlayOrder.h"

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

/** b - a for a <= b, without overflow. */
std::uint64_t span(Base::Time a, Base::Time b) {
    return std::uint64_t(b) - std::uint64_t(a);
}

} // namespace

std::uint64_t PlayOrder::distance(Base::Time time) const {
    const std::uint64_t apart = time >= playhead ? span(playhead, time) : span(time, playhead);
    if (direction == 0)
        return apart;
    if (!contains(time) || !contains(playhead))
        return length() + apart;
    const bool ahead = direction > 0 ? time >= playhead : time <= playhead;
    return ahead ? apart : length() - apart;
}

std::vector<Base::Time> PlayOrder::next(std::size_t count) const {
    std::vector<Base::Time> times;
    const Base::Time start = std::clamp(playhead, first, last);
    count = std::size_t(std::min<std::uint64_t>(count, length()));
    times.reserve(count);
    if (direction != 0) {
        std::uint64_t offset = direction > 0 ? span(first, start) : span(start, last);
        for (; times.size() < count; offset = (offset + stride) % length())
            times.push_back(direction > 0 ? Base::Time(std::uint64_t(first) + offset)
                                          : Base::Time(std::uint64_t(last) - offset));
        return times;
    }
    Base::Time forwards = start;
    Base::Time backwards = start;
    while (times.size() < count) {
        // Alternately right and left of the playhead, then along the side that is left over.
        if (times.empty())
            times.push_back(start);
        else if (forwards < last && (backwards == first || times.size() % 2 == 1))
            times.push_back(++forwards);
        else
            times.push_back(--backwards);
    }
    return times;
}

} // namespace Kestrel::Workbench
