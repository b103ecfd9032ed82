#pragma once

#include <KxUI/Export.h>

#include <QList>
#include <QStringList>
#include <QWidget>

#include <memory>

class QMenu;
class QStackedWidget;

namespace Kestrel::UI {

class DockMainWindow;
class DockPrivate;
class DockTabBar;
class DockWindow;

/** A pane of the workspace: host widgets as tabs, with a strip of tabs and a pane menu.

    Lives in a DockSplitter of its controller's main window or of a floating window, and is deleted
    when it is closed. The pages (the host's widgets) are reparented to no parent when their pane
    dies, unless they have Qt::WA_DeleteOnClose and did not refuse to close. The object name of a
    pane is its id in layouts, that of a page is the page's id. Interface thread.
 */
class KXUI_EXPORT Dock : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool titleVisible READ titleVisible WRITE setTitleVisible NOTIFY titleVisibleChanged)
    Q_PROPERTY(bool expanded READ isExpanded WRITE setExpanded NOTIFY expandedChanged)
    Q_PROPERTY(int currentTab READ currentTab WRITE setCurrentTab NOTIFY currentTabChanged)

public:
    /** `controller` is borrowed and may be null; `parent` owns the pane until it is added to a
        splitter, and may be null. The workspace options are read here. */
    Dock(DockMainWindow* controller, DockWindow* parent);
    /** A pane of the workspace that `parent` lies in, or of none. */
    explicit Dock(QWidget* parent = nullptr);
    ~Dock() override;

    /** Adds a page as the last tab, or in the place of the placeholder of its name. A page that is
        here already is only made current, one of another pane leaves that. `remember` also lists
        it in `rememberedWidgets`. Null is no page, here and below: nothing happens. */
    void addWidget(QWidget* widget, bool makeCurrent, bool remember);

    /** Inserts a page before the tab at `index`; -1 appends. Moves it when it is here already. */
    void insertWidget(int index, QWidget* widget);

    /** Inserts a page before or after the tab at `point` (in coordinates of the strip), whichever
        side of its centre the point is on; appends where no tab is. */
    void insertWidget(const QPoint& point, QWidget* widget);

    /** `removeWidgetAndSetCurrentTab` with tab 0. */
    void removeWidget(QWidget* widget);

    /** Takes a page out, hidden and still a child of the stack; the caller gives it a new parent.
        The current page stays current; if it is the one removed, tab `tab` becomes current. */
    void removeWidgetAndSetCurrentTab(QWidget* widget, int tab);

    /** Puts a placeholder and a tab for a page that is shown elsewhere, and shows the page. Returns
        the placeholder, owned by the pane; null when the page is not in the workspace's layout. */
    QWidget* restorePlaceHolderForWidget(QWidget* widget);

    /** Makes a page current and reports it activated; null stands for the previously current tab.
        A widget that is not a page of this pane is ignored. */
    void setCurrentWidget(QWidget* widget);

    /** Makes tab `index` current and reports its page activated; other indexes are ignored. */
    void setCurrentTab(int index);

    /** The same as `nextTab`. */
    void cycleCurrentWidget();

    /** Moves a page into a floating window of its own, the size of this pane, its frame's top left
        at `global`. An emptied floating window of this pane closes. */
    void floatWidgetAt(QWidget* widget, const QPoint& global);

    /** Divides the room of this pane with a new pane, before (left of, above) or after it. Returns
        the new pane, null when this pane is in no splitter. */
    Dock* split(Qt::Orientation orientation, bool before);

    /** Gives this pane all room of its enclosing splitters, or their sizes back. */
    void setExpanded(bool expanded);
    bool isExpanded() const;

    /** Whether the window of this pane is full screen. */
    bool isFullscreenDock() const;

    /** Whether tabs and title buttons are shown; true at first. */
    bool titleVisible() const;

    /** Marks the pane as the target of a tab drag, shown by a line or by a HoverWidget. */
    void setHover(bool hover);

    /** Focuses the pane unless it is the active one. */
    void makeActive();

    /** Height of the first tab, 0 without tabs; pixels. */
    int tabBarHeight() const;

    /** Repaints the strip. */
    void updateTabs();

    /** The number of pages. */
    int count() const;
    /** The page at `index`, null outside. */
    QWidget* widget(int index) const;
    /** The page that is shown, null when there is none. */
    QWidget* currentWidget() const;
    /** Index of the current page, -1 when there is none. */
    int currentTab() const;
    /** The pages, in the order of their tabs; owned by the pane. */
    QStackedWidget* stack() const;
    /** The pane's menu, owned by the pane; a host may add to it. */
    QMenu* menu() const;
    /** The strip of tabs, owned by the pane. */
    DockTabBar* tabBar() const;
    /** The workspace, null once it is gone. */
    DockMainWindow* controller() const;
    /** Whether this is the only pane of its window. */
    bool singlePanel() const;

    /** The pages that `addWidget` was asked to remember and that still exist. */
    QList<QWidget*> rememberedWidgets() const;

    /** Ids of the pages that a layout put into this pane. */
    QStringList& paneIDs();
    const QStringList& paneIDs() const;

    /** The nearest enclosing DockWindow, null when there is none. */
    DockWindow* dockWindow() const;

    /** The pane that is `widget` or encloses it, null when there is none. */
    static Dock* dockForWidget(const QWidget* widget);

    /** Whether no splitter of several children encloses `widget`; true for null. */
    static bool isTopLevel(const QWidget* widget);

    QSize sizeHint() const override;

Q_SIGNALS:
    /** The mouse came over the pane or left it. */
    void mouseOver(bool over);
    /** The title is shown or hidden, by a call or because the mouse reveals it. */
    void titleVisibleChanged(bool visible);
    /** The pane has all room of its enclosing splitters, or no longer. */
    void expandedChanged(bool expanded);
    /** The current page stands at another index now; -1 without one. */
    void currentTabChanged(int index);

public Q_SLOTS:
    /** `split` after this pane, side by side. */
    void splitHorizontal();
    /** `split` after this pane, one above the other. */
    void splitVertical();
    /** Moves all pages into a floating window; they come to stand in reverse order. */
    void floatDock();
    /** Moves the current page into a floating window, where it stands on the desktop. */
    void floatActiveTab();
    /** `closeTab` of the current page. */
    void closeActiveTab();
    /** Closes every page but the current one. */
    void closeInactiveTabs();
    /** Closes the page at `index`; one that refuses stays. Other indexes are ignored. */
    void closeTab(int index);
    /** Takes a tab that has no page any more off the strip; hosts use `removeWidget`. */
    void removeTab(int tab);
    /** Shows page `tab` and reports it activated; what a click on the strip does. */
    void showTab(int tab);
    /** Turns the enclosing splitter by a quarter. */
    void transposeDock();
    /** Toggles full screen of the pane's window. */
    void fullscreenDock();
    /** Saves the layout to /tmp/layout.xml, for debugging. */
    void dumpLayout();
    /** Shows or hides the tabs and the title buttons. A hidden title leaves a thin bar that reveals
        it while the mouse rests there. */
    void setTitleVisible(bool visible);
    /** Reads titles and icons of the pages again. */
    void updateTitles();
    /** Goes to the next or the previous tab, round and round. */
    void nextTab();
    void prevTab();

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void enter(); // the mouse came in

    friend class DockPrivate;
    const std::unique_ptr<DockPrivate> d;
};

} // namespace Kestrel::UI
