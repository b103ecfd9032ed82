#pragma once

#include <QRectF>
#include <QSizeF>

namespace Kestrel::Workbench {

/** The largest rectangle of the shape of `content` that fits centred into `area`; empty when either
    is. */
QRectF fittedRect(const QSizeF& content, const QRectF& area);

} // namespace Kestrel::Workbench
