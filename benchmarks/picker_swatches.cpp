#include <KxUI/picker/ColorButton.h>
#include <KxUI/picker/SwatchGrid.h>
#include <KxUI/picker/SwatchModel.h>

#include <support/Bench.h>

#include <KColorButton>
#include <QCoreApplication>
#include <QtColorWidgets/swatch.hpp>

#include <string>

void registerSwatchBenchmarks();

namespace {

using namespace Kestrel;
namespace Bench = Kestrel::Bench;

constexpr int Swatches = 1000;
constexpr int Buttons = 200;

QColor colorOf(int i) {
    return QColor::fromHsv(i % 360, 255 - i % 7 * 20, 255 - i % 5 * 30);
}

void show(QWidget& widget) {
    widget.resize(900, 560);
    widget.show();
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

void repaint(benchmark::State& state, QWidget& widget) {
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        widget.render(&image);
}

template <class Button>
void createAndPaint(benchmark::State& state) {
    for (auto _ : state) {
        QWidget parent;
        for (int i = 0; i < Buttons; ++i)
            (new Button(&parent))->setGeometry(i % 20 * 40, i / 20 * 30, 38, 28);
        QImage image(800, 300, QImage::Format_ARGB32_Premultiplied);
        parent.resize(image.size());
        parent.render(&image);
        state.PauseTiming(); // their end
        qDeleteAll(parent.children());
        state.ResumeTiming();
    }
}

} // namespace

void registerSwatchBenchmarks() {
    const std::string many = "swatches: repaint 1,000";
    Bench::add(many, "ours", [](benchmark::State& state) {
        UI::SwatchModel model;
        for (int i = 0; i < Swatches; ++i) {
            const QColor color = colorOf(i);
            model.append({float(color.redF()), float(color.greenF()), float(color.blueF()), 1.0F});
        }
        UI::SwatchGrid grid;
        grid.setCellSize(20);
        grid.setModel(&model);
        show(grid);
        repaint(state, grid);
    });
    Bench::add(many, "Qt-Color-Widgets", [](benchmark::State& state) {
        color_widgets::Swatch swatch;
        color_widgets::ColorPalette palette;
        for (int i = 0; i < Swatches; ++i)
            palette.appendColor(colorOf(i));
        swatch.setPalette(palette);
        show(swatch);
        repaint(state, swatch);
    });
    Bench::targetRatio(many, "Qt-Color-Widgets", 3.0);

    const std::string button = "colour button: create and paint 200";
    Bench::add(button, "ours", createAndPaint<UI::ColorButton>);
    Bench::add(button, "KColorButton", createAndPaint<KColorButton>);
    Bench::targetRatio(button, "KColorButton", 1.0);
}
