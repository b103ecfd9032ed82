#pragma once

#include <QPoint>
#include <QRectF>
#include <QSize>
#include <QSizeF>

namespace Kestrel::Workbench {

/** The largest rectangle of the shape of `content` that fits centred into `area`; empty when either
    is. */
QRectF fittedRect(const QSizeF& content, const QRectF& area);

/** The pixel of a picture, shown in `target`, that lies at `position`; (-1, -1) without one. */
QPoint pixelAt(const QPointF& position, const QRectF& target, const QSize& picture);

} // namespace Kestrel::Workbench
