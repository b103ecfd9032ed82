#include "panels/FittedRect.h"

namespace Kestrel::Workbench {

QRectF fittedRect(const QSizeF& content, const QRectF& area) {
    if (content.isEmpty() || area.isEmpty())
        return {};
    const QSizeF size = content.scaled(area.size(), Qt::KeepAspectRatio);
    QRectF fitted(QPointF(), size);
    fitted.moveCenter(area.center());
    return fitted;
}

} // namespace Kestrel::Workbench
