#include <KxUI/dock/DockMainWindow_p.h>

#include <KxUI/dock/DockArrangeMenu_p.h>
#include <KxUI/dock/DockLayout_p.h>
#include <KxUI/dock/DockWindow_p.h>

#include <QAction>
#include <QApplication>
#include <QIODevice>

#include <utility>

namespace Kestrel::UI {

namespace {

void collectNames(const LayoutSplitter& splitter, QHash<QString, int>& names) {
    for (const LayoutNode& child : splitter.children) {
        if (const auto* branch = std::get_if<LayoutSplitter>(&child.value))
            collectNames(*branch, names);
        else if (const auto* pane = std::get_if<LayoutPane>(&child.value)) {
            for (const LayoutPage& page : pane->pages)
                ++names[page.id];
        }
    }
}

bool canTakeFocus(const Dock& dock) {
    const QWidget* page = dock.currentWidget();
    return page && page->isEnabled() && dock.isVisible() && !dock.window()->isMinimized();
}

} // namespace

DockMainWindowPrivate::DockMainWindowPrivate(DockMainWindow* workspace)
    : q(workspace)
    , announcer(*workspace)
    , places(*workspace) {}

DockMainWindowPrivate::~DockMainWindowPrivate() {
    if (m_arrangeMenu)
        m_arrangeMenu->dispose();
}

QAction* DockMainWindowPrivate::newAction(const QString& text, const char* id,
                                          const QString& shortcut, void (DockMainWindow::*slot)()) {
    auto* action = new QAction(text, q);
    action->setObjectName(QLatin1String(id));
    action->setShortcut(QKeySequence(shortcut));
    QObject::connect(action, &QAction::triggered, q, slot);
    return action;
}

void DockMainWindowPrivate::showWaiting() {
    const QPointer<DockMainWindow> alive(q);
    const auto windows = std::exchange(waiting, {});
    for (const QPointer<DockWindow>& window : windows) {
        if (alive && window && floatingWindows.contains(window))
            window->show();
    }
}

void DockMainWindowPrivate::showWaitingAbove() {
    // What has just begun goes on in the main window.
    const QWidget* active = QApplication::activeWindow();
    const bool keepsActive = !waiting.isEmpty() && (!active || active == q);
    const QPointer<DockMainWindow> alive(q);
    showWaiting();
    if (alive && keepsActive)
        q->activateWindow();
}

void DockMainWindowPrivate::tellOfDrag(bool active) {
    if (!active)
        places.dragEnded();
    announcer.tell(q, [workspace = q, active] { Q_EMIT workspace->dragActiveChanged(active); });
}

void DockMainWindowPrivate::addFloatingDock(DockWindow* window) {
    DockWindowPrivate::of(*window).floating = true;
    if (!floatingWindows.contains(window))
        floatingWindows.append(window);
}

void DockMainWindowPrivate::removeFloatingDock(DockWindow* window) {
    if (!window || window == q)
        return;
    floatingWindows.removeOne(window);
    DockWindowPrivate::of(*window).floating = false;
}

QList<DockWindow*> DockMainWindowPrivate::windows(const DockMainWindow& workspace) {
    QList<DockWindow*> all = workspace.floatingWindows();
    all.prepend(const_cast<DockMainWindow*>(&workspace));
    return all;
}

Dock* DockMainWindowPrivate::walkFocus(int step) {
    const auto all = q->docks();
    const int start = int(all.indexOf(q->activeDock()));
    if (start < 0)
        return nullptr;
    const QWidget* here = all.at(start)->window();
    const int size = int(all.size());
    for (int walked = 1; walked <= size; ++walked) {
        Dock* dock = all.at((start + walked * step + walked * size) % size);
        if (!canTakeFocus(*dock))
            continue;
        if (dock->window() != q->window() || here != dock->window())
            dock->window()->activateWindow();
        dock->setFocus(Qt::OtherFocusReason);
        return dock;
    }
    return nullptr;
}

void DockMainWindowPrivate::rebuildLayoutIds() {
    QStringList ids;
    const auto everywhere = windows(*q);
    for (const DockWindow* window : everywhere) {
        const auto widgets = window->findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            if (!widget->objectName().isEmpty())
                ids.append(widget->objectName());
        }
    }
    ids.removeDuplicates();
    layoutIds = ids;
}

DockArrangeMenu* DockMainWindowPrivate::arrangeMenu() {
    if (!m_arrangeMenu)
        m_arrangeMenu = new DockArrangeMenu;
    return m_arrangeMenu;
}

QIcon DockMainWindowPrivate::sharedIcon(QStyle::StandardPixmap which) {
    QIcon& icon = m_sharedIcons[{q->style(), int(which)}];
    if (icon.isNull())
        icon = q->style()->standardIcon(which, nullptr, q);
    return icon;
}

DockLayoutError DockMainWindowPrivate::read(QIODevice* device, Layout& layout) const {
    if (!device || !device->isReadable())
        return {DockMainWindow::tr("There is no device that is open for reading."), 0, 0};
    if (restoring)
        return {DockMainWindow::tr("Another layout is being restored."), 0, 0};
    LayoutReading reading = readLayout(device);
    layout = std::move(reading.layout);
    return reading.error;
}

void DockMainWindowPrivate::warnOfNamesakes(const Layout& layout) {
    QHash<QString, int> names;
    for (const LayoutWindow& window : layout.windows) {
        for (const LayoutSplitter& splitter : window.splitters)
            collectNames(splitter, names);
    }
    for (auto name = names.cbegin(); name != names.cend(); ++name) {
        if (name.value() > 1)
            qWarning("DockMainWindow::saveLayout - %d pages have the object name \"%s\"; the "
                     "layout can bring back one",
                     name.value(), qPrintable(name.key()));
    }
}

} // namespace Kestrel::UI
