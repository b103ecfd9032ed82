#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ValueRange.h>

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

namespace Kestrel::UI {

/** What is to be counted of the plane of Cb and Cr. A plain value; its layout is frozen. */
struct KXUI_EXPORT VectorRange {
    /** Of Cb and of Cr; at most 1024 bins. ValueRange::ofChromaCodes puts the codes of an integer
        source in the middle of their cells. */
    ValueRange chroma{-0.6F, 0.6F, 512};
    /** Pixels whose luma lies outside are left out. */
    float lumaLower = -std::numeric_limits<float>::infinity();
    float lumaUpper = std::numeric_limits<float>::infinity(); ///< likewise

    /** Whether they are the same, and whether they are not. */
    friend bool operator==(const VectorRange& a, const VectorRange& b) noexcept {
        return a.chroma == b.chroma && a.lumaLower == b.lumaLower && a.lumaUpper == b.lumaUpper;
    }
    friend bool operator!=(const VectorRange& a, const VectorRange& b) noexcept {
        return !(a == b);
    }
};

/** The plane of Cb and Cr, counted. A plain value. */
struct KXUI_EXPORT ScopeVectors {
    int size = 0;     ///< cells each way; 0: nothing was counted
    ValueRange range; ///< of both axes
    /** `size` cells of Cb, from the lowest, for the lowest Cr; then for the next. */
    std::vector<std::uint32_t> counts;
    std::uint64_t outside = 0; ///< pixels outside the plane, infinite ones too
    std::uint64_t nan = 0;     ///< pixels with a component that is not a number
    std::uint64_t gated = 0;   ///< pixels that their luma left out
    std::uint64_t pixels = 0;  ///< all of these
    /** Of `outside`, where they have a direction: by whole degrees, counter-clockwise from +Cb. */
    std::array<std::uint32_t, 360> outsideByDegree{};

    /** The pixels of a cell; both are 0 to `size` - 1. */
    std::uint32_t count(int cb, int cr) const noexcept {
        return counts[std::size_t(cr) * std::size_t(size) + std::size_t(cb)];
    }
};

} // namespace Kestrel::UI
