#include <KxUI/dock/DockLayoutBuilder_p.h>

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/kit/FullScreen.h>
#include <KxUI/kit/WindowPlacement.h>

#include <QDebug>
#include <QGuiApplication>
#include <QMetaProperty>
#include <QScreen>
#include <QStackedWidget>

#include <algorithm>

namespace Kestrel::UI {

namespace {

constexpr const char* StateProperty = "layoutState";

LayoutPane capturePane(const Dock& dock, const QWidget* focus) {
    LayoutPane pane;
    pane.id = dock.objectName();
    pane.hideTitles = !dock.titleVisible();
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
    result.place.fullScreen = FullScreen::IsOn(&window);
    result.place.screen = std::max(0, QGuiApplication::screens().indexOf(window.screen()));
    result.splitters.push_back(captureSplitter(*window.rootSplitter(), focus));
    return result;
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
    const auto windows = workspace.windows();
    for (const DockWindow* window : windows)
        layout.windows.push_back(captureWindow(*window, focus));
    return layout;
}

DockLayoutBuilder::DockLayoutBuilder(DockMainWindow& workspace, bool fillScreen)
    : m_workspace(workspace)
    , m_fillScreen(fillScreen) {
    m_workspace.m_restoring = true;
    DockDragSession& drag = DockDragSession::instance();
    if (drag.controller() == &workspace)
        drag.cancel();
}

DockLayoutBuilder::~DockLayoutBuilder() {
    m_workspace.m_restoring = false;
}

void DockLayoutBuilder::replaceArrangement(const Layout& layout, const PageSource& pages) {
    m_pages = pages;
    takeOutArrangement();
    build(layout);
}

void DockLayoutBuilder::replaceKeepingPages(const Layout& layout) {
    m_keepsMain = true;
    QStringList ids;
    for (const LayoutWindow& window : layout.windows) {
        for (const LayoutSplitter& splitter : window.splitters)
            collectPageIds(splitter, ids);
    }

    const auto oldPanes = m_workspace.docks();
    QHash<QString, QPointer<QWidget>> pages;
    for (const Dock* dock : oldPanes) {
        for (int i = 0; i < dock->count(); ++i) {
            QWidget* page = dock->widget(i);
            if (!page->objectName().isEmpty() && !pages.contains(page->objectName()))
                pages.insert(page->objectName(), page);
        }
    }
    for (const QString& id : qAsConst(ids)) {
        if (pages.contains(id))
            continue;
        QString name = id;
        pages.insert(id, m_workspace.createPage(name));
    }

    takeOutArrangement();
    // The old panes only wait for their end: they need not follow their pages' leaving.
    QVector<QPointer<Dock>> dying;
    for (Dock* dock : oldPanes) {
        dock->m_stack->blockSignals(true);
        dying.append(dock);
    }
    m_pages = [&pages](QString& id) { return pages.value(id).data(); };
    build(layout);

    for (const QPointer<Dock>& dock : qAsConst(dying)) {
        while (dock && dock->count() > 0) {
            const QPointer<QWidget> page(dock->widget(dock->count() - 1));
            dock->m_stack->removeWidget(page);
            page->hide();
            page->setParent(nullptr);
            m_workspace.emitWidgetRemoved(dock, page);
        }
    }
}

void DockLayoutBuilder::takeOutArrangement() {
    for (DockWindow* window : qAsConst(m_workspace.m_floatingWindows))
        m_oldFloating.append(window);
    // Hidden before it leaves, so that no half of it is ever laid out or seen on its own.
    QWidget* central = m_workspace.centralWidget();
    if (central)
        central->hide();
    m_oldCentral = m_workspace.takeCentralWidget();

    auto* root = new DockSplitter(Qt::Vertical);
    root->hide();
    m_workspace.m_rootSplitter = root;
    m_workspace.setCentralWidget(root);
    m_workspace.setFloatingWindows({});
    m_workspace.m_layoutIds.clear();
}

void DockLayoutBuilder::discardOldArrangement() {
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
        if (isMain) {
            fillWindow(m_workspace, window, true);
        } else if (DockWindow* fresh = m_workspace.createWindow()) {
            m_workspace.addFloatingDock(fresh);
            fillWindow(*fresh, window, false);
        }
        isMain = false;
    }
    for (const LayoutPane& pane : layout.loosePanes)
        makePane(pane);
    m_workspace.m_rootSplitter->show();
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
    DockSplitter* root = window.rootSplitter();
    root->hide();
    for (const LayoutSplitter& splitter : layout.splitters)
        fillSplitter(*root, splitter);
    if (!alive)
        return;
    if (!staysPut)
        placeWindow(window, layout.place, isMain);
    root->show();
    if (!staysHidden)
        window.show();
}

void DockLayoutBuilder::fillSplitter(DockSplitter& splitter, const LayoutSplitter& layout) {
    splitter.setOrientation(layout.orientation);
    for (const LayoutNode& child : layout.children) {
        if (const auto* branch = std::get_if<LayoutSplitter>(&child.value)) {
            auto* fresh = new DockSplitter(Qt::Vertical);
            splitter.addWidget(fresh);
            fillSplitter(*fresh, *branch);
        } else if (const auto* pane = std::get_if<LayoutPane>(&child.value)) {
            if (Dock* dock = makePane(*pane))
                splitter.addWidget(dock);
        }
    }
    QVector<int> sizes;
    for (int i = 0; i < layout.splits.size(); ++i) {
        splitter.setStretchFactor(i, layout.splits.at(i).stretch);
        sizes.append(layout.splits.at(i).size);
    }
    // No sizes at all would collapse every child.
    if (!sizes.isEmpty())
        splitter.setSizes(splitterSizes(sizes));
    // Only now, since sizes count every child. An empty branch has no place in a workspace.
    for (int i = splitter.count() - 1; i >= 0; --i) {
        const auto* branch = qobject_cast<DockSplitter*>(splitter.widget(i));
        if (branch && branch->count() == 0)
            delete branch;
    }
}

Dock* DockLayoutBuilder::makePane(const LayoutPane& layout) {
    const QPointer<Dock> dock(m_workspace.createDock());
    if (!dock)
        return nullptr;
    if (layout.hasActivePage && layout.hasFocus)
        m_workspace.setFocusPage(layout.activePage);
    dock->setTitleVisible(!layout.hideTitles);
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
    return dock;
}

QWidget* DockLayoutBuilder::takePage(const LayoutPage& layout) {
    QString id = layout.id;
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
    const QVector<QRect> areas = WindowPlacement::AvailableAreas();
    const WindowPlan plan = planWindow(saved, m_fillScreen && isMain, areas, frame);
    window.resize(plan.rect.size());
    window.move(plan.rect.topLeft());
    if (cyclesFullScreen) {
        FullScreen::Set(&window, true, &m_workspace);
        FullScreen::Set(&window, false, &m_workspace);
    }
    FullScreen::Set(&window, plan.fullScreen, &m_workspace);
    if (saved.maximized)
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
    if (logsRestore()) {
        qDebug() << "Finished restoring window geom:" << window.geometry()
                 << "requested geom:" << plan.rect << "available:" << plan.available
                 << "framesize:" << frame;
    }
}

} // namespace Kestrel::UI
