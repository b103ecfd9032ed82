#pragma once

namespace Kestrel::UI {

/** How the widgets of this room say that an edit failed: QApplication::beep(). Tests put a counter
    in its place. */
extern void (*beep)();

} // namespace Kestrel::UI
