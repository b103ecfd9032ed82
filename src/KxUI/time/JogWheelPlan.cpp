#include <KxUI/time/JogWheelPlan_p.h>

#include <Qt>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double ValuesATurn = 40; // how far a whole turn of the drawn wheel counts
constexpr double Turn = 6.283185307179586;

QRectF around(const QPointF& middle, qreal radius) {
    return {middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius};
}

} // namespace

JogWheelPlan JogWheelPlan::of(const QRect& widget, int value) {
    const qreal radius = (std::min(widget.width(), widget.height()) - 2) / 2.0;
    if (radius <= 1)
        return {};
    const QPointF middle = QRectF(widget).center();
    const double angle = Turn * std::fmod(value, ValuesATurn) / ValuesATurn;
    const QPointF towards(std::sin(angle), -std::cos(angle));
    return {around(middle, radius - 0.5), around(middle + towards * (radius * 0.58), radius * 0.2)};
}

std::optional<double> jogWheelKey(int key, int value, int minimum, int maximum) {
    const double from = value;
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return from - 1;
    case Qt::Key_Right:
    case Qt::Key_Up:
        return from + 1;
    case Qt::Key_PageDown:
        return from - 10;
    case Qt::Key_PageUp:
        return from + 10;
    case Qt::Key_Home:
        return minimum;
    case Qt::Key_End:
        return maximum;
    default:
        return std::nullopt;
    }
}

} // namespace Kestrel::UI
