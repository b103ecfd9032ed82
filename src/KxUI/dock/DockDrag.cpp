#include <KxUI/dock/DockDrag_p.h>

#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/dock/DockMoves_p.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/dock/DockTitleBar.h>
#include <KxUI/dock/DockWindow.h>
#include <KxUI/dock/Dock_p.h>
#include <KxUI/dock/DropZones_p.h>
#include <KxUI/dock/FocusKeeper_p.h>
#include <KxUI/dock/HoverWidget.h>
#include <KxUI/kit/WindowSystem_p.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStackedWidget>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

namespace {

/** To a widget that had the focus before its page was dragged: the window it came to was not active
    while the page was a window of its own. */
void giveBackFocus(QWidget* focus) {
    if (!focus || !focus->isVisible())
        return;
    focus->window()->activateWindow();
    focus->setFocus(Qt::OtherFocusReason);
}

/** Makes a window that was shown a page again, hidden and without a parent. Given its flags alone it
    would keep its native window, and take it into its pane. */
void endBeingWindow(QWidget* page, Qt::WindowFlags flags) {
    const QPointer<QWidget> alive(page);
    QWidget parent;
    page->setParent(&parent, flags);
    if (alive)
        page->setParent(nullptr);
}

} // namespace

DockDragSession& DockDragSession::instance() {
    static DockDragSession session;
    return session;
}

bool DockDragSession::begin(DockTabBar* strip, QWidget* page, const QPoint& press,
                            const QPoint& global) {
    Dock* source = strip->dock();
    if (m_active || !page || !source->controller())
        return false;

    const DockChange change(source->controller());
    m_active = true;
    m_strip = strip;
    m_source = source;
    m_sourceIndex = source->stack()->indexOf(page);
    m_sourceSize = source->size();
    m_sourceWasExpanded = source->isExpanded() && source->count() == 1;
    m_controller = source->controller();
    m_page = page;
    m_focus = isInside(page, QApplication::focusWidget()) ? QApplication::focusWidget() : nullptr;
    m_press = press;
    m_pageFlags = page->windowFlags();
    m_pageActivates = !page->testAttribute(Qt::WA_ShowWithoutActivating);
    m_target = nullptr;
    m_zone = DropCentre;
    m_dropIndex = -1;

    connect(page, &QObject::destroyed, this, [this] {
        m_page = nullptr;
        cancel();
    });
    m_deactivated = false;
    connect(qApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) { m_deactivated = state != Qt::ApplicationActive; });
    // Later, since the state also changes for a moment while our own windows come and go.
    connect(
        qApp, &QGuiApplication::applicationStateChanged, this,
        [this] {
            if (m_deactivated)
                cancel();
        },
        Qt::QueuedConnection);
    qApp->installEventFilter(this);

    m_grabbed = grabMouse(strip);
    DockPrivate::of(*source).pages->take(page);
    page->setParent(nullptr);
    // What the page would be dropped on must not be hidden by an empty pane.
    if (m_sourceWasExpanded)
        source->setExpanded(false);
    page->move(global - press);
    page->setWindowFlags(Qt::Tool | Qt::WindowStaysOnTopHint);
    page->setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowOpacity(page, 0.75);
    page->show();
    DockMainWindowPrivate::of(*m_controller).tellOfDrag(true);
    return true;
}

void DockDragSession::moveTo(const QPoint& global) {
    if (!m_active)
        return;
    if (!m_page || !m_controller || !m_source) {
        cancel();
        return;
    }
    m_page->move(global - m_press);
    aim(global);
}

void DockDragSession::aim(const QPoint& global) {
    Dock* target = m_controller->findDockAt(global);
    DockDropZone zone = DropCentre;
    if (target && m_controller->splitPanelsByDragging()) {
        const QStackedWidget* stack = target->stack();
        zone = dropZoneAt(stack->mapFromGlobal(global), stack->rect(), target->size());
    }
    setTarget(target, zone);
    m_dropIndex = -1;
    if (target) {
        const DockTabBar* strip = target->tabBar();
        m_dropIndex = dropIndexAt(strip->mapFromGlobal(global), tabRects(*strip));
    }
}

void DockDragSession::setTarget(Dock* target, DockDropZone zone) {
    m_zone = zone;
    if (m_target != target) {
        if (m_target)
            m_target->setHover(false);
        m_target = target;
        if (m_target)
            m_target->setHover(true);
    }
    if (m_hoverWidget)
        m_hoverWidget->setZone(zone);
}

QWidget* DockDragSession::release() {
    setTarget(nullptr, DropCentre);
    setHoverWidget(nullptr);
    qApp->removeEventFilter(this);
    disconnect(qApp, nullptr, this, nullptr);
    if (m_page)
        disconnect(m_page, nullptr, this, nullptr);
    if (m_strip && m_grabbed && QWidget::mouseGrabber() == m_strip)
        m_strip->releaseMouse();
    m_active = false;
    if (m_controller)
        DockMainWindowPrivate::of(*m_controller).tellOfDrag(false);
    m_source = nullptr;
    if (m_page)
        setWindowOpacity(m_page, 1.0);
    if (m_page)
        endBeingWindow(m_page, m_pageFlags);
    if (m_page)
        m_page->setAttribute(Qt::WA_ShowWithoutActivating, !m_pageActivates);
    return m_page;
}

void DockDragSession::drop(const QPoint& global, bool floating) {
    if (!m_active)
        return;
    if (!m_page || !m_controller || !m_source) {
        cancel();
        return;
    }
    const DockChange change(m_controller);
    aim(global);
    const QPointer<Dock> target = m_target;
    const QPointer<Dock> source = m_source;
    const QPointer<DockMainWindow> controller = m_controller;
    const QPointer<QWidget> focus = m_focus;
    const DockDropZone zone = m_zone;
    const int index = zone == DropCentre ? m_dropIndex : -1;
    const QPointer<QWidget> page = release();

    const bool docked = target && !floating && page && dockPage(page, target, zone, index);
    if (!docked && page && controller)
        floatPages(*controller, {page}, QRect(global - m_press, m_sourceSize));
    if (source && controller) {
        DockPrivate& pane = DockPrivate::of(*source);
        if (controller->hideSingleTabs())
            pane.applySingleTabRule();
        else if (!pane.titleBar->isRevealed())
            source->setTitleVisible(true);
        pane.settleEmptied();
    }
    giveBackFocus(focus);
}

void DockDragSession::cancel() {
    if (!m_active)
        return;
    const DockChange change(m_controller);
    const QPointer<Dock> source = m_source;
    const QPointer<DockMainWindow> controller = m_controller;
    const QPointer<QWidget> focus = m_focus;
    const QPoint at = m_page ? m_page->pos() : QPoint();
    const QPointer<QWidget> page = release();
    if (page)
        page->hide();
    if (source && page) {
        source->insertWidget(std::min(m_sourceIndex, source->count()), page);
        source->setCurrentWidget(page);
        if (m_sourceWasExpanded)
            source->setExpanded(true);
    } else if (source) {
        DockPrivate::of(*source).applySingleTabRule();
        DockPrivate::of(*source).settleEmptied();
    } else if (page && controller) {
        floatPages(*controller, {page}, QRect(at, m_sourceSize));
    }
    giveBackFocus(focus);
}

void DockDragSession::forget(const Dock* dock) {
    if (m_target == dock) {
        m_target = nullptr;
        setHoverWidget(nullptr);
    }
    if (m_source == dock) {
        m_source = nullptr;
        cancel();
    }
}

void DockDragSession::forget(const DockMainWindow* controller) {
    if (m_controller == controller) {
        m_controller = nullptr;
        cancel();
    }
}

HoverWidget* DockDragSession::hoverWidget() const {
    return m_hoverWidget;
}

void DockDragSession::setHoverWidget(HoverWidget* widget) {
    if (m_hoverWidget) {
        m_hoverWidget->hide();
        m_hoverWidget->deleteLater();
    }
    m_hoverWidget = widget;
}

bool DockDragSession::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
            break;
        event->accept();
        if (event->type() == QEvent::KeyPress)
            cancel();
        return true;
    case QEvent::MouseMove:
        // Without the button down, the release went to somebody else.
        if (!static_cast<QMouseEvent*>(event)->buttons().testFlag(Qt::LeftButton))
            cancel();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace Kestrel::UI
