#include <KxUI/dock/Dock.h>

#include <KxUI/dock/DockArrangeMenu_p.h>
#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockGeometry_p.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockPlaceHolder.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/dock/DockTitleBar.h>
#include <KxUI/dock/DockTreeEdit_p.h>
#include <KxUI/dock/DockWindow.h>
#include <KxUI/dock/HoverWidget.h>
#include <KxUI/dock/TitleBarButton.h>
#include <KxUI/kit/FullScreen.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/WindowSystem_p.h>

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QDoubleSpinBox>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QStackedWidget>
#include <QStyle>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>

#include <algorithm>

namespace Kestrel::UI {

namespace {

QIcon tabIcon(const QWidget* page) {
    return page->testAttribute(Qt::WA_SetWindowIcon) ? page->windowIcon() : QIcon();
}

bool isTextField(const QWidget* widget) {
    return qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget) ||
           qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QDoubleSpinBox*>(widget);
}

/** `policy` with the stretch of another. */
QSizePolicy stretched(QSizePolicy policy, const QSizePolicy& other) {
    policy.setHorizontalStretch(other.horizontalStretch());
    policy.setVerticalStretch(other.verticalStretch());
    return policy;
}

QVector<QPointer<QWidget>> pagesOf(const Dock& dock) {
    QVector<QPointer<QWidget>> pages;
    for (int i = 0; i < dock.count(); ++i)
        pages.append(dock.widget(i));
    return pages;
}

} // namespace

Dock::Dock(DockMainWindow* controller, DockWindow* parent)
    : QWidget(parent)
    , m_controller(controller) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_Hover);
    if (m_controller)
        m_controller->m_docks.insert(this);

    m_menu = createMenu();
    m_titleBar = new DockTitleBar(this);
    createTitleButtons();

    m_stack = new QStackedWidget(this);
    m_stack->setLineWidth(0);
    connect(m_stack, &QStackedWidget::widgetRemoved, this, &Dock::removeTab);

    m_tabBar = new DockTabBar(this, m_titleBar);
    connect(m_tabBar, &QTabBar::currentChanged, this, &Dock::showTab);
    connect(this, &Dock::mouseOver, m_tabBar, &DockTabBar::onMouseOverDock);
}

QMenu* Dock::createMenu() {
    auto* menu = new QMenu(tr("Panel"));
    connect(menu->addAction(IconFactory::icon(QStringLiteral(":/ui/qrc/images/HSplit.png")),
                            tr("Split Vertical")),
            &QAction::triggered, this, &Dock::splitVertical);
    connect(menu->addAction(IconFactory::icon(QStringLiteral(":/ui/qrc/images/VSplit.png")),
                            tr("Split Horizontal")),
            &QAction::triggered, this, &Dock::splitHorizontal);
    menu->addSeparator();
    const auto add = [&](const QString& text, void (Dock::*slot)()) {
        connect(menu->addAction(text), &QAction::triggered, this, slot);
    };
    add(tr("Float Pane"), &Dock::floatDock);
    connect(menu->addAction(tr("Close Pane")), &QAction::triggered, this, &QWidget::close);
    add(tr("Float Tab"), &Dock::floatActiveTab);
    add(tr("Close Tab"), &Dock::closeActiveTab);
    add(tr("Solo Tab"), &Dock::closeInactiveTabs);
    m_showTabsAction = menu->addAction(tr("Show Tabs"));
    m_showTabsAction->setCheckable(true);
    m_showTabsAction->setChecked(m_titleVisible);
    connect(m_showTabsAction, &QAction::toggled, this, &Dock::setTitleVisible);
    menu->addSeparator();

    if (m_controller) {
        DockArrangeMenu* arrange = m_controller->arrangeMenu();
        menu->addAction(arrange->menuAction());
        connect(menu, &QMenu::aboutToShow, arrange, [this, arrange] { arrange->setDock(this); });
    }
    return menu;
}

void Dock::createTitleButtons() {
    if (m_controller && m_controller->hasPanelMenu()) {
        m_menuButton = new TitleBarButton(m_titleBar);
        m_menuButton->setIcon(IconFactory::icon(QStringLiteral(":/ui/qrc/images/PanelMenu.png")));
        m_menuButton->setAccessibleName(m_menu->title());
        m_menuButton->setMenu(m_menu);
    }
    if (m_controller && m_controller->tabsAreClosable())
        return;
    const auto make = [this](QStyle::StandardPixmap icon, const QString& toolTip) {
        auto* button = new TitleBarButton(m_titleBar);
        button->setIcon(m_controller ? m_controller->sharedIcon(icon)
                                     : style()->standardIcon(icon, nullptr, this));
        button->setToolTip(toolTip);
        button->setAccessibleName(toolTip);
        return button;
    };
    m_floatButton = make(QStyle::SP_TitleBarNormalButton, tr("Float the current tab"));
    m_closeButton = make(QStyle::SP_TitleBarCloseButton, tr("Close the current tab"));
    connect(m_floatButton, &QPushButton::clicked, this, &Dock::floatActiveTab);
    connect(m_closeButton, &QPushButton::clicked, this, &Dock::closeActiveTab);
}

Dock::~Dock() {
    DockDragSession::instance().forget(this);
    // A page that lives on elsewhere would lose the focus with the pane that it stands for.
    setFocusProxy(nullptr);
    disconnect(m_stack, nullptr, this, nullptr);
    disconnect(m_tabBar, nullptr, this, nullptr);
    const auto pages = pagesOf(*this);
    for (int i = pages.size() - 1; i >= 0; --i) {
        QWidget* page = pages.at(i);
        if (!page)
            continue;
        const bool survives =
            !page->testAttribute(Qt::WA_DeleteOnClose) || m_refusedPages.contains(page);
        if (survives) {
            page->hide();
            page->setParent(nullptr);
        }
        if (m_controller)
            m_controller->emitWidgetRemoved(this, page);
    }
    delete m_menu;
    if (m_controller)
        m_controller->m_docks.remove(this);
}

int Dock::count() const {
    return m_stack->count();
}

QWidget* Dock::widget(int index) const {
    return m_stack->widget(index);
}

QWidget* Dock::currentWidget() const {
    return m_stack->currentWidget();
}

int Dock::currentTab() const {
    return m_stack->currentIndex();
}

bool Dock::singlePanel() const {
    const DockWindow* window = dockWindow();
    return window && window->panes().size() == 1;
}

QList<QWidget*> Dock::rememberedWidgets() const {
    QList<QWidget*> widgets;
    for (const auto& widget : m_rememberedWidgets) {
        if (widget)
            widgets.append(widget);
    }
    return widgets;
}

int Dock::tabBarHeight() const {
    return m_tabBar->tabRect(0).height();
}

void Dock::updateTabs() {
    m_tabBar->update();
}

void Dock::insertPage(int index, QWidget* page) {
    // Views count as painted what they showed in the window that they come from, wherever that is.
    if (page->testAttribute(Qt::WA_WState_Created) && page->window() != window())
        QTimer::singleShot(0, this, [this] { update(); });
    // The tab first would make the stack show a page that it does not have yet.
    const int at = m_stack->insertWidget(index, page);
    m_tabBar->insertTab(at, tabIcon(page), page->windowTitle());
    m_tabBar->setTabData(at, QVariant::fromValue<QObject*>(page));
}

void Dock::addWidget(QWidget* page, bool makeCurrent, bool remember) {
    QWidget* namesake = nullptr;
    for (int i = 0; i < count() && !namesake && !page->objectName().isEmpty(); ++i) {
        if (widget(i)->objectName() == page->objectName())
            namesake = widget(i);
    }
    const QPointer<QWidget> alive(page);
    if (m_stack->indexOf(page) >= 0) {
        m_tabBar->setCurrentIndex(m_stack->indexOf(page));
    } else {
        auto* placeHolder = qobject_cast<DockPlaceHolder*>(namesake);
        const int index = placeHolder ? m_stack->indexOf(placeHolder) : count();
        insertPage(index, page);
        if (makeCurrent)
            m_tabBar->setCurrentIndex(m_stack->indexOf(page));
        layOutLater();
        page->move(0, 0);
        if (placeHolder) {
            m_stack->removeWidget(placeHolder);
            placeHolder->hide();
            placeHolder->deleteLater();
        }
        applySingleTabRule();
        if (m_controller)
            m_controller->emitWidgetAdded(this, page);
    }
    if (remember && alive && !m_rememberedWidgets.contains(alive))
        m_rememberedWidgets.append(alive);
}

void Dock::insertWidget(int index, QWidget* page) {
    if (m_stack->indexOf(page) >= 0)
        m_stack->removeWidget(page);
    insertPage(index, page);
    // Another page than the current one is shown by the stack when its turn comes.
    if (m_stack->currentWidget() == page)
        page->show();
    applySingleTabRule();
    layOutLater();
    if (m_controller)
        m_controller->emitWidgetAdded(this, page);
}

void Dock::insertWidget(const QPoint& point, QWidget* page) {
    QVector<QRect> tabs;
    for (int i = 0; i < m_tabBar->count(); ++i)
        tabs.append(m_tabBar->tabRect(i));
    insertWidget(dropIndexAt(point, tabs), page);
}

void Dock::removeWidget(QWidget* page) {
    removeWidgetAndSetCurrentTab(page, 0);
}

void Dock::removeWidgetAndSetCurrentTab(QWidget* page, int tab) {
    if (m_stack->indexOf(page) < 0)
        return;
    QWidget* current = currentWidget();
    m_stack->removeWidget(page);
    page->hide();
    if (current && current != page)
        m_tabBar->setCurrentIndex(m_stack->indexOf(current));
    else
        m_tabBar->setCurrentIndex(tab);
    applySingleTabRule();
    layOutLater();
    if (m_controller)
        m_controller->emitWidgetRemoved(this, page);
}

QWidget* Dock::restorePlaceHolderForWidget(QWidget* page) {
    if (!m_controller || !m_controller->isInLayout(page->objectName()))
        return nullptr;
    auto* placeHolder = new DockPlaceHolder;
    placeHolder->setObjectName(page->objectName());
    const int at = m_stack->addWidget(placeHolder);
    page->show();
    m_tabBar->insertTab(at, tabIcon(page), page->windowTitle());
    m_tabBar->setTabData(at, QVariant::fromValue<QObject*>(placeHolder));
    layOutLater();
    return placeHolder;
}

void Dock::setCurrentWidget(QWidget* page) {
    setCurrentTab(page ? m_stack->indexOf(page) : m_previousTab);
}

void Dock::setCurrentTab(int index) {
    if (index < 0 || index >= count())
        return;
    const QPointer<Dock> alive(this);
    m_tabBar->setCurrentIndex(index);
    if (alive && m_controller && currentWidget())
        m_controller->emitWidgetActivated(this, currentWidget());
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

void Dock::showTab(int tab) {
    if (tab != m_stack->currentIndex())
        m_previousTab = std::max(0, m_stack->currentIndex());
    m_stack->setCurrentIndex(tab);
    setFocusProxy(currentWidget());
    if (m_controller && currentWidget())
        m_controller->emitWidgetActivated(this, currentWidget());
}

void Dock::removeTab(int tab) {
    m_tabBar->removeTab(tab);
    // A page that went elsewhere must not take this pane's focus along.
    const QWidget* proxy = focusProxy();
    bool isHere = proxy == nullptr;
    for (int i = 0; i < count() && !isHere; ++i)
        isHere = isInside(widget(i), proxy);
    if (!isHere)
        setFocusProxy(currentWidget());
    layOutLater();
}

bool Dock::closePage(QWidget* widget) {
    const QPointer<Dock> alive(this);
    const QPointer<QWidget> page(widget);
    const bool hadFocus = hasFocusInside();
    // Closing clears the attribute.
    const bool deletesItself = page->testAttribute(Qt::WA_DeleteOnClose);
    if (!page->close())
        return false;
    if (!alive)
        return true;
    if (page && deletesItself) {
        // Its tab stays until it is gone; only then can its window be found empty.
        connect(page, &QObject::destroyed, this, &Dock::closeWindowIfEmpty, Qt::QueuedConnection);
    } else if (page && m_stack->indexOf(page) >= 0) {
        removeWidgetAndSetCurrentTab(page, 0);
        if (page)
            page->setParent(nullptr);
    }
    if (alive && hadFocus) {
        if (currentWidget())
            currentWidget()->setFocus(Qt::OtherFocusReason);
        else
            setFocus(Qt::OtherFocusReason);
    }
    return true;
}

void Dock::closeTab(int index) {
    if (index < 0 || index >= count())
        return;
    const QPointer<Dock> alive(this);
    closePage(widget(index));
    if (alive)
        closeWindowIfEmpty();
}

void Dock::closeActiveTab() {
    closeTab(currentTab());
}

void Dock::closeInactiveTabs() {
    const QPointer<Dock> alive(this);
    for (int i = count() - 1; i >= 0 && alive; --i) {
        if (i != currentTab() && i < count())
            closeTab(i);
    }
}

void Dock::floatActiveTab() {
    if (QWidget* page = currentWidget())
        floatWidgetAt(page, mapToGlobal(QPoint()));
}

void Dock::floatWidgetAt(QWidget* page, const QPoint& global) {
    if (!m_controller)
        return;
    const QPointer<Dock> alive(this);
    const FocusKeeper keeper(page);
    DockWindow* window = m_controller->createWindow();
    Dock* dock = m_controller->createDock();
    dock->addWidget(page, true, false);
    window->addWidget(dock);
    m_controller->addFloatingDock(window);
    window->move(global);
    window->resize(size());
    window->show();
    window->activateWindow();
    raiseWindow(window);
    if (alive)
        closeWindowIfEmpty();
}

void Dock::floatDock() {
    if (!m_controller)
        return;
    const FocusKeeper keeper(this);
    DockWindow* window = m_controller->createWindow();
    Dock* dock = m_controller->createDock();
    const auto pages = pagesOf(*this);
    for (int i = pages.size() - 1; i >= 0; --i) {
        if (pages.at(i))
            dock->addWidget(pages.at(i), true, false);
    }
    window->addWidget(dock);
    m_controller->addFloatingDock(window);
    window->move(mapToGlobal(QPoint()));
    window->resize(size());
    window->show();
    bringToFront(window);
}

Dock* Dock::split(Qt::Orientation orientation, bool before) {
    auto* parent = qobject_cast<DockSplitter*>(parentWidget());
    if (!parent || !m_controller)
        return nullptr;
    const FocusKeeper keeper(this);
    QList<int> sizes = parent->sizes();
    const int index = parent->indexOf(this);
    Dock* fresh = m_controller->createDock();

    if (parent->orientation() != orientation && parent->count() > 1) {
        const DockTreeEdit edit;
        const bool horizontal = orientation == Qt::Horizontal;
        const int length = horizontal ? width() : height();
        auto* branch = new DockSplitter(orientation);
        // The branch stands in for this pane, whose stretch would set it against its new neighbour.
        branch->setSizePolicy(stretched(branch->sizePolicy(), sizePolicy()));
        setSizePolicy(stretched(sizePolicy(), QSizePolicy()));
        parent->insertWidget(index, branch);
        branch->addWidget(before ? fresh : this);
        branch->addWidget(before ? this : fresh);
        branch->setSizes({length, length});
        branch->updateDocks();
    } else {
        parent->setOrientation(orientation);
        parent->insertWidget(before ? index : index + 1, fresh);
        sizes[index] /= 2;
        sizes.insert(index + 1, sizes.at(index));
    }
    parent->setSizes(sizes);
    parent->updateDocks();
    return fresh;
}

void Dock::splitHorizontal() {
    split(Qt::Horizontal, false);
}

void Dock::splitVertical() {
    split(Qt::Vertical, false);
}

void Dock::transposeDock() {
    if (auto* parent = qobject_cast<DockSplitter*>(parentWidget()))
        parent->setOrientation(parent->orientation() == Qt::Horizontal ? Qt::Vertical
                                                                       : Qt::Horizontal);
}

void Dock::fullscreenDock() {
    FullScreen::Toggle(this, m_controller);
}

bool Dock::isFullscreenDock() const {
    return FullScreen::IsOn(this);
}

void Dock::dumpLayout() {
    QSaveFile file(QStringLiteral("/tmp/layout.xml"));
    if (m_controller && file.open(QIODevice::WriteOnly) && m_controller->saveLayout(&file, nullptr))
        file.commit();
}

void Dock::setExpanded(bool expanded) {
    if (m_expanded == expanded)
        return;
    m_expanded = expanded;
    struct Step {
        DockSplitter* splitter;
        int index;
    };
    QVector<Step> outwards;
    QWidget* child = this;
    for (QWidget* parent = parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto* splitter = qobject_cast<DockSplitter*>(parent))
            outwards.append({splitter, splitter->indexOf(child)});
        child = parent;
    }
    if (expanded) {
        for (const Step& step : qAsConst(outwards))
            step.splitter->expand(step.index);
    } else {
        for (auto step = outwards.crbegin(); step != outwards.crend(); ++step)
            step->splitter->expand(-1);
    }
}

void Dock::setTitleVisible(bool visible) {
    if (m_titleVisible == visible)
        return;
    m_titleVisible = visible;
    {
        const QSignalBlocker blocker(m_showTabsAction);
        m_showTabsAction->setChecked(visible);
    }
    m_tabBar->setVisible(visible);
    for (TitleBarButton* button : {m_menuButton, m_floatButton, m_closeButton}) {
        if (button)
            button->setVisible(visible);
    }
    update();
    m_titleBar->update();
    layOutLater();
}

void Dock::updateTitles() {
    for (int i = 0; i < count(); ++i) {
        m_tabBar->setTabText(i, widget(i)->windowTitle());
        m_tabBar->setTabIcon(i, tabIcon(widget(i)));
    }
    layOutLater();
}

void Dock::setHover(bool hover) {
    if (m_hover == hover)
        return;
    m_hover = hover;
    DockDragSession& session = DockDragSession::instance();
    const bool showsZones = m_controller && m_controller->splitPanelsByDragging();
    if (showsZones && hover && !session.hoverWidget()) {
        auto* indicator = new HoverWidget;
        session.setHoverWidget(indicator);
        indicator->setZone(session.zone());
        indicator->setGeometry(QRect(m_stack->mapToGlobal(QPoint()), m_stack->size()));
        indicator->show();
        if (session.page())
            raiseWindow(session.page());
    } else if (!hover) {
        session.setHoverWidget(nullptr);
    }
    update();
}

void Dock::makeActive() {
    if (!m_controller || m_controller->activeDock() != this)
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

bool Dock::parentCanBeClosed() const {
    const DockWindow* window = dockWindow();
    return count() == 0 && window && window != m_controller && isTopLevel(this);
}

void Dock::closeWindowIfEmpty() {
    if (parentCanBeClosed())
        dockWindow()->close();
}

void Dock::applySingleTabRule() {
    if (m_controller && m_controller->hideSingleTabs())
        setTitleVisible(count() != 1);
}

bool Dock::hasFocusInside() const {
    return isInside(this, QApplication::focusWidget());
}

QSize Dock::sizeHint() const {
    const QSize strip = m_tabBar->sizeHint();
    return {strip.width(), strip.height() + m_stack->sizeHint().height()};
}

PaneMetrics Dock::metrics() const {
    PaneMetrics metrics;
    metrics.pane = size();
    metrics.titleVisible = m_titleVisible;
    metrics.hasMenu = m_menuButton != nullptr;
    metrics.hasCloseButton = m_closeButton != nullptr;
    if (m_closeButton)
        metrics.closeHint = m_closeButton->sizeHint();
    if (m_floatButton)
        metrics.floatHint = m_floatButton->sizeHint();
    metrics.margin = style()->pixelMetric(QStyle::PM_DockWidgetTitleMargin, nullptr, this);
    metrics.lineSpacing = fontMetrics().lineSpacing();
    metrics.stripHint = m_tabBar->sizeHint();
    metrics.rightToLeft = isRightToLeft();
    return metrics;
}

void Dock::updateSizeLimits() {
    bool hasToolBar = false;
    for (int i = 0; i < count() && !hasToolBar; ++i)
        hasToolBar = qobject_cast<QToolBar*>(widget(i)) != nullptr;
    const QLayout* layout = m_stack->layout();
    setMinimumSize(hasToolBar ? layout->minimumSize() : QSize(0, 0));
    setMaximumSize(hasToolBar ? layout->maximumSize() : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void Dock::layOut() {
    m_layoutIsDue = false;
    updateSizeLimits();
    const PaneLayout layout = layOutPane(metrics());
    m_titleHeight = layout.titleHeight;
    m_titleBar->setGeometry(layout.titleBar);
    m_stack->setGeometry(layout.stack);
    if (!m_titleVisible)
        return;
    m_tabBar->setGeometry(layout.strip);
    if (m_menuButton)
        m_menuButton->setGeometry(layout.menuButton);
    for (TitleBarButton* button : {m_floatButton, m_closeButton}) {
        if (!button)
            continue;
        button->setGeometry(button == m_closeButton ? layout.closeButton : layout.floatButton);
        button->setVisible(layout.buttonsFit);
    }
}

void Dock::layOutLater() {
    if (m_layoutIsDue)
        return;
    m_layoutIsDue = true;
    QCoreApplication::postEvent(this, new QResizeEvent(size(), size()));
}

bool Dock::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::LayoutDirectionChange)
        layOutLater();
    return handled;
}

void Dock::resizeEvent(QResizeEvent* event) {
    // One that was posted by `layOutLater` may come after a real one has done its work.
    if (m_layoutIsDue || event->size() != event->oldSize())
        layOut();
}

void Dock::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor line = palette().color(QPalette::Shadow);
    line.setAlphaF(line.alphaF() * 0.23);
    painter.fillRect(0, m_titleHeight - 1, width(), 1, line);
    if (m_hover && !(m_controller && m_controller->splitPanelsByDragging()))
        painter.fillRect(0, 0, width(), 2, palette().highlight());
}

void Dock::contextMenuEvent(QContextMenuEvent* event) {
    setFocus(Qt::OtherFocusReason);
    m_menu->popup(event->globalPos());
}

void Dock::enterEvent(QEvent* event) {
    QWidget::enterEvent(event);
    Q_EMIT mouseOver(true);
    // Typing is never interrupted by moving the mouse.
    if (hasFocusInside() || isTextField(QApplication::focusWidget()))
        return;
    if (!focusProxy() && currentWidget())
        currentWidget()->setFocus(Qt::OtherFocusReason);
    else
        setFocus(Qt::OtherFocusReason);
}

void Dock::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    Q_EMIT mouseOver(false);
    if (hasFocusInside()) {
        QWidget* focus = QApplication::focusWidget();
        setFocusProxy(focus == this ? nullptr : focus);
    }
}

void Dock::closeEvent(QCloseEvent* event) {
    const QPointer<Dock> alive(this);
    m_refusedPages.clear();
    bool refused = false;
    const auto pages = pagesOf(*this);
    for (int i = pages.size() - 1; i >= 0; --i) {
        const QPointer<QWidget> page = pages.at(i);
        if (!page || m_stack->indexOf(page) < 0)
            continue;
        const bool deletesItself = page->testAttribute(Qt::WA_DeleteOnClose);
        const bool closed = page->close();
        if (!alive)
            return;
        if (!closed) {
            refused = true;
            m_refusedPages.append(page);
        } else if (page && !deletesItself && m_stack->indexOf(page) >= 0) {
            m_stack->removeWidget(page);
            page->setParent(nullptr);
            if (m_controller)
                m_controller->emitWidgetRemoved(this, page);
        }
    }
    event->setAccepted(!refused);
    if (refused || !alive)
        return;

    // Pages that delete themselves may still be here; they no longer count.
    DockWindow* window = dockWindow();
    const bool closesWindow = window && window != m_controller && isTopLevel(this);
    // Deletion comes later; until then the pane is no part of the workspace any more.
    DockDragSession::instance().forget(this);
    hide();
    setParent(nullptr);
    if (closesWindow)
        window->close();
}

} // namespace Kestrel::UI
