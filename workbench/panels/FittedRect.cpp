#include "panels/FittedRect.h"

#include <QRect>

#include <cmath>

namespace Kestrel::Workbench {

QRectF fittedRect(const QSizeF& content, const QRectF& area) {
    if (content.isEmpty() || area.isEmpty())
        return {};
    const QSizeF size = content.scaled(area.size(), Qt::KeepAspectRatio);
    QRectF fitted(QPointF(), size);
    fitted.moveCenter(area.center());
    return fitted;
}

QPoint pixelAt(const QPointF& position, const QRectF& target, const QSize& picture) {
    if (target.isEmpty() || picture.isEmpty())
        return {-1, -1};
    const QPoint pixel(
        int(std::floor((position.x() - target.x()) / target.width() * picture.width())),
        int(std::floor((position.y() - target.y()) / target.height() * picture.height())));
    return QRect(QPoint(), picture).contains(pixel) ? pixel : QPoint(-1, -1);
}

} // namespace Kestrel::Workbench
