#include <KxUI/kit/EscapeWatch_p.h>

#include <QCoreApplication>
#include <QKeyEvent>

#include <utility>

namespace Kestrel::UI {

EscapeWatch::EscapeWatch(std::function<void()> escaped)
    : m_escaped(std::move(escaped)) {}

void EscapeWatch::setActive(bool active) {
    if (active == m_active || !QCoreApplication::instance())
        return;
    m_active = active;
    if (active)
        QCoreApplication::instance()->installEventFilter(this);
    else
        QCoreApplication::instance()->removeEventFilter(this);
}

bool EscapeWatch::eventFilter(QObject*, QEvent* event) {
    const bool isOverride = event->type() == QEvent::ShortcutOverride;
    if (!isOverride && event->type() != QEvent::KeyPress)
        return false;
    if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
        return false;
    event->accept();
    if (!isOverride) {
        const std::function<void()> escaped = m_escaped; // outlives the watch
        escaped();
    }
    return true;
}

} // namespace Kestrel::UI
