#pragma once

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockAnnouncer_p.h>
#include <KxUI/dock/DockPages_p.h>

#include <QPointer>

#include <functional>

namespace Kestrel::UI {

class DockMenu;
class DockTitleBar;
class TitleBarButton;
struct PaneMetrics;

/** What a pane is made of. */
class DockPrivate {
public:
    using News = DockAnnouncer::News;

    static DockPrivate& of(Dock& dock) { return *dock.d; }
    static const DockPrivate& of(const Dock& dock) { return *dock.d; }

    DockPrivate(Dock* dock, DockMainWindow* workspace);
    void createParts();
    /** Before the pane goes: its pages leave it, and the host is told. */
    void tearDown();

    // Pages
    void insert(int index, QWidget* page);
    void moveOrInsert(int index, QWidget* page);
    void setCurrent(int index);
    bool closePage(QWidget* page);
    bool closePages();
    void releasePages();
    void focusCurrent();

    // The pane in its window
    bool parentCanBeClosed() const;
    /** After pages left: without any, the pane gives up the room of others and its own window. */
    void settleEmptied();
    /** With the option, a pane of one tab hides its title; holds off while a tab of it is being
        dragged. */
    void applySingleTabRule();
    void setTitleVisible(bool visible);
    /** Whether the title is shown for longer than the mouse is on it. */
    bool titleStays() const;
    void expandOuter(bool expanded);
    Dock* splitOff(Qt::Orientation orientation, bool before);
    void showDropTarget(bool hover);
    bool hasFocusInside() const;
    void tell(News news, QWidget* page);
    /** Emits a signal of the pane when the change under way is over. */
    void announce(std::function<void()> emission);
    void tellCurrentTab();

    // Layout
    PaneMetrics metrics() const;
    void updateSizeLimits();
    void layOut();
    /** Lays out once control is back in the event loop, however often it is called before. */
    void layOutLater();

    Dock* const q;
    DockMainWindow* controller; // null once it is gone
    DockPages* pages = nullptr;
    DockTitleBar* titleBar = nullptr;
    DockTabBar* tabBar = nullptr;
    TitleBarButton* closeButton = nullptr;
    TitleBarButton* floatButton = nullptr;
    TitleBarButton* menuButton = nullptr;
    QPointer<DockMenu> menu;
    QVector<QPointer<QWidget>> remembered;
    QVector<QPointer<QWidget>> refused; // to close, when the pane was closed last
    QStringList paneIds;
    int titleHeight = 0;
    int toldTab = -1; // the index that was told last
    bool titleVisible = true;
    bool hover = false;
    bool expanded = false;
    bool layoutIsDue = false;

private:
    void createTitleButtons();
    void closeTabOrPane();
    void pageLeft(QWidget* page, DockPages::Leaving how);
    void pageShown();
};

} // namespace Kestrel::UI
