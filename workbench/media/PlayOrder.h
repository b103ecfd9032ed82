#pragma once

#include <KxUI/base/Time.h>

#include <cstdint>
#include <vector>

namespace Kestrel::Workbench {

/** In which order frames will be needed from where the playhead stands: the frames next to it while
    it stands still, the frames ahead of it, round the loop, while it plays. What to decode next and
    what to throw out of the cache first are both read from it. */
struct PlayOrder {
    Base::Time playhead = 0;
    /** The frames that are played, both inclusive, first <= last. */
    Base::Time first = 0;
    Base::Time last = 0;
    /** 1 playing forwards, -1 backwards, 0 standing still. */
    int direction = 0;
    /** Every how many frames are shown, 1 or more. */
    std::uint32_t stride = 1;

    /** How far off the need for a frame is; 0 is the playhead's own frame. Frames that playback
        does not reach come after all that it does. */
    std::uint64_t distance(Base::Time time) const;

    /** The frames needed next, nearest first, at most `count`. */
    std::vector<Base::Time> next(std::size_t count) const;

private:
    std::uint64_t length() const { return std::uint64_t(last) - std::uint64_t(first) + 1; }
    bool contains(Base::Time time) const { return time >= first && time <= last; }
};

} // namespace Kestrel::Workbench
