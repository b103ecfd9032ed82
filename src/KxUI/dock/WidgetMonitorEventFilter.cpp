#include <KxUI/dock/WidgetMonitorEventFilter.h>

namespace Kestrel::UI {

WidgetMonitorEventFilter::WidgetMonitorEventFilter(QObject* parent)
    : QObject(parent) {}

WidgetMonitorEventFilter::~WidgetMonitorEventFilter() = default;

bool WidgetMonitorEventFilter::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Move:
        Q_EMIT moveEvent(watched, static_cast<QMoveEvent*>(event));
        return false;
    case QEvent::Resize:
        Q_EMIT resizeEvent(watched, static_cast<QResizeEvent*>(event));
        return false;
    case QEvent::Hide:
        Q_EMIT hideEvent(watched, static_cast<QHideEvent*>(event));
        return false;
    case QEvent::Close:
        Q_EMIT closeEvent(watched, static_cast<QCloseEvent*>(event));
        return false;
    default:
        return QObject::eventFilter(watched, event);
    }
}

} // namespace Kestrel::UI
