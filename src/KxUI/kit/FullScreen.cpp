#include <KxUI/kit/FullScreen.h>

#include <KxUI/kit/WindowSystem_p.h>

#include <QWidget>

namespace Kestrel::UI {

bool FullScreen::isOn(const QWidget* widget) {
    return widget && widget->window()->windowState().testFlag(Qt::WindowFullScreen);
}

void FullScreen::set(QWidget* widget, bool on, QWidget* mainWindow) {
    if (!widget || isOn(widget) == on)
        return;
    QWidget* window = widget->window();
    Qt::WindowStates states = window->windowState();
    states.setFlag(Qt::WindowFullScreen, on);
    window->setWindowState(states);
    if (!on && mainWindow && window != mainWindow->window() && window->isVisible())
        raiseWindow(window);
}

void FullScreen::toggle(QWidget* widget, QWidget* mainWindow) {
    set(widget, !isOn(widget), mainWindow);
}

} // namespace Kestrel::UI
