#include <KxUI/kit/FloatingWindowStyle.h>

#include <KxUI/kit/WindowSystem_p.h>

#include <QWidget>

namespace Kestrel::UI {

void FloatingWindowStyle::apply(QWidget* window, QWidget* parent) {
    if (!window)
        return;
    const Qt::WindowFlags flags = Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                  Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                                  Qt::WindowCloseButtonHint;
    // Through setParent, so that a window made without a parent still floats above the given one.
    window->setParent(parent, flags);
    window->setAttribute(Qt::WA_QuitOnClose, false);
    presentAsNormal(window);
}

} // namespace Kestrel::UI
