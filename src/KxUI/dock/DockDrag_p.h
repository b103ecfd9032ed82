#pragma once

#include <KxUI/dock/PageDrag_p.h>

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

namespace Kestrel::UI {

class Dock;
class DockMainWindow;
class DockTabBar;
class HoverWidget;

/** Does what a PageDrag says, with real windows: one drag at a time in the process, from tear-off
    to drop. Holds nothing that may not die meanwhile: the drag then ends, and the page, if it still
    lives, goes back or floats. */
class DockDragSession : public QObject {
    Q_OBJECT

public:
    static DockDragSession& instance();

    /** Takes `page` out of the pane of `strip`; false, and nothing changed, without a workspace. */
    bool begin(DockTabBar* strip, QWidget* page, const QPoint& press, const QPoint& global);
    void moveTo(const QPoint& global);
    /** Ends at `global`: docks the page there, or floats it when `floating` or over no pane. */
    void drop(const QPoint& global, bool floating);
    /** Ends as if nothing had been dragged. */
    void cancel();
    /** To be called by those who die. */
    void forget(const Dock* dock);
    void forget(const DockMainWindow* controller);

    bool isActive() const { return m_drag.isActive(); }
    QWidget* page() const { return m_page; }
    Dock* source() const { return m_source; }
    Dock* target() const { return m_target; }
    DockDropZone zone() const { return m_drag.zone(); }
    int dropIndex() const { return m_drag.dropIndex(); }
    DockMainWindow* controller() const { return m_controller; }

    HoverWidget* hoverWidget() const;
    /** Takes the indicator over; the one before is deleted later. */
    void setHoverWidget(HoverWidget* widget);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Landing;

    PageDragAlive alive() const {
        return {m_page != nullptr, m_source != nullptr, m_controller != nullptr};
    }
    void watch(QWidget* page);
    void makeWindow(QWidget* page, const QPoint& place);
    void aim(const QPoint& global);
    void execute(const PageDragCommands& commands, Dock* entered = nullptr);
    void letGo();
    void land(const PageLanding& plan);

    PageDrag m_drag;
    QPointer<QWidget> m_page;
    QPointer<QWidget> m_focus; // inside the page, when it was torn off
    QPointer<DockTabBar> m_strip;
    QPointer<Dock> m_source;
    QPointer<DockMainWindow> m_controller;
    QPointer<Dock> m_target;
    QPointer<HoverWidget> m_hoverWidget;
    Qt::WindowFlags m_pageFlags;
    bool m_pageActivates = true;
    bool m_grabbed = false;
    bool m_deactivated = false;
};

} // namespace Kestrel::UI
