#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ValueRange.h>

#include <cstdint>
#include <vector>

namespace Kestrel::UI {

/** The cube of red, green and blue, counted in cells. What is shown as another solid is moved there
    cell by cell. A plain value. */
struct KXUI_EXPORT ScopeSolid {
    /** The most cells along an edge. */
    static constexpr int MostCells = 64;

    int cells = 0;    ///< along each edge; 0: nothing was counted
    ValueRange range; ///< of each edge
    /** `cells` cells of red, from the lowest; then for the next green, then for the next blue. */
    std::vector<std::uint32_t> counts;
    /** The same of pixels outside the cube, in the cells of its surface next to them. */
    std::vector<std::uint32_t> outsideCounts;
    std::uint64_t outside = 0; ///< their number
    std::uint64_t nan = 0;     ///< pixels with a component that is not a number
    std::uint64_t pixels = 0;  ///< all

    /** Where a cell is found in the counts. */
    std::size_t index(int red, int green, int blue) const noexcept {
        const auto n = std::size_t(cells);
        return (std::size_t(blue) * n + std::size_t(green)) * n + std::size_t(red);
    }
};

} // namespace Kestrel::UI
