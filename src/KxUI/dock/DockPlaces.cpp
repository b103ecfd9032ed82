#include <KxUI/dock/DockPlaces_p.h>

#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/Dock_p.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

DockPlaces::DockPlaces(DockMainWindow& workspace)
    : m_workspace(workspace) {}

DockPlaces::~DockPlaces() = default;

void DockPlaces::pageCame(Dock* dock, const QWidget* page) {
    if (!page->objectName().isEmpty() && dock->dockWindow() == &m_workspace)
        m_homes[page->objectName()].docked = dock;
}

void DockPlaces::pageLeft(Dock* dock, const QWidget* page) {
    if (!page->objectName().isEmpty())
        m_homes[page->objectName()].pane = dock;
    if (m_workspace.emptiedPanesClose() && dock->count() == 0) {
        m_emptied.append(dock);
        settleLater();
    }
}

void DockPlaces::dragEnded() {
    if (!m_emptied.isEmpty())
        settleLater();
}

void DockPlaces::settleLater() {
    QMetaObject::invokeMethod(this, &DockPlaces::settle, Qt::QueuedConnection);
}

void DockPlaces::settle() {
    // What is dragged may come back.
    if (m_workspace.isDragActive() || DockMainWindowPrivate::of(m_workspace).restoring)
        return;
    const auto emptied = std::exchange(m_emptied, {});
    const DockChange change(&m_workspace);
    const QPointer<DockPlaces> alive(this);
    for (const QPointer<Dock>& dock : emptied) {
        if (alive && dock)
            closeEmpty(dock);
    }
}

void DockPlaces::closeEmpty(Dock* dock) {
    const bool isLast = dock->dockWindow() == &m_workspace && dock->singlePanel();
    if (dock->count() > 0 || isLast || !m_workspace.docks().contains(dock))
        return;
    const QPointer<Dock> alive(dock);
    if (m_workspace.activeDock() == dock)
        m_workspace.nextDock();
    if (alive)
        alive->close();
}

void DockPlaces::paneCloses(Dock* dock) {
    endExpansion(dock->window(), nullptr);
    // What stands in the splitter may be a branch that this pane is the last of.
    QWidget* child = dock;
    auto* splitter = qobject_cast<DockSplitter*>(dock->parentWidget());
    while (splitter && splitter->count() == 1) {
        child = splitter;
        splitter = qobject_cast<DockSplitter*>(splitter->parentWidget());
    }
    if (!splitter)
        return;
    for (Home& home : m_homes) {
        if (home.docked != dock)
            continue;
        home.id = dock->objectName();
        home.splitter = splitter;
        home.index = splitter->indexOf(child);
        home.sizes = splitter->realSizes();
        home.policy = child->sizePolicy();
    }
}

Dock* DockPlaces::paneFor(const QWidget& page) {
    const auto all = m_workspace.docks();
    const Home home = m_homes.value(page.objectName());
    for (Dock* dock : {home.pane.data(), home.docked.data()}) {
        if (dock && all.contains(dock))
            return dock;
    }
    // Hosts make panes of their own, and may destroy the workspace meanwhile.
    DockMainWindow& workspace = m_workspace;
    const QPointer<DockMainWindow> alive(&workspace);
    Dock* reopened = reopen(home);
    if (reopened || !alive)
        return reopened;
    Dock* active = m_workspace.activeDock();
    if (active && all.contains(active))
        return active;
    const auto here = m_workspace.panes();
    if (!here.isEmpty())
        return here.first();
    const QPointer<Dock> fresh(workspace.createDock());
    if (!alive || !fresh)
        return nullptr;
    workspace.addWidget(fresh);
    return fresh;
}

/** A new pane where one was that has closed; null when the place is gone, too. */
Dock* DockPlaces::reopen(const Home& home) {
    if (!home.splitter || home.splitter->window() != &m_workspace)
        return nullptr;
    Dock* fresh = m_workspace.createDock();
    if (!fresh || !home.splitter)
        return nullptr;
    fresh->setObjectName(home.id);
    fresh->setSizePolicy(home.policy);
    home.splitter->insertWidget(std::min(home.index, home.splitter->count()), fresh);
    if (home.sizes.size() == home.splitter->count())
        home.splitter->setSizes(home.sizes);
    return fresh;
}

/** Gives the panes of a window their room again, if another than `except` has all of it. */
void DockPlaces::endExpansion(const QWidget* window, const Dock* except) {
    const auto all = m_workspace.docks();
    for (Dock* dock : all) {
        if (dock != except && dock->window() == window)
            dock->setExpanded(false);
    }
}

void DockPlaces::giveRoom(Dock& dock) {
    endExpansion(dock.window(), &dock);
    QWidget* child = &dock;
    for (QWidget* parent = dock.parentWidget(); parent; parent = parent->parentWidget()) {
        auto* splitter = qobject_cast<DockSplitter*>(parent);
        QList<int> sizes = splitter ? splitter->sizes() : QList<int>();
        const int index = splitter ? splitter->indexOf(child) : -1;
        if (index >= 0 && sizes.at(index) == 0) {
            const int length =
                splitter->orientation() == Qt::Horizontal ? splitter->width() : splitter->height();
            sizes[index] = std::max(1, length / int(sizes.size()));
            splitter->setSizes(sizes);
        }
        child = parent;
    }
}

} // namespace Kestrel::UI
