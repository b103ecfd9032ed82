#pragma once

#include <KxUI/eventgraph/EventGraphScene_p.h>

#include <QRect>

#include <optional>

namespace Kestrel::UI {

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

/** Where the rows of a view are looked at. */
struct RowProbe {
    TimeScale scale;
    QPoint point;
    int viewRight = 0;
    EventHitTestMode mode = EventHitTestMode::DirectHitOnly;
};

/** What lies under a point of the rows: samples of graphs before events of timelines. */
struct RowHit {
    EventHit event;
    const SceneRow* row = nullptr;
};
std::optional<RowHit> hitRows(const Scene& scene, const RowProbe& probe);

/** What the view tells of an event, in the user's language: its times and its value. Interface
    thread. */
QString hitText(const EventHit& hit);

} // namespace Kestrel::UI
