#pragma once

#include <KxUI/dock/DockDropZone.h>

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVarLengthArray>
#include <QVector>

namespace Kestrel::UI {

/** What a page is torn off from. */
struct PageDragStart {
    QPoint press; ///< in the strip, and so where the mouse holds the page's window
    int index = 0;
    QSize paneSize;
    bool expandedAlone = false; ///< the only page of a pane that fills its window
};

/** Who is still there: a host may delete any of them at any time. */
struct PageDragAlive {
    bool page = true;
    bool source = true;
    bool workspace = true;
};

/** What is under the mouse. Each point is in the coordinates of what it is compared with. */
struct PageDragScene {
    const void* pane = nullptr; ///< which one, never followed; null over none
    QSize paneSize;
    QRect stack;
    QPoint inStack;
    QVector<QRect> tabs;
    QPoint inStrip;
    bool splits = false; ///< whether a drop at an edge makes a new pane
};

/** One thing to do. */
struct PageDragCommand {
    enum Kind {
        MovePage,    ///< its window to `place`
        LeavePane,   ///< the one that was entered is aimed at no more
        EnterPane,   ///< that of the scene is aimed at
        ShowZone,    ///< on the indicator, if there is one
        LetGo,       ///< the page is no window any more, and nobody is dragging
        TakeBack,    ///< cancel the drag
        HidePage,    ///< until it is somewhere again
        Dock,        ///< into the pane aimed at: `zone`, `index`; then PageLanding::docked()
        Float,       ///< in a window of its own at `place`
        PutBack,     ///< at `index` of its source, current
        Expand,      ///< the source fills its window again
        TidySource,  ///< a pane that lost its page for good: its title, its end
        CloseSource, ///< a pane whose page died: whether its tabs show, its end
        GiveFocus    ///< back to what had it inside the page
    };
    Kind kind;
    QRect place = {};
    DockDropZone zone = DropCentre;
    int index = -1;
};

/** What to do, in this order. */
using PageDragCommands = QVarLengthArray<PageDragCommand, 4>;

/** How a drag ends, from the page let go of to its new place. A value of its own: whoever is told
    of the end may begin the next drag. */
class PageLanding {
public:
    /** The page was let go of. */
    PageDragCommands letGo(const PageDragAlive& alive) const;
    /** Answers PageDragCommand::Dock: whether the page is in the pane. */
    PageDragCommands docked(bool done) const;

private:
    friend class PageDrag;

    enum class To { Pane, Window, Source };

    PageDragCommands home(const PageDragAlive& alive) const;

    To m_to = To::Source;
    PageDragStart m_start;
    QPoint m_position; ///< of the window that the page may come to
    DockDropZone m_zone = DropCentre;
    int m_index = -1;
};

/** The drag of a page that left its strip. Each input moves it on and answers with commands; it
    does nothing itself. */
class PageDrag {
public:
    bool isActive() const { return m_active; }
    const void* pane() const { return m_pane; } ///< the one aimed at, null for none
    DockDropZone zone() const { return m_zone; }
    int dropIndex() const { return m_index; } ///< among the tabs of the pane; -1 for the end
    const PageDragStart& start() const { return m_start; }

    void begin(const PageDragStart& start);
    /** The mouse is at `global`. aim() is next, unless the drag ended. */
    PageDragCommands move(const PageDragAlive& alive, const QPoint& global) const;
    /** What is there, before the move or the drop is over. */
    PageDragCommands aim(const PageDragScene& scene);
    /** The button was released at `global`: where to land, docked into the pane aimed at, else, or
        if `floating`, in a window. */
    PageLanding drop(const QPoint& global, bool floating) const;
    /** Taken back while the page's window is at `position`: where to land. */
    PageLanding cancel(const QPoint& position) const;
    /** The end of what drop() or cancel() began. */
    PageDragCommands end();
    /** A pane is gone. */
    void forget(const void* pane);

private:
    bool m_active = false;
    PageDragStart m_start;
    const void* m_pane = nullptr;
    DockDropZone m_zone = DropCentre;
    int m_index = -1;
};

} // namespace Kestrel::UI
