#include "profile/Profiling.h"

#include "media/FrameNote.h"

#include <KxUI/eventgraph/EventAdder.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/eventgraph/IEventGraphTimer.h>

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace Kestrel::Workbench {

using UI::EventAdder;
using UI::EventTrack;

namespace {

constexpr double mebibyte = 1024.0 * 1024.0;

/** Room for more than the fastest playback needs, and for an hour of the usual one. */
constexpr int mostEventsPerSecond = 2000;
constexpr int mostEvents = 200000;
constexpr int graphHeight = 72;

constexpr QRgb playbackColor = 0xff5b8fd9;
constexpr QRgb droppedColor = 0xffd9534f;
constexpr QRgb paintColor = 0xffd9953b;
constexpr QRgb gradeColor = 0xff4aa8a8;
constexpr QRgb cacheColor = 0xff4fa66a;
constexpr QRgb decodeColor = 0xff9a77cf;

struct Message {
    Q_DECLARE_TR_FUNCTIONS(Profiling)
};

/** Tracks of equal key leave a view together, so no two have the same one in the process. */
int nextKey() {
    static std::atomic<int> key{0};
    return ++key;
}

EventTrack activities(const QString& name, QRgb color) {
    return EventTrack(EventTrack::Options::timeline(name, QColor(color))
                          .at(nextKey())
                          .keeping(mostEventsPerSecond, mostEvents));
}

EventTrack graph(const QString& name, QRgb color, double top) {
    return EventTrack(
        EventTrack::Options::graph(name, QColor(color), 0.0F, std::max(float(top), 1.0F))
            .at(nextKey())
            .keeping(mostEventsPerSecond, mostEvents)
            .high(graphHeight));
}

/** A moment as an activity without length: unlike an instant it is counted and measured. */
void mark(EventTrack& track, UI::IEventUserData* note) {
    const EventAdder moment(&track, note, true);
}

} // namespace

Profiling::Profiling(int decodeThreads, double rate, std::size_t cacheBytes)
    : m_shown(activities(Message::tr("Frame shown"), playbackColor))
    , m_dropped(activities(Message::tr("Frames dropped"), droppedColor))
    , m_rate(graph(Message::tr("Playback (fps)"), playbackColor, rate * 2.0))
    , m_paint(activities(Message::tr("Viewer paint"), paintColor))
    , m_grade(activities(Message::tr("Grade"), gradeColor))
    , m_fill(activities(Message::tr("Cache fill"), cacheColor))
    , m_eviction(activities(Message::tr("Cache eviction"), droppedColor))
    , m_memory(graph(Message::tr("Cache (MiB)"), cacheColor, double(cacheBytes) / mebibyte)) {
    for (int thread = 1; thread <= decodeThreads; ++thread)
        m_decode.emplace_back(activities(Message::tr("Decode %1").arg(thread), decodeColor));
}

std::vector<EventTrack*> Profiling::tracks() {
    std::vector<EventTrack*> all{&m_shown, &m_dropped, &m_rate,     &m_paint,
                                 &m_grade, &m_fill,    &m_eviction, &m_memory};
    for (EventTrack& track : m_decode)
        all.push_back(&track);
    return all;
}

void Profiling::addTo(UI::EventGraphView* view) {
    for (EventTrack* track : tracks()) {
        if (track->graph() != view)
            view->addTrack(track);
    }
}

std::vector<EventTrack*> Profiling::decodeTracks() {
    std::vector<EventTrack*> all;
    for (EventTrack& track : m_decode)
        all.push_back(&track);
    return all;
}

void Profiling::shown(Base::Time time, double rate) {
    mark(m_shown, new FrameNote(time));
    if (rate > 0.0)
        m_rate.addEvent(float(rate));
}

void Profiling::dropped(std::uint64_t frames, Base::Time time) {
    mark(m_dropped,
         new UI::EventUserDataString(Message::tr("%1 before frame %2").arg(frames).arg(time)));
}

/** The threads share the rows of a frame, so that it is told of when it is done. */
void Profiling::graded(const Frame& frame, double seconds) {
    const UI::EventGraphView* view = m_grade.graph();
    if (!view || view->paused())
        return;
    const int end = view->timer()->time();
    const int start = std::max(end - int(std::lround(seconds * 1000.0)), view->startTime());
    // One ends before the next begins, or they would be taken for one.
    const bool overlaps = m_gradedUntil > start && m_gradedUntil <= end;
    const UI::EventUserDataIP note = new FrameNote(frame, seconds);
    m_grade.addEvent(EventTrack::Type::Start, note, overlaps ? m_gradedUntil : start);
    m_grade.addEvent(EventTrack::Type::End, note, end);
    m_gradedUntil = end;
}

void Profiling::filled(const Frame& frame, std::size_t cacheBytes, const QString& sequence) {
    mark(m_fill, new FrameNote(frame, 0.0, sequence));
    m_memory.addEvent(float(double(cacheBytes) / mebibyte));
}

void Profiling::evicted(Base::Time time) {
    mark(m_eviction, new FrameNote(time));
}

void Profiling::cleared() {
    m_memory.addEvent(0.0F);
}

} // namespace Kestrel::Workbench
