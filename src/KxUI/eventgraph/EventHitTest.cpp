#include <KxUI/eventgraph/EventHitTest_p.h>

#include <KxUI/eventgraph/EventGraphView.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr quint32 noEvent = TrackIndex::noEvent;
using Type = EventTrack::Type;

EventHit instantHit(int time, int x, quint32 event) {
    EventHit hit;
    hit.kind = EventHit::Kind::Instant;
    hit.time = time;
    hit.event = event;
    hit.rect = QRect(x - 1, 0, 3, 0);
    return hit;
}

EventHit activityHit(int start, int end, int startX, int endX, quint32 event) {
    EventHit hit;
    hit.kind = EventHit::Kind::Activity;
    hit.time = start;
    hit.end = end;
    hit.event = event;
    hit.rect = QRect(startX, 0, endX - startX + 1, 0);
    return hit;
}

// The last pixel of an activity: that before its end's, unless it has no width.
int lastX(int startX, int endX) {
    return endX != startX ? endX - 1 : endX;
}

// The first of a range ordered by x for which `beyond` holds.
template <class Vector, class Predicate>
auto firstWhere(const Vector& vector, Predicate beyond) {
    return std::partition_point(vector.begin(), vector.end(),
                                [&](const auto& each) { return !beyond(each); });
}

// The number of the first event of a kind that stands at an x for which `beyond` holds.
template <class Predicate>
quint32 firstStart(const TrackIndex& index, Predicate beyond) {
    const auto span = firstWhere(index.spans, [&](const auto& each) {
        return each.startEvent != noEvent && beyond(each.start);
    });
    const auto open =
        firstWhere(index.unclosed, [&](const auto& each) { return beyond(each.time); });
    return std::min(span == index.spans.end() ? noEvent : span->startEvent,
                    open == index.unclosed.end() ? noEvent : open->event);
}

template <class Predicate>
quint32 firstInstant(const TrackIndex& index, Predicate beyond) {
    const auto found =
        firstWhere(index.instants, [&](const auto& each) { return beyond(each.time); });
    return found == index.instants.end() ? noEvent : found->event;
}

// The first of the samples [from, to) whose value `fits`, given a test of whether any value of a
// range may; looks at the ranges of `level` and below only.
template <class MayFit>
std::size_t firstSample(const TrackIndex& index, std::size_t from, std::size_t to, MayFit mayFit) {
    for (std::size_t i = from; i < to;) {
        // Skips the largest aligned block that begins here and has nothing.
        std::size_t size = 1, skipped = 0, position = i;
        for (const auto& level : index.ranges) {
            size *= TrackIndex::fan;
            if (position % TrackIndex::fan != 0 || i + size > to)
                break;
            position /= TrackIndex::fan;
            const TrackIndex::Range& range = level[position];
            if (mayFit(range.low, range.high))
                break;
            skipped = size;
        }
        if (skipped != 0) {
            i += skipped;
            continue;
        }
        const float value = index.samples[i].value;
        if (mayFit(value, value))
            return i;
        ++i;
    }
    return to;
}

} // namespace

std::optional<EventHit> hitTimelineLinear(const std::vector<PlainEvent>& events,
                                          const TimelineProbe& probe) {
    int start = 0;
    int startX = probe.scale.x(0);
    for (quint32 number = 0; number < events.size(); ++number) {
        const PlainEvent& event = events[number];
        const int x = probe.scale.x(event.time);
        if (x > probe.viewRight && event.type != Type::End)
            break;
        switch (event.type) {
        case Type::Sample:
            if (x >= probe.x - 1 && x <= probe.x + 1)
                return instantHit(event.time, x, number);
            break;
        case Type::Start:
            if (x > probe.x && probe.mode == EventHitTestMode::DirectHitOnly)
                return {};
            start = event.time;
            startX = x;
            break;
        case Type::End:
            if (const int last = lastX(startX, x); last >= probe.x)
                return activityHit(start, event.time, startX, last, number);
            break;
        }
    }
    return {};
}

std::optional<EventHit> hitTimeline(const TrackIndex& index, const TimelineProbe& probe) {
    if (!index.sorted)
        return hitTimelineLinear(index.events, probe);
    const TimeScale& scale = probe.scale;

    const auto instant = firstWhere(
        index.instants, [&](const auto& each) { return scale.x(each.time) >= probe.x - 1; });
    const bool instantHits =
        instant != index.instants.end() && scale.x(instant->time) <= probe.x + 1;
    const auto span = firstWhere(index.spans, [&](const auto& each) {
        return lastX(scale.x(each.start), scale.x(each.end)) >= probe.x;
    });

    // Where the walk through the events would have ended.
    const auto outOfView = [&](int time) { return scale.x(time) > probe.viewRight; };
    const auto rightOfPoint = [&](int time) { return scale.x(time) > probe.x; };
    quint32 stop = std::min(firstStart(index, outOfView), firstInstant(index, outOfView));
    if (probe.mode == EventHitTestMode::DirectHitOnly)
        stop = std::min(stop, firstStart(index, rightOfPoint));

    const quint32 instantEvent = instantHits ? instant->event : noEvent;
    const quint32 spanEvent = span == index.spans.end() ? noEvent : span->endEvent;
    if (std::min(instantEvent, spanEvent) >= stop)
        return {};
    if (instantEvent < spanEvent)
        return instantHit(instant->time, scale.x(instant->time), instant->event);
    const int startX = scale.x(span->start);
    return activityHit(span->start, span->end, startX, lastX(startX, scale.x(span->end)),
                       span->endEvent);
}

std::optional<EventHit> hitGraph(const TrackIndex& index, TimeScale scale, QPoint point,
                                 int bottom) {
    const TrackInfo& track = index.source;
    // Painted at the edge of its row, a value outside the range is hit there, too.
    const auto y = [&](float value) {
        const int at = graphY(value, track.minValue, track.maxValue, track.graphHeight, bottom);
        return std::max(std::min(at, bottom), bottom - track.graphHeight);
    };
    // Higher values stand higher, unless the range is upside down.
    const auto mayFit = [&](float low, float high) {
        const auto [top, base] = std::minmax({y(low), y(high)});
        return top <= point.y() + 2 && base >= point.y() - 2;
    };
    const auto hitAt = [&](std::size_t i) {
        const TrackIndex::Sample& sample = index.samples[i];
        EventHit hit;
        hit.kind = EventHit::Kind::Sample;
        hit.time = sample.time;
        hit.value = sample.value;
        hit.event = sample.event;
        hit.rect = QRect(scale.x(sample.time) - 2, y(sample.value) - 2, 5, 5);
        return hit;
    };

    const auto firstAt = [&](int x) {
        const auto found =
            firstWhere(index.samples, [&](const auto& each) { return scale.x(each.time) >= x; });
        return static_cast<std::size_t>(found - index.samples.begin());
    };
    const std::size_t end = firstAt(point.x() + 3);
    const std::size_t found = firstSample(index, firstAt(point.x() - 2), end, mayFit);
    return found == end ? std::nullopt : std::optional<EventHit>(hitAt(found));
}

std::optional<RowHit> hitRows(const Scene& scene, const RowProbe& probe) {
    const QPoint point = probe.point;
    for (const SceneRow& row : scene.rows()) {
        // A sample on the border of its row can be hit from the next one.
        const bool near = point.y() >= row.top - 2 && point.y() <= row.top + row.height + 2;
        if (!near || point.x() < nameColumnWidth ||
            row.track.type == EventTrack::TrackType::Timeline)
            continue;
        if (const auto hit = hitGraph(scene.index(row), probe.scale, point, row.top + row.height))
            return RowHit{*hit, &row};
    }
    const SceneRow* const row = scene.rowAt(point.y());
    if (!row || row->track.type != EventTrack::TrackType::Timeline)
        return {};
    auto hit =
        hitTimeline(scene.index(*row), {probe.scale, point.x(), probe.viewRight, probe.mode});
    if (!hit)
        return {};
    hit->rect = QRect(hit->rect.x(), row->top, hit->rect.width(), row->height);
    return RowHit{*hit, row};
}

QString hitText(const EventHit& hit) {
    const QString time = QString::number(hit.time);
    switch (hit.kind) {
    case EventHit::Kind::Sample:
        return EventGraphView::tr("Time=%1, Value=%2")
            .arg(time, QString::number(static_cast<double>(hit.value), 'g', 6));
    case EventHit::Kind::Instant:
        return EventGraphView::tr("Time=%1").arg(time);
    case EventHit::Kind::Activity:
        return EventGraphView::tr("Start=%1, Duration=%2")
            .arg(time, QString::number(timeDifference(hit.end, hit.time)));
    }
    return {};
}

} // namespace Kestrel::UI
