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

/** Makes a window that was shown a page again, hidden and without a parent. Given its flags alone
    it would keep its native window, and take it into its pane. */
void endBeingWindow(QWidget* page, Qt::WindowFlags flags) {
    const QPointer<QWidget> alive(page);
    QWidget parent;
    page->setParent(&parent, flags);
    if (alive)
        page->setParent(nullptr);
}

PageDragScene sceneAt(const QPoint& global, const Dock* pane, bool splits) {
    PageDragScene scene;
    if (!pane)
        return scene;
    const QStackedWidget* stack = pane->stack();
    const DockTabBar* strip = pane->tabBar();
    scene.pane = pane;
    scene.paneSize = pane->size();
    scene.stack = stack->rect();
    scene.inStack = stack->mapFromGlobal(global);
    scene.tabs = tabRects(*strip);
    scene.inStrip = strip->mapFromGlobal(global);
    scene.splits = splits;
    return scene;
}

/** Of a pane that lost a page to another place. */
void tidy(Dock& source, bool hideSingleTabs) {
    DockPrivate& pane = DockPrivate::of(source);
    if (hideSingleTabs)
        pane.applySingleTabRule();
    else if (!pane.titleBar->isRevealed())
        source.setTitleVisible(true);
    pane.settleEmptied();
}

} // namespace

/** Who takes part in the end of a drag, while the session may have the next one already. */
struct DockDragSession::Landing {
    QPointer<QWidget> page;
    QPointer<QWidget> focus;
    QPointer<Dock> source;
    QPointer<Dock> target;
    QPointer<DockMainWindow> controller;

    PageDragAlive alive() const {
        return {page != nullptr, source != nullptr, controller != nullptr};
    }
    void execute(const PageDragCommands& commands, const PageLanding& plan);
    void execute(const PageDragCommand& command);
    void putBack(int index);
};

DockDragSession& DockDragSession::instance() {
    static DockDragSession session;
    return session;
}

bool DockDragSession::begin(DockTabBar* strip, QWidget* page, const QPoint& press,
                            const QPoint& global) {
    Dock* source = strip->dock();
    if (isActive() || !page || !source->controller())
        return false;

    const DockChange change(source->controller());
    PageDragStart start;
    start.press = press;
    start.index = source->stack()->indexOf(page);
    start.paneSize = source->size();
    start.expandedAlone = source->isExpanded() && source->count() == 1;
    m_drag.begin(start);
    m_strip = strip;
    m_source = source;
    m_controller = source->controller();
    m_page = page;
    m_focus = isInside(page, QApplication::focusWidget()) ? QApplication::focusWidget() : nullptr;
    m_pageFlags = page->windowFlags();
    m_pageActivates = !page->testAttribute(Qt::WA_ShowWithoutActivating);
    m_target = nullptr;
    watch(page);

    m_grabbed = grabMouse(strip);
    DockPrivate::of(*source).pages->take(page);
    page->setParent(nullptr);
    // What the page would be dropped on must not be hidden by an empty pane.
    if (start.expandedAlone)
        source->setExpanded(false);
    makeWindow(page, global - press);
    DockMainWindowPrivate::of(*m_controller).tellOfDrag(true);
    return true;
}

/** Ends the drag when the page dies or the application is left, and looks at all events. */
void DockDragSession::watch(QWidget* page) {
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
}

void DockDragSession::makeWindow(QWidget* page, const QPoint& place) {
    page->move(place);
    page->setWindowFlags(Qt::Tool | Qt::WindowStaysOnTopHint);
    page->setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowOpacity(page, 0.75);
    page->show();
}

void DockDragSession::moveTo(const QPoint& global) {
    execute(m_drag.move(alive(), global));
    aim(global);
}

void DockDragSession::aim(const QPoint& global) {
    if (!isActive() || !m_controller)
        return;
    Dock* pane = m_controller->findDockAt(global);
    execute(m_drag.aim(sceneAt(global, pane, m_controller->splitPanelsByDragging())), pane);
}

void DockDragSession::execute(const PageDragCommands& commands, Dock* entered) {
    const QPointer<Dock> pane(entered);
    for (const PageDragCommand& command : commands) {
        switch (command.kind) {
        case PageDragCommand::MovePage:
            if (m_page)
                m_page->move(command.place.topLeft());
            break;
        case PageDragCommand::LeavePane:
            if (const QPointer<Dock> left = std::exchange(m_target, nullptr))
                left->setHover(false);
            break;
        case PageDragCommand::EnterPane:
            m_target = pane;
            if (m_target)
                m_target->setHover(true);
            break;
        case PageDragCommand::ShowZone:
            if (m_hoverWidget)
                m_hoverWidget->setZone(command.zone);
            break;
        case PageDragCommand::TakeBack:
            cancel();
            break;
        case PageDragCommand::LetGo:
            letGo();
            break;
        default: // what belongs to a landing
            break;
        }
    }
}

/** The session is over and the page has its flags and opacity back. */
void DockDragSession::letGo() {
    setHoverWidget(nullptr);
    qApp->removeEventFilter(this);
    disconnect(qApp, nullptr, this, nullptr);
    if (m_page)
        disconnect(m_page, nullptr, this, nullptr);
    if (m_strip && m_grabbed && QWidget::mouseGrabber() == m_strip)
        m_strip->releaseMouse();
    if (m_controller)
        DockMainWindowPrivate::of(*m_controller).tellOfDrag(false);
    m_source = nullptr;
    if (m_page)
        setWindowOpacity(m_page, 1.0);
    if (m_page)
        endBeingWindow(m_page, m_pageFlags);
    if (m_page)
        m_page->setAttribute(Qt::WA_ShowWithoutActivating, !m_pageActivates);
}

void DockDragSession::drop(const QPoint& global, bool floating) {
    if (!isActive())
        return;
    if (!m_page || !m_controller || !m_source) {
        cancel();
        return;
    }
    const DockChange change(m_controller);
    aim(global);
    if (isActive())
        land(m_drag.drop(global, floating));
}

void DockDragSession::cancel() {
    if (!isActive())
        return;
    const DockChange change(m_controller);
    land(m_drag.cancel(m_page ? m_page->pos() : QPoint()));
}

void DockDragSession::land(const PageLanding& plan) {
    Landing landing{m_page, m_focus, m_source, m_target, m_controller};
    execute(m_drag.end());
    landing.execute(plan.letGo(landing.alive()), plan);
}

void DockDragSession::Landing::execute(const PageDragCommands& commands, const PageLanding& plan) {
    for (const PageDragCommand& command : commands) {
        if (command.kind == PageDragCommand::Dock) {
            const bool done = target && page && dockPage(page, target, command.zone, command.index);
            execute(plan.docked(done), plan);
        } else {
            execute(command);
        }
    }
}

void DockDragSession::Landing::execute(const PageDragCommand& command) {
    switch (command.kind) {
    case PageDragCommand::HidePage:
        if (page)
            page->hide();
        break;
    case PageDragCommand::Float:
        if (page && controller)
            floatPages(*controller, {page}, command.place);
        break;
    case PageDragCommand::PutBack:
        putBack(command.index);
        break;
    case PageDragCommand::Expand:
        if (source)
            source->setExpanded(true);
        break;
    case PageDragCommand::TidySource:
        if (source && controller)
            tidy(*source, controller->hideSingleTabs());
        break;
    case PageDragCommand::CloseSource:
        if (source)
            DockPrivate::of(*source).applySingleTabRule();
        if (source)
            DockPrivate::of(*source).settleEmptied();
        break;
    case PageDragCommand::GiveFocus:
        giveBackFocus(focus);
        break;
    default: // what belongs to the drag before
        break;
    }
}

void DockDragSession::Landing::putBack(int index) {
    if (source && page)
        source->insertWidget(std::min(index, source->count()), page);
    if (source && page)
        source->setCurrentWidget(page);
}

void DockDragSession::forget(const Dock* dock) {
    m_drag.forget(dock);
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
