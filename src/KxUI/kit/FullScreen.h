#pragma once

#include <KxUI/Export.h>

class QWidget;

namespace Kestrel::UI {

/** Switches top-level windows to full screen and back. A window that was maximized before is
    maximized again afterwards. Interface thread. */
class KXUI_EXPORT FullScreen {
public:
    /** Whether the window of `widget` is full screen. False for null. */
    static bool isOn(const QWidget* widget);

    /** Turns full screen of the window of `widget` on or off, or does nothing where that is its
        state already. A window that leaves full screen is raised, since some window managers leave
        it behind `mainWindow`, unless it is that window itself. Null `widget` is ignored;
        `mainWindow` may be null. */
    static void set(QWidget* widget, bool on, QWidget* mainWindow);

    /** Turns full screen on where it is off, and off where it is on. */
    static void toggle(QWidget* widget, QWidget* mainWindow);
};

} // namespace Kestrel::UI
