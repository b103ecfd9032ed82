#pragma once

#include <KxUI/eventgraph/EventGraphMode.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventTrack_p.h>
#include <KxUI/eventgraph/Locks_p.h>

#include <QMultiMap>

#include <optional>
#include <vector>

namespace Kestrel::UI {

class IEventGraphTimer;

/** The one mutex of the profiler; guards every event list, statistic and link between tracks.
    Never destroyed, since threads may record until the very end of the process. */
QMutex& profilerMutex();

/** What a track was when it was looked at. */
struct TrackInfo {
    EventTrack* track = nullptr; ///< may be gone by now; only to be handed back
    quint64 content = 0;         ///< changes when the events are replaced as a whole
    quint64 firstEvent = 0;      ///< events are numbered from 0; this is the oldest held
    quint64 endEvent = 0;        ///< one past the newest
    QString name;
    QColor color;
    int sortKey = 0;
    EventTrack::TrackType type = EventTrack::TrackType::Timeline;
    float minValue = 0;
    float maxValue = 0;
    int graphHeight = 0;
    bool hasSamples = false;
};

/** What a track held when it was looked at. */
struct TrackContent {
    TrackInfo info;
    EventTrack::EventList events; ///< numbers info.firstEvent to info.endEvent
    TrackTotals totals;
};

EventTrackSnapshot snapshotOf(TrackContent&& content);

/** What recorders need to know of a view.

    A recorder reads the pointer to it from a track without a lock, so the view may be gone when it
    gets to lock the state. States are therefore never freed but handed to the next view: the lock
    is always a lock, and whoever holds it looks whether the track still points here.

    The lock is always taken before the mutex. `paused`, `mode`, `durationSeconds`, the times and
    the timer change under the lock held for writing, the rest under the mutex. */
class CaptureState {
public:
    /** A state for a new view. */
    static CaptureState& acquire(EventGraphView* view, IEventGraphTimer* timer);

    /** Unlinks all tracks and keeps the state for the next view. Takes the locks. */
    void retire();

    /** Starts the time anew and empties every track. Under the lock held for writing; takes the
        mutex. */
    void clear(Dropped& dropped);

    /** Pauses, and cuts a history to the duration of the capture. Locks as for clear(). */
    void stop(Dropped& dropped);

    /** Gives the track a row, ahead of those of equal sort key, and empties it when a capture runs.
        Under the lock (reading) and the mutex. */
    void add(EventTrackPrivate& track, Dropped& dropped);

    /** Gives the track a row and nothing else. Under the mutex. */
    void addRow(EventTrackPrivate& track);

    /** Takes away the rows of every track of this sort key, and this track's link to the view.
        Under the mutex. */
    void remove(EventTrackPrivate& track);

    /** Tells the view that its rows have changed. Under the mutex, so that the view is alive. */
    void rowsChanged() const;

    /** The tracks that have rows, from top to bottom. Takes the mutex. */
    std::vector<TrackInfo> trackInfos() const;

    /** What a track is and holds. Under the mutex. */
    static TrackInfo infoOf(const EventTrackPrivate& track);
    static TrackContent contentOf(const EventTrackPrivate& track);

    /** What the track holds now; null when it is gone or has been cleared since. Takes the mutex.
     */
    static std::optional<TrackContent> contentOf(const TrackInfo& info);

    /** The user data of the event of a number; null when it is not held any more. Takes the mutex.
     */
    static EventUserDataIP userDataOf(const TrackInfo& info, quint64 number);

    /** The track's addition to tooltips, in the user's language; empty when it is gone. Takes the
        mutex, but not while it asks for a translation. Interface thread. */
    static QString localTooltipText(const TrackInfo& info);

    /** Counts what happens to tracks and rows of all views, so that what was made of them can be
        told to be old. Under the mutex; stateOfAllTracks() takes it. */
    static inline quint64 changes = 1;
    static quint64 stateOfAllTracks();

    /** The state of a view. */
    static CaptureState& of(const EventGraphView& view);

    /** Every living track. Under the mutex. */
    static void trackBorn(EventTrackPrivate& track);
    static void trackDies(EventTrackPrivate& track);

    QReadWriteLock lock;
    std::atomic<bool> paused{true};
    EventGraphMode mode = EventGraphMode::Forwards;
    float durationSeconds = EventGraphView::unlimitedDuration;
    int startTime = 0;
    int endTime = 0;
    IEventGraphTimer* timer = nullptr;

    EventGraphView* view = nullptr;
    QMultiMap<int, EventTrack*> tracks;
    EventTrack* syncTrack = nullptr;

private:
    static const EventTrackPrivate* living(const TrackInfo& info);
    void removeRowsOf(EventTrackPrivate& track);
    void removeRowsAt(int key);
};

/** A difference of two times of a clock that wraps. */
inline qint32 timeDifference(qint32 later, qint32 earlier) {
    return static_cast<qint32>(static_cast<quint32>(later) - static_cast<quint32>(earlier));
}

inline qint32 wrappingSum(qint32 a, qint32 b) {
    return static_cast<qint32>(static_cast<quint32>(a) + static_cast<quint32>(b));
}

/** The integer part, held within the range of int; 0 for what is not a number. */
int truncated(double value);

} // namespace Kestrel::UI
