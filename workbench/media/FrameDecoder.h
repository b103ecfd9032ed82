#pragma once

#include "media/Frame.h"

#include <cstdint>
#include <functional>
#include <string>

namespace Kestrel::Workbench {

/** What a decode makes, and what it may cost. */
struct DecodeLimits {
    /** Keeps the samples beside the picture, where they tell more than it: for grading. */
    bool keepSamples = false;
    /** Longest edge of the picture made; larger ones are averaged down by a whole factor. */
    int longestEdge = 4096;
    /** Pixels read from a file at most; a file with more is refused with a message. */
    std::int64_t sourcePixels = std::int64_t(1) << 30;
    /** Leaves the fast readers aside, which make the same of a file. */
    bool generalReader = false;
};

/** Reads the first image of a file and makes it ready for the screen. Never throws: whatever goes
    wrong is told by the frame's state and message. May run on any thread, for several files at a
    time.
    @param path       the file's name in the bytes of the file system
    @param cancelled  asked between strips of rows; true ends the work early (the frame is then
                      Unreadable with an empty message) */
Frame decodeFrame(const std::string& path, Base::Time time, const DecodeLimits& limits = {},
                  const std::function<bool()>& cancelled = {});

/** Once per process, before the first decode: one thread a decode, since frames are decoded side by
    side, and limits on what a damaged header may claim. */
void setUpImageReading();

} // namespace Kestrel::Workbench
