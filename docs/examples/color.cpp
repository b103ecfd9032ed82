// A colour wheel with its colour beside it, and a row of video as floats.

#include <KxUI/color/ColorConversions.h>
#include <KxUI/color/ColorWheel.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>

#include <cstdint>
#include <vector>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    auto* wheel = new ColorWheel({}, ColorWheel::ValueRingWheel);
    auto* swatch = new QLabel;
    swatch->setFixedWidth(120);
    swatch->setAutoFillBackground(true);
    auto* row = new QHBoxLayout(&window);
    row->addWidget(wheel, 1);
    row->addWidget(swatch);

    const auto show = [swatch](float hue, float saturation, float value) {
        float red = 0;
        float green = 0;
        float blue = 0;
        hsvToRgb(hue, saturation, value, red, green, blue);
        QPalette palette = swatch->palette();
        palette.setColor(QPalette::Window, QColor::fromRgbF(red, green, blue));
        swatch->setPalette(palette);
    };
    QObject::connect(wheel, &ColorWheel::hsvChanged, swatch, show);
    wheel->setHSV(0.08F, 0.7F, 1); // without a signal
    show(0.08F, 0.7F, 1);

    // Two pixels of 8-bit 4:2:2 video: mid grey and white.
    const std::uint8_t packed[] = {128, 126, 128, 235};
    std::vector<float> rgba(8);
    const PlanarRow pixels{&rgba[3], &rgba[0], &rgba[1], &rgba[2], 4};
    decodeRow(PixelLayout::CbYCrY8, packed, pixels, 2, colorSpaceYCbCrToRgb(ColorSpace::Rec709));

    window.resize(420, 280);
    window.show();
    return QApplication::exec();
}
