#include <KxUI/picker/SwatchPainting_p.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <QImage>
#include <QPainter>
#include <QPalette>

#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr QRgb LightGrey = 0xff999999;
constexpr QRgb DarkGrey = 0xff666666;
constexpr double SquareSide = 4.0; // logical pixels

const QImage& checkerTile() {
    static const QImage tile = [] {
        QImage made(2, 2, QImage::Format_RGB32);
        for (int y = 0; y < 2; ++y) {
            for (int x = 0; x < 2; ++x)
                made.setPixel(x, y, x == y ? LightGrey : DarkGrey);
        }
        return made;
    }();
    return tile;
}

QColor colorOf(const float* rgb, float alpha) {
    return {eightBits(rgb[0]), eightBits(rgb[1]), eightBits(rgb[2]), eightBits(alpha)};
}

} // namespace

QColor shownColor(const ColorValue& color, const DisplayCall& display) {
    const std::array<float, 3> rgb = display.displayed(color);
    return colorOf(rgb.data(), color.alpha);
}

std::vector<QColor> shownColors(const std::vector<ColorValue>& colors, const DisplayCall& display) {
    std::vector<float> rgb;
    rgb.reserve(colors.size() * 3);
    for (const ColorValue& color : colors)
        rgb.insert(rgb.end(), {color.red, color.green, color.blue});
    display.toDisplay(rgb.data(), static_cast<int>(colors.size()));
    std::vector<QColor> shown;
    shown.reserve(colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i)
        shown.push_back(colorOf(&rgb[3 * i], colors[i].alpha));
    return shown;
}

void paintChecker(QPainter& painter, const QRectF& area, double ratio) {
    // Whole device pixels, or the squares would be blurred and of different sizes.
    const double side = std::round(SquareSide * ratio) / ratio;
    QBrush brush(checkerTile());
    brush.setTransform(QTransform::fromScale(side, side));
    const QPointF origin = painter.brushOrigin();
    painter.setBrushOrigin(area.topLeft());
    painter.fillRect(area, brush);
    painter.setBrushOrigin(origin);
}

void paintSwatch(QPainter& painter, const QRectF& area, const QColor& shown, double ratio) {
    if (shown.alpha() == 255) {
        painter.fillRect(area, shown);
        return;
    }
    paintChecker(painter, area, ratio);
    painter.fillRect(area, shown);
    QColor opaque = shown;
    opaque.setAlpha(255);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(opaque);
    const std::array<QPointF, 3> half{area.topLeft(), area.topRight(), area.bottomLeft()};
    painter.drawPolygon(half.data(), 3);
    painter.restore();
}

QColor swatchOutline(const QPalette& palette, const QColor& ground) {
    return mixed(ground, palette.color(QPalette::Text), 0.45);
}

} // namespace Kestrel::UI
