#include <KxUI/eventgraph/CaptureState_p.h>

#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/IEventGraphTimer.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <unordered_set>

namespace Kestrel::UI {
namespace {

union MutexForEver {
    constexpr MutexForEver()
        : mutex() {}
    ~MutexForEver() {}
    QMutex mutex;
};
MutexForEver theMutex;

struct Registry {
    std::vector<std::unique_ptr<CaptureState>> states;
    std::unordered_set<EventTrack*> tracks;
};

// Like the mutex, for ever.
Registry& registry() {
    static Registry* const all = new Registry;
    return *all;
}

} // namespace

QMutex& profilerMutex() {
    return theMutex.mutex;
}

CaptureState& CaptureState::acquire(EventGraphView* view, IEventGraphTimer* timer) {
    const MutexGuard guard(profilerMutex());
    auto& states = registry().states;
    auto free =
        std::find_if(states.begin(), states.end(), [](const auto& state) { return !state->view; });
    if (free == states.end())
        free = states.insert(states.end(), std::make_unique<CaptureState>());
    CaptureState& state = **free;
    state.view = view;
    state.timer = timer;
    return state;
}

void CaptureState::retire() {
    const StateWriteGuard stateGuard(lock);
    const MutexGuard guard(profilerMutex());
    for (EventTrack* track : registry().tracks) {
        if (track->m_capture.load(std::memory_order_relaxed) == this)
            track->m_capture.store(nullptr, std::memory_order_relaxed);
    }
    tracks.clear();
    syncTrack = nullptr;
    paused = true;
    mode = EventGraphMode::Forwards;
    durationSeconds = unlimitedDuration;
    timer = nullptr;
    view = nullptr;
}

void CaptureState::clear(std::vector<EventTrack::EventList>& dropped) {
    startTime = timer->time();
    const MutexGuard guard(profilerMutex());
    dropped.resize(static_cast<std::size_t>(tracks.size()));
    auto list = dropped.begin();
    for (EventTrack* track : qAsConst(tracks))
        track->clearLocked(this, *list++);
}

void CaptureState::stop(std::vector<EventTrack::EventList>& dropped) {
    paused = true;
    endTime = timer->time();
    if (mode == EventGraphMode::History) {
        const int span = truncated(static_cast<double>(durationSeconds) * 1000.0);
        const int cutoff = timeDifference(endTime, span);
        if (timeDifference(startTime, cutoff) < 0)
            startTime = cutoff;
    }
    const MutexGuard guard(profilerMutex());
    dropped.resize(static_cast<std::size_t>(tracks.size()));
    auto list = dropped.begin();
    for (EventTrack* track : qAsConst(tracks))
        track->finaliseLocked(startTime, *list++);
}

void CaptureState::add(EventTrack& track, EventTrack::EventList& dropped) {
    if (CaptureState* const other = track.m_capture.load(std::memory_order_relaxed))
        other->removeRowsOf(track);
    tracks.insert(track.m_fields.sortKey, &track);
    track.m_capture.store(this, std::memory_order_release);
    if (!paused)
        track.clearLocked(this, dropped);
    rowsChanged();
}

void CaptureState::remove(EventTrack& track) {
    tracks.remove(track.m_fields.sortKey);
    if (syncTrack == &track)
        syncTrack = nullptr;
    if (track.m_capture.load(std::memory_order_relaxed) == this)
        track.m_capture.store(nullptr, std::memory_order_relaxed);
    rowsChanged();
}

void CaptureState::rowsChanged() const {
    if (view)
        QMetaObject::invokeMethod(view, "update", Qt::QueuedConnection);
}

void CaptureState::removeRowsOf(const EventTrack& track) {
    for (auto row = tracks.begin(); row != tracks.end();)
        row = row.value() == &track ? tracks.erase(row) : std::next(row);
}

std::vector<TrackInfo> CaptureState::trackInfos() const {
    std::vector<TrackInfo> infos;
    const MutexGuard guard(profilerMutex());
    infos.reserve(static_cast<std::size_t>(tracks.size()));
    for (EventTrack* track : tracks) {
        const EventTrack::Fields& fields = track->m_fields;
        infos.push_back({track, track->m_content, track->m_removed,
                         track->m_removed + fields.events.size(), fields.name, fields.color,
                         fields.sortKey, fields.type, fields.minValue, fields.maxValue,
                         fields.graphHeight, fields.count != 0});
    }
    return infos;
}

template <class Function>
quint64 CaptureState::visitEvents(const TrackInfo& info, quint64 from, std::size_t most,
                                  Function visit) {
    const MutexGuard guard(profilerMutex());
    const auto& living = registry().tracks;
    if (living.find(info.track) == living.end() || info.track->m_content != info.content)
        return from;
    const EventTrack::EventList& held = info.track->m_fields.events;
    const quint64 first = std::max(from, info.track->m_removed);
    const auto skip = static_cast<std::size_t>(first - info.track->m_removed);
    if (skip >= held.size())
        return from;
    const std::size_t count = std::min(most, held.size() - skip);
    const auto begin = held.begin() + static_cast<std::ptrdiff_t>(skip);
    std::for_each(begin, begin + static_cast<std::ptrdiff_t>(count), visit);
    return first + count;
}

quint64 CaptureState::copyEvents(const TrackInfo& info, quint64 from, std::size_t most,
                                 std::vector<EventTrack::Event>& events) {
    events.clear();
    events.reserve(most);
    return visitEvents(info, from, most,
                       [&](const EventTrack::Event& event) { events.push_back(event); });
}

quint64 CaptureState::copyPlain(const TrackInfo& info, quint64 from, std::size_t most,
                                std::vector<PlainEvent>& events) {
    return visitEvents(info, from, most, [&](const EventTrack::Event& event) {
        events.push_back({event.time, event.type, event.value});
    });
}

QString CaptureState::tooltipText(const TrackInfo& info) {
    const MutexGuard guard(profilerMutex());
    const auto& living = registry().tracks;
    return living.find(info.track) == living.end() ? QString() : info.track->tooltipLocked();
}

CaptureState& CaptureState::of(const EventGraphView& view) {
    return view.m_state;
}

void CaptureState::trackBorn(EventTrack& track) {
    registry().tracks.insert(&track);
}

void CaptureState::trackDies(EventTrack& track) {
    if (CaptureState* const capture = track.m_capture.load(std::memory_order_relaxed))
        capture->remove(track);
    // Tracks can be copied and assigned, so anything may refer to this one.
    registry().tracks.erase(&track);
    for (EventTrack* other : registry().tracks) {
        other->m_fields.dependents.removeAll(&track);
        if (other->m_fields.timeTrack == &track)
            other->m_fields.timeTrack = nullptr;
    }
    for (const auto& state : registry().states) {
        state->removeRowsOf(track);
        if (state->syncTrack == &track)
            state->syncTrack = nullptr;
    }
}

int truncated(double value) {
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    return value >= low && value <= high ? static_cast<int>(value)
           : value > high                ? std::numeric_limits<int>::max()
           : value < low                 ? std::numeric_limits<int>::min()
                                         : 0;
}

} // namespace Kestrel::UI
