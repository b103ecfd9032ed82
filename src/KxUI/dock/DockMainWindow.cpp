#include <KxUI/dock/DockMainWindow.h>

#include <KxUI/dock/DockArrangeMenu_p.h>
#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockLayoutBuilder_p.h>
#include <KxUI/dock/DockPlaceHolder.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/kit/WindowSystem_p.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QMessageBox>

#include <algorithm>

namespace Kestrel::UI {

DockMainWindow::DockMainWindow(QWidget* parent)
    : DockWindow(this, parent) {
    qRegisterMetaType<Kestrel::UI::Dock*>();
    setContextMenuPolicy(Qt::NoContextMenu);
}

DockMainWindow::~DockMainWindow() {
    DockDragSession::instance().forget(this);
    for (Dock* dock : qAsConst(m_docks))
        dock->disconnectController();
    m_docks.clear();
    const auto satellites = m_satellites;
    for (DockWindow* window : satellites)
        window->disconnectController();
    disconnectController();
}

void DockMainWindow::setHighlightCurrentTab(bool highlight) {
    if (m_highlightCurrentTab == highlight)
        return;
    m_highlightCurrentTab = highlight;
    if (highlight)
        connect(qApp, &QApplication::focusChanged, this, &DockMainWindow::focusChanged);
    else
        disconnect(qApp, &QApplication::focusChanged, this, &DockMainWindow::focusChanged);
    const auto all = docks();
    for (Dock* dock : all)
        dock->updateTabs();
}

void DockMainWindow::focusChanged(QWidget* old, QWidget* now) {
    Dock* left = Dock::dockForWidget(old);
    Dock* entered = Dock::dockForWidget(now);
    if (left == entered)
        return;
    if (left)
        left->updateTabs();
    if (entered) {
        entered->updateTabs();
        entered->setCurrentTab(entered->currentTab());
    }
}

QAction* DockMainWindow::newAction(const QString& text, const char* id,
                                   void (DockMainWindow::*slot)()) {
    auto* action = new QAction(text, this);
    action->setObjectName(QLatin1String(id));
    connect(action, &QAction::triggered, this, slot);
    return action;
}

QAction* DockMainWindow::nextDockAction() {
    QAction* action =
        newAction(tr("Next Pane"), "kestrel.application.focusNextPane", &DockMainWindow::nextDock);
    action->setShortcut(QKeySequence(QStringLiteral("Ctrl+Alt+`")));
    return action;
}

QAction* DockMainWindow::prevDockAction() {
    QAction* action = newAction(tr("Previous Pane"), "kestrel.application.focusPreviousPane",
                                &DockMainWindow::prevDock);
    action->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+Alt+`")));
    return action;
}

QAction* DockMainWindow::nextTabAction() {
    QAction* action =
        newAction(tr("Next Tab"), "kestrel.application.focusNextTab", &DockMainWindow::nextTab);
    action->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+]")));
    return action;
}

QAction* DockMainWindow::prevTabAction() {
    QAction* action = newAction(tr("Previous Tab"), "kestrel.application.focusPreviousTab",
                                &DockMainWindow::prevTab);
    action->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+[")));
    return action;
}

DockWindow* DockMainWindow::createWindow() {
    return new DockWindow(this, this);
}

Dock* DockMainWindow::createDock() {
    return new Dock(this, nullptr);
}

QWidget* DockMainWindow::createPage(QString& id) {
    auto* page = new DockPlaceHolder;
    page->setObjectName(id);
    return page;
}

DockWindow* DockMainWindow::addNewFloatingDock(QWidget* widget) {
    DockWindow* window = createWindow();
    if (widget) {
        Dock* dock = createDock();
        window->addWidget(dock);
        dock->addWidget(widget, true, false);
        window->resize(dock->sizeHint());
        window->show();
        bringToFront(window);
    }
    addFloatingDock(window);
    return window;
}

void DockMainWindow::addFloatingDock(DockWindow* window) {
    window->m_floating = true;
    if (!m_floatingWindows.contains(window))
        m_floatingWindows.append(window);
}

void DockMainWindow::removeFloatingDock(DockWindow* window) {
    if (!window || window == this)
        return;
    m_floatingWindows.removeOne(window);
    window->m_floating = false;
}

void DockMainWindow::setFloatingWindows(const QList<DockWindow*>& windows) {
    for (DockWindow* window : qAsConst(m_floatingWindows))
        window->m_floating = false;
    m_floatingWindows.clear();
    for (DockWindow* window : windows) {
        if (window && window != this)
            addFloatingDock(window);
    }
}

void DockMainWindow::setRootSplitter(DockSplitter* splitter) {
    if (splitter == m_rootSplitter)
        return;
    m_rootSplitter = splitter;
    setCentralWidget(splitter);
}

QList<DockWindow*> DockMainWindow::windows() const {
    QList<DockWindow*> all = m_floatingWindows;
    all.prepend(const_cast<DockMainWindow*>(this));
    return all;
}

Dock* DockMainWindow::activeDock() const {
    return Dock::dockForWidget(QApplication::focusWidget());
}

QWidget* DockMainWindow::activeTab() const {
    const Dock* dock = activeDock();
    return dock ? dock->currentWidget() : nullptr;
}

Dock* DockMainWindow::findDockAt(const QPoint& global) const {
    for (const DockWindow* window : m_floatingWindows) {
        if (!window->isVisible())
            continue;
        if (const QWidget* child = window->childAt(window->mapFromGlobal(global)))
            return Dock::dockForWidget(child);
    }
    return Dock::dockForWidget(childAt(mapFromGlobal(global)));
}

Dock* DockMainWindow::focusWidgetUnderCursor() {
    Dock* dock = findDockAt(QCursor::pos());
    if (dock)
        dock->setFocus(Qt::OtherFocusReason);
    else
        setFocus(Qt::OtherFocusReason);
    return dock;
}

QList<Dock*> DockMainWindow::docks() const {
    QList<Dock*> all;
    const auto everywhere = windows();
    for (const DockWindow* window : everywhere)
        all += window->panes();
    return all;
}

Dock* DockMainWindow::findDockByName(const QString& name, bool exact, bool usePaneIDs) const {
    if (name.isEmpty())
        return nullptr;
    const auto everywhere = windows();
    for (const DockWindow* window : everywhere) {
        const auto widgets = window->findChildren<QWidget*>(name);
        for (const QWidget* widget : widgets) {
            if (Dock* dock = Dock::dockForWidget(widget))
                return dock;
        }
    }
    if (exact && !usePaneIDs)
        return nullptr;

    const QString prefix = name.left(name.lastIndexOf(QLatin1Char('.')) + 1);
    if (!exact && prefix.isEmpty())
        return nullptr;
    for (const DockWindow* window : everywhere) {
        if (usePaneIDs) {
            if (Dock* dock = window->findDockWithPaneID(exact ? name : prefix, exact))
                return dock;
            continue;
        }
        const auto panes = window->panes();
        for (Dock* dock : panes) {
            for (int i = 0; i < dock->count(); ++i) {
                if (dock->widget(i)->objectName().startsWith(prefix))
                    return dock;
            }
        }
    }
    return nullptr;
}

QList<Dock*> DockMainWindow::getDocksWithPrefix(const QString& prefix) const {
    QList<Dock*> found;
    const auto all = docks();
    for (Dock* dock : all) {
        for (int i = 0; i < dock->count(); ++i) {
            if (dock->widget(i)->objectName().startsWith(prefix)) {
                found.append(dock);
                break;
            }
        }
    }
    return found;
}

QList<DockPlaceHolder*> DockMainWindow::placeHolders() const {
    QList<DockPlaceHolder*> found;
    const auto all = docks();
    for (const Dock* dock : all) {
        for (int i = 0; i < dock->count(); ++i) {
            if (auto* placeHolder = qobject_cast<DockPlaceHolder*>(dock->widget(i)))
                found.append(placeHolder);
        }
    }
    return found;
}

Dock* DockMainWindow::walkFocus(int step) {
    const auto all = docks();
    const int start = all.indexOf(activeDock());
    if (start < 0)
        return nullptr;
    const int size = all.size();
    int i = start;
    for (int walked = 0; walked < size; ++walked) {
        i = (i + step + size) % size;
        if (all.at(i)->currentWidget()) {
            Dock* dock = all.at(i);
            if (dock->window() != window() || activeDock()->window() != dock->window())
                dock->window()->activateWindow();
            dock->setFocus(Qt::OtherFocusReason);
            return dock;
        }
    }
    return nullptr;
}

void DockMainWindow::nextDock() {
    walkFocus(1);
}

void DockMainWindow::prevDock() {
    walkFocus(-1);
}

void DockMainWindow::nextTab() {
    Dock* dock = activeDock();
    if (!dock)
        return;
    if (dock->currentTab() < dock->count() - 1)
        dock->nextTab();
    else if (Dock* next = walkFocus(1))
        next->setCurrentTab(0);
}

void DockMainWindow::prevTab() {
    Dock* dock = activeDock();
    if (!dock)
        return;
    if (dock->currentTab() > 0)
        dock->prevTab();
    else if (Dock* previous = walkFocus(-1))
        previous->setCurrentTab(previous->count() - 1);
}

void DockMainWindow::closeEvent(QCloseEvent* event) {
    QVector<QPointer<DockWindow>> floating;
    for (DockWindow* window : qAsConst(m_floatingWindows))
        floating.append(window);
    const QPointer<DockMainWindow> alive(this);
    for (const QPointer<DockWindow>& window : qAsConst(floating)) {
        if (window)
            window->close();
    }
    if (alive)
        DockWindow::closeEvent(event);
}

void DockMainWindow::rebuildLayoutIds() {
    QStringList ids;
    const auto everywhere = windows();
    for (const DockWindow* window : everywhere) {
        const auto widgets = window->findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            if (!widget->objectName().isEmpty())
                ids.append(widget->objectName());
        }
    }
    ids.removeDuplicates();
    m_layoutIds = ids;
}

DockArrangeMenu* DockMainWindow::arrangeMenu() {
    if (!m_arrangeMenu)
        m_arrangeMenu = std::make_unique<DockArrangeMenu>();
    return m_arrangeMenu.get();
}

QIcon DockMainWindow::sharedIcon(QStyle::StandardPixmap which) {
    QIcon& icon = m_sharedIcons[{style(), int(which)}];
    if (icon.isNull())
        icon = style()->standardIcon(which, nullptr, this);
    return icon;
}

bool DockMainWindow::saveLayout(QIODevice* device, QWidget* focusWidget) {
    const QWidget* focus = focusWidget ? focusWidget : QApplication::focusWidget();
    const bool written = writeLayout(device, DockLayoutBuilder::capture(*this, focus));
    rebuildLayoutIds();
    return written;
}

bool DockMainWindow::restoreLayout(QIODevice* device, bool useAvailableGeometry) {
    if (m_restoring)
        return false;
    const LayoutReading reading = readLayout(device);
    {
        DockLayoutBuilder builder(*this, useAvailableGeometry);
        builder.replaceArrangement(reading.layout, [this](QString& id) { return createPage(id); });
        if (!reading.error)
            builder.discardOldArrangement();
    }
    if (!reading.error) {
        rebuildLayoutIds();
        return true;
    }
    const QString text = tr("Parse error at line %2, column %3:\n%4")
                             .arg(reading.error.line)
                             .arg(reading.error.column)
                             .arg(reading.error.reason);
    QMessageBox(QMessageBox::Warning, tr("Dock Layout"), text, QMessageBox::Ok).exec();
    return false;
}

bool DockMainWindow::restoreWholeLayout(QIODevice* device, bool useAvailableGeometry,
                                        DockLayoutError* error) {
    LayoutReading reading = readLayout(device);
    if (!reading.error && reading.layout.windows.empty())
        reading.error = {tr("The layout has no window."), 1, 0};
    if (!reading.error && m_restoring)
        reading.error = {tr("Another layout is being restored."), 0, 0};
    if (error)
        *error = reading.error;
    if (reading.error)
        return false;
    // A pane outside every window could not be seen.
    reading.layout.loosePanes.clear();
    {
        const FocusKeeper keeper(this);
        DockLayoutBuilder builder(*this, useAvailableGeometry);
        builder.replaceKeepingPages(reading.layout);
        builder.discardOldArrangement();
    }
    rebuildLayoutIds();
    return true;
}

bool DockMainWindow::IsLayoutValid(QIODevice* device) {
    return startsLayout(device);
}

} // namespace Kestrel::UI
