#pragma once

#include <KxUI/dock/DockWindow.h>

namespace Kestrel::UI {

/** What a window of the workspace is made of. */
class DockWindowPrivate {
public:
    static DockWindowPrivate& of(DockWindow& window) { return *window.d; }

    explicit DockWindowPrivate(DockMainWindow* workspace)
        : controller(workspace) {}

    DockMainWindow* controller;
    DockSplitter* rootSplitter = nullptr;
    bool floating = false;
};

} // namespace Kestrel::UI
