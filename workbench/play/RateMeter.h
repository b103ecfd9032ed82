#pragma once

#include <cstdint>
#include <deque>

namespace Kestrel::Workbench {

/** Counts what playback achieves: pictures shown a second over the last second, and frames whose
    picture was not shown in time. */
class RateMeter {
public:
    void reset();

    /** Playback goes on from another frame: ticks count from 0 again, nothing was dropped. */
    void restart();

    /** Playback reached tick number `ticks` (growing) at `nowNs`; `shown` tells whether the picture
        of that very frame was on the screen. */
    void reached(std::uint64_t ticks, bool shown, std::int64_t nowNs);

    /** The picture of the tick reached last came late, but before the next. False when it had been
        shown before, or no tick has been reached. */
    bool shownLate(std::int64_t nowNs);

    /** Pictures a second over the last second before `nowNs`; 0 until two were shown. */
    double rate(std::int64_t nowNs);

    std::uint64_t dropped() const { return m_dropped; }

    /** Those of them whose picture cannot come late any more. */
    std::uint64_t droppedForGood() const {
        return m_dropped - (m_started && !m_lastShown ? 1U : 0U);
    }

private:
    std::deque<std::int64_t> m_shown;
    std::uint64_t m_ticks = 0;
    std::uint64_t m_dropped = 0;
    bool m_started = false;
    bool m_lastShown = false;
};

} // namespace Kestrel::Workbench
