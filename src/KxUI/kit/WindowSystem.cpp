#include <KxUI/kit/WindowSystem_p.h>

#include <KxUI/kit/QtCompat_p.h>

#include <QEvent>
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

/** Says what a window is whenever it gets a new one from the window system. */
class NormalWindow : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        QWindow* window = event->type() == QEvent::WinIdChange
                              ? static_cast<QWidget*>(watched)->windowHandle()
                              : nullptr;
        if (window)
            setNormalWindowType(window);
        return false;
    }
};

} // namespace

void presentAsNormal(QWidget* window) {
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        window->installEventFilter(new NormalWindow(window));
}

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
