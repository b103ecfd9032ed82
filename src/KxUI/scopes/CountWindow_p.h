#pragma once

#include <KxUI/draw/IntensityGrid.h>

#include <QRectF>

#include <cstddef>
#include <cstdint>

namespace Kestrel::UI {

/** One direction of a table of counts, and the part of it that is shown. */
struct CountAxis {
    std::ptrdiff_t step = 1;          ///< counts from a cell to the next one
    int cells = 0;                    ///< how many there are
    double begin = 0;                 ///< of what is shown, in cells; may lie outside
    double end = 0;                   ///< more than `begin`
    int pixels = 0;                   ///< device pixels that show it
    const double* expected = nullptr; ///< of each cell, where they differ; null: 1
};

/** The counts of a part of a table, summed over the area of each device pixel, over what is expected
    there: `expected` times those of both axes for each cell, `first` being the upper left one. A cell
    is divided among the pixels that it touches by area, wherever its edges lie, so that zoom and pan
    move a trace by less than a pixel and lose nothing. Nothing for empty axes. */
IntensityGrid densitiesOf(const std::uint32_t* first, const CountAxis& across,
                          const CountAxis& down, double expected);

/** Light, and where it is to be shown. */
struct PlacedLight {
    QRectF target;
    IntensityGrid light;
};

/** What is left of a grid for `target` without its dark borders: a trace fills little of its plot, and
    dark pixels take as long to draw as others. `ratio` is the device pixel ratio. */
PlacedLight withoutDark(const QRectF& target, const IntensityGrid& grid, double ratio);

} // namespace Kestrel::UI
