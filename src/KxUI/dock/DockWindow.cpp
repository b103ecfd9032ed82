#include <KxUI/dock/DockWindow_p.h>

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/Dock_p.h>
#include <KxUI/kit/FloatingWindowStyle.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QCloseEvent>
#include <QPointer>

#include <algorithm>

namespace Kestrel::UI {

namespace {

void collectPanes(const QSplitter* splitter, QList<Dock*>& panes) {
    for (int i = 0; i < splitter->count(); ++i) {
        QWidget* child = splitter->widget(i);
        if (auto* dock = qobject_cast<Dock*>(child))
            panes.append(dock);
        else if (const auto* branch = qobject_cast<DockSplitter*>(child))
            collectPanes(branch, panes);
    }
}

} // namespace

DockWindow::DockWindow(DockMainWindow* controller, QWidget* parent)
    : QMainWindow(parent)
    , SnappableWindow(this)
    , d(std::make_unique<DockWindowPrivate>(controller)) {
    d->rootSplitter = new DockSplitter(Qt::Vertical);
    setCentralWidget(d->rootSplitter);
    // The controller is not constructed yet when it is this window; only its address counts.
    if (static_cast<void*>(controller) != static_cast<void*>(this)) {
        FloatingWindowStyle::apply(this, parent);
        if (controller)
            DockMainWindowPrivate::of(*controller).satellites.insert(this);
    }
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral(" "));
}

DockWindow::DockWindow(QWidget* parent)
    : DockWindow(DockWindowPrivate::workspaceAround(parent), parent) {}

DockMainWindow* DockWindowPrivate::workspaceAround(const QWidget* widget) {
    for (; widget; widget = widget->parentWidget()) {
        if (const auto* window = qobject_cast<const DockWindow*>(widget))
            return window->controller();
    }
    return nullptr;
}

DockWindow::~DockWindow() {
    if (d->controller && static_cast<void*>(d->controller) != static_cast<void*>(this)) {
        const DockChange change(d->controller);
        // Those who hear of the pages may destroy what owns this window.
        setParent(nullptr);
        const auto all = panes();
        for (Dock* dock : all)
            DockPrivate::of(*dock).releasePages();
    }
    disconnectController();
}

DockSplitter* DockWindow::rootSplitter() const {
    return d->rootSplitter;
}

DockMainWindow* DockWindow::controller() const {
    return d->controller;
}

bool DockWindow::isFloating() const {
    return d->floating;
}

void DockWindow::addWidget(Dock* dock) {
    KXUI_INTERFACE_THREAD(this);
    if (!dock)
        return;
    d->rootSplitter->addWidget(dock);
    d->rootSplitter->updateDocks();
}

Dock* DockWindow::findDockWithPaneID(const QString& id, bool exact) const {
    if (id.isEmpty())
        return nullptr;
    const auto docks = panes();
    for (Dock* dock : docks) {
        const QStringList& ids = dock->paneIDs();
        const bool found =
            exact ? ids.contains(id) : std::any_of(ids.begin(), ids.end(), [&](const QString& own) {
                return own.startsWith(id);
            });
        if (found)
            return dock;
    }
    return nullptr;
}

QList<Dock*> DockWindow::panes() const {
    QList<Dock*> result;
    collectPanes(d->rootSplitter, result);
    return result;
}

void DockWindow::disconnectController() {
    if (d->controller && static_cast<void*>(d->controller) != static_cast<void*>(this)) {
        DockMainWindowPrivate& workspace = DockMainWindowPrivate::of(*d->controller);
        workspace.removeFloatingDock(this);
        workspace.satellites.remove(this);
    }
    d->controller = nullptr;
}

void DockWindowPrivate::noteActivation() {
    static quint64 count = 0;
    activation = ++count;
}

/** Once the desktop shows the main window, too. */
void DockWindowPrivate::showWaitingLater(DockWindow* main) {
    QMetaObject::invokeMethod(
        main,
        [this] {
            if (controller)
                DockMainWindowPrivate::of(*controller).showWaitingAbove();
        },
        Qt::QueuedConnection);
}

/** Looks at where the window is, how large, and whether it is active. */
void DockWindowPrivate::follow(DockWindow& window, QEvent* event) {
    constexpr Qt::WindowStates large = Qt::WindowMaximized | Qt::WindowFullScreen;
    switch (event->type()) {
    case QEvent::WindowActivate:
        noteActivation();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (window.isVisible() && !(window.windowState() & large)) {
            frameOffset = window.geometry().topLeft() - window.pos();
            restoredNormal = QRect();
        }
        break;
    case QEvent::WindowStateChange:
        // A window that has not been moved yet is about to lose the frame that it has.
        if (window.isVisible() && frameOffset.isNull() &&
            !(static_cast<QWindowStateChangeEvent*>(event)->oldState() & large))
            frameOffset = window.geometry().topLeft() - window.pos();
        break;
    case QEvent::Show:
        if (static_cast<void*>(controller) == &window)
            showWaitingLater(&window);
        break;
    default:
        break;
    }
}

bool DockWindow::event(QEvent* event) {
    d->follow(*this, event);
    snapEvent(event);
    return QMainWindow::event(event);
}

void DockWindow::closeEvent(QCloseEvent* event) {
    const DockChange change(d->controller);
    const QPointer<DockWindow> alive(this);
    event->accept();
    // A page that is being dragged comes home first, to be closed with the others.
    DockDragSession& drag = DockDragSession::instance();
    if (drag.source() && drag.source()->dockWindow() == this)
        drag.cancel();
    QVector<QPointer<Dock>> docks;
    const auto all = alive ? panes() : QList<Dock*>();
    for (Dock* dock : all)
        docks.append(dock);
    for (const QPointer<Dock>& dock : qAsConst(docks)) {
        if (dock)
            dock->close();
        // What did not close leaves all the same, while everything is still there to tell of it.
        if (alive && dock && testAttribute(Qt::WA_DeleteOnClose) && this != d->controller)
            DockPrivate::of(*dock).releasePages();
    }
    if (alive && d->controller)
        DockMainWindowPrivate::of(*d->controller).removeFloatingDock(this);
}

} // namespace Kestrel::UI
