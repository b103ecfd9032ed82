#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockGeometry_p.h>
#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/dock/DockMenu_p.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/dock/DockTitleBar.h>
#include <KxUI/dock/DockTreeEdit_p.h>
#include <KxUI/dock/DockWindow.h>
#include <KxUI/dock/Dock_p.h>
#include <KxUI/dock/FocusKeeper_p.h>
#include <KxUI/dock/HoverWidget.h>
#include <KxUI/dock/TitleBarButton.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/WindowSystem_p.h>

#include <QApplication>
#include <QLayout>
#include <QResizeEvent>
#include <QStyle>
#include <QTimer>
#include <QToolBar>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

namespace {

/** `policy` with the stretch of another. */
QSizePolicy stretched(QSizePolicy policy, const QSizePolicy& other) {
    policy.setHorizontalStretch(other.horizontalStretch());
    policy.setVerticalStretch(other.verticalStretch());
    return policy;
}

} // namespace

DockPrivate::DockPrivate(Dock* dock, DockMainWindow* workspace)
    : q(dock)
    , controller(workspace) {
    if (controller)
        DockMainWindowPrivate::of(*controller).docks.insert(q);
}

void DockPrivate::createParts() {
    q->setAttribute(Qt::WA_DeleteOnClose);
    q->setAttribute(Qt::WA_QuitOnClose, false);
    q->setAttribute(Qt::WA_Hover);
    menu = new DockMenu(q);
    titleBar = new DockTitleBar(q);
    createTitleButtons();
    pages = new DockPages(q);
    tabBar = new DockTabBar(q, titleBar);
    pages->setStrip(tabBar);
    QObject::connect(pages, &DockPages::chosen, q, &Dock::showTab);
    QObject::connect(pages, &DockPages::shown, q, [this] { pageShown(); });
    QObject::connect(pages, &DockPages::left, q,
                     [this](QWidget* page, DockPages::Leaving how) { pageLeft(page, how); });
    QObject::connect(pages, &DockPages::gone, q, [this](QWidget* page) {
        if (controller)
            DockMainWindowPrivate::of(*controller).announcer.tellNow(News::Removed, q, page);
    });
    QObject::connect(q, &Dock::mouseOver, tabBar, &DockTabBar::onMouseOverDock);
}

void DockPrivate::createTitleButtons() {
    if (controller && controller->hasPanelMenu()) {
        menuButton = new TitleBarButton(titleBar);
        menuButton->setIcon(IconFactory::icon(QStringLiteral(":/ui/qrc/images/PanelMenu.png")));
        menuButton->setAccessibleName(menu->title());
        menuButton->setMenu(menu);
    }
    if (controller && controller->tabsAreClosable())
        return;
    const auto make = [this](QStyle::StandardPixmap icon, const QString& toolTip) {
        auto* button = new TitleBarButton(titleBar);
        button->setIcon(controller ? DockMainWindowPrivate::of(*controller).sharedIcon(icon)
                                   : q->style()->standardIcon(icon, nullptr, q));
        button->setToolTip(toolTip);
        button->setAccessibleName(toolTip);
        return button;
    };
    floatButton = make(QStyle::SP_TitleBarNormalButton, Dock::tr("Float the current tab"));
    closeButton = make(QStyle::SP_TitleBarCloseButton, Dock::tr("Close the current tab"));
    QObject::connect(floatButton, &QPushButton::clicked, q, &Dock::floatActiveTab);
    QObject::connect(closeButton, &QPushButton::clicked, q, [this] { closeTabOrPane(); });
}

/** The button closes tabs; where there are none, it may close the pane. */
void DockPrivate::closeTabOrPane() {
    if (pages->count() == 0 && controller && controller->emptiedPanesClose()) {
        const DockChange change(controller);
        DockMainWindowPrivate::of(*controller).places.closeEmpty(q);
    } else {
        q->closeActiveTab();
    }
}

void DockPrivate::tearDown() {
    {
        const DockChange change(controller);
        DockDragSession& drag = DockDragSession::instance();
        q->setExpanded(false);
        // A page that lives on elsewhere would lose the focus with the pane that it stands for.
        q->setFocusProxy(nullptr);
        const bool hasNews = pages->count() > 0 || drag.source() == q;
        drag.forget(q);
        // What is around the pane may be destroyed by those who now hear of its pages.
        if (controller && q->parentWidget() && hasNews)
            q->setParent(nullptr);
        releasePages();
        if (controller)
            DockMainWindowPrivate::of(*controller).docks.remove(q);
    }
    // While all that they ask for is still there.
    QObject::disconnect(pages, nullptr, q, nullptr);
    if (menu)
        menu->dispose();
    delete pages;
    delete titleBar;
}

void DockPrivate::tell(News news, QWidget* page) {
    if (!controller)
        return;
    DockAnnouncer& announcer = DockMainWindowPrivate::of(*controller).announcer;
    if (pages->isFollowing())
        announcer.tellLater(news, q, page);
    else
        announcer.tell(news, q, page);
}

void DockPrivate::announce(std::function<void()> emission) {
    if (controller)
        DockMainWindowPrivate::of(*controller).announcer.tell(q, std::move(emission));
    else
        emission();
}

void DockPrivate::tellCurrentTab() {
    const int index = q->currentTab();
    if (index == toldTab)
        return;
    toldTab = index;
    announce([dock = q, index] { Q_EMIT dock->currentTabChanged(index); });
}

void DockPrivate::insert(int index, QWidget* page) {
    // A page is in one place only; its pane lets it go as if it had been taken out.
    if (DockPages* elsewhere = DockPages::holding(page))
        elsewhere->take(page);
    // Views count as painted what they showed in the window that they come from, wherever that is.
    if (page->testAttribute(Qt::WA_WState_Created) && page->window() != q->window())
        QTimer::singleShot(0, q, [this] { q->update(); });
    pages->insert(index, page);
    layOutLater();
}

void DockPrivate::moveOrInsert(int index, QWidget* page) {
    if (pages->find(page) >= 0)
        pages->move(page, index);
    else
        insert(index, page);
}

void DockPrivate::pageShown() {
    QWidget* page = q->currentWidget();
    q->setFocusProxy(page);
    tell(News::Activated, page);
    if (!pages->isFollowing())
        tellCurrentTab();
}

void DockPrivate::pageLeft(QWidget* page, DockPages::Leaving how) {
    // A page that went elsewhere must not take this pane's focus along.
    if (const QWidget* proxy = q->focusProxy()) {
        const auto all = pages->list();
        if (std::none_of(all.begin(), all.end(),
                         [proxy](const auto& other) { return isInside(other, proxy); }))
            q->setFocusProxy(q->currentWidget());
    }
    applySingleTabRule();
    layOutLater();
    if (!pages->isFollowing())
        tellCurrentTab();
    if (how != DockPages::Leaving::Destroyed)
        tell(News::Removed, page);
}

void DockPrivate::focusCurrent() {
    QWidget* page = q->currentWidget();
    (page ? page : q)->setFocus(Qt::OtherFocusReason);
}

bool DockPrivate::closePage(QWidget* widget) {
    const QPointer<Dock> alive(q);
    const QPointer<QWidget> page(widget);
    const bool hadFocus = hasFocusInside();
    if (!page->close())
        return false;
    if (!alive)
        return true;
    // One that deletes itself does so later; it counts no longer.
    if (page && pages->find(page) >= 0) {
        pages->take(page);
        page->setParent(nullptr);
    }
    if (alive && hadFocus)
        focusCurrent();
    return true;
}

bool DockPrivate::closePages() {
    const QPointer<Dock> alive(q);
    refused.clear();
    bool all = true;
    const auto list = pages->list();
    for (int i = int(list.size()) - 1; i >= 0; --i) {
        const QPointer<QWidget> page = list.at(i);
        if (!page || pages->find(page) < 0)
            continue;
        const bool closed = page->close();
        if (!alive)
            return true;
        if (!closed) {
            all = false;
            refused.append(page);
        } else if (page && pages->find(page) >= 0) {
            pages->take(page);
            page->setParent(nullptr);
        }
    }
    return all;
}

void DockPrivate::releasePages() {
    const auto list = pages->list();
    for (int i = int(list.size()) - 1; i >= 0; --i) {
        QWidget* page = list.at(i);
        if (!page)
            continue;
        const bool survives = !page->testAttribute(Qt::WA_DeleteOnClose) || refused.contains(page);
        pages->take(page);
        if (survives)
            page->setParent(nullptr);
    }
}

bool DockPrivate::parentCanBeClosed() const {
    const DockWindow* window = q->dockWindow();
    return pages->count() == 0 && window && window != controller && Dock::isTopLevel(q);
}

void DockPrivate::settleEmptied() {
    if (pages->count() > 0)
        return;
    q->setExpanded(false);
    if (parentCanBeClosed())
        q->dockWindow()->close();
}

void DockPrivate::applySingleTabRule() {
    if (!controller || !controller->hideSingleTabs() || DockDragSession::instance().source() == q)
        return;
    if (pages->count() != 1)
        q->setTitleVisible(true);
    else if (!titleBar->isRevealed())
        q->setTitleVisible(false);
}

void DockPrivate::setTitleVisible(bool visible) {
    if (titleVisible == visible)
        return;
    titleVisible = visible;
    menu->setTitleVisible(visible);
    tabBar->setVisible(visible);
    for (TitleBarButton* button : {menuButton, floatButton, closeButton}) {
        if (button)
            button->setVisible(visible);
    }
    q->update();
    titleBar->update();
    layOutLater();
    announce([dock = q, visible] { Q_EMIT dock->titleVisibleChanged(visible); });
}

bool DockPrivate::titleStays() const {
    return titleVisible && !titleBar->isRevealed();
}

void DockPrivate::expandOuter(bool expand) {
    struct Step {
        DockSplitter* splitter;
        int index;
    };
    QVector<Step> outwards;
    QWidget* child = q;
    for (QWidget* parent = q->parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto* splitter = qobject_cast<DockSplitter*>(parent))
            outwards.append({splitter, splitter->indexOf(child)});
        child = parent;
    }
    if (expand) {
        for (const Step& step : qAsConst(outwards))
            step.splitter->expand(step.index);
    } else {
        for (auto step = outwards.crbegin(); step != outwards.crend(); ++step)
            step->splitter->expand(-1);
    }
}

Dock* DockPrivate::splitOff(Qt::Orientation orientation, bool before) {
    const QPointer<DockSplitter> parent(qobject_cast<DockSplitter*>(q->parentWidget()));
    if (!parent || !controller)
        return nullptr;
    const QPointer<Dock> alive(q);
    const FocusKeeper keeper(q);
    Dock* fresh = controller->createDock();
    if (!fresh || !alive || !parent || parent != q->parentWidget())
        return nullptr;

    QList<int> sizes = parent->sizes();
    const int index = parent->indexOf(q);
    if (parent->orientation() != orientation && parent->count() > 1) {
        const DockTreeEdit edit;
        const int length = orientation == Qt::Horizontal ? q->width() : q->height();
        auto* branch = new DockSplitter(orientation);
        // The branch stands in for this pane, whose stretch would set it against its new neighbour.
        branch->setSizePolicy(stretched(branch->sizePolicy(), q->sizePolicy()));
        q->setSizePolicy(stretched(q->sizePolicy(), QSizePolicy()));
        parent->insertWidget(index, branch);
        branch->addWidget(before ? fresh : q);
        branch->addWidget(before ? q : fresh);
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

void DockPrivate::showDropTarget(bool shows) {
    DockDragSession& session = DockDragSession::instance();
    if (!shows) {
        session.setHoverWidget(nullptr);
        return;
    }
    if (!controller || !controller->splitPanelsByDragging() || session.hoverWidget())
        return;
    auto* indicator = new HoverWidget;
    session.setHoverWidget(indicator);
    indicator->setZone(session.zone());
    indicator->setGeometry(QRect(pages->mapToGlobal(QPoint()), pages->size()));
    indicator->show();
    if (session.page())
        raiseWindow(session.page());
}

bool DockPrivate::hasFocusInside() const {
    return isInside(q, QApplication::focusWidget());
}

PaneMetrics DockPrivate::metrics() const {
    PaneMetrics metrics;
    metrics.pane = q->size();
    metrics.titleVisible = titleVisible;
    metrics.hasMenu = menuButton != nullptr;
    metrics.hasCloseButton = closeButton != nullptr;
    if (closeButton)
        metrics.closeHint = closeButton->sizeHint();
    if (floatButton)
        metrics.floatHint = floatButton->sizeHint();
    metrics.margin = q->style()->pixelMetric(QStyle::PM_DockWidgetTitleMargin, nullptr, q);
    metrics.lineSpacing = q->fontMetrics().lineSpacing();
    metrics.stripHint = tabBar->sizeHint();
    metrics.rightToLeft = q->isRightToLeft();
    return metrics;
}

void DockPrivate::updateSizeLimits() {
    bool hasToolBar = false;
    for (int i = 0; i < pages->count() && !hasToolBar; ++i)
        hasToolBar = qobject_cast<QToolBar*>(pages->widget(i)) != nullptr;
    const QLayout* layout = pages->layout();
    q->setMinimumSize(hasToolBar ? layout->minimumSize() : QSize(0, 0));
    q->setMaximumSize(hasToolBar ? layout->maximumSize() : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void DockPrivate::layOut() {
    layoutIsDue = false;
    updateSizeLimits();
    const PaneLayout layout = layOutPane(metrics());
    titleHeight = layout.titleHeight;
    titleBar->setGeometry(layout.titleBar);
    pages->setGeometry(layout.stack);
    if (!titleVisible)
        return;
    tabBar->setGeometry(layout.strip);
    if (menuButton)
        menuButton->setGeometry(layout.menuButton);
    for (TitleBarButton* button : {floatButton, closeButton}) {
        if (!button)
            continue;
        button->setGeometry(button == closeButton ? layout.closeButton : layout.floatButton);
        button->setVisible(layout.buttonsFit);
    }
}

void DockPrivate::layOutLater() {
    if (layoutIsDue)
        return;
    layoutIsDue = true;
    QCoreApplication::postEvent(q, new QResizeEvent(q->size(), q->size()));
}

} // namespace Kestrel::UI
