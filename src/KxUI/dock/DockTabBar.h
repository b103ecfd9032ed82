#pragma once

#include <KxUI/Export.h>

#include <QTabBar>

#include <memory>

namespace Kestrel::UI {

class Dock;
class DockTabBarPrivate;
class DockTitleBar;

/** The strip of tabs of a pane. A tab dragged along the strip changes its place; dragged out of the
    title bar it leaves the pane and follows the mouse until it is dropped. Control with a press
    floats the tab. Interface thread. */
class KXUI_EXPORT DockTabBar : public QTabBar {
    Q_OBJECT

public:
    /** A strip in `titleBar`, which owns it, for the pages of `dock`. Panes make their own. */
    DockTabBar(Dock* dock, DockTitleBar* titleBar);
    /** A strip of no pane: tabs, and nothing more. */
    explicit DockTabBar(QWidget* parent = nullptr);
    ~DockTabBar() override;

    /** The pane whose pages the tabs stand for, null for none. */
    Dock* dock() const;

public Q_SLOTS:
    /** Tells whether the mouse is over the pane, which colours the current tab when the workspace
        highlights it. */
    void onMouseOverDock(bool on);

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    friend class DockTabBarPrivate;
    const std::unique_ptr<DockTabBarPrivate> d;
};

} // namespace Kestrel::UI
