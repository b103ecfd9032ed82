#include <KxUI/eventgraph/TrackIndex_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Type = EventTrack::Type;

constexpr std::size_t fan = TrackIndex::fan;
constexpr quint32 noEvent = TrackIndex::noEvent;

void collectTimeline(TrackIndex& index, const std::vector<PlainEvent>& events) {
    TrackIndex::Mark start{0, noEvent};
    bool open = false;
    for (quint32 number = 0; number < events.size(); ++number) {
        const PlainEvent& event = events[number];
        switch (event.type) {
        case Type::Sample:
            index.instants.push_back({event.time, number});
            break;
        case Type::Start:
            if (open)
                index.unclosed.push_back(start);
            start = {event.time, number};
            open = true;
            break;
        case Type::End:
            index.spans.push_back({start.time, event.time, start.event, number});
            open = false;
            break;
        }
    }
    if (open)
        index.unclosed.push_back(start);
}

void collectSamples(TrackIndex& index, const std::vector<PlainEvent>& events) {
    for (quint32 number = 0; number < events.size(); ++number) {
        const PlainEvent& event = events[number];
        if (event.type == Type::Sample)
            index.samples.push_back({event.time,
                                     std::isnan(event.value) ? index.source.minValue : event.value,
                                     number});
    }
    std::stable_sort(index.samples.begin(), index.samples.end(),
                     [](const auto& a, const auto& b) { return a.time < b.time; });
    std::vector<TrackIndex::Range> level;
    for (std::size_t i = 0; i < index.samples.size(); i += fan) {
        TrackIndex::Range range{index.samples[i].value, index.samples[i].value};
        for (std::size_t j = i; j < std::min(i + fan, index.samples.size()); ++j) {
            range.low = std::min(range.low, index.samples[j].value);
            range.high = std::max(range.high, index.samples[j].value);
        }
        level.push_back(range);
    }
    while (!level.empty()) {
        std::vector<TrackIndex::Range> above;
        for (std::size_t i = 0; level.size() > 1 && i < level.size(); i += fan) {
            TrackIndex::Range range = level[i];
            for (std::size_t j = i; j < std::min(i + fan, level.size()); ++j) {
                range.low = std::min(range.low, level[j].low);
                range.high = std::max(range.high, level[j].high);
            }
            above.push_back(range);
        }
        index.ranges.push_back(std::move(level));
        level = std::move(above);
    }
}

} // namespace

bool TrackIndex::isFor(const TrackInfo& info, int start) const {
    return source.content == info.content && source.firstEvent == info.firstEvent &&
           source.endEvent == info.endEvent && startTime == start;
}

TrackIndex makeIndex(const TrackContent& content, int startTime) {
    std::vector<PlainEvent> events;
    events.reserve(content.events.size());
    for (const EventTrack::Event& event : content.events)
        events.push_back({event.time, event.type, event.value});
    return makeIndex(content.info, startTime, std::move(events));
}

TrackIndex makeIndex(const TrackInfo& info, int startTime, std::vector<PlainEvent> relative) {
    TrackIndex index;
    index.source = info;
    index.startTime = startTime;
    for (PlainEvent& event : relative)
        event.time = timeDifference(event.time, startTime);
    index.sorted = std::is_sorted(relative.begin(), relative.end(),
                                  [](const auto& a, const auto& b) { return a.time < b.time; }) &&
                   (relative.empty() || relative.front().time >= 0);
    if (info.type == EventTrack::TrackType::Timeline)
        collectTimeline(index, relative);
    else
        collectSamples(index, relative);
    if (!index.sorted)
        index.events = std::move(relative);
    return index;
}

TrackIndex::Range valueRange(const TrackIndex& index, std::size_t from, std::size_t to) {
    TrackIndex::Range range{index.samples[from].value, index.samples[from].value};
    const auto include = [&](float low, float high) {
        range.low = std::min(range.low, low);
        range.high = std::max(range.high, high);
    };
    for (std::size_t i = from; i < to;) {
        std::size_t size = 1, position = i, covered = 0;
        const TrackIndex::Range* best = nullptr;
        for (const auto& level : index.ranges) {
            size *= fan;
            if (position % fan != 0 || i + size > to)
                break;
            position /= fan;
            best = &level[position];
            covered = size;
        }
        if (best) {
            include(best->low, best->high);
            i += covered;
        } else {
            include(index.samples[i].value, index.samples[i].value);
            ++i;
        }
    }
    return range;
}

std::pair<int, int> timesOf(const TrackIndex& index, quint32 event) {
    const auto before = [event](const auto& member) {
        return [event, member](const auto& each) { return each.*member < event; };
    };
    const auto span = std::partition_point(index.spans.begin(), index.spans.end(),
                                           before(&TrackIndex::Span::endEvent));
    if (span != index.spans.end() && span->endEvent == event)
        return {span->start, span->end};
    const auto mark = std::partition_point(index.instants.begin(), index.instants.end(),
                                           before(&TrackIndex::Mark::event));
    if (mark != index.instants.end() && mark->event == event)
        return {mark->time, mark->time};
    return {0, 0};
}

QString userText(const TrackIndex& index, quint32 event) {
    const EventUserDataIP data =
        CaptureState::userDataOf(index.source, index.source.firstEvent + event);
    return data ? data->text() : QString();
}

} // namespace Kestrel::UI
