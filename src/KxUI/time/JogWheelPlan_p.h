#pragma once

#include <QRect>

#include <optional>

namespace Kestrel::UI {

/** Where the parts of a jog wheel are painted. */
struct JogWheelPlan {
    QRectF wheel;
    QRectF dimple; ///< goes round with the value, so that a turn of the wheel can be seen

    static JogWheelPlan of(const QRect& widget, int value);

    /** There is no room for a wheel. */
    bool isEmpty() const { return wheel.isEmpty(); }
};

/** The value that a key goes to from `value`; nothing for a key that is none of the wheel's. */
std::optional<double> jogWheelKey(int key, int value, int minimum, int maximum);

} // namespace Kestrel::UI
