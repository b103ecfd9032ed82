#pragma once

#include <KxUI/eventgraph/CaptureState_p.h>
#include <KxUI/eventgraph/EventGraphGeometry_p.h>

#include <utility>
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

    /** The number of an event that there is none of. */
    static constexpr quint32 noEvent = ~quint32(0);
    /** How many values one of `ranges` stands for. */
    static constexpr std::size_t fan = 64;

    /** Whether an index made of these is still right. */
    bool isFor(const TrackInfo& info, int startTime) const;

    TrackInfo source;
    int startTime = 0;

    std::vector<Span> spans;
    std::vector<Mark> instants;
    std::vector<Mark> unclosed;  ///< starts without an end
    std::vector<Sample> samples; ///< by time

    /** Lowest and highest value of each `fan` samples, then of each `fan` of these, and so on. */
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

/** Start and end of the activity that ends with an event, or the time of an instant twice; zeroes
    for other events. */
std::pair<int, int> timesOf(const TrackIndex& index, quint32 event);

/** The text of an event's user data, or nothing when it has none or is no longer held. Takes the
    mutex, but not while the text is made. */
QString userText(const TrackIndex& index, quint32 event);

} // namespace Kestrel::UI
