#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/PainterDrawingContext.h>
#include <KxUI/draw/ToneCurve.h>

#include <support/Bench.h>

#include <QImage>
#include <QPainter>

#include <cstdint>
#include <vector>

using namespace Kestrel::UI;

namespace {

constexpr int Width = 800;
constexpr int Height = 600;

// A band of light that rises and falls across the picture, as a waveform is.
IntensityGrid band(int phase) {
    constexpr int Columns = 1920;
    constexpr int Rows = 512;
    std::vector<std::uint32_t> counts(std::size_t(Columns) * Rows);
    std::uint32_t random = 1;
    for (int x = 0; x < Columns; ++x) {
        for (int i = 0; i < 1080; ++i) {
            random = random * 1664525U + 1013904223U;
            const int middle = 150 + (x + phase) % 200;
            ++counts[std::size_t(x) * Rows + std::size_t(middle) + (random >> 25)];
        }
    }
    CountGrid grid;
    grid.counts = counts.data();
    grid.columns = Columns;
    grid.rows = Rows;
    grid.columnStep = Rows;
    grid.rowStep = 1;
    grid.expected = 1080.0 / Rows;
    return IntensityGrid::fromCounts(grid, Width, Height);
}

// What a scope draws anew where only its brightness changes.
void brighten(benchmark::State& state, QImage::Format format) {
    const IntensityGrid grids[]{band(0), band(70), band(140)};
    const QColor colors[]{{255, 70, 70}, {70, 255, 70}, {80, 120, 255}};
    QImage image(Width, Height, format);
    ToneCurve tone;
    for (auto _ : state) {
        tone.brightness = tone.brightness > 0 ? 0 : 1;
        image.fill(Qt::black);
        QPainter painter(&image);
        PainterDrawingContext context(painter, QSizeF(Width, Height), 1);
        for (int i = 0; i < 3; ++i)
            context.intensity({0, 0, Width, Height}, grids[i], tone, colors[i]);
    }
}

} // namespace

void registerBenchmarks() {
    const std::string work = "red, green and blue at another brightness, 800 x 600";
    Kestrel::Bench::add(work, "ours",
                        [](benchmark::State& state) { brighten(state, QImage::Format_RGB32); });
    Kestrel::Bench::add(work, "by the painter's own addition", [](benchmark::State& state) {
        brighten(state, QImage::Format_ARGB32_Premultiplied);
    });
    Kestrel::Bench::target(work, 4000); // microseconds at 4 GHz
}
