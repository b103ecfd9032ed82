#include <KxUI/eventgraph/EventTrack.h>

#include <KxUI/eventgraph/CaptureState_p.h>
#include <KxUI/eventgraph/IEventGraphTimer.h>

#include <algorithm>

namespace Kestrel::UI {

EventTrack::EventTrack(const QString& name, const QColor& color, int sortKey, TrackType type,
                       float minValue, float maxValue, int maxEventsPerSecond, int maxEvents,
                       int graphHeight, EventTrack* timeTrack) {
    m_fields.name = name;
    m_fields.color = color;
    m_fields.sortKey = sortKey;
    m_fields.type = type;
    m_fields.minValue = minValue;
    m_fields.maxValue = maxValue;
    m_fields.maxEventsPerSecond = maxEventsPerSecond;
    m_fields.maxEvents = maxEvents;
    m_fields.graphHeight = graphHeight;
    m_fields.timeTrack = timeTrack;

    const MutexGuard guard(profilerMutex());
    CaptureState::trackBorn(*this);
    contentReplaced();
    if (type == TrackType::Bandwidth && timeTrack)
        timeTrack->m_fields.dependents.append(this);
}

EventTrack::EventTrack(const EventTrack& other) {
    const MutexGuard guard(profilerMutex());
    CaptureState::trackBorn(*this);
    contentReplaced();
    m_capture.store(other.m_capture.load(std::memory_order_relaxed), std::memory_order_release);
    m_fields = other.m_fields;
}

EventTrack& EventTrack::operator=(const EventTrack& other) {
    if (this == &other)
        return *this;
    EventList dropped;
    const MutexGuard guard(profilerMutex());
    m_fields.events.swap(dropped);
    contentReplaced();
    m_capture.store(other.m_capture.load(std::memory_order_relaxed), std::memory_order_release);
    m_fields = other.m_fields;
    return *this;
}

EventTrack::~EventTrack() {
    // The events go with the members, after the mutex.
    const MutexGuard guard(profilerMutex());
    CaptureState::trackDies(*this);
}

void EventTrack::addEvent(Type type, EventUserDataIP userData, int time) {
    record(type, userData, time, time == -1 ? TimeOf::Now : TimeOf::Event);
}

void EventTrack::record(Type type, const EventUserDataIP& userData, int time, TimeOf timeOf) {
    CaptureState* const capture = m_capture.load(std::memory_order_acquire);
    if (!capture)
        return;
    EventUserDataIP dropped; // released after the locks
    const StateReadGuard stateGuard(capture->lock);
    const MutexGuard guard(profilerMutex());
    if (m_capture.load(std::memory_order_relaxed) != capture)
        return;

    if (timeOf == TimeOf::Now)
        time = capture->timer->time();
    if (!passesNesting(type, time))
        return;
    for (EventTrack* track : qAsConst(m_fields.dependents))
        track->follow(type, time, *capture, dropped);
    if (timeOf == TimeOf::Now && capture->paused.load(std::memory_order_relaxed))
        return;
    append({time, type, 0.0f, userData}, *capture, dropped);
    if (type == Type::End) {
        m_fields.totalDuration =
            wrappingSum(m_fields.totalDuration, timeDifference(time, m_fields.openStartTime));
        m_fields.count = wrappingSum(m_fields.count, 1);
    }
}

// Keeps count of open activities; false when the event is not the outermost of its activity.
bool EventTrack::passesNesting(Type type, int time) {
    switch (type) {
    case Type::Sample:
        return true;
    case Type::Start:
        if (m_fields.openDepth == 0)
            m_fields.openStartTime = time;
        return m_fields.openDepth++ == 0;
    case Type::End:
        if (m_fields.openDepth == 0)
            return false;
        return --m_fields.openDepth == 0;
    }
    return false;
}

// What a bandwidth track makes of an event of its time track.
void EventTrack::follow(Type type, int time, const CaptureState& capture,
                        EventUserDataIP& dropped) {
    if (type == Type::Start) {
        ++m_fields.openDepth;
        m_fields.openStartTime = time;
        m_fields.openBytes = 0;
    } else if (type == Type::End && m_fields.openDepth > 0) {
        // A track made amid an activity sees an end without its start; it has nothing to measure.
        --m_fields.openDepth;
        if (capture.paused.load(std::memory_order_relaxed))
            return;
        const qint32 duration = timeDifference(time, m_fields.openStartTime);
        m_fields.totalDuration = wrappingSum(m_fields.totalDuration, duration);
        m_fields.totalBytes += m_fields.openBytes;
        m_fields.count = wrappingSum(m_fields.count, 1);
        const double bandwidth =
            static_cast<double>(m_fields.openBytes) * 1000.0 / (duration == 0 ? 1 : duration);
        append({time, Type::Sample, static_cast<float>(bandwidth), {}}, capture, dropped);
    }
}

void EventTrack::addEvent(float value) {
    CaptureState* const capture = m_capture.load(std::memory_order_acquire);
    if (!capture)
        return;
    EventUserDataIP dropped;
    const StateReadGuard stateGuard(capture->lock);
    // A view that dies needs the lock to unlink its tracks, so the timer holds while we do.
    if (m_capture.load(std::memory_order_relaxed) != capture ||
        capture->paused.load(std::memory_order_relaxed))
        return;
    const int time = capture->timer->time();
    const MutexGuard guard(profilerMutex());
    if (m_capture.load(std::memory_order_relaxed) != capture)
        return;
    append({time, Type::Sample, value, {}}, *capture, dropped);
    m_fields.count = wrappingSum(m_fields.count, 1);
    m_fields.valueSum += static_cast<double>(value);
}

// Adds the event if there is room. In a history the oldest makes room; it goes to `dropped`.
void EventTrack::append(Event&& event, const CaptureState& capture, EventUserDataIP& dropped) {
    EventList& events = m_fields.events;
    const auto limit = static_cast<std::size_t>(m_fields.eventLimit);
    if (capture.mode == EventGraphMode::History) {
        if (events.size() == limit && !events.empty()) {
            dropped.swap(events.front().userData);
            events.pop_front();
            ++m_removed;
        }
    } else if (events.size() >= limit) {
        return;
    }
    events.push_back(std::move(event));
}

void EventTrack::addDataSize(quint64 bytes) {
    CaptureState* const capture = m_capture.load(std::memory_order_acquire);
    if (!capture)
        return;
    const StateReadGuard stateGuard(capture->lock);
    const MutexGuard guard(profilerMutex());
    if (m_capture.load(std::memory_order_relaxed) == capture && m_fields.openDepth > 0)
        m_fields.openBytes += bytes;
}

// Runs `function` under both locks of the capture, or under the mutex alone without one.
template <class Function>
void EventTrack::withLocks(Function function) {
    for (;;) {
        CaptureState* const capture = m_capture.load(std::memory_order_acquire);
        if (!capture) {
            const MutexGuard guard(profilerMutex());
            if (!m_capture.load(std::memory_order_relaxed))
                return function(nullptr);
        } else {
            const StateReadGuard stateGuard(capture->lock);
            const MutexGuard guard(profilerMutex());
            if (m_capture.load(std::memory_order_relaxed) == capture)
                return function(capture);
        }
    }
}

void EventTrack::clear() {
    EventList dropped;
    withLocks([&](const CaptureState* capture) { clearLocked(capture, dropped); });
}

void EventTrack::clearLocked(const CaptureState* capture, EventList& dropped) {
    m_fields.events.swap(dropped);
    contentReplaced();
    if (capture && capture->durationSeconds == unlimitedDuration) {
        m_fields.eventLimit = std::max(m_fields.maxEvents, 0);
    } else if (capture) {
        const float limit =
            static_cast<float>(m_fields.maxEventsPerSecond) * capture->durationSeconds;
        m_fields.eventLimit = std::max(truncated(static_cast<double>(limit)), 0);
    }
    m_fields.totalDuration = 0;
    m_fields.count = 0;
    m_fields.valueSum = 0;
    m_fields.totalBytes = 0;
}

void EventTrack::finaliseHistory(int startTime) {
    EventList dropped;
    withLocks([&](const CaptureState*) { finaliseLocked(startTime, dropped); });
}

void EventTrack::finaliseLocked(int startTime, EventList& dropped) {
    EventList& events = m_fields.events;
    while (!events.empty() && timeDifference(events.front().time, startTime) < 0) {
        dropped.push_back(std::move(events.front()));
        events.pop_front();
        ++m_removed;
    }
}

void EventTrack::contentReplaced() {
    static std::atomic<quint64> last{0};
    m_content = ++last;
    m_removed = 0;
}

QString EventTrack::trackTooltipText() const {
    const MutexGuard guard(profilerMutex());
    return tooltipLocked();
}

QString EventTrack::tooltipLocked() const {
    const auto mean = [](const char* label, double value) {
        return QLatin1String(label) + QString::number(value, 'g', 6);
    };
    switch (m_fields.type) {
    case TrackType::Timeline:
        if (m_fields.count != 0)
            return mean(", Mean Duration=", double(m_fields.totalDuration) / m_fields.count);
        break;
    case TrackType::Value:
        if (m_fields.count != 0)
            return mean(", Mean Value=", m_fields.valueSum / m_fields.count);
        break;
    case TrackType::Bandwidth:
        if (m_fields.totalDuration != 0)
            return mean(", Mean Bandwidth=",
                        double(m_fields.totalBytes) * 1000.0 / m_fields.totalDuration);
        break;
    }
    return {};
}

bool EventTrack::hasSamples() const {
    const MutexGuard guard(profilerMutex());
    return m_fields.count != 0;
}

} // namespace Kestrel::UI
