#pragma once

#include <KxUI/eventgraph/CaptureState_p.h>
#include <KxUI/eventgraph/EventGraphGeometry_p.h>

#include <QRect>

#include <optional>
#include <vector>

namespace Kestrel::UI {

/** What is drawn of an event. */
struct PlainEvent {
    int time;
    EventTrack::Type type;
    float value;
};

/** The events of a track, put in order for drawing and finding them: spans, instants, samples.

    All times are milliseconds since the start of the capture, all event numbers count from the
   first event the index was made of. An end whose start is no longer held belongs to an activity
   that was open when the capture began: it counts from there. */
struct TrackIndex {
    struct Span {
        int start;
        int end;
        quint32 startEvent;
        quint32 endEvent;
    };
    struct Mark {
        int time;
        quint32 event;
    };
    struct Sample {
        int time;
        float value;
        quint32 event;
    };
    struct Range {
        float low;
        float high;
    };

    /** Whether an index made of these is still right. */
    bool isFor(const TrackInfo& info, int startTime) const;

    TrackInfo source;
    int startTime = 0;

    std::vector<Span> spans;
    std::vector<Mark> instants;
    std::vector<Mark> unclosed;  ///< starts without an end
    std::vector<Sample> samples; ///< by time

    /** Lowest and highest value of each 64 samples, then of each 64 of these, and so on. */
    std::vector<std::vector<Range>> ranges;

    /** Whether time never goes back from event to event, as it does when events were given times of
        their own. Without it, searches go through `events` one by one. */
    bool sorted = true;
    std::vector<PlainEvent> events;
};

/** The index of a track's events. */
TrackIndex makeIndex(const TrackContent& content, int startTime);
TrackIndex makeIndex(const TrackInfo& info, int startTime, std::vector<PlainEvent> events);

/** Lowest and highest value of the samples [from, to), which are not empty. */
TrackIndex::Range valueRange(const TrackIndex& index, std::size_t from, std::size_t to);

/** What lies under a point. */
struct EventHit {
    enum class Kind { Sample, Instant, Activity };

    Kind kind = Kind::Instant;
    int time = 0; ///< of a sample or instant, or the start of an activity
    int end = 0;  ///< of an activity
    float value = 0;
    quint32 event = 0; ///< whose user data describes it
    QRect rect;
};

/** Where a timeline row is looked at. */
struct TimelineProbe {
    TimeScale scale;
    int x = 0;
    int viewRight = 0; ///< events beyond it are not looked at
    EventHitTestMode mode = EventHitTestMode::DirectHitOnly;
};

/** The event of a timeline at an x: the first, from the oldest on, of an instant within 1 pixel and
    an activity that ends at or after the point. The rectangle has no vertical extent yet. */
std::optional<EventHit> hitTimeline(const TrackIndex& index, const TimelineProbe& probe);

/** The same by looking at one event after the other, in whatever order they are. */
std::optional<EventHit> hitTimelineLinear(const std::vector<PlainEvent>& events,
                                          const TimelineProbe& probe);

/** The oldest sample within 2 pixels of a point in a row of the track's height above `bottom`. */
std::optional<EventHit> hitGraph(const TrackIndex& index, TimeScale scale, QPoint point,
                                 int bottom);

} // namespace Kestrel::UI
