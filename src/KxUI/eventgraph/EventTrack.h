#pragma once

#include <KxUI/Export.h>
#include <KxUI/eventgraph/EventTrackOptions.h>
#include <KxUI/eventgraph/EventUserDataIP.h>
#include <KxUI/eventgraph/SharedDeque.h>

#include <QColor>
#include <QString>

#include <memory>

namespace Kestrel::UI {

class EventGraphView;
struct EventTrackPrivate;
struct EventTrackSnapshot;

/** One row of the profiler: activities, samples or a bandwidth, recorded from any thread.

    A track records while it is in a view (EventGraphView::addTrack) that captures. It may be made
    before the view and may outlive it, and whoever made it deletes it; a deleted track leaves its
    view by itself. An activity that is open when the track leaves its view ends there. No call
    reports an error: what cannot be recorded is skipped.

    Recording takes the view's state lock for reading and then EventGraphView::GetMutex(), for some
    tens of nanoseconds. User data is never destroyed and its text never asked for under a lock.

    To read what a track holds use snapshot(), which any thread may call at any time. */
class KXUI_EXPORT EventTrack {
public:
    /** The kind of an event. */
    enum class Type : qint32 {
        Sample = 0, ///< an instant
        Start = 1,  ///< an activity begins
        End = 2     ///< an activity ends
    };

    /** The kind of a track. */
    using TrackType = EventTrackType;

    /** One event as it is kept. Its layout is frozen. */
    struct Event {
        qint32 time = 0;          ///< milliseconds on the clock of the view
        Type type = Type::Sample; ///< what happened
        float value = 0;          ///< the sampled value; 0 for a start and an end
        EventUserDataIP userData; ///< what the recorder added; may be null
    };

    /** Events, oldest first. Copies share the events. */
    using EventList = SharedDeque<Event>;

    /** What a track is made with. */
    using Options = EventTrackOptions;

    /** Makes a track that belongs to no view yet. */
    explicit EventTrack(const Options& options);

    /** The same from what Options has, one by one. A null time track is none. */
    EventTrack(const QString& name, const QColor& color, int sortKey, TrackType type,
               float minValue, float maxValue, int maxEventsPerSecond, int maxEvents,
               int graphHeight, EventTrack* timeTrack);

    /** Copies every field: the copy records into the same view without having a row there, and has
        the same followers. */
    EventTrack(const EventTrack& other);
    EventTrack& operator=(const EventTrack& other);

    /** Leaves the view as by EventGraphView::removeTrack and unlinks all that follows this track.
     */
    ~EventTrack();

    /** Records a start, an end or a sample; -1 as the time means now, null user data is none.

        Activities may be nested, then only the outermost start and end are recorded. An end without
        a start records nothing. While the view is paused only events with a time of their own are
        recorded. Any thread. */
    void addEvent(Type type, EventUserDataIP userData, int time = -1);

    /** Records a sample of a value track, now. Any thread. */
    void addEvent(float value);

    /** Counts bytes towards the activity of the time track that is open now; without one they are
        forgotten. Any thread. */
    void addDataSize(quint64 bytes);

    /** Forgets events and statistics, and works out how many events the track keeps in the view's
        capture: the maximum number of events when it is unlimited, else so many per second of its
        duration. An activity that is open stays open. Any thread. */
    void clear();

    /** Drops the events at the front that are older than `startTime`. Any thread. */
    void finaliseHistory(int startTime);

    /** The mean as an addition to a tooltip, such as ", Mean Duration=12.5"; empty without one. In
        English, since any thread may ask; EventGraphView::eventTextAt() is in the user's language.
        Any thread. */
    QString trackTooltipText() const;

    /** What the track was made with. */
    QString name() const;
    QColor color() const;
    int sortKey() const;
    TrackType type() const;
    /** Whether the track is drawn as a graph: every type but the timeline. */
    bool displayAsGraph() const;
    /** The values at the bottom and at the top of the graph. */
    float minValue() const;
    float maxValue() const;
    /** The height of the row of a graph, in pixels. */
    int graphHeight() const;

    /** What the track holds now, all of one moment. Costs microseconds, whatever it holds. Any
        thread, but not under EventGraphView::GetMutex(). */
    EventTrackSnapshot snapshot() const;

    /** The events themselves, oldest first: to be read only while nothing records, or under
        EventGraphView::GetMutex(), with which no other call of a track or a view may be made.
        snapshot() has neither condition. */
    const EventList& events() const;

    /** Whether an activity or a sample has been counted since the track was cleared. Any thread. */
    bool hasSamples() const;

    /** The view that the track records into, or null. Any thread. */
    EventGraphView* graph() const;

    /** Makes the track record into `graph` without giving it a row there; null for none. Any
        thread. */
    void setGraph(EventGraphView* graph);

private:
    friend struct EventTrackPrivate;

    const std::unique_ptr<EventTrackPrivate> d;
};

} // namespace Kestrel::UI
