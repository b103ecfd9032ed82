#include <KxUI/dock/FloatingWindowRegistry.h>

#include <QWidget>

namespace Kestrel::UI {

FloatingWindowRegistry::FloatingWindowRegistry(QObject* parent)
    : QObject(parent) {}

FloatingWindowRegistry::~FloatingWindowRegistry() = default;

void FloatingWindowRegistry::addWindow(QWidget* window) {
    if (!window || m_windows.contains(window))
        return;
    m_windows.append(window);
    connect(window, &QObject::destroyed, this, &FloatingWindowRegistry::windowDestroyed);
}

void FloatingWindowRegistry::removeWindow(QWidget* window) {
    if (m_windows.removeAll(window) > 0)
        disconnect(window, &QObject::destroyed, this, &FloatingWindowRegistry::windowDestroyed);
}

void FloatingWindowRegistry::windowDestroyed(QObject* window) {
    // Only the address is left to compare; the widget in it is gone.
    m_windows.removeAll(static_cast<QWidget*>(window));
}

} // namespace Kestrel::UI
