#pragma once

#include <KxUI/Export.h>

namespace Kestrel::UI {

/** How bright a density is shown. Density 1 is what even spread would give. A plain value. */
struct KXUI_EXPORT ToneCurve {
    /** The shapes, with g = 2^brightness. */
    enum Kind {
        Logarithmic, ///< log2(1 + g density) / log2(1 + 16 g): full light at density 16
        Linear       ///< g density / 8: full light at density 8 / g
    };

    Kind kind = Logarithmic; ///< the shape
    double brightness = 0;   ///< in stops; limited to -16 to 16, and 0 where it is no number
    /** The light that any density above 0 has at least, so that single pixels are seen; 0 switches
        it off. */
    double least = 0.12;

    /** The light of a density, 0 to 1. 0 for densities that are not above 0, or not numbers. */
    double light(double density) const noexcept;
};

} // namespace Kestrel::UI
