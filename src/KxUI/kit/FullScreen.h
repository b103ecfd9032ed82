#pragma once

#include <KxUI/Export.h>

class QWidget;

namespace Kestrel::UI {

/** Full screen of top-level windows. The maximized state underneath survives. Interface thread. */
class KXUI_EXPORT FullScreen {
public:
    /** Whether the window of `widget` is full screen. False for null. */
    static bool isOn(const QWidget* widget);

    /** Turns full screen of the window of `widget` on or off; nothing happens when it is so
        already. A window other than `mainWindow` that leaves full screen is raised above it again,
        since some window managers leave it behind. Null `widget` is ignored; `mainWindow` may be
        null. */
    static void set(QWidget* widget, bool on, QWidget* mainWindow);

    /** Turns full screen on where it is off, and off where it is on. */
    static void toggle(QWidget* widget, QWidget* mainWindow);
};

} // namespace Kestrel::UI
