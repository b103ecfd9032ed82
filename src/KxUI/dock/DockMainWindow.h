#pragma once

#include <KxUI/Export.h>
#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockLayoutError.h>
#include <KxUI/dock/DockWindow.h>

#include <QList>
#include <QString>

#include <memory>

class QAction;
class QIODevice;

namespace Kestrel::UI {

class DockMainWindowPrivate;
class DockPlaceHolder;

/** The controller of a workspace and its main window: owns the floating windows, holds the options
    that panes read when they are created, tells the host which page came, went or became active,
    moves the focus, and saves and restores the arrangement.

    The host derives from it and creates its pages in `createPage`. Set the options before panes are
    made. Interface thread. */
class KXUI_EXPORT DockMainWindow : public DockWindow {
    Q_OBJECT
    Q_PROPERTY(bool hideSingleTabs READ hideSingleTabs WRITE setHideSingleTabs NOTIFY
                   hideSingleTabsChanged)
    Q_PROPERTY(bool hasPanelMenu READ hasPanelMenu WRITE setHasPanelMenu NOTIFY hasPanelMenuChanged)
    Q_PROPERTY(bool splitPanelsByDragging READ splitPanelsByDragging WRITE setSplitPanelsByDragging
                   NOTIFY splitPanelsByDraggingChanged)
    Q_PROPERTY(bool highlightCurrentTab READ highlightCurrentTab WRITE setHighlightCurrentTab NOTIFY
                   highlightCurrentTabChanged)
    Q_PROPERTY(bool tabsAreClosable READ tabsAreClosable WRITE setTabsAreClosable NOTIFY
                   tabsAreClosableChanged)
    Q_PROPERTY(QString focusPage READ getFocusPage WRITE setFocusPage NOTIFY focusPageChanged)
    Q_PROPERTY(bool emptiedPanesClose READ emptiedPanesClose WRITE setEmptiedPanesClose NOTIFY
                   emptiedPanesCloseChanged)
    Q_PROPERTY(bool dragActive READ isDragActive NOTIFY dragActiveChanged)

public:
    /** An empty workspace: a window without panes. `parent` owns the window; without one, it
        deletes itself when it is closed. */
    explicit DockMainWindow(QWidget* parent = nullptr);
    ~DockMainWindow() override;

    /** Whether a pane of one tab hides its title. Initially false. */
    bool hideSingleTabs() const;
    void setHideSingleTabs(bool hide);

    /** Whether panes have a button for their menu. Initially true. */
    bool hasPanelMenu() const;
    void setHasPanelMenu(bool has);

    /** Whether dropping a tab near an edge of a pane splits it. Initially false. */
    bool splitPanelsByDragging() const;
    void setSplitPanelsByDragging(bool split);

    /** Whether the current tab of the pane with the focus, or under the mouse, is coloured.
        Initially false. */
    bool highlightCurrentTab() const;
    void setHighlightCurrentTab(bool highlight);

    /** Whether each tab has a close button, instead of a close and a float button per pane.
        Initially false. */
    bool tabsAreClosable() const;
    void setTabsAreClosable(bool closable);

    /** Whether a pane closes when its last page leaves it, unless it is the last one of the main
        window, and whether the close button of a pane without pages closes the pane. A pane that
        was made without pages stays. The pane closes from the event loop, or when the layout is
        saved. Initially false. */
    bool emptiedPanesClose() const;
    void setEmptiedPanesClose(bool close);

    /** Whether a page of this workspace is being dragged: it is in no pane then, and a window of
        its own. See dragActiveChanged(). */
    bool isDragActive() const;

    /** Brings a page to the front and gives it the focus: its tab becomes current, its pane has
        room again, and its window comes up if the workspace is shown.

        A page that is in no pane goes where one of its object name was last: into the pane that it
        left, or a new one in the place of that pane when it has closed. Where there is no such
        place any more, it goes to the pane with the focus. Null shows nothing. */
    void showPage(QWidget* page);

    /** New actions, children of this window, for the host's menus: "Next Pane"
        (Ctrl+Alt+Backquote), "Previous Pane" (Ctrl+Shift+Alt+Backquote), "Next Tab" (Ctrl+Shift+]),
        "Previous Tab" (Ctrl+Shift+[). */
    QAction* nextDockAction();
    QAction* prevDockAction();
    QAction* nextTabAction();
    QAction* prevTabAction();

    /** Makes a floating window; hosts override it for windows of their own. */
    virtual DockWindow* createWindow();
    /** Makes a pane without a parent; hosts override it for panes of their own. */
    virtual Dock* createDock();
    /** Makes the page that a layout names `id`, which may be changed. Null drops the page. A page
        that exists may be returned; it moves. Here: a placeholder. */
    virtual QWidget* createPage(QString& id);

    /** A new floating window. With a page, it gets a pane holding it, and is shown. Null when the
        host makes no window. */
    DockWindow* addNewFloatingDock(QWidget* widget);

    /** The floating windows, in the order in which they came. */
    QList<DockWindow*> floatingWindows() const;
    /** Makes these the floating windows; null and this window are left out. Windows that are no
        longer listed stay as they are. */
    void setFloatingWindows(const QList<DockWindow*>& windows);

    /** Replaces the tree of the main window; the old one is deleted later. Null is ignored. */
    void setRootSplitter(DockSplitter* splitter);

    /** The pane with the focus, null when there is none. */
    Dock* activeDock() const;
    /** The current page of that pane. */
    QWidget* activeTab() const;
    /** The pane at a point of the desktop: the first floating window with a widget there decides,
        then the main window. */
    Dock* findDockAt(const QPoint& global) const;
    /** Focuses the pane under the mouse, or this window over none; returns the pane. */
    Dock* focusWidgetUnderCursor();
    /** Every pane: those of the main window depth-first, then those of the floating windows. */
    QList<Dock*> docks() const;
    /** The pane of that object name, or the one that holds the widget of that object name. When
        there is neither:
        - with `exact` and `usePaneIDs`, the pane that has the pane id `name`;
        - without `exact`, the first pane that has a page whose object name, or with `usePaneIDs` a
          pane id that, begins with `name` cut off after its last ".".
        Null when nothing is found. */
    Dock* findDockByName(const QString& name, bool exact, bool usePaneIDs) const;
    /** Every pane that holds a page whose object name begins with `prefix`. */
    QList<Dock*> getDocksWithPrefix(const QString& prefix) const;
    /** Every placeholder in a pane, in the order of docks(). */
    QList<DockPlaceHolder*> placeHolders() const;

    /** Whether a widget of that object name was in the workspace when the layout was last saved or
        restored. */
    bool isInLayout(const QString& name) const;

    /** Writes the arrangement as an XML document to an open device. The pane with `focusWidget`
        (null: the application's focus widget) is marked as the one with the focus. Returns whether
        the device took everything; nothing is written to null or to one that is not open. Warns of
        pages with the same object name, or without one: the layout can bring back only one. To
        keep the arrangement of a session, call it in closeEvent() before the one of this class,
        which takes the pages out. */
    bool saveLayout(QIODevice* device, QWidget* focusWidget);

    /** Replaces the arrangement by that of a document on an open device. `useAvailableGeometry`
        makes the main window fill its screen. When the document cannot be read to its end, what
        could be read replaces the arrangement, the old tree stays hidden and parentless, a box
        tells where the reader stopped, and the result is false. Null and a device that is not open
        change nothing; the box says so. See `restoreWholeLayout`. */
    bool restoreLayout(QIODevice* device, bool useAvailableGeometry);

    /** Replaces the arrangement by that of a document, or changes nothing at all.

        The whole document is read and checked first; a refused one leaves the workspace as it is
        and says why in `error` (may be null). Pages of the workspace that the document names are
        moved, not created again; only others are asked of `createPage`. Pages that it does not name
        are taken out alive: hidden, without a parent, and reported removed. The focus stays in its
        page. Placeholders are not pages: the page that one stands for is asked of `createPage`
        again. Null and a device that is not open are refused.
        A hidden workspace stays hidden; its floating windows come up when it is shown. */
    bool restoreWholeLayout(QIODevice* device, bool useAvailableGeometry,
                            DockLayoutError* error = nullptr);

    /** Whether a document begins as a layout of the known version; nothing else is checked. A
        random-access device is put back to where it was. False for null. */
    static bool IsLayoutValid(QIODevice* device);

    /** The page that had the focus in the restored layout; the host gives it back when it likes. */
    void setFocusPage(const QString& id);
    QString getFocusPage() const;

    /** Tells of a page; called by panes. Null is passed on. */
    void emitWidgetAdded(Dock* dock, QWidget* widget) { Q_EMIT widgetAdded(dock, widget); }
    void emitWidgetRemoved(Dock* dock, QWidget* widget) { Q_EMIT widgetRemoved(dock, widget); }
    void emitWidgetActivated(Dock* dock, QWidget* widget) { Q_EMIT widgetActivated(dock, widget); }
    /** Passes a name on to whom it concerns; called by the host. */
    void emitUpdateNovaScriptName(const QString& name) { Q_EMIT updateNovaScriptName(name); }

Q_SIGNALS:
    // The signals about pages come when the change that they report is complete: a slot may destroy
    // any page, pane or window, this one too. The exception is the page or pane that is being
    // destroyed itself.

    /** A page came into a pane, or went to another place in it. */
    void widgetAdded(Kestrel::UI::Dock* dock, QWidget* widget);
    /** A page left a pane, whichever way: taken out, closed, floated, dragged, moved to another
        pane, given another parent, or destroyed. Of one that is in its destructor only the address
        and the object name may be used. A page that `restoreWholeLayout` moves has not left. */
    void widgetRemoved(Kestrel::UI::Dock* dock, QWidget* widget);
    /** A page became the one to work in: its tab was chosen, or the focus came into its pane (with
        `highlightCurrentTab`; then from the event loop). */
    void widgetActivated(Kestrel::UI::Dock* dock, QWidget* widget);
    /** A page of this workspace left its pane to be dragged, or its drag has ended, wherever it is
        now. */
    void dragActiveChanged(bool active);
    /** The host passed on the name of its script; see emitUpdateNovaScriptName(). */
    void updateNovaScriptName(QString name);
    /** An option was changed. */
    void hideSingleTabsChanged(bool on);
    void hasPanelMenuChanged(bool on);
    void splitPanelsByDraggingChanged(bool on);
    void highlightCurrentTabChanged(bool on);
    void tabsAreClosableChanged(bool on);
    void emptiedPanesCloseChanged(bool on);
    /** Another page had the focus in a layout that was restored, or was set. */
    void focusPageChanged(const QString& id);

public Q_SLOTS:
    /** Focuses the next pane that has a page, round and round. Nothing without a focused pane. */
    void nextDock();
    /** nextDock(), the other way round. */
    void prevDock();
    /** Goes to the next tab, after the last one to the first of the next pane. */
    void nextTab();
    /** Goes to the previous tab, before the first one to the last of the previous pane. */
    void prevTab();

protected:
    void closeEvent(QCloseEvent* event) override;

private Q_SLOTS:
    void focusChanged(QWidget* old, QWidget* now);

private:
    friend class DockMainWindowPrivate;
    const std::unique_ptr<DockMainWindowPrivate> d;
};

} // namespace Kestrel::UI
