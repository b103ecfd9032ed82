#pragma once

#include <KxUI/Export.h>

#include <vector>

namespace Kestrel::UI {

/** Parts of a whole. Any thread. */
struct KXUI_EXPORT PieShares {
    /** The share of each value in their sum, in per cent, rounded to so many decimals (0 to 3) by the
        largest remainder, so that the shares add up to 100. Values that are below 0 or not finite
        have none; where nothing is left, all are 0. */
    static std::vector<double> percentages(const std::vector<double>& values, int decimals = 0);
};

} // namespace Kestrel::UI
