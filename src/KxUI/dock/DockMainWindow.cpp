#include <KxUI/dock/DockMainWindow_p.h>

#include <KxUI/dock/DockArrangeMenu_p.h>
#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockLayoutBuilder_p.h>
#include <KxUI/dock/DockMoves_p.h>
#include <KxUI/dock/DockPlaceHolder.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/DockWindow_p.h>
#include <KxUI/dock/Dock_p.h>
#include <KxUI/dock/FocusKeeper_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/WindowSystem_p.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QIODevice>
#include <QMessageBox>

#include <algorithm>

namespace Kestrel::UI {

DockMainWindow::DockMainWindow(QWidget* parent)
    : DockWindow(this, parent)
    , d(std::make_unique<DockMainWindowPrivate>(this)) {
    qRegisterMetaType<Kestrel::UI::Dock*>();
    setContextMenuPolicy(Qt::NoContextMenu);
}

DockMainWindow::~DockMainWindow() {
    // What the host derived is gone already: from here on nobody is told anything.
    d->announcer.silence();
    disconnect(qApp, nullptr, this, nullptr);
    for (Dock* dock : qAsConst(d->docks))
        DockPrivate::of(*dock).controller = nullptr;
    d->docks.clear();
    DockDragSession::instance().forget(this);
    const auto satellites = d->satellites;
    for (DockWindow* window : satellites)
        window->disconnectController();
    disconnectController();
}

bool DockMainWindow::hideSingleTabs() const {
    return d->hideSingleTabs;
}

void DockMainWindow::setHideSingleTabs(bool hide) {
    KXUI_INTERFACE_THREAD(this);
    if (d->hideSingleTabs == hide)
        return;
    d->hideSingleTabs = hide;
    Q_EMIT hideSingleTabsChanged(hide);
}

bool DockMainWindow::hasPanelMenu() const {
    return d->hasPanelMenu;
}

void DockMainWindow::setHasPanelMenu(bool has) {
    KXUI_INTERFACE_THREAD(this);
    if (d->hasPanelMenu == has)
        return;
    d->hasPanelMenu = has;
    Q_EMIT hasPanelMenuChanged(has);
}

bool DockMainWindow::splitPanelsByDragging() const {
    return d->splitPanelsByDragging;
}

void DockMainWindow::setSplitPanelsByDragging(bool split) {
    KXUI_INTERFACE_THREAD(this);
    if (d->splitPanelsByDragging == split)
        return;
    d->splitPanelsByDragging = split;
    Q_EMIT splitPanelsByDraggingChanged(split);
}

bool DockMainWindow::highlightCurrentTab() const {
    return d->highlightCurrentTab;
}

void DockMainWindow::setHighlightCurrentTab(bool highlight) {
    KXUI_INTERFACE_THREAD(this);
    if (d->highlightCurrentTab == highlight)
        return;
    d->highlightCurrentTab = highlight;
    if (highlight)
        connect(qApp, &QApplication::focusChanged, this, &DockMainWindow::focusChanged);
    else
        disconnect(qApp, &QApplication::focusChanged, this, &DockMainWindow::focusChanged);
    const auto all = docks();
    for (Dock* dock : all)
        dock->updateTabs();
    Q_EMIT highlightCurrentTabChanged(highlight);
}

bool DockMainWindow::tabsAreClosable() const {
    return d->tabsAreClosable;
}

void DockMainWindow::setTabsAreClosable(bool closable) {
    KXUI_INTERFACE_THREAD(this);
    if (d->tabsAreClosable == closable)
        return;
    d->tabsAreClosable = closable;
    Q_EMIT tabsAreClosableChanged(closable);
}

void DockMainWindow::focusChanged(QWidget* old, QWidget* now) {
    Dock* left = Dock::dockForWidget(old);
    Dock* entered = Dock::dockForWidget(now);
    if (left == entered)
        return;
    if (left)
        left->updateTabs();
    if (!entered || entered->controller() != this)
        return;
    entered->updateTabs();
    // Qt goes on with the widget that gets the focus, which the host might destroy.
    d->announcer.tellLater(DockAnnouncer::News::Activated, entered, entered->currentWidget());
}

bool DockMainWindow::emptiedPanesClose() const {
    return d->emptiedPanesClose;
}

void DockMainWindow::setEmptiedPanesClose(bool close) {
    KXUI_INTERFACE_THREAD(this);
    if (d->emptiedPanesClose == close)
        return;
    d->emptiedPanesClose = close;
    Q_EMIT emptiedPanesCloseChanged(close);
}

bool DockMainWindow::isDragActive() const {
    const DockDragSession& drag = DockDragSession::instance();
    return drag.isActive() && drag.controller() == this;
}

void DockMainWindow::showPage(QWidget* page) {
    KXUI_INTERFACE_THREAD(this);
    const DockChange change(this);
    const QPointer<DockMainWindow> alive(this);
    const QPointer<QWidget> wanted(page);
    if (!wanted)
        return;
    QPointer<Dock> home(paneOf(wanted));
    if (!home || home->controller() != this) {
        home = d->places.paneFor(*wanted);
        if (!alive || !home || !wanted)
            return;
        home->addWidget(wanted, true, false);
    }
    home->setCurrentWidget(wanted);
    d->places.giveRoom(*home);
    if (isVisible()) {
        home->window()->show();
        bringToFront(home->window());
    }
    if (wanted)
        wanted->setFocus(Qt::OtherFocusReason);
}

QAction* DockMainWindow::nextDockAction() {
    return d->newAction(tr("Next Pane"), "kestrel.application.focusNextPane",
                        QStringLiteral("Ctrl+Alt+`"), &DockMainWindow::nextDock);
}

QAction* DockMainWindow::prevDockAction() {
    return d->newAction(tr("Previous Pane"), "kestrel.application.focusPreviousPane",
                        QStringLiteral("Ctrl+Shift+Alt+`"), &DockMainWindow::prevDock);
}

QAction* DockMainWindow::nextTabAction() {
    return d->newAction(tr("Next Tab"), "kestrel.application.focusNextTab",
                        QStringLiteral("Ctrl+Shift+]"), &DockMainWindow::nextTab);
}

QAction* DockMainWindow::prevTabAction() {
    return d->newAction(tr("Previous Tab"), "kestrel.application.focusPreviousTab",
                        QStringLiteral("Ctrl+Shift+["), &DockMainWindow::prevTab);
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
    KXUI_INTERFACE_THREAD(this);
    QPointer<DockWindow> window;
    {
        const DockChange change(this);
        const QPointer<DockMainWindow> alive(this);
        window = widget ? floatPages(*this, {widget}, QRect()) : createWindow();
        if (alive && window)
            d->addFloatingDock(window);
    }
    return window;
}

QList<DockWindow*> DockMainWindow::floatingWindows() const {
    return d->floatingWindows;
}

void DockMainWindow::setFloatingWindows(const QList<DockWindow*>& windows) {
    KXUI_INTERFACE_THREAD(this);
    for (DockWindow* window : qAsConst(d->floatingWindows))
        DockWindowPrivate::of(*window).floating = false;
    d->floatingWindows.clear();
    for (DockWindow* window : windows) {
        if (window && window != this)
            d->addFloatingDock(window);
    }
}

void DockMainWindow::setRootSplitter(DockSplitter* splitter) {
    KXUI_INTERFACE_THREAD(this);
    if (!splitter || splitter == rootSplitter())
        return;
    DockWindowPrivate::of(*this).rootSplitter = splitter;
    setCentralWidget(splitter);
}

Dock* DockMainWindow::activeDock() const {
    return Dock::dockForWidget(QApplication::focusWidget());
}

QWidget* DockMainWindow::activeTab() const {
    const Dock* dock = activeDock();
    return dock ? dock->currentWidget() : nullptr;
}

Dock* DockMainWindow::findDockAt(const QPoint& global) const {
    for (const DockWindow* window : qAsConst(d->floatingWindows)) {
        if (!window->isVisible())
            continue;
        if (const QWidget* child = window->childAt(window->mapFromGlobal(global)))
            return Dock::dockForWidget(child);
    }
    return Dock::dockForWidget(childAt(mapFromGlobal(global)));
}

Dock* DockMainWindow::focusWidgetUnderCursor() {
    const QPointer<Dock> dock(findDockAt(QCursor::pos()));
    {
        const DockChange change(this);
        if (dock)
            dock->setFocus(Qt::OtherFocusReason);
        else
            setFocus(Qt::OtherFocusReason);
    }
    return dock;
}

QList<Dock*> DockMainWindow::docks() const {
    QList<Dock*> all;
    const auto everywhere = DockMainWindowPrivate::windows(*this);
    for (const DockWindow* window : everywhere)
        all += window->panes();
    return all;
}

Dock* DockMainWindow::findDockByName(const QString& name, bool exact, bool usePaneIDs) const {
    if (name.isEmpty())
        return nullptr;
    const auto everywhere = DockMainWindowPrivate::windows(*this);
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

void DockMainWindow::nextDock() {
    const DockChange change(this);
    d->walkFocus(1);
}

void DockMainWindow::prevDock() {
    const DockChange change(this);
    d->walkFocus(-1);
}

void DockMainWindow::nextTab() {
    const DockChange change(this);
    Dock* dock = activeDock();
    if (!dock)
        return;
    if (dock->currentTab() < dock->count() - 1)
        dock->nextTab();
    else if (Dock* next = d->walkFocus(1))
        next->setCurrentTab(0);
}

void DockMainWindow::prevTab() {
    const DockChange change(this);
    Dock* dock = activeDock();
    if (!dock)
        return;
    if (dock->currentTab() > 0)
        dock->prevTab();
    else if (Dock* previous = d->walkFocus(-1))
        previous->setCurrentTab(previous->count() - 1);
}

void DockMainWindow::closeEvent(QCloseEvent* event) {
    const DockChange change(this);
    QVector<QPointer<DockWindow>> floating;
    for (DockWindow* window : qAsConst(d->floatingWindows))
        floating.append(window);
    const QPointer<DockMainWindow> alive(this);
    for (const QPointer<DockWindow>& window : qAsConst(floating)) {
        if (window)
            window->close();
    }
    if (alive)
        DockWindow::closeEvent(event);
    else
        event->accept();
}

bool DockMainWindow::isInLayout(const QString& name) const {
    return d->layoutIds.contains(name);
}

void DockMainWindow::setFocusPage(const QString& id) {
    KXUI_INTERFACE_THREAD(this);
    if (d->focusPage == id)
        return;
    d->focusPage = id;
    d->announcer.tell(this, [this, id] { Q_EMIT focusPageChanged(id); });
}

QString DockMainWindow::getFocusPage() const {
    return d->focusPage;
}

bool DockMainWindow::saveLayout(QIODevice* device, QWidget* focusWidget) {
    if (!device || !device->isWritable())
        return false;
    // Panes that only wait for the event loop to close are no part of the arrangement.
    const QPointer<DockMainWindow> alive(this);
    const QPointer<QWidget> wanted(focusWidget);
    d->places.settle();
    if (!alive)
        return false;
    const QWidget* focus = wanted ? wanted.data() : QApplication::focusWidget();
    const Layout layout = DockLayoutBuilder::capture(*this, focus);
    DockMainWindowPrivate::warnOfNamesakes(layout);
    const bool written = writeLayout(device, layout);
    d->rebuildLayoutIds();
    return written;
}

bool DockMainWindow::restoreLayout(QIODevice* device, bool useAvailableGeometry) {
    KXUI_INTERFACE_THREAD(this);
    if (d->restoring)
        return false;
    Layout layout;
    const DockLayoutError error = d->read(device, layout);
    const QPointer<DockMainWindow> alive(this);
    // What was never begun changes nothing.
    if (!error || error.line > 0) {
        DockLayoutBuilder builder(*this, useAvailableGeometry);
        builder.replaceArrangement(layout, [&](QString& id) { return createPage(id); });
        if (!error)
            builder.discardOldArrangement();
        if (!error && alive)
            d->rebuildLayoutIds();
    }
    if (!error)
        return true;
    const QString text = tr("Parse error at line %2, column %3:\n%4")
                             .arg(error.line)
                             .arg(error.column)
                             .arg(error.reason);
    QMessageBox(QMessageBox::Warning, tr("Dock Layout"), text, QMessageBox::Ok).exec();
    return false;
}

bool DockMainWindow::restoreWholeLayout(QIODevice* device, bool useAvailableGeometry,
                                        DockLayoutError* error) {
    KXUI_INTERFACE_THREAD(this);
    Layout layout;
    DockLayoutError trouble = d->read(device, layout);
    if (!trouble && layout.windows.empty())
        trouble = {tr("The layout has no window."), 1, 0};
    if (error)
        *error = trouble;
    if (trouble)
        return false;
    // A pane outside every window could not be seen.
    layout.loosePanes.clear();
    const QPointer<DockMainWindow> alive(this);
    {
        const DockChange change(this);
        const FocusKeeper keeper(this);
        DockLayoutBuilder builder(*this, useAvailableGeometry);
        builder.replaceKeepingPages(layout);
        builder.discardOldArrangement();
        if (alive)
            d->rebuildLayoutIds();
    }
    return true;
}

bool DockMainWindow::IsLayoutValid(QIODevice* device) {
    return device && device->isReadable() && startsLayout(device);
}

} // namespace Kestrel::UI
