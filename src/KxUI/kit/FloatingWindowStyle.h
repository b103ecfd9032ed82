#pragma once

#include <KxUI/Export.h>

class QWidget;

namespace Kestrel::UI {

/** How the floating windows of the library present themselves to the window manager. */
class KXUI_EXPORT FloatingWindowStyle {
public:
    /** Makes `window` a tool window above `parent`: framed, with title, resizable, closable, able
        to go full screen, and never the window whose closing ends the application. To be called
        before the window is shown. `parent` may be null; a null `window` is ignored. Interface
        thread. */
    static void apply(QWidget* window, QWidget* parent);
};

} // namespace Kestrel::UI
