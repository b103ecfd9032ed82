#pragma once

#include <KxUI/base/FrameRange.h>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/** \file
    The frames that a user asks for of a sequence, and which of them are there. Ranges have steps, and
    reach over all 32-bit numbers: nothing here takes longer for more frames. */
namespace Kestrel::UI {

/** What a text asks of a sequence. */
struct AskedFrames {
    /** Why it asks for nothing. */
    enum class Problem : std::uint8_t {
        None,
        Unreadable, ///< the text is no range
        NoneThere   ///< no frame of the sequence lies in it
    };

    Problem problem = Problem::None;
    Base::FrameRange frames;            ///< as far as the text could be read
    std::int64_t missing = 0;           ///< frames asked for that have no file
    std::vector<Base::FrameRange> gaps; ///< the first of them, with the step of `frames`
    bool hasMoreGaps = false;
};

/** How many frames a range has. */
std::int64_t countOf(const Base::FrameRange& range);

/** Frames of two ranges, whose step may be beyond what a range can have. */
struct CommonFrames {
    std::int64_t first = 0;
    std::int64_t last = 0;
    std::int64_t step = 1;

    std::int64_t count() const { return (last - first) / step + 1; }
};

/** The frames that are in both, if there are any. */
std::optional<CommonFrames> commonFrames(const Base::FrameRange& a, const Base::FrameRange& b);

/** Reads "1001-1100", "1001 - 1100 x 2" or "1012" for a sequence; an empty text asks for all of it.
    A range without a step has that of the sequence, and begins and ends on one of its numbers.
    @param whole    first and last frame, and the step
    @param present  the frames that are there, in order, all on the numbers of `whole` */
AskedFrames askedFrames(std::string_view text, const Base::FrameRange& whole,
                        const std::vector<Base::FrameRange>& present);

} // namespace Kestrel::UI
