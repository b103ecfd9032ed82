// A picture of counts with an axis, drawn by whatever context there is.

#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/PainterDrawingContext.h>
#include <KxUI/draw/Ticks.h>
#include <KxUI/draw/ToneCurve.h>

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QWidget>

#include <cmath>
#include <vector>

using namespace Kestrel::UI;

namespace {

constexpr int Columns = 480;
constexpr int Rows = 256;

// How often each value comes in each column: a wave that fades into another.
std::vector<std::uint32_t> countWaves() {
    std::vector<std::uint32_t> counts(std::size_t(Columns * Rows));
    for (int i = 0; i < 2000000; ++i) {
        const int column = i % Columns;
        const double phase = double(column) / Columns * 6.283;
        const double noise = std::sin(i * 12.9898) * 43758.5453;
        const double part = noise - std::floor(noise);
        const double value = 128 + 100 * std::sin(phase * (i / Columns % 3 + 1)) * std::sqrt(part);
        ++counts[std::size_t(int(value) * Columns + column)];
    }
    return counts;
}

class Waves : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        PainterDrawingContext context(painter, size(), devicePixelRatioF());
        draw(context);
    }

private:
    // The same for an OpenGLDrawingContext.
    void draw(DrawingContext& context) const {
        const QRectF plot(48, 12, width() - 60.0, height() - 24.0);
        context.fill(rect(), QColor(24, 24, 26));

        CountGrid grid;
        grid.counts = m_counts.data() + (Rows - 1) * Columns; // row 0 is the lowest value
        grid.columns = Columns;
        grid.rows = Rows;
        grid.rowStep = -Columns;
        grid.expected = 2000000.0 / (Columns * Rows);
        const QSizeF pixels = plot.size() * context.devicePixelRatio();
        context.intensity(
            plot, IntensityGrid::fromCounts(grid, int(pixels.width()), int(pixels.height())),
            ToneCurve(), QColor(70, 255, 120));

        Ticks::Rules rules;
        rules.unit = Ticks::Percent;
        rules.length = plot.height();
        rules.labelLength = [this](const QString&) { return QFontMetricsF(font()).height(); };
        const Ticks ticks = Ticks::plan(0, 1, rules);
        for (std::size_t i = 0; i < ticks.values.size(); ++i) {
            const double y = plot.bottom() - ticks.values[i] * plot.height();
            context.line({plot.left(), y}, {plot.right(), y}, {QColor(255, 255, 255, 50), 0});
            context.text({0, y - 10, plot.left() - 6, 20}, Qt::AlignRight | Qt::AlignVCenter,
                         ticks.texts[int(i)], font(), QColor(200, 200, 200));
        }
    }

    const std::vector<std::uint32_t> m_counts = countWaves();
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Waves waves;
    waves.resize(560, 280);
    waves.show();
    return QApplication::exec();
}
