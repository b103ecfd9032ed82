#include <KxUI/dock/DockWindow.h>

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/kit/FloatingWindowStyle.h>

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
    , m_controller(controller)
    , m_rootSplitter(new DockSplitter(Qt::Vertical)) {
    setCentralWidget(m_rootSplitter);
    // The controller is not constructed yet when it is this window; only its address counts.
    if (static_cast<void*>(controller) != static_cast<void*>(this))
        FloatingWindowStyle::Apply(this, parent);
    if (controller && static_cast<void*>(controller) != static_cast<void*>(this))
        controller->m_satellites.insert(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral(" "));
}

DockWindow::~DockWindow() {
    disconnectController();
}

void DockWindow::addWidget(Dock* dock) {
    m_rootSplitter->addWidget(dock);
    m_rootSplitter->updateDocks();
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
    collectPanes(m_rootSplitter, result);
    return result;
}

void DockWindow::disconnectController() {
    if (m_controller && static_cast<void*>(m_controller) != static_cast<void*>(this)) {
        m_controller->removeFloatingDock(this);
        m_controller->m_satellites.remove(this);
    }
    m_controller = nullptr;
}

bool DockWindow::event(QEvent* event) {
    snapEvent(event);
    return QMainWindow::event(event);
}

void DockWindow::closeEvent(QCloseEvent* event) {
    const QPointer<DockWindow> alive(this);
    // A page that is being dragged comes home first, to be closed with the others.
    DockDragSession& drag = DockDragSession::instance();
    if (drag.source() && drag.source()->dockWindow() == this)
        drag.cancel();
    QVector<QPointer<Dock>> docks;
    const auto all = panes();
    for (Dock* dock : all)
        docks.append(dock);
    for (const QPointer<Dock>& dock : qAsConst(docks)) {
        if (dock)
            dock->close();
    }
    if (alive && m_controller)
        m_controller->removeFloatingDock(this);
    event->accept();
}

} // namespace Kestrel::UI
