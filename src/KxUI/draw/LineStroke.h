#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <Qt>

namespace Kestrel::UI {

/** How lines of a DrawingContext look. A plain value; a colour alone makes a solid line of one
    logical pixel. */
struct KXUI_EXPORT LineStroke {
    LineStroke() = default;

    /** The members in their order. */
    LineStroke(const QColor& lineColor, qreal lineWidth = 1,
               Qt::PenStyle lineStyle = Qt::SolidLine) noexcept
        : color(lineColor)
        , width(lineWidth)
        , style(lineStyle) {}

    QColor color;                       ///< an invalid one draws black
    qreal width = 1;                    ///< logical pixels; 0 is one device pixel
    Qt::PenStyle style = Qt::SolidLine; ///< dashes are multiples of the width
};

} // namespace Kestrel::UI
