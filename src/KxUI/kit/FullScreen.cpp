#include <KxUI/kit/FullScreen.h>

#include <KxUI/kit/WindowSystem_p.h>

#include <QWidget>

namespace Kestrel::UI {

bool FullScreen::IsOn(const QWidget* widget) {
    return widget && widget->window()->windowState().testFlag(Qt::WindowFullScreen);
}

void FullScreen::Set(QWidget* widget, bool on, QWidget* mainWindow) {
    if (!widget || IsOn(widget) == on)
        return;
    QWidget* window = widget->window();
    Qt::WindowStates states = window->windowState();
    states.setFlag(Qt::WindowFullScreen, on);
    window->setWindowState(states);
    if (!on && mainWindow && window != mainWindow->window() && window->isVisible())
        raiseWindow(window);
}

void FullScreen::Toggle(QWidget* widget, QWidget* mainWindow) {
    Set(widget, !IsOn(widget), mainWindow);
}

} // namespace Kestrel::UI
