#include <KxUI/values/TinySliderBar_p.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <QPainter>
#include <QPalette>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double LineContrast = 3.0; // WCAG 2.1, 1.4.11

// A pointer that stands on its tip on the line, or a triangle that points beyond an end of it; x runs
// along the line.
QPolygonF pointer(double at, double middle, int beyond) {
    constexpr double Half = TinySliderBar::PointerSize / 2.0;
    if (beyond != 0)
        return QPolygonF({{at - beyond * Half, middle - Half},
                          {at + beyond * Half, middle},
                          {at - beyond * Half, middle + Half}});
    return QPolygonF({{at - Half, middle - Half},
                      {at + Half, middle - Half},
                      {at + Half, middle},
                      {at, middle + Half},
                      {at - Half, middle}});
}

} // namespace

void TinySliderBar::paint(QPainter& painter, const QPalette& palette) const {
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    const QColor highlight = palette.color(QPalette::Highlight);
    const bool isVisible = palette.currentColorGroup() == QPalette::Disabled ||
                           contrastRatio(highlight, window) >= LineContrast;
    const QColor fill = isVisible ? highlight : text;
    const bool isHorizontal = orientation == Qt::Horizontal;
    const double start = isHorizontal ? area.left() : area.top();
    const double end = isHorizontal ? area.right() : area.bottom();
    const double middle = isHorizontal ? area.center().y() : area.center().x();
    // Whole device pixels: nothing is blurred, and filling them is several times cheaper.
    const double ratio = painter.device()->devicePixelRatioF();
    const auto crisp = [ratio](double x) { return std::round(x * ratio) / ratio; };
    const double top = crisp(middle - LineWidth / 2.0);
    const auto bar = [&](double a, double b, const QColor& color) {
        const double first = crisp(a);
        const double length = crisp(b) - first;
        painter.fillRect(isHorizontal ? QRectF(first, top, length, LineWidth)
                                      : QRectF(top, first, LineWidth, length),
                         color);
    };
    bar(start + Inset, end - Inset, mixed(window, text, 0.3));
    if (from != to)
        bar(std::min(from, to), std::max(from, to), fill);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isActive ? mixed(text, fill, 0.5) : text);
    QPolygonF shape = pointer(to, middle, beyond);
    if (!isHorizontal) {
        for (QPointF& corner : shape)
            corner = corner.transposed();
    }
    painter.drawConvexPolygon(shape);
    if (hasFocus) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(fill, 1.0));
        painter.drawRect(area.adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

} // namespace Kestrel::UI
