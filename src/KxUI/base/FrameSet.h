#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/FrameRange.h>
#include <KxUI/base/Time.h>

#include <boost/icl/interval_set.hpp>

#include <vector>

namespace Kestrel::Base {

/** Frames as a set of half-open intervals: the frames 3 to 5 are `[3, 6)`. */
using FrameSet = boost::icl::interval_set<Time>;

/** The frames of some ranges, whose first and last frames both belong to them: what
    UI::FileInfo::presentRanges() tells, for UI::TimeSlider::setCachedFrames(). Of a step above 1,
    the frames alone are in the set. A range with a last frame before its first, or a step below 1,
    has no frames. Any thread. */
KXUI_EXPORT FrameSet frameSetOf(const std::vector<FrameRange>& ranges);

} // namespace Kestrel::Base
