#include <KxUI/scopes/CountWindow_p.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace Kestrel::UI {
namespace {

// Where an edge between pixels lies: in a cell, and how much of it lies before.
struct Edge {
    int cell;
    double part;
};

double cellsOf(const CountAxis& axis, int pixel) {
    return axis.begin + (axis.end - axis.begin) * pixel / axis.pixels;
}

Edge edgeAt(const CountAxis& axis, double place) {
    const double at = std::clamp(place, 0.0, double(axis.cells));
    const int cell = std::min(int(at), axis.cells);
    return {cell, at - cell};
}

std::vector<Edge> edgesOf(const CountAxis& axis) {
    std::vector<Edge> edges;
    edges.reserve(std::size_t(axis.pixels) + 1);
    for (int pixel = 0; pixel <= axis.pixels; ++pixel)
        edges.push_back(edgeAt(axis, cellsOf(axis, pixel)));
    return edges;
}

// What is expected in each pixel, inverted. Where nothing is, a count is full light.
std::vector<float> inverseExpected(const CountAxis& axis, double factor) {
    std::vector<float> all;
    const double size = (axis.end - axis.begin) / axis.pixels;
    const std::vector<Edge> edges = axis.expected ? edgesOf(axis) : std::vector<Edge>();
    for (std::size_t pixel = 0; pixel < std::size_t(axis.pixels); ++pixel) {
        double sum = size;
        if (axis.expected) {
            sum = 0;
            const Edge& from = edges[pixel];
            const Edge& to = edges[pixel + 1];
            for (int cell = from.cell; cell <= to.cell && cell < axis.cells; ++cell) {
                const double start = cell == from.cell ? from.part : 0;
                const double end = cell == to.cell ? to.part : 1;
                sum += (end - start) * axis.expected[cell];
            }
        }
        sum *= factor;
        all.push_back(float(1 / (sum > 0 ? sum : 1.0)));
    }
    return all;
}

// The sums of a line of cells over each pixel. Sums below an edge are whole numbers but for the cell
// that it goes through, so that nothing stays where nothing was counted. Whether anything was.
bool sumLine(const std::uint32_t* first, std::ptrdiff_t step, const std::vector<Edge>& edges,
             int cells, std::vector<float>& to) {
    double whole = 0;
    double before = 0;
    int cell = edges.front().cell;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const Edge& edge = edges[i];
        for (; cell < edge.cell; ++cell)
            whole += double(first[cell * step]);
        double below = whole;
        if (edge.part > 0 && edge.cell < cells)
            below += edge.part * double(first[edge.cell * step]);
        if (i > 0)
            to[i - 1] = float(below - before);
        before = below;
    }
    return whole > 0 || before > 0;
}

// A line for each pixel of `outer`, of the pixels of `inner`.
std::vector<float> areaSums(const std::uint32_t* first, const CountAxis& inner,
                            const CountAxis& outer) {
    const auto width = std::size_t(inner.pixels);
    std::vector<float> sums(width * std::size_t(outer.pixels));
    std::vector<float> line(width);
    const std::vector<Edge> edges = edgesOf(inner);
    const double size = (outer.end - outer.begin) / outer.pixels;
    const int from = edgeAt(outer, outer.begin).cell;
    const int last =
        std::min(int(std::ceil(std::min(outer.end, double(outer.cells)))), outer.cells);
    for (int cell = from; cell < last; ++cell) {
        if (!sumLine(first + cell * outer.step, inner.step, edges, inner.cells, line))
            continue;
        const auto pixelOf = [&](double place) { return (place - outer.begin) / size; };
        const int begin = std::max(int(std::floor(pixelOf(cell))), 0);
        const int end = std::min(int(std::ceil(pixelOf(cell + 1))), outer.pixels);
        for (int pixel = begin; pixel < end; ++pixel) {
            const auto part = float(std::min(cellsOf(outer, pixel + 1), cell + 1.0) -
                                    std::max(cellsOf(outer, pixel), double(cell)));
            if (!(part > 0))
                continue;
            float* const to = sums.data() + std::size_t(pixel) * width;
            for (std::size_t i = 0; i < width; ++i)
                to[i] += part * line[i];
        }
    }
    return sums;
}

bool isEmpty(const CountAxis& axis) {
    return axis.cells <= 0 || axis.pixels <= 0 || !(axis.end > axis.begin);
}

} // namespace

IntensityGrid densitiesOf(const std::uint32_t* first, const CountAxis& across,
                          const CountAxis& down, double expected) {
    if (!first || isEmpty(across) || isEmpty(down))
        return {};
    const bool byRows = std::abs(across.step) <= std::abs(down.step);
    std::vector<float> sums =
        byRows ? areaSums(first, across, down) : areaSums(first, down, across);
    const std::vector<float> scaleAcross = inverseExpected(across, expected);
    const std::vector<float> scaleDown = inverseExpected(down, 1);
    const auto width = std::size_t(across.pixels);
    const auto height = std::size_t(down.pixels);
    std::vector<float> densities(byRows ? 0 : sums.size());
    constexpr std::size_t Tile = 16; // both sides of a turned table stay in the cache
    for (std::size_t left = 0; left < width && !byRows; left += Tile)
        for (std::size_t y = 0; y < height; ++y)
            for (std::size_t x = left; x < std::min(left + Tile, width); ++x)
                densities[y * width + x] = sums[x * height + y];
    if (byRows)
        densities = std::move(sums);
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x)
            densities[y * width + x] *= scaleAcross[x] * scaleDown[y];
    return IntensityGrid(across.pixels, down.pixels, std::move(densities));
}

PlacedLight withoutDark(const QRectF& target, const IntensityGrid& grid, double ratio) {
    int left = grid.width();
    int right = 0;
    int top = grid.height();
    int bottom = 0;
    for (int y = 0; y < grid.height(); ++y) {
        const float* const row = grid.row(y);
        const auto isLit = [](float density) { return density > 0; };
        const float* const first = std::find_if(row, row + grid.width(), isLit);
        if (first == row + grid.width())
            continue;
        int last = grid.width() - 1;
        while (!isLit(row[last]))
            --last;
        left = std::min(left, int(first - row));
        right = std::max(right, last + 1);
        top = std::min(top, y);
        bottom = y + 1;
    }
    if (right <= left)
        return {target, IntensityGrid()};
    std::vector<float> lit;
    lit.reserve(std::size_t(right - left) * std::size_t(bottom - top));
    for (int y = top; y < bottom; ++y)
        lit.insert(lit.end(), grid.row(y) + left, grid.row(y) + right);
    return {QRectF(target.topLeft() + QPointF(left, top) / ratio,
                   QSizeF(right - left, bottom - top) / ratio),
            IntensityGrid(right - left, bottom - top, std::move(lit))};
}

} // namespace Kestrel::UI
