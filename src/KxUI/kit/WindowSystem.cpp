#include <KxUI/kit/WindowSystem_p.h>

#include <QGuiApplication>
#include <QRegion>
#include <QWidget>

namespace Kestrel::UI {

namespace {

/** Whether windows are placed by a desktop at all. */
bool hasDesktop() {
    const QString name = QGuiApplication::platformName();
    return name != QLatin1String("offscreen") && name != QLatin1String("minimal");
}

/** Whether a client may take the pointer and shape or fade its own windows. */
bool clientRulesWindows() {
    return hasDesktop() && !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

} // namespace

void raiseWindow(QWidget* window) {
    if (hasDesktop())
        window->raise();
}

void bringToFront(QWidget* window) {
    raiseWindow(window);
    window->activateWindow();
}

void setWindowOpacity(QWidget* window, double opacity) {
    if (clientRulesWindows())
        window->setWindowOpacity(opacity);
}

void setWindowShape(QWidget* window, const QRegion& mask) {
    if (clientRulesWindows())
        window->setMask(mask);
}

bool grabMouse(QWidget* widget) {
    if (!clientRulesWindows())
        return false;
    widget->grabMouse();
    return true;
}

} // namespace Kestrel::UI
