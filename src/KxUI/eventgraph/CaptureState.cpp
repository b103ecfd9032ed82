#include <KxUI/eventgraph/CaptureState_p.h>

#include <KxUI/eventgraph/EventGraphView_p.h>
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
    while (!tracks.isEmpty())
        removeRowsAt(tracks.firstKey());
    for (EventTrack* each : registry().tracks) {
        EventTrackPrivate& track = EventTrackPrivate::of(*each);
        if (track.capture.load(std::memory_order_relaxed) == this)
            track.setCapture(nullptr);
    }
    syncTrack = nullptr;
    paused = true;
    mode = EventGraphMode::Forwards;
    durationSeconds = EventGraphView::unlimitedDuration;
    timer = nullptr;
    view = nullptr;
}

void CaptureState::clear(Dropped& dropped) {
    startTime = timer->time();
    const MutexGuard guard(profilerMutex());
    for (EventTrack* track : qAsConst(tracks))
        EventTrackPrivate::of(*track).clear(this, dropped);
}

void CaptureState::stop(Dropped& dropped) {
    paused = true;
    endTime = timer->time();
    if (mode == EventGraphMode::History) {
        const int span = truncated(static_cast<double>(durationSeconds) * 1000.0);
        const int cutoff = timeDifference(endTime, span);
        if (timeDifference(startTime, cutoff) < 0)
            startTime = cutoff;
    }
    const MutexGuard guard(profilerMutex());
    for (EventTrack* track : qAsConst(tracks))
        EventTrackPrivate::of(*track).finalise(startTime, dropped);
}

void CaptureState::add(EventTrackPrivate& track, Dropped& dropped) {
    if (CaptureState* const other = track.capture.load(std::memory_order_relaxed))
        other->removeRowsOf(track);
    addRow(track);
    track.setCapture(this);
    if (!paused)
        track.clear(this, dropped);
    rowsChanged();
}

void CaptureState::addRow(EventTrackPrivate& track) {
    removeRowsOf(track);
    tracks.insert(track.options.sortKey, track.q);
    track.rows.push_back({this, track.options.sortKey});
    ++changes;
}

void CaptureState::remove(EventTrackPrivate& track) {
    removeRowsAt(track.options.sortKey);
    if (syncTrack == track.q)
        syncTrack = nullptr;
    if (track.capture.load(std::memory_order_relaxed) == this)
        track.setCapture(nullptr);
    rowsChanged();
}

void CaptureState::rowsChanged() const {
    ++changes;
    if (view)
        QMetaObject::invokeMethod(view, "update", Qt::QueuedConnection);
}

void CaptureState::removeRowsOf(EventTrackPrivate& track) {
    auto& rows = track.rows;
    const auto kept = std::partition(rows.begin(), rows.end(),
                                     [this](const auto& row) { return row.capture != this; });
    for (auto row = kept; row != rows.end(); ++row)
        tracks.remove(row->key, track.q);
    rows.erase(kept, rows.end());
    ++changes;
}

void CaptureState::removeRowsAt(int key) {
    const auto [first, last] = qAsConst(tracks).equal_range(key);
    for (auto each = first; each != last; ++each) {
        auto& rows = EventTrackPrivate::of(*each.value()).rows;
        rows.erase(std::remove_if(rows.begin(), rows.end(),
                                  [this](const auto& row) { return row.capture == this; }),
                   rows.end());
    }
    tracks.remove(key);
    ++changes;
}

TrackInfo CaptureState::infoOf(const EventTrackPrivate& track) {
    const EventTrack::Options& options = track.options;
    return {track.q,
            track.content,
            track.removed,
            track.removed + track.events.size(),
            options.name,
            options.color,
            options.sortKey,
            options.type,
            options.minValue,
            options.maxValue,
            options.graphHeight,
            track.totals.count != 0};
}

TrackContent CaptureState::contentOf(const EventTrackPrivate& track) {
    return {infoOf(track), track.events, track.totals};
}

std::vector<TrackInfo> CaptureState::trackInfos() const {
    std::vector<TrackInfo> infos;
    const MutexGuard guard(profilerMutex());
    infos.reserve(static_cast<std::size_t>(tracks.size()));
    for (const EventTrack* track : tracks)
        infos.push_back(infoOf(EventTrackPrivate::of(*track)));
    return infos;
}

const EventTrackPrivate* CaptureState::living(const TrackInfo& info) {
    const auto& all = registry().tracks;
    return all.find(info.track) == all.end() ? nullptr : &EventTrackPrivate::of(*info.track);
}

std::optional<TrackContent> CaptureState::contentOf(const TrackInfo& info) {
    const MutexGuard guard(profilerMutex());
    const EventTrackPrivate* const track = living(info);
    return track && track->content == info.content ? std::optional(contentOf(*track))
                                                   : std::nullopt;
}

EventUserDataIP CaptureState::userDataOf(const TrackInfo& info, quint64 number) {
    const MutexGuard guard(profilerMutex());
    const EventTrackPrivate* const track = living(info);
    if (!track || track->content != info.content || number < track->removed ||
        number - track->removed >= track->events.size())
        return {};
    return track->events[static_cast<std::size_t>(number - track->removed)].userData;
}

QString CaptureState::localTooltipText(const TrackInfo& info) {
    TrackTotals totals;
    {
        const MutexGuard guard(profilerMutex());
        if (const EventTrackPrivate* const track = living(info))
            totals = track->totals;
    }
    return UI::localTooltipText(info.type, totals);
}

quint64 CaptureState::stateOfAllTracks() {
    const MutexGuard guard(profilerMutex());
    return changes;
}

CaptureState& CaptureState::of(const EventGraphView& view) {
    return EventGraphViewPrivate::of(view).state;
}

void CaptureState::trackBorn(EventTrackPrivate& track) {
    registry().tracks.insert(track.q);
}

void CaptureState::trackDies(EventTrackPrivate& track) {
    if (CaptureState* const capture = track.capture.load(std::memory_order_relaxed))
        capture->remove(track);
    // It may have rows elsewhere: a track can be given another view, and be assigned to.
    while (!track.rows.empty())
        track.rows.back().capture->removeRowsOf(track);
    for (const auto& state : registry().states) {
        if (state->syncTrack == track.q)
            state->syncTrack = nullptr;
    }
    registry().tracks.erase(track.q);
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
