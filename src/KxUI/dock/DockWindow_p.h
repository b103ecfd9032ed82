#pragma once

#include <KxUI/dock/DockWindow.h>

namespace Kestrel::UI {

/** What a window of the workspace is made of. */
class DockWindowPrivate {
public:
    static DockWindowPrivate& of(DockWindow& window) { return *window.d; }

    /** The controller of the window that is `widget` or encloses it, null for none. */
    static DockMainWindow* workspaceAround(const QWidget* widget);

    explicit DockWindowPrivate(DockMainWindow* workspace)
        : controller(workspace) {}

    DockMainWindow* controller;
    DockSplitter* rootSplitter = nullptr;
    bool floating = false;
};

} // namespace Kestrel::UI
