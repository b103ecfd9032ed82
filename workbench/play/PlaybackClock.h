#pragma once

#include <KxUI/base/Time.h>

#include <cstdint>

namespace Kestrel::Workbench {

/** Which frame a playback that began at some moment shows at another: a plain value, reckoned from
    the start each time, so that nothing adds up to a drift. Moments are nanoseconds of any clock
    that only runs forwards. */
struct PlaybackClock {
    /** What happens at the end. */
    enum class Repeat { Once, Loop, Bounce };

    /** Frames per second as a fraction, both at least 1 and below 2^32. */
    std::uint64_t numerator = 25;
    std::uint64_t denominator = 1;
    /** The frames played, both inclusive, first <= last. */
    Base::Time first = 0;
    Base::Time last = 0;
    /** The frame shown at `startNs`, within first .. last. */
    Base::Time origin = 0;
    std::int64_t startNs = 0;
    /** 1 forwards, -1 backwards. */
    int direction = 1;
    /** Frames passed with each tick, 1 or more: shuttling leaves frames out rather than asking for
        more pictures a second. */
    std::uint32_t stride = 1;
    Repeat repeat = Repeat::Loop;

    struct Position {
        Base::Time time = 0;
        /** Pictures that were due since the start. */
        std::uint64_t ticks = 0;
        /** The direction now; it turns round at each end where playback bounces. */
        int direction = 1;
        /** The end was passed and nothing repeats; `time` is the last frame in play direction. */
        bool ended = false;
    };

    Position at(std::int64_t nowNs) const;

    /** The moment at which tick number `ticks` begins. */
    std::int64_t momentOf(std::uint64_t ticks) const;
};

} // namespace Kestrel::Workbench
