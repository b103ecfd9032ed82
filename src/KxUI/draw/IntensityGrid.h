#pragma once

#include <KxUI/Export.h>
#include <KxUI/draw/CountGrid.h>

#include <memory>
#include <vector>

namespace Kestrel::UI {

/** Densities of device pixels: what a DrawingContext shows as light. A value: copies share the
    memory, which never changes. Any thread. */
class KXUI_EXPORT IntensityGrid {
public:
    /** Nothing. */
    IntensityGrid();

    /** Densities as they are, row by row from the top. Nothing where their number is not `width`
        times `height`. */
    IntensityGrid(int width, int height, std::vector<float> densities);

    /** The counts of a grid, summed over the area of each of `width` x `height` device pixels, over
        what is expected there: 1 is even spread. A cell that several pixels touch is divided among
        them by area, in whole numbers, so that nothing is lost, no pixel stands out by its place, and
        any count is seen as more than 0. Counts whose sum times width times height is 2^64 or more
        overflow. Nothing for an empty grid or size. */
    static IntensityGrid fromCounts(const CountGrid& grid, int width, int height);

    /** Whether there are no pixels. */
    bool isEmpty() const noexcept;
    /** The size in device pixels. */
    int width() const noexcept;
    int height() const noexcept;

    /** The densities of a row, which are not above 0 where nothing was counted; `y` is 0 to height() - 1. The memory
        lives as long as this grid or a copy. */
    const float* row(int y) const noexcept;

    /** Whether both share their memory: the same grid, without a comparison of its pixels. */
    bool isSameAs(const IntensityGrid& other) const noexcept;

private:
    int m_width = 0;
    int m_height = 0;
    std::shared_ptr<const std::vector<float>> m_densities;
};

} // namespace Kestrel::UI
