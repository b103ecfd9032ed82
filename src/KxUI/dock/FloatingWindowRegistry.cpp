#include <KxUI/dock/FloatingWindowRegistry.h>

#include <KxUI/kit/InterfaceThread_p.h>

#include <QWidget>

namespace Kestrel::UI {

class FloatingWindowRegistry::Private {
public:
    QList<QWidget*> windows;
};

FloatingWindowRegistry::FloatingWindowRegistry(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>()) {}

FloatingWindowRegistry::~FloatingWindowRegistry() = default;

QList<QWidget*> FloatingWindowRegistry::windows() const {
    return d->windows;
}

void FloatingWindowRegistry::addWindow(QWidget* window) {
    KXUI_INTERFACE_THREAD(this);
    if (!window || d->windows.contains(window))
        return;
    d->windows.append(window);
    connect(window, &QObject::destroyed, this, &FloatingWindowRegistry::windowDestroyed);
}

void FloatingWindowRegistry::removeWindow(QWidget* window) {
    KXUI_INTERFACE_THREAD(this);
    if (d->windows.removeAll(window) > 0)
        disconnect(window, &QObject::destroyed, this, &FloatingWindowRegistry::windowDestroyed);
}

void FloatingWindowRegistry::windowDestroyed(QObject* window) {
    // Only the address is left to compare; the widget in it is gone.
    d->windows.removeAll(static_cast<QWidget*>(window));
}

} // namespace Kestrel::UI
