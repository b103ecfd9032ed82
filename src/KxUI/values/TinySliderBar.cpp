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

// A triangle that stands on its tip on the line, or that points beyond an end of it.
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
    const bool isHorizontal = orientation == Qt::Horizontal;
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    const QColor line = mixed(window, text, 0.3);
    const QColor fill =
        firstVisible({palette.color(QPalette::Highlight), text}, {window},
                     palette.currentColorGroup() == QPalette::Disabled ? 1.0 : LineContrast);
    painter.save();
    if (!isHorizontal) // x runs along the line
        painter.setTransform(QTransform(0.0, 1.0, 1.0, 0.0, 0.0, 0.0), true);
    const double start = isHorizontal ? area.left() : area.top();
    const double end = isHorizontal ? area.right() : area.bottom();
    const double middle = isHorizontal ? area.center().y() : area.center().x();
    const double across = isHorizontal ? area.height() : area.width();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto bar = [&](double a, double b, const QColor& color) {
        painter.setBrush(color);
        painter.drawRoundedRect(QRectF(a, middle - LineWidth / 2.0, b - a, LineWidth),
                                LineWidth / 2.0, LineWidth / 2.0);
    };
    bar(start + Inset, end - Inset, line);
    if (from != to)
        bar(std::min(from, to), std::max(from, to), fill);
    painter.setBrush(isActive ? mixed(text, fill, 0.5) : text);
    painter.drawPolygon(pointer(to, middle, beyond));
    if (hasFocus) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(fill, 1.0));
        painter.drawRect(
            QRectF(start + 0.5, middle - across / 2.0 + 0.5, end - start - 1.0, across - 1.0));
    }
    painter.restore();
}

} // namespace Kestrel::UI
