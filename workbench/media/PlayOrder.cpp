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
    Base::Time forwards = start;
    Base::Time backwards = start;
    while (times.size() < count) {
        if (direction == 0) {
            // Alternately right and left of the playhead, then along the side that is left over.
            if (times.empty())
                times.push_back(start);
            else if (forwards < last && (backwards == first || times.size() % 2 == 1))
                times.push_back(++forwards);
            else
                times.push_back(--backwards);
        } else {
            times.push_back(forwards);
            if (direction > 0)
                forwards = forwards == last ? first : forwards + 1;
            else
                forwards = forwards == first ? last : forwards - 1;
        }
    }
    return times;
}

} // namespace Kestrel::Workbench
