#pragma once

#include <KxUI/eventgraph/EventTrack.h>

#include <atomic>
#include <set>
#include <vector>

namespace Kestrel::UI {

class CaptureState;

/** What recording no longer needs. Made before the locks are taken and destroyed after them, since
    the destructors of user data are foreign code. As small as it can be: each event makes one. */
class Dropped {
public:
    void add(EventUserDataIP&& userData) {
        if (!m_userData)
            m_userData.swap(userData);
        else
            more().userData.push_back(std::move(userData));
    }
    /** All events of a track as they are: their blocks are not touched while others wait. */
    void add(EventTrack::EventList&& events) { more().lists.push_back(std::move(events)); }
    void push_back(EventTrack::EventList::Block&& block) {
        more().blocks.push_back(std::move(block));
    }

private:
    struct More {
        std::vector<EventUserDataIP> userData;
        std::vector<EventTrack::EventList> lists;
        std::vector<EventTrack::EventList::Block> blocks;
    };
    More& more() {
        if (!m_more)
            m_more = std::make_unique<More>();
        return *m_more;
    }

    EventUserDataIP m_userData; // one is the usual number
    std::unique_ptr<More> m_more;
};

/** The sums that give a track's mean. */
struct TrackTotals {
    qint32 duration = 0; ///< of all activities, in milliseconds
    qint32 count = 0;    ///< of activities or samples
    double values = 0;
    quint64 bytes = 0;
};

/** The addition to tooltips of a track of a type. */
QString tooltipText(EventTrack::TrackType type, const TrackTotals& totals);

/** The same in the user's language. Interface thread, not under a lock. */
QString localTooltipText(EventTrack::TrackType type, const TrackTotals& totals);

/** The fields of a track, and what changes them. All of it is under the mutex of the profiler, but
    for `capture`; what records holds the state lock of the capture, too. */
struct EventTrackPrivate {
    explicit EventTrackPrivate(EventTrack* track, const EventTrack::Options& options);

    static EventTrackPrivate& of(const EventTrack& track) { return *track.d; }

    /** Whether a time was given with the event. */
    enum class TimeOf { Event, Now };

    /** Takes the locks. */
    void record(EventTrack::Type type, const EventUserDataIP& userData, int time, TimeOf timeOf);
    void recordSample(float value);
    /** Runs `function` with the capture under both locks, or with null under the mutex alone. */
    template <class Function>
    void withLocks(Function function);

    bool passesNesting(EventTrack::Type type, int time);
    void follow(EventTrack::Type type, int time, const CaptureState& from, Dropped& dropped);
    void append(EventTrack::Event&& event, const CaptureState& to, Dropped& dropped);
    void clear(const CaptureState* in, Dropped& dropped);
    void finalise(int startTime, Dropped& dropped);

    /** Makes the track record into another capture, or none. */
    void setCapture(CaptureState* to);
    /** Nobody will hear the end of an activity that is open. */
    void closeOpen();

    /** Takes the fields of another track, its view and its followers. */
    void copyFrom(const EventTrackPrivate& other);
    void setTimeTrack(EventTrackPrivate* track);
    /** Ends all that refers to this track. */
    void unlink();

    /** The events are others from now on. */
    void contentReplaced();

    /** In the order in which the tracks were made. */
    struct Older {
        bool operator()(const EventTrackPrivate* a, const EventTrackPrivate* b) const {
            return a->birth < b->birth;
        }
    };
    using Tracks = std::set<EventTrackPrivate*, Older>;

    struct Row {
        CaptureState* capture;
        int key;
    };

    EventTrack* const q;
    const quint64 birth;

    /** Changes only under the mutex; read without a lock by recorders, who look again when they
        hold the locks of the capture they found. */
    std::atomic<CaptureState*> capture{nullptr};

    /** What a view remembers about the events holds while the content is the same; events are only
        appended to it and taken from its front, and the latter are counted. */
    quint64 content = 0;
    quint64 removed = 0;

    EventTrack::Options options; ///< its time track is kept in `timeTrack`
    EventTrack::EventList events;
    qint32 eventLimit = 0;
    qint32 openDepth = 0;
    qint32 openStartTime = 0;
    quint64 openBytes = 0;
    TrackTotals totals;

    EventTrackPrivate* timeTrack = nullptr;
    Tracks followers; ///< which are told of each event
    Tracks followed;  ///< those in whose followers this one is
    Tracks timed;     ///< those whose time track this is
    std::vector<Row> rows;
};

} // namespace Kestrel::UI
