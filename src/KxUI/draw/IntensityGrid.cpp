#include <KxUI/draw/IntensityGrid.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

using Sum = std::uint64_t;

// The cells of one direction and the pixels that they are summed to. Cell i lies at [i pixels,
// (i + 1) pixels), pixel x at [x cells, (x + 1) cells): in these units every edge is whole.
struct Axis {
    std::ptrdiff_t step;
    Sum cells;
    Sum pixels;
};

// What lies below an edge is a prefix sum over whole cells and a part of one.
void sumLine(const std::uint32_t* first, const Axis& axis, std::vector<Sum>& to) {
    Sum whole = 0;
    Sum cell = 0;
    Sum before = 0;
    for (Sum x = 0; x < axis.pixels; ++x) {
        const Sum edge = (x + 1) * axis.cells;
        const Sum last = edge / axis.pixels;
        for (; cell < last; ++cell)
            whole += first[std::ptrdiff_t(cell) * axis.step];
        Sum below = whole * axis.pixels;
        if (const Sum part = edge % axis.pixels)
            below += part * first[std::ptrdiff_t(cell) * axis.step];
        to[x] = below - before;
        before = below;
    }
}

bool isDark(const std::vector<Sum>& line) {
    return std::all_of(line.begin(), line.end(), [](Sum each) { return each == 0; });
}

// Lines along `inner`, each added to the lines of pixels that it touches.
std::vector<Sum> areaSums(const std::uint32_t* first, const Axis& inner, const Axis& outer) {
    std::vector<Sum> sums(std::size_t(inner.pixels * outer.pixels));
    std::vector<Sum> line(std::size_t(inner.pixels));
    for (Sum cell = 0; cell < outer.cells; ++cell) {
        sumLine(first + std::ptrdiff_t(cell) * outer.step, inner, line);
        if (isDark(line))
            continue;
        const Sum begin = cell * outer.pixels;
        const Sum end = begin + outer.pixels;
        for (Sum y = begin / outer.cells; y * outer.cells < end; ++y) {
            const Sum part =
                std::min(end, (y + 1) * outer.cells) - std::max(begin, y * outer.cells);
            Sum* const to = sums.data() + y * inner.pixels;
            for (Sum x = 0; x < inner.pixels; ++x)
                to[x] += part * line[x];
        }
    }
    return sums;
}

// What even spread gives a pixel of each column, in the units of the sums. Where nothing is expected
// a count is full light.
std::vector<double> expectedSums(const CountGrid& grid, int width) {
    const auto rows = double(grid.rows);
    const auto inverse = [](double sum) { return 1 / (sum > 0 ? sum : 1.0); };
    std::vector<double> all(std::size_t(width), inverse(grid.expected * rows * grid.columns));
    if (!grid.expectedOfColumns)
        return all;
    const auto columns = Sum(grid.columns);
    const auto pixels = Sum(width);
    for (Sum x = 0; x < pixels; ++x) {
        const Sum begin = x * columns;
        const Sum end = begin + columns;
        double sum = 0;
        for (Sum cell = begin / pixels; cell * pixels < end; ++cell) {
            const Sum part = std::min(end, (cell + 1) * pixels) - std::max(begin, cell * pixels);
            sum += double(part) * grid.expectedOfColumns[cell];
        }
        all[x] = inverse(sum * rows);
    }
    return all;
}

} // namespace

IntensityGrid::IntensityGrid() = default;

IntensityGrid::IntensityGrid(int width, int height, std::vector<float> densities) {
    if (width <= 0 || height <= 0 || densities.size() != std::size_t(width) * std::size_t(height))
        return;
    m_width = width;
    m_height = height;
    m_densities = std::make_shared<const std::vector<float>>(std::move(densities));
}

IntensityGrid IntensityGrid::fromCounts(const CountGrid& grid, int width, int height) {
    if (!grid.counts || grid.columns <= 0 || grid.rows <= 0 || width <= 0 || height <= 0)
        return {};
    const Axis across{grid.columnStep, Sum(grid.columns), Sum(width)};
    const Axis down{grid.rowStep, Sum(grid.rows), Sum(height)};
    const std::vector<double> scale = expectedSums(grid, width);
    std::vector<float> densities(std::size_t(width) * std::size_t(height));
    const bool byRows = std::abs(grid.columnStep) <= std::abs(grid.rowStep);
    const std::vector<Sum> sums =
        byRows ? areaSums(grid.counts, across, down) : areaSums(grid.counts, down, across);
    const std::size_t acrossStep = byRows ? 1 : std::size_t(height);
    const std::size_t downStep = byRows ? std::size_t(width) : 1;
    for (std::size_t y = 0; y < std::size_t(height); ++y)
        for (std::size_t x = 0; x < std::size_t(width); ++x)
            densities[y * std::size_t(width) + x] =
                static_cast<float>(double(sums[y * downStep + x * acrossStep]) * scale[x]);
    return IntensityGrid(width, height, std::move(densities));
}

bool IntensityGrid::isEmpty() const noexcept {
    return !m_densities;
}

int IntensityGrid::width() const noexcept {
    return m_width;
}

int IntensityGrid::height() const noexcept {
    return m_height;
}

const float* IntensityGrid::row(int y) const noexcept {
    return m_densities->data() + std::size_t(y) * std::size_t(m_width);
}

bool IntensityGrid::isSameAs(const IntensityGrid& other) const noexcept {
    return m_densities == other.m_densities;
}

} // namespace Kestrel::UI
