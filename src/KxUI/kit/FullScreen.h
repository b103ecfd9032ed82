#pragma once

#include <KxUI/Export.h>

class QWidget;

namespace Kestrel::UI {

/** Full screen of top-level windows. The maximized state underneath survives. GUI thread. */
class KXUI_EXPORT FullScreen {
public:
    /** Whether the window of `widget` is full screen. False for null. */
    static bool IsOn(const QWidget* widget);

    /** Turns full screen of the window of `widget` on or off; nothing happens when it is so
       already. A window other than `mainWindow` that leaves full screen is raised above it again,
       since some window managers leave it behind. Null `widget` is ignored; `mainWindow` may be
       null. */
    static void Set(QWidget* widget, bool on, QWidget* mainWindow);

    /** `Set` to what it is not. */
    static void Toggle(QWidget* widget, QWidget* mainWindow);
};

} // namespace Kestrel::UI
