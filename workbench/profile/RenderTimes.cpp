#include "profile/RenderTimes.h"

#include "media/FrameNote.h"
#include "profile/Profiling.h"

#include <KxUI/eventgraph/EventTrackSnapshot.h>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::EventTrack;

RenderTimes::RenderTimes(Profiling* profiling)
    : m_grade{profiling->gradeTrack(), {}}
    , m_paint{profiling->paintTrack(), {}}
    , m_fill{profiling->fillTrack(), {}} {
    for (EventTrack* track : profiling->decodeTracks())
        m_decode.push_back({track, {}});
}

void RenderTimes::restart(int start) {
    m_start = start;
    m_reads.clear();
    for (Place* place : {&m_grade, &m_paint, &m_fill})
        place->last = nullptr;
    for (Place& place : m_decode)
        place.last = nullptr;
}

RenderTimes::News RenderTimes::look() {
    News news;
    for (Place& place : m_decode)
        readInto(place, news.decoded);
    readInto(m_grade, news.graded);
    readInto(m_paint, news.painted);
    read(m_fill, [this](const FrameNote& note, double, double) { count(note); });
    for (std::vector<Point>* points : {&news.decoded, &news.graded, &news.painted})
        std::stable_sort(points->begin(), points->end(),
                         [](const Point& a, const Point& b) { return a.at < b.at; });
    return news;
}

void RenderTimes::readInto(Place& place, std::vector<Point>& points) const {
    read(place, [&points](const FrameNote& note, double seconds, double at) {
        points.push_back({at, seconds, note.time()});
    });
}

/** The ends of activities that came after the one read last. */
void RenderTimes::read(Place& place, const Take& take) const {
    const EventTrack::EventList events = place.track->snapshot().events;
    std::size_t from = events.size();
    while (from > 0 && !(place.last.get() && events[from - 1].userData.get() == place.last.get()))
        --from;
    for (std::size_t i = from; i < events.size(); ++i) {
        const EventTrack::Event& event = events[i];
        const auto* note = dynamic_cast<const FrameNote*>(event.userData.get());
        if (event.type != EventTrack::Type::End || !note)
            continue;
        const double at = double(event.time - m_start) / 1000.0;
        // The note is more exact than the milliseconds of the capture.
        const double spent = i > 0 ? double(event.time - events[i - 1].time) / 1000.0 : 0.0;
        take(*note, note->seconds() > 0.0 ? note->seconds() : spent, at);
        place.last = event.userData;
    }
}

void RenderTimes::count(const FrameNote& note) {
    auto found = std::find_if(m_reads.begin(), m_reads.end(), [&note](const Read& each) {
        return each.sequence == note.sequence();
    });
    if (found == m_reads.end())
        found = m_reads.insert(m_reads.end(), {note.sequence(), 0, 0});
    found->bytes += note.bytes();
    ++found->frames;
}

} // namespace Kestrel::Workbench
