#include <KxUI/dock/Dock_p.h>

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/dock/DockMenu_p.h>
#include <KxUI/dock/DockMoves_p.h>
#include <KxUI/dock/DockPlaceHolder.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/dock/DockTitleBar.h>
#include <KxUI/dock/DockWindow_p.h>
#include <KxUI/dock/DropZones_p.h>
#include <KxUI/dock/FocusKeeper_p.h>
#include <KxUI/kit/FullScreen.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/QtCompat_p.h>

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QTextEdit>

#include <algorithm>

namespace Kestrel::UI {

namespace {

bool isTextField(const QWidget* widget) {
    return qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget) ||
           qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QDoubleSpinBox*>(widget);
}

} // namespace

Dock::Dock(DockMainWindow* controller, DockWindow* parent)
    : QWidget(parent)
    , d(std::make_unique<DockPrivate>(this, controller)) {
    d->createParts();
}

Dock::Dock(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<DockPrivate>(this, DockWindowPrivate::workspaceAround(parent))) {
    d->createParts();
}

Dock::~Dock() {
    d->tearDown();
}

bool Dock::isExpanded() const {
    return d->expanded;
}

bool Dock::titleVisible() const {
    return d->titleVisible;
}

QStackedWidget* Dock::stack() const {
    return d->pages;
}

QMenu* Dock::menu() const {
    return d->menu;
}

DockTabBar* Dock::tabBar() const {
    return d->tabBar;
}

DockMainWindow* Dock::controller() const {
    return d->controller;
}

QStringList& Dock::paneIDs() {
    return d->paneIds;
}

const QStringList& Dock::paneIDs() const {
    return d->paneIds;
}

int Dock::count() const {
    return d->pages->count();
}

QWidget* Dock::widget(int index) const {
    return d->pages->widget(index);
}

QWidget* Dock::currentWidget() const {
    return d->pages->currentWidget();
}

int Dock::currentTab() const {
    return d->pages->currentIndex();
}

bool Dock::singlePanel() const {
    const DockWindow* window = dockWindow();
    return window && window->panes().size() == 1;
}

QList<QWidget*> Dock::rememberedWidgets() const {
    QList<QWidget*> widgets;
    for (const auto& widget : qAsConst(d->remembered)) {
        if (widget)
            widgets.append(widget);
    }
    return widgets;
}

int Dock::tabBarHeight() const {
    return d->tabBar->tabRect(0).height();
}

void Dock::updateTabs() {
    d->tabBar->update();
}

void Dock::addWidget(QWidget* page, bool makeCurrent, bool remember) {
    KXUI_INTERFACE_THREAD(this);
    if (!page)
        return;
    const DockChange change(d->controller);
    if (d->pages->find(page) >= 0) {
        d->pages->setCurrent(d->pages->find(page));
    } else {
        auto* placeHolder = qobject_cast<DockPlaceHolder*>(d->pages->findNamed(page->objectName()));
        d->insert(placeHolder ? d->pages->find(placeHolder) : count(), page);
        if (makeCurrent)
            d->pages->setCurrent(d->pages->find(page));
        page->move(0, 0);
        if (placeHolder) {
            d->pages->take(placeHolder, d->pages->find(page));
            placeHolder->deleteLater();
        }
        d->applySingleTabRule();
        d->tellCurrentTab();
        d->tell(DockPrivate::News::Added, page);
    }
    if (remember && !d->remembered.contains(page))
        d->remembered.append(page);
}

void Dock::insertWidget(int index, QWidget* page) {
    KXUI_INTERFACE_THREAD(this);
    if (!page)
        return;
    const DockChange change(d->controller);
    d->moveOrInsert(index, page);
    d->tellCurrentTab();
    // Another page than the current one is shown by the stack when its turn comes.
    if (currentWidget() == page)
        page->show();
    d->applySingleTabRule();
    d->layOutLater();
    d->tell(DockPrivate::News::Added, page);
}

void Dock::insertWidget(const QPoint& point, QWidget* page) {
    KXUI_INTERFACE_THREAD(this);
    insertWidget(dropIndexAt(point, tabRects(*d->tabBar)), page);
}

void Dock::removeWidget(QWidget* page) {
    KXUI_INTERFACE_THREAD(this);
    removeWidgetAndSetCurrentTab(page, 0);
}

void Dock::removeWidgetAndSetCurrentTab(QWidget* page, int tab) {
    KXUI_INTERFACE_THREAD(this);
    const DockChange change(d->controller);
    d->pages->take(page, tab);
}

QWidget* Dock::restorePlaceHolderForWidget(QWidget* page) {
    KXUI_INTERFACE_THREAD(this);
    if (!page || !d->controller || !d->controller->isInLayout(page->objectName()))
        return nullptr;
    const DockChange change(d->controller);
    auto* placeHolder = new DockPlaceHolder;
    placeHolder->setObjectName(page->objectName());
    d->insert(count(), placeHolder);
    page->show();
    // Its tab is that of the page.
    const int tab = count() - 1;
    d->tabBar->setTabText(tab, page->windowTitle());
    if (page->testAttribute(Qt::WA_SetWindowIcon))
        d->tabBar->setTabIcon(tab, page->windowIcon());
    return placeHolder;
}

void Dock::setCurrentWidget(QWidget* page) {
    KXUI_INTERFACE_THREAD(this);
    setCurrentTab(page ? d->pages->find(page) : d->pages->previous());
}

void Dock::setCurrentTab(int index) {
    KXUI_INTERFACE_THREAD(this);
    if (index < 0 || index >= count())
        return;
    const DockChange change(d->controller);
    d->pages->setCurrent(index);
    d->tell(DockPrivate::News::Activated, currentWidget());
}

void Dock::showTab(int tab) {
    KXUI_INTERFACE_THREAD(this);
    const DockChange change(d->controller);
    const QWidget* before = currentWidget();
    d->pages->setCurrent(tab);
    if (currentWidget() == before)
        d->tell(DockPrivate::News::Activated, currentWidget());
}

void Dock::removeTab(int tab) {
    KXUI_INTERFACE_THREAD(this);
    d->pages->dropTab(tab);
}

void Dock::cycleCurrentWidget() {
    nextTab();
}

void Dock::nextTab() {
    if (count() > 0)
        setCurrentTab((currentTab() + 1) % count());
}

void Dock::prevTab() {
    if (count() > 0)
        setCurrentTab((currentTab() + count() - 1) % count());
}

void Dock::closeTab(int index) {
    KXUI_INTERFACE_THREAD(this);
    if (index < 0 || index >= count())
        return;
    const DockChange change(d->controller);
    const QPointer<Dock> alive(this);
    d->closePage(widget(index));
    if (alive)
        d->settleEmptied();
}

void Dock::closeActiveTab() {
    KXUI_INTERFACE_THREAD(this);
    closeTab(currentTab());
}

void Dock::closeInactiveTabs() {
    KXUI_INTERFACE_THREAD(this);
    const DockChange change(d->controller);
    const QPointer<Dock> alive(this);
    for (int i = count() - 1; i >= 0 && alive; --i) {
        if (i != currentTab() && i < count())
            closeTab(i);
    }
}

void Dock::floatActiveTab() {
    KXUI_INTERFACE_THREAD(this);
    floatWidgetAt(currentWidget(), mapToGlobal(QPoint()));
}

void Dock::floatWidgetAt(QWidget* page, const QPoint& global) {
    KXUI_INTERFACE_THREAD(this);
    if (!page || !d->controller)
        return;
    const DockChange change(d->controller);
    const QPointer<Dock> alive(this);
    const FocusKeeper keeper(page);
    floatPages(*d->controller, {page}, QRect(global, size()));
    if (alive)
        d->settleEmptied();
}

void Dock::floatDock() {
    KXUI_INTERFACE_THREAD(this);
    if (!d->controller)
        return;
    const DockChange change(d->controller);
    const FocusKeeper keeper(this);
    auto all = d->pages->list();
    std::reverse(all.begin(), all.end());
    const QPointer<Dock> alive(this);
    floatPages(*d->controller, all, QRect(mapToGlobal(QPoint()), size()));
    if (alive)
        setExpanded(false);
}

Dock* Dock::split(Qt::Orientation orientation, bool before) {
    KXUI_INTERFACE_THREAD(this);
    QPointer<Dock> fresh;
    {
        const DockChange change(d->controller);
        fresh = d->splitOff(orientation, before);
    }
    return fresh;
}

void Dock::splitHorizontal() {
    KXUI_INTERFACE_THREAD(this);
    split(Qt::Horizontal, false);
}

void Dock::splitVertical() {
    KXUI_INTERFACE_THREAD(this);
    split(Qt::Vertical, false);
}

void Dock::transposeDock() {
    if (auto* parent = qobject_cast<DockSplitter*>(parentWidget()))
        parent->setOrientation(parent->orientation() == Qt::Horizontal ? Qt::Vertical
                                                                       : Qt::Horizontal);
}

void Dock::fullscreenDock() {
    FullScreen::toggle(this, d->controller);
}

bool Dock::isFullscreenDock() const {
    return FullScreen::isOn(this);
}

void Dock::dumpLayout() {
    QSaveFile file(QStringLiteral("/tmp/layout.xml"));
    if (d->controller && file.open(QIODevice::WriteOnly) &&
        d->controller->saveLayout(&file, nullptr))
        file.commit();
}

void Dock::setExpanded(bool expanded) {
    KXUI_INTERFACE_THREAD(this);
    if (d->expanded == expanded)
        return;
    d->expanded = expanded;
    d->expandOuter(expanded);
    d->announce([this, expanded] { Q_EMIT expandedChanged(expanded); });
}

void Dock::setTitleVisible(bool visible) {
    KXUI_INTERFACE_THREAD(this);
    d->titleBar->endReveal();
    d->setTitleVisible(visible);
}

void Dock::updateTitles() {
    d->pages->updateTitles();
    d->layOutLater();
}

void Dock::setHover(bool hover) {
    KXUI_INTERFACE_THREAD(this);
    if (d->hover == hover)
        return;
    d->hover = hover;
    d->showDropTarget(hover);
    update();
}

void Dock::makeActive() {
    const DockChange change(d->controller);
    if (!d->controller || d->controller->activeDock() != this)
        setFocus(Qt::OtherFocusReason);
}

Dock* Dock::dockForWidget(const QWidget* widget) {
    for (QWidget* w = const_cast<QWidget*>(widget); w; w = w->parentWidget()) {
        if (auto* dock = qobject_cast<Dock*>(w))
            return dock;
    }
    return nullptr;
}

bool Dock::isTopLevel(const QWidget* widget) {
    for (; widget; widget = widget->parentWidget()) {
        const auto* splitter = qobject_cast<const QSplitter*>(widget);
        if (splitter && splitter->count() > 1)
            return false;
    }
    return true;
}

DockWindow* Dock::dockWindow() const {
    for (QWidget* w = parentWidget(); w; w = w->parentWidget()) {
        if (auto* window = qobject_cast<DockWindow*>(w))
            return window;
    }
    return nullptr;
}

QSize Dock::sizeHint() const {
    const QSize strip = d->tabBar->sizeHint();
    return {strip.width(), strip.height() + d->pages->sizeHint().height()};
}

bool Dock::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::Enter)
        enter();
    else if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange ||
             event->type() == QEvent::LayoutDirectionChange)
        d->layOutLater();
    return handled;
}

void Dock::resizeEvent(QResizeEvent* event) {
    // One that was posted by `layOutLater` may come after a real one has done its work.
    if (d->layoutIsDue || event->size() != event->oldSize())
        d->layOut();
}

void Dock::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor line = palette().color(QPalette::Shadow);
    line.setAlphaF(ColorPart(line.alphaF() * 0.23));
    painter.fillRect(0, d->titleHeight - 1, width(), 1, line);
    if (d->hover && !(d->controller && d->controller->splitPanelsByDragging()))
        painter.fillRect(0, 0, width(), 2, palette().highlight());
}

void Dock::contextMenuEvent(QContextMenuEvent* event) {
    const QPointer<Dock> alive(this);
    {
        const DockChange change(d->controller);
        setFocus(Qt::OtherFocusReason);
    }
    if (alive)
        d->menu->popup(event->globalPos());
}

void Dock::enter() {
    const DockChange change(d->controller);
    Q_EMIT mouseOver(true);
    // Typing is never interrupted by moving the mouse.
    if (d->hasFocusInside() || isTextField(QApplication::focusWidget()))
        return;
    if (!focusProxy() && currentWidget())
        currentWidget()->setFocus(Qt::OtherFocusReason);
    else
        setFocus(Qt::OtherFocusReason);
}

void Dock::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    Q_EMIT mouseOver(false);
    if (d->hasFocusInside()) {
        QWidget* focus = QApplication::focusWidget();
        setFocusProxy(focus == this ? nullptr : focus);
    }
}

void Dock::closeEvent(QCloseEvent* event) {
    const DockChange change(d->controller);
    const QPointer<Dock> alive(this);
    const bool closed = d->closePages();
    event->setAccepted(closed || !alive);
    if (!closed || !alive)
        return;
    DockWindow* window = dockWindow();
    const bool closesWindow = window && window != d->controller && isTopLevel(this);
    setExpanded(false);
    if (d->controller)
        DockMainWindowPrivate::of(*d->controller).places.paneCloses(this);
    // Deletion comes later; until then the pane is no part of the workspace any more.
    DockDragSession::instance().forget(this);
    hide();
    setParent(nullptr);
    if (closesWindow)
        window->close();
}

} // namespace Kestrel::UI
