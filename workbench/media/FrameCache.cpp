#include "media/FrameCache.h"

#include <algorithm>
#include <iterator>

namespace Kestrel::Workbench {

FrameCache::FrameCache(std::size_t capacity)
    : m_capacity(capacity) {}

FramePtr FrameCache::find(Base::Time time) const {
    const auto found = m_frames.find(time);
    return found == m_frames.end() ? nullptr : found->second;
}

FramePtr FrameCache::nearestPicture(Base::Time time) const {
    const auto isPicture = [](const Frames::value_type& entry) {
        return entry.second->state == Frame::State::Ready;
    };
    const auto middle = m_frames.lower_bound(time);
    const auto after = std::find_if(middle, m_frames.end(), isPicture);
    const auto before =
        std::find_if(std::make_reverse_iterator(middle), m_frames.rend(), isPicture);
    if (after == m_frames.end())
        return before == m_frames.rend() ? nullptr : before->second;
    if (before == m_frames.rend())
        return after->second;
    const auto ahead = std::uint64_t(after->first) - std::uint64_t(time);
    const auto behind = std::uint64_t(time) - std::uint64_t(before->first);
    return ahead < behind ? after->second : before->second;
}

std::vector<Base::Time> FrameCache::pictureTimes() const {
    std::vector<Base::Time> times;
    times.reserve(m_frames.size());
    for (const auto& [time, frame] : m_frames) {
        if (frame->state == Frame::State::Ready)
            times.push_back(time);
    }
    return times;
}

std::vector<Base::Time> FrameCache::setCapacity(std::size_t capacity, const PlayOrder& order) {
    std::vector<Base::Time> evicted;
    m_capacity = capacity;
    while (m_bytes > m_capacity) {
        const auto victim = neededLast(order);
        evicted.push_back(victim->first);
        remove(victim);
    }
    return evicted;
}

FrameCache::Outcome FrameCache::insert(const FramePtr& frame, const PlayOrder& order) {
    Outcome outcome;
    if (const auto old = m_frames.find(frame->time); old != m_frames.end())
        remove(old);
    const std::size_t cost = frame->cost();
    if (cost > m_capacity)
        return outcome;
    const auto wanted = order.distance(frame->time);
    while (m_bytes > m_capacity - cost) {
        const auto victim = neededLast(order);
        if (order.distance(victim->first) <= wanted)
            return outcome;
        outcome.evicted.push_back(victim->first);
        remove(victim);
    }
    m_frames.emplace(frame->time, frame);
    m_bytes += cost;
    outcome.stored = true;
    return outcome;
}

void FrameCache::clear() {
    m_frames.clear();
    m_bytes = 0;
}

FrameCache::Frames::iterator FrameCache::neededLast(const PlayOrder& order) {
    // The distance grows away from the playhead, to either side, and round the loop while playing:
    // so only the two ends and the frame just behind the playhead can be the farthest.
    auto farthest = m_frames.begin();
    const auto consider = [&](Frames::iterator candidate) {
        if (order.distance(candidate->first) > order.distance(farthest->first))
            farthest = candidate;
    };
    consider(std::prev(m_frames.end()));
    if (order.direction > 0) {
        if (const auto at = m_frames.lower_bound(order.playhead); at != m_frames.begin())
            consider(std::prev(at));
    } else if (order.direction < 0) {
        if (const auto after = m_frames.upper_bound(order.playhead); after != m_frames.end())
            consider(after);
    }
    return farthest;
}

void FrameCache::remove(Frames::iterator frame) {
    m_bytes -= frame->second->cost();
    m_frames.erase(frame);
}

} // namespace Kestrel::Workbench
