#pragma once

#include <QRectF>

#include <cmath>

/** \file
    Logical coordinates that fall on device pixels, so that thin lines are sharp at any scale. */

namespace Kestrel::UI {

/** Where a line of one device pixel that covers `x` has its middle. `ratio` is the device pixel
    ratio. */
inline double crisp(double x, double ratio) {
    return (std::floor(x * ratio) + 0.5) / ratio;
}

/** The nearest place between two device pixels. */
inline double onPixels(double x, double ratio) {
    return std::round(x * ratio) / ratio;
}

/** The rectangle with each edge at the nearest place between two device pixels. */
inline QRectF rectOnPixels(const QRectF& rect, double ratio) {
    return {QPointF(onPixels(rect.left(), ratio), onPixels(rect.top(), ratio)),
            QPointF(onPixels(rect.right(), ratio), onPixels(rect.bottom(), ratio))};
}

} // namespace Kestrel::UI
