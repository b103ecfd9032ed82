#pragma once

#include <KxUI/Export.h>

#include <cstdint>
#include <vector>

namespace Kestrel::UI {

/** How often each hue and each saturation occurs, as rgbToHsv() has them. A plain value. */
struct KXUI_EXPORT ScopeHues {
    /** Codes of a turn, and of saturations from 0 to 1. */
    static constexpr int Codes = 4096;

    /** Pixels by the nearest of `Codes` + 1 saturations, 0 to 1; empty: nothing was counted. */
    std::vector<std::uint32_t> saturation;
    /** Pixels by the nearest of `Codes` hues, from red over green to blue; the last of `Codes` + 1, a
        whole turn, is always 0. */
    std::vector<std::uint32_t> hue;
    std::uint64_t greys = 0;  ///< pixels without a hue, whose saturation is 0
    std::uint64_t above = 0;  ///< pixels with negative components: their saturation is above 1
    std::uint64_t none = 0;   ///< pixels with a component that is not finite, which have neither
    std::uint64_t pixels = 0; ///< all

    /** Whether anything was counted. */
    bool isEmpty() const noexcept { return saturation.empty(); }
};

} // namespace Kestrel::UI
