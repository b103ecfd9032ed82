#pragma once

#include <KxUI/Export.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Kestrel::Base {

/** A stretch of frames: first and last frame, both inclusive, and the step between frames. A plain
    value; its layout is frozen. */
struct FrameRange {
    std::int32_t first = 0; ///< The first frame.
    std::int32_t last = 0;  ///< The last frame, part of the range.
    std::int32_t step = 1;  ///< Frames from one to the next.

    /** Frame 0 alone. */
    constexpr FrameRange() = default;

    /** Keeps the three as they are; nothing is checked. */
    constexpr FrameRange(std::int32_t firstFrame, std::int32_t lastFrame,
                         std::int32_t frameStep = 1) noexcept
        : first(firstFrame)
        , last(lastFrame)
        , step(frameStep) {}
};

/** Whether all three numbers are the same. */
constexpr bool operator==(const FrameRange& a, const FrameRange& b) noexcept {
    return a.first == b.first && a.last == b.last && a.step == b.step;
}
/** Whether any of the three numbers differs. */
constexpr bool operator!=(const FrameRange& a, const FrameRange& b) noexcept {
    return !(a == b);
}

/** Reads "7", "1-10", "1-10x2" or "1-10,2": one frame, or the first and the last frame, in this
    order, with a step of 1 or more. Frames may be negative ("-5--1"). Nothing for any other text;
    then `error`, where given, receives a message that quotes the text. Any thread. */
KXUI_EXPORT std::optional<FrameRange> parseFrameRange(std::string_view text,
                                                      std::string* error = nullptr);

} // namespace Kestrel::Base
