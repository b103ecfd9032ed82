#pragma once

#include "media/Frame.h"
#include "media/PlayOrder.h"

#include <cstddef>
#include <map>
#include <vector>

namespace Kestrel::Workbench {

/** Decoded frames up to a number of bytes. When it is full, the frame that will be needed last goes
    first: the one farthest from the playhead, in the order of play. Used on the interface thread.
 */
class FrameCache {
public:
    /** @param capacity  bytes that the frames may take together */
    explicit FrameCache(std::size_t capacity);

    /** The frame of a time, or null. */
    FramePtr find(Base::Time time) const;

    /** The picture closest to a time, or null when there is none; of two equally close ones the
        earlier. Frames without a picture do not count. */
    FramePtr nearestPicture(Base::Time time) const;

    /** The times of all pictures held, in order. */
    std::vector<Base::Time> pictureTimes() const;

    struct Outcome {
        /** False when the cache is full of frames that are needed sooner. */
        bool stored = false;
        /** Times that made room. */
        std::vector<Base::Time> evicted;
    };

    /** Another number of bytes. Returns the times that had to go. */
    std::vector<Base::Time> setCapacity(std::size_t capacity, const PlayOrder& order);

    /** Takes a frame in, replacing one of the same time. */
    Outcome insert(const FramePtr& frame, const PlayOrder& order);

    void clear();

    std::size_t capacity() const { return m_capacity; }
    std::size_t bytes() const { return m_bytes; }
    std::size_t count() const { return m_frames.size(); }

private:
    using Frames = std::map<Base::Time, FramePtr>;

    Frames::iterator neededLast(const PlayOrder& order);
    void remove(Frames::iterator frame);

    std::size_t m_capacity;
    std::size_t m_bytes = 0;
    Frames m_frames;
};

} // namespace Kestrel::Workbench
