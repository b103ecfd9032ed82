#include <KxUI/dock/DockLayoutBuilder_p.h>

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/dock/DockPlaceHolder.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/dock/DockWindow_p.h>
#include <KxUI/dock/Dock_p.h>
#include <KxUI/dock/FocusKeeper_p.h>
#include <KxUI/kit/FullScreen.h>
#include <KxUI/kit/WindowPlacement.h>

#include <QDebug>
#include <QGuiApplication>
#include <QMetaProperty>
#include <QScreen>

#include <algorithm>

namespace Kestrel::UI {

namespace {

constexpr const char* StateProperty = "layoutState";

LayoutPane capturePane(const Dock& dock, const QWidget* focus) {
    LayoutPane pane;
    pane.id = dock.objectName();
    pane.hideTitles = !DockPrivate::of(dock).titleStays();
    if (const QWidget* current = dock.currentWidget()) {
        pane.hasActivePage = true;
        pane.activePage = current->objectName();
        pane.hasFocus = isInside(&dock, focus);
    }
    for (int i = 0; i < dock.count(); ++i) {
        const QWidget* page = dock.widget(i);
        pane.pages.append({page->objectName(), page->property(StateProperty).toString()});
    }
    return pane;
}

LayoutSplitter captureSplitter(const DockSplitter& splitter, const QWidget* focus) {
    if (splitter.count() == 1) {
        if (const auto* only = qobject_cast<const DockSplitter*>(splitter.widget(0)))
            return captureSplitter(*only, focus);
    }
    LayoutSplitter result;
    result.orientation = splitter.orientation();
    const QList<int> sizes = splitter.realSizes();
    for (int i = 0; i < splitter.count(); ++i) {
        const QWidget* child = splitter.widget(i);
        const QSizePolicy policy = child->sizePolicy();
        const bool isHorizontal = splitter.orientation() == Qt::Horizontal;
        result.splits.append(
            {sizes.value(i), isHorizontal ? policy.horizontalStretch() : policy.verticalStretch()});
        if (const auto* branch = qobject_cast<const DockSplitter*>(child))
            result.children.push_back({captureSplitter(*branch, focus)});
        else if (const auto* dock = qobject_cast<const Dock*>(child))
            result.children.push_back({capturePane(*dock, focus)});
        else
            result.children.push_back({LayoutStranger()});
    }
    return result;
}

LayoutWindow captureWindow(const DockWindow& window, const QWidget* focus) {
    LayoutWindow result;
    result.place.rect = QRect(window.pos(), window.size());
    result.place.maximized = window.isMaximized();
    const DockWindowPrivate& its = DockWindowPrivate::of(window);
    if (result.place.maximized && !its.restoredNormal.isNull())
        result.place.normal = its.restoredNormal;
    else if (result.place.maximized && window.normalGeometry().isValid())
        result.place.normal = window.normalGeometry().translated(-its.frameOffset);
    result.place.fullScreen = FullScreen::isOn(&window);
    result.place.screen = std::max(0, int(QGuiApplication::screens().indexOf(window.screen())));
    result.splitters.push_back(captureSplitter(*window.rootSplitter(), focus));
    return result;
}

/** The windows, the one that was active longest ago first. */
QList<DockWindow*> inStackingOrder(QList<DockWindow*> windows) {
    std::stable_sort(windows.begin(), windows.end(), [](DockWindow* a, DockWindow* b) {
        return DockWindowPrivate::of(*a).activation < DockWindowPrivate::of(*b).activation;
    });
    return windows;
}

void collectPageIds(const LayoutSplitter& splitter, QStringList& ids) {
    for (const LayoutNode& child : splitter.children) {
        if (const auto* branch = std::get_if<LayoutSplitter>(&child.value)) {
            collectPageIds(*branch, ids);
        } else if (const auto* pane = std::get_if<LayoutPane>(&child.value)) {
            for (const LayoutPage& page : pane->pages)
                ids.append(page.id);
        }
    }
}

bool logsRestore() {
    static const bool logs = qEnvironmentVariableIsSet("KESTREL_WORKSPACE_DEBUG");
    return logs;
}

/** What the window manager adds to the main window's size, seen when it was first restored. */
QSize& mainFrameSize() {
    static QSize size(0, 0);
    return size;
}

QSize frameSize(const QWidget& window) {
    return window.frameGeometry().size() - window.size();
}

} // namespace

Layout DockLayoutBuilder::capture(const DockMainWindow& workspace, const QWidget* focus) {
    Layout layout;
    const auto windows = DockMainWindowPrivate::windows(workspace);
    for (const DockWindow* window : windows)
        layout.windows.push_back(captureWindow(*window, focus));
    const auto stacked = inStackingOrder(workspace.floatingWindows());
    for (int i = 0; stacked.size() > 1 && i < stacked.size(); ++i)
        layout.windows[std::size_t(windows.indexOf(stacked.at(i)))].place.stacking = i + 1;
    return layout;
}

DockLayoutBuilder::DockLayoutBuilder(DockMainWindow& workspace, bool fillScreen)
    : m_change(&workspace)
    , m_workspace(&workspace)
    , m_fillScreen(fillScreen) {
    DockMainWindowPrivate::of(workspace).restoring = true;
    DockDragSession& drag = DockDragSession::instance();
    if (drag.controller() == &workspace)
        drag.cancel();
}

DockLayoutBuilder::~DockLayoutBuilder() {
    if (m_workspace)
        DockMainWindowPrivate::of(*m_workspace).restoring = false;
}

void DockLayoutBuilder::replaceArrangement(const Layout& layout, const PageSource& pages) {
    m_pages = pages;
    takeOutArrangement();
    build(layout);
}

/** Those that the host knows; a placeholder only stands for one. */
QHash<QString, QPointer<QWidget>> DockLayoutBuilder::presentPages() const {
    QHash<QString, QPointer<QWidget>> pages;
    const auto panes = m_workspace->docks();
    for (const Dock* dock : panes) {
        for (int i = 0; i < dock->count(); ++i) {
            QWidget* page = dock->widget(i);
            const QString name = page->objectName();
            if (!name.isEmpty() && !pages.contains(name) && !qobject_cast<DockPlaceHolder*>(page))
                pages.insert(name, page);
        }
    }
    return pages;
}

void DockLayoutBuilder::replaceKeepingPages(const Layout& layout) {
    m_keepsMain = true;
    QStringList ids;
    for (const LayoutWindow& window : layout.windows) {
        for (const LayoutSplitter& splitter : window.splitters)
            collectPageIds(splitter, ids);
    }
    auto pages = presentPages();
    for (const QString& id : qAsConst(ids)) {
        if (!m_workspace)
            return;
        if (pages.contains(id))
            continue;
        QString name = id;
        QWidget* page = m_workspace->createPage(name);
        pages.insert(id, page);
    }
    if (!m_workspace)
        return;

    takeOutArrangement();
    // The old panes only wait for their end: they need not follow their pages' leaving.
    for (const QPointer<Dock>& dock : qAsConst(m_oldPanes))
        DockPrivate::of(*dock).pages->abandon();
    m_pages = [&pages](QString& id) { return pages.value(id).data(); };
    build(layout);
    for (const QPointer<Dock>& dock : qAsConst(m_oldPanes)) {
        if (dock)
            takeOut(*dock);
    }
}

/** Takes the pages out of a pane of the old arrangement, alive. */
void DockLayoutBuilder::takeOut(Dock& dock) {
    DockPrivate& pane = DockPrivate::of(dock);
    const auto pages = pane.pages->list();
    for (int i = int(pages.size()) - 1; i >= 0; --i) {
        QWidget* page = pages.at(i);
        if (!page || pane.pages->find(page) < 0)
            continue;
        pane.pages->take(page);
        page->setParent(nullptr);
        pane.tell(DockPrivate::News::Removed, page);
        if (qobject_cast<DockPlaceHolder*>(page))
            page->deleteLater();
    }
}

void DockLayoutBuilder::takeOutArrangement() {
    DockMainWindowPrivate& workspace = DockMainWindowPrivate::of(*m_workspace);
    const auto panes = m_workspace->docks();
    for (Dock* dock : panes)
        m_oldPanes.append(dock);
    for (DockWindow* window : qAsConst(workspace.floatingWindows))
        m_oldFloating.append(window);
    // Hidden before it leaves, so that no half of it is ever laid out or seen on its own.
    QWidget* central = m_workspace->centralWidget();
    if (central)
        central->hide();
    m_oldCentral = m_workspace->takeCentralWidget();

    auto* root = new DockSplitter(Qt::Vertical);
    root->hide();
    m_workspace->setRootSplitter(root);
    m_workspace->setFloatingWindows({});
    workspace.layoutIds.clear();
}

void DockLayoutBuilder::discardOldArrangement() {
    // Pages that stayed leave now, while the panes can still be told of.
    for (const QPointer<Dock>& dock : qAsConst(m_oldPanes)) {
        if (dock)
            DockPrivate::of(*dock).releasePages();
    }
    if (m_oldCentral)
        m_oldCentral->deleteLater();
    for (const QPointer<DockWindow>& window : qAsConst(m_oldFloating)) {
        if (!window)
            continue;
        window->hide();
        window->setParent(nullptr);
        window->deleteLater();
    }
}

void DockLayoutBuilder::build(const Layout& layout) {
    bool isMain = true;
    for (const LayoutWindow& window : layout.windows) {
        if (!m_workspace)
            return;
        if (isMain) {
            fillWindow(*m_workspace, window, true);
        } else if (DockWindow* fresh = m_workspace->createWindow()) {
            if (!m_workspace)
                return;
            DockMainWindowPrivate::of(*m_workspace).addFloatingDock(fresh);
            fillWindow(*fresh, window, false);
        }
        isMain = false;
    }
    for (const LayoutPane& pane : layout.loosePanes) {
        if (m_workspace)
            makePane(pane);
    }
    if (m_workspace)
        m_workspace->rootSplitter()->show();
    showFloating();
}

/** Shows the floating windows, those first that lie below others. */
void DockLayoutBuilder::showFloating() {
    if (!m_workspace)
        return;
    std::stable_sort(m_floating.begin(), m_floating.end(),
                     [](const Floating& a, const Floating& b) { return a.stacking < b.stacking; });
    DockMainWindowPrivate& workspace = DockMainWindowPrivate::of(*m_workspace);
    workspace.waiting.clear();
    for (const Floating& floating : m_floating) {
        if (!floating.window)
            continue;
        DockWindowPrivate::of(*floating.window).noteActivation();
        workspace.waiting.append(floating.window);
    }
    // Below a main window that is shown later they could not be seen.
    if (m_workspace->isVisible())
        workspace.showWaiting();
}

void DockLayoutBuilder::fillWindow(DockWindow& window, const LayoutWindow& layout, bool isMain) {
    const QPointer<DockWindow> alive(&window);
    const bool staysHidden = isMain && m_keepsMain && !window.isVisible();
    const bool staysPut = isMain && m_keepsMain && layout.place.rect.isEmpty();
    if (!staysPut)
        window.setWindowState(window.windowState() & ~Qt::WindowMaximized);
    if (logsRestore()) {
        qDebug() << "DockReader::readWindow starting restore"
                 << "screen:" << layout.place.screen << "maximized:" << layout.place.maximized
                 << "fullscreen:" << layout.place.fullScreen << "geometry:" << layout.place.rect;
    }
    // Out of sight until it is complete: one layout pass instead of one for every pane.
    const QPointer<DockSplitter> root(window.rootSplitter());
    root->hide();
    for (const LayoutSplitter& splitter : layout.splitters)
        fillSplitter(root, splitter);
    if (!alive || !m_workspace)
        return;
    if (!staysPut)
        placeWindow(window, layout.place, isMain);
    window.rootSplitter()->show();
    if (!isMain)
        m_floating.push_back({&window, layout.place.stacking});
    else if (!staysHidden)
        window.show();
}

void DockLayoutBuilder::fillSplitter(const QPointer<DockSplitter>& splitter,
                                     const LayoutSplitter& layout) {
    if (!splitter)
        return;
    splitter->setOrientation(layout.orientation);
    for (const LayoutNode& child : layout.children) {
        if (const auto* branch = std::get_if<LayoutSplitter>(&child.value)) {
            const QPointer<DockSplitter> fresh(new DockSplitter(Qt::Vertical));
            splitter->addWidget(fresh);
            fillSplitter(fresh, *branch);
        } else if (const auto* pane = std::get_if<LayoutPane>(&child.value)) {
            Dock* dock = makePane(*pane);
            if (dock && splitter)
                splitter->addWidget(dock);
            else
                delete dock;
        }
        if (!splitter)
            return;
    }
    QVector<int> sizes;
    for (int i = 0; i < layout.splits.size(); ++i) {
        splitter->setStretchFactor(i, layout.splits.at(i).stretch);
        sizes.append(layout.splits.at(i).size);
    }
    // No sizes at all would collapse every child.
    if (!sizes.isEmpty())
        splitter->setSizes(splitterSizes(sizes));
    // Only now, since sizes count every child. An empty branch has no place in a workspace.
    for (int i = splitter->count() - 1; i >= 0; --i) {
        const auto* branch = qobject_cast<DockSplitter*>(splitter->widget(i));
        if (branch && branch->count() == 0)
            delete branch;
    }
}

Dock* DockLayoutBuilder::makePane(const LayoutPane& layout) {
    const QPointer<Dock> dock(m_workspace ? m_workspace->createDock() : nullptr);
    if (!dock || !m_workspace)
        return dock;
    if (layout.hasActivePage && layout.hasFocus)
        m_workspace->setFocusPage(layout.activePage);
    dock->setObjectName(layout.id);
    for (const LayoutPage& pageLayout : layout.pages) {
        QWidget* page = takePage(pageLayout);
        if (!page || !dock)
            continue;
        dock->addWidget(page, false, false);
        dock->paneIDs().append(page->objectName());
        if (!layout.activePage.isEmpty() && layout.activePage == page->objectName()) {
            page->show();
            dock->setCurrentWidget(page);
        }
    }
    // After the pages, whose number may hide or show titles: a layout knows how they were.
    if (dock)
        dock->setTitleVisible(!layout.hideTitles);
    return dock;
}

QWidget* DockLayoutBuilder::takePage(const LayoutPage& layout) {
    QString id = layout.id;
    if (!m_workspace)
        return nullptr;
    QWidget* page = m_pages(id);
    // A document, or a host, may name a page twice; it can be in one place only.
    if (!page || m_placed.contains(page))
        return nullptr;
    m_placed.insert(page);
    if (!layout.state.isEmpty() && page->metaObject()->indexOfProperty(StateProperty) >= 0)
        page->setProperty(StateProperty, layout.state);
    return page;
}

void DockLayoutBuilder::placeWindow(DockWindow& window, const SavedWindow& saved, bool isMain) {
    const QSize current = frameSize(window);
    QSize frame = current;
    bool cyclesFullScreen = false;
    if (isMain && !saved.fullScreen) {
        if (mainFrameSize().isNull())
            mainFrameSize() = current;
        frame = mainFrameSize();
        // Without a frame yet the window manager may not have taken notice of the window at all.
        cyclesFullScreen = current.isNull();
    }
    const QVector<QRect> areas = WindowPlacement::availableAreas();
    const WindowPlan plan = planWindow(saved, m_fillScreen && isMain, areas, frame);
    window.resize(plan.rect.size());
    window.move(plan.rect.topLeft());
    if (cyclesFullScreen) {
        FullScreen::set(&window, true, m_workspace);
        FullScreen::set(&window, false, m_workspace);
    }
    FullScreen::set(&window, plan.fullScreen, m_workspace);
    if (saved.maximized) {
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
        DockWindowPrivate::of(window).restoredNormal = plan.rect;
    }
    if (logsRestore()) {
        qDebug() << "Finished restoring window geom:" << window.geometry()
                 << "requested geom:" << plan.rect << "available:" << plan.available
                 << "framesize:" << frame;
    }
}

} // namespace Kestrel::UI
