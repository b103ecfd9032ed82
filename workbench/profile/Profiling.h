#pragma once

#include "media/Frame.h"

#include <KxUI/eventgraph/EventTrack.h>

#include <cstddef>
#include <deque>
#include <vector>

namespace Kestrel::UI {
class EventGraphView;
}

namespace Kestrel::Workbench {

/** What a session records about itself for the profiler: a track for each decode thread, and those
    of playback, viewer and cache. Made before all that records and destroyed after it; the tracks
    leave the profiler's window with it.

    Until they are in a window that captures, an event costs no more than its note. */
class Profiling {
public:
    /** @param decodeThreads  number of threads that decode
        @param rate  pictures a second that playback should reach, the middle of the rate's graph
        @param cacheBytes  memory for decoded frames, the top of its graph */
    Profiling(int decodeThreads, double rate, std::size_t cacheBytes);

    Profiling(const Profiling&) = delete;
    Profiling& operator=(const Profiling&) = delete;

    /** Gives the tracks rows in a view, unless they have them: there may be a capture in them. */
    void addTo(UI::EventGraphView* view);

    /** One activity a decode, by thread; for any thread. */
    std::vector<UI::EventTrack*> decodeTracks();

    /** One activity a repaint of the viewer. */
    UI::EventTrack* paintTrack() { return &m_paint; }

    /** One activity a graded frame. */
    UI::EventTrack* gradeTrack() { return &m_grade; }

    /** One activity a frame that came into the cache. */
    UI::EventTrack* fillTrack() { return &m_fill; }

    /** Playback brought the picture of a time to the screen, `rate` pictures a second of late. */
    void shown(Base::Time time, double rate);

    /** Playback has passed frames whose pictures did not come; `time` is where it is now. */
    void dropped(std::uint64_t frames, Base::Time time);

    /** A frame was graded, which took so many seconds, until now. */
    void graded(const Frame& frame, double seconds);

    /** A frame of a sequence came into the cache, which then held so many bytes. */
    void filled(const Frame& frame, std::size_t cacheBytes, const QString& sequence);
    void evicted(Base::Time time);
    void cleared();

private:
    std::vector<UI::EventTrack*> tracks();

    // From top to bottom.
    UI::EventTrack m_shown;
    UI::EventTrack m_dropped;
    UI::EventTrack m_rate;
    UI::EventTrack m_paint;
    UI::EventTrack m_grade;
    UI::EventTrack m_fill;
    UI::EventTrack m_eviction;
    UI::EventTrack m_memory;
    int m_gradedUntil = 0; ///< milliseconds of the capture
    /** A deque, since tracks stay where they were made. */
    std::deque<UI::EventTrack> m_decode;
};

} // namespace Kestrel::Workbench
