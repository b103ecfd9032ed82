#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/SnappableWindow.h>

#include <QList>
#include <QMainWindow>

#include <memory>

namespace Kestrel::UI {

class Dock;
class DockMainWindow;
class DockSplitter;
class DockWindowPrivate;

/** A window of the workspace: a tree of splitters with panes as its leaves. Floating windows are
    tool windows above the main window; every window deletes itself when it is closed. Interface
    thread. */
class KXUI_EXPORT DockWindow : public QMainWindow, public SnappableWindow {
    Q_OBJECT

public:
    /** `controller` is borrowed; it is the window itself for the main window, and null for a window
        of no workspace. `parent` owns the window, and may be null. */
    DockWindow(DockMainWindow* controller, QWidget* parent);
    /** A window of the workspace that `parent` lies in, or of none. */
    explicit DockWindow(QWidget* parent = nullptr);
    ~DockWindow() override;

    /** Adds a pane at the end of the root splitter; null adds nothing. */
    void addWidget(Dock* dock);

    /** The root of the tree, owned by the window; never null. */
    DockSplitter* rootSplitter() const;

    /** The workspace, null after `disconnectController`. */
    DockMainWindow* controller() const;

    /** Whether the window is one of the controller's floating windows. */
    bool isFloating() const;

    /** The first pane, depth-first, that has the pane id `id`, or one beginning with it when not
        `exact`. Null when there is none, and for an empty id. */
    Dock* findDockWithPaneID(const QString& id, bool exact) const;

    /** The panes of this window, depth-first in the order of the splitters. */
    QList<Dock*> panes() const;

    /** Leaves the workspace: nothing is reported to it any more. */
    void disconnectController();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    friend class DockWindowPrivate;
    const std::unique_ptr<DockWindowPrivate> d;
};

} // namespace Kestrel::UI
