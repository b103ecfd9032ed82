#pragma once

#include <QRectF>

class QPainter;
class QPalette;

namespace Kestrel::UI {

/** The picture of a tiny slider: a line, a part of which is filled, and a pointer. */
struct TinySliderBar {
    static constexpr double PointerSize = 7.0;
    static constexpr double LineWidth = 3.0;
    static constexpr double Inset = 1.0; ///< of the line at its ends

    QRectF area; ///< in logical pixels, as all of it
    Qt::Orientation orientation = Qt::Horizontal;
    double from = 0.0; ///< where the filled part begins, along the line
    double to = 0.0;   ///< where it ends and the pointer stands
    int beyond = 0;    ///< -1 or 1: the value lies beyond that end of the line
    bool isActive = false;
    bool hasFocus = false;

    void paint(QPainter& painter, const QPalette& palette) const;
};

} // namespace Kestrel::UI
