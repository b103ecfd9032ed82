#pragma once

#include <KxUI/Export.h>

#include <cstddef>
#include <cstdint>

namespace Kestrel::UI {

/** Counts in rows and columns, as whoever counted them keeps them: by rows or by columns, upwards or
    downwards. Borrows its memory. A plain value. */
struct KXUI_EXPORT CountGrid {
    const std::uint32_t* counts = nullptr; ///< of the upper left cell
    int columns = 0;                       ///< cells across
    int rows = 0;                          ///< cells down
    std::ptrdiff_t columnStep = 1;         ///< counts from a cell to its right neighbour
    std::ptrdiff_t rowStep = 0;            ///< counts from a cell to the one below it
    /** The count that even spread would give each cell; for columns that cover unequal parts, one
        for each column in `expectedOfColumns`, which may be null. */
    double expected = 1;
    const double* expectedOfColumns = nullptr; ///< `columns` of them, or null
};

} // namespace Kestrel::UI
