#pragma once

#include <KxUI/base/Time.h>
#include <KxUI/eventgraph/EventTrack.h>

#include <QString>

#include <cstddef>
#include <functional>
#include <vector>

namespace Kestrel::Workbench {

class FrameNote;
class Profiling;

/** Reads what a session's tracks have recorded since the last look: how long frames took, and what
    came into the cache. Interface thread. */
class RenderTimes {
public:
    /** A frame that took a time. */
    struct Point {
        double at = 0.0;   ///< when it was done, in seconds of the capture
        double took = 0.0; ///< seconds
        Base::Time frame = 0;
    };

    /** What came since the last look, each list in the order of time. */
    struct News {
        std::vector<Point> decoded;
        std::vector<Point> graded;
        std::vector<Point> painted;

        bool isEmpty() const { return decoded.empty() && graded.empty() && painted.empty(); }
    };

    /** What came into the cache from a sequence while it was recorded. */
    struct Read {
        QString sequence;
        std::size_t bytes = 0;
        std::size_t frames = 0;
    };

    /** @param profiling  borrowed; outlives this */
    explicit RenderTimes(Profiling* profiling);

    News look();
    /** Of all looks, the sequence that was read first comes first. */
    const std::vector<Read>& reads() const { return m_reads; }

    /** Another capture begins: what was is forgotten. @param start  its begin on its clock, in ms */
    void restart(int start);

private:
    /** Where reading has come to in a track. */
    struct Place {
        UI::EventTrack* track = nullptr;
        /** The note of the event read last; held, so that no other note gets its address. */
        UI::EventUserDataIP last;
    };
    using Take = std::function<void(const FrameNote& note, double seconds, double at)>;

    void read(Place& place, const Take& take) const;
    void readInto(Place& place, std::vector<Point>& points) const;
    void count(const FrameNote& note);

    std::vector<Place> m_decode;
    Place m_grade;
    Place m_paint;
    Place m_fill;
    std::vector<Read> m_reads;
    int m_start = 0;
};

} // namespace Kestrel::Workbench
