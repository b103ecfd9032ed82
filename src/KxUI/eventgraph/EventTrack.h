#pragma once

#include <KxUI/Export.h>
#include <KxUI/eventgraph/EventUserDataIP.h>

#include <QColor>
#include <QList>
#include <QString>

#include <atomic>
#include <deque>

namespace Kestrel::UI {

class CaptureState;
class EventGraphView;

/** One row of the profiler: activities, samples or a bandwidth, recorded from any thread.

    A track records while it is in a view (EventGraphView::addTrack) that captures. It may be made
    before the view and may outlive it, and whoever made it deletes it; a deleted track leaves its
    view by itself. No call reports an error: what cannot be recorded is skipped.

    Recording takes the view's state lock for reading and then EventGraphView::GetMutex(), for some
    tens of nanoseconds. User data is never destroyed and its text never asked for under a lock. */
class KXUI_EXPORT EventTrack {
public:
    /** The kind of an event. */
    enum class Type : qint32 {
        Sample = 0, ///< an instant
        Start = 1,  ///< an activity begins
        End = 2     ///< an activity ends
    };

    /** The kind of a track. */
    enum class TrackType : qint32 {
        Timeline = 0, ///< activities, drawn as spans
        Value = 1,    ///< samples, drawn as a graph between the minimum and maximum value
        Bandwidth = 2 ///< bytes per second of each activity of a timeline track
    };

    /** One event as it is kept. */
    struct Event {
        qint32 time = 0;          ///< milliseconds on the clock of the view
        Type type = Type::Sample; ///< what happened
        float value = 0;          ///< the sampled value; 0 for a start and an end
        EventUserDataIP userData; ///< what the recorder added; may be null
    };

    /** Events, oldest first. */
    using EventList = std::deque<Event>;

    /** Makes a track that belongs to no view yet.
        \param name shown at the left end of the row, and searched for
        \param color the colour of activities and graphs
        \param type what the track shows
        \param sortKey tracks stand in the view in the order of this number
        \param minValue, maxValue the range of the graph
        \param maxEventsPerSecond the room a capture of limited duration gives the track, per second
        \param maxEvents the room in an unlimited capture
        \param graphHeight height of the row of a value or bandwidth track in pixels
        \param timeTrack the timeline track that a bandwidth track follows, or null; borrowed, and
               forgotten when it is destroyed */
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

    /** Records a start, an end or a sample; -1 as the time means now.

        Activities may be nested, then only the outermost start and end are recorded. An end without
        a start records nothing. While the view is paused only events with a time of their own are
        recorded. Any thread. */
    void addEvent(Type type, EventUserDataIP userData, int time = -1);

    /** Records a sample of a value track, now. Any thread. */
    void addEvent(float value);

    /** Counts bytes towards the activity of the time track that is open now; without one they are
        forgotten. Any thread. */
    void addDataSize(quint64 bytes);

    /** Forgets events and statistics and takes the room that the view's capture gives: the maximum
        number of events when it is unlimited, else so many per second of its duration. An activity
        that is open stays open. */
    void clear();

    /** Drops the events at the front that are older than `startTime`. */
    void finaliseHistory(int startTime);

    /** The mean as an addition to a tooltip, such as ", Mean Duration=12.5"; empty without one. */
    QString trackTooltipText() const;

    /** What the track was made with. */
    QString name() const { return m_fields.name; }
    QColor color() const { return m_fields.color; }
    int sortKey() const { return m_fields.sortKey; }
    TrackType type() const { return m_fields.type; }
    /** Whether the track is drawn as a graph: every type but the timeline. */
    bool displayAsGraph() const { return m_fields.type != TrackType::Timeline; }
    /** The values at the bottom and at the top of the graph. */
    float minValue() const { return m_fields.minValue; }
    float maxValue() const { return m_fields.maxValue; }
    /** The height of the row of a graph, in pixels. */
    int graphHeight() const { return m_fields.graphHeight; }

    /** The events, oldest first. Hold EventGraphView::GetMutex() while another thread may record.
     */
    const EventList& events() const { return m_fields.events; }

    /** Whether an activity or a sample has been counted since the track was cleared. */
    bool hasSamples() const;

    /** The view that the track records into, or null. */
    EventGraphView* graph() const;

    /** Makes the track record into `graph` without giving it a row there; null for none. */
    void setGraph(EventGraphView* graph);

private:
    friend class CaptureState;
    friend class EventGraphReader;
    friend class EventGraphView;

    struct Fields {
        QString name;
        QColor color;
        qint32 sortKey = 0;
        TrackType type = TrackType::Timeline;
        float minValue = 0;
        float maxValue = 0;
        qint32 maxEventsPerSecond = 0;
        qint32 maxEvents = 0;
        qint32 graphHeight = 0;

        EventList events;
        qint32 eventLimit = 0;
        qint32 openDepth = 0;
        qint32 openStartTime = 0;
        quint64 openBytes = 0;

        qint32 totalDuration = 0;
        qint32 count = 0;
        double valueSum = 0;
        quint64 totalBytes = 0;

        EventTrack* timeTrack = nullptr;
        QList<EventTrack*> dependents;
    };

    enum class TimeOf { Event, Now };

    void record(Type type, const EventUserDataIP& userData, int time, TimeOf timeOf);
    bool passesNesting(Type type, int time);
    void follow(Type type, int time, const CaptureState& capture, EventUserDataIP& dropped);
    void append(Event&& event, const CaptureState& capture, EventUserDataIP& dropped);
    void clearLocked(const CaptureState* capture, EventList& dropped);
    void finaliseLocked(int startTime, EventList& dropped);
    void contentReplaced();
    QString tooltipLocked() const;
    template <class Function>
    void withLocks(Function function);

    // Changes only under the mutex; read without a lock by recorders, who look again when they hold
    // the locks of the capture they found.
    std::atomic<CaptureState*> m_capture{nullptr};

    // What a view remembers about the events holds while the content is the same; events are only
    // appended to it and taken from its front, and the latter are counted.
    quint64 m_content = 0;
    quint64 m_removed = 0;

    Fields m_fields;
};

} // namespace Kestrel::UI
