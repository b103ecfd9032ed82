#pragma once

#include <KxUI/dock/DockAnnouncer_p.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockPlaces_p.h>

#include <QHash>
#include <QIcon>
#include <QPair>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QStyle>

class QAction;

namespace Kestrel::UI {

class DockArrangeMenu;
struct Layout;

/** What a workspace is made of. */
class DockMainWindowPrivate {
public:
    static DockMainWindowPrivate& of(DockMainWindow& workspace) { return *workspace.d; }

    explicit DockMainWindowPrivate(DockMainWindow* workspace);
    ~DockMainWindowPrivate();

    /** The main window and then the floating ones. */
    static QList<DockWindow*> windows(const DockMainWindow& workspace);

    void addFloatingDock(DockWindow* window);
    void removeFloatingDock(DockWindow* window);
    /** Focuses the next pane that can have the focus, `step` panes on; returns it. */
    Dock* walkFocus(int step);
    void rebuildLayoutIds();
    /** Of pages that a layout cannot tell apart, and therefore brings back as one. */
    static void warnOfNamesakes(const Layout& layout);
    /** A drag of a page began or ended. */
    void tellOfDrag(bool active);
    /** Shows the floating windows that wait. */
    void showWaiting();
    /** The same when the main window has just been shown, which stays the active one. */
    void showWaitingAbove();
    /** What a device says, or why it cannot be used (line 0), or where reading stopped. */
    DockLayoutError read(QIODevice* device, Layout& layout) const;
    DockArrangeMenu* arrangeMenu();
    /** The style's icon, one for all panes: each icon that a style makes fills the pixmap cache
        anew. */
    QIcon sharedIcon(QStyle::StandardPixmap which);
    QAction* newAction(const QString& text, const char* id, const QString& shortcut,
                       void (DockMainWindow::*slot)());

    DockMainWindow* const q;
    DockAnnouncer announcer;
    DockPlaces places;
    QList<DockWindow*> floatingWindows;
    QVector<QPointer<DockWindow>> waiting; // floating ones, for the main window to be shown
    QStringList layoutIds;
    bool hideSingleTabs = false;
    bool hasPanelMenu = true;
    bool splitPanelsByDragging = false;
    bool highlightCurrentTab = false;
    bool tabsAreClosable = false;
    bool emptiedPanesClose = false;
    QString focusPage;
    QSet<Dock*> docks;            // every pane of this controller, in the tree or not
    QSet<DockWindow*> satellites; // every other window of it, listed or not
    bool restoring = false;

private:
    QPointer<DockArrangeMenu> m_arrangeMenu;
    QHash<QPair<const QStyle*, int>, QIcon> m_sharedIcons;
};

} // namespace Kestrel::UI
