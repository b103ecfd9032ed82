#pragma once

#include <KxUI/dock/DockWindow.h>

#include <QPoint>

namespace Kestrel::UI {

/** What a window of the workspace is made of. */
class DockWindowPrivate {
public:
    static DockWindowPrivate& of(DockWindow& window) { return *window.d; }
    static const DockWindowPrivate& of(const DockWindow& window) { return *window.d; }

    /** The controller of the window that is `widget` or encloses it, null for none. */
    static DockMainWindow* workspaceAround(const QWidget* widget);

    explicit DockWindowPrivate(DockMainWindow* workspace)
        : controller(workspace) {}

    DockMainWindow* controller;
    DockSplitter* rootSplitter = nullptr;
    bool floating = false;
    /** From the frame's corner to the contents', as it was when the window was last in its normal
        state: a maximized one may have another frame. */
    QPoint frameOffset;
    /** Where a maximized window goes back to, as a layout said it: until the window is in its
        normal state its frame is not known. Null when the window was in that state. */
    QRect restoredNormal;
    /** When it was activated last, counted over all windows: activated windows come to the top. */
    quint64 activation = 0;

    void noteActivation();
    void follow(DockWindow& window, QEvent* event);
    void showWaitingLater(DockWindow* main);
};

} // namespace Kestrel::UI
