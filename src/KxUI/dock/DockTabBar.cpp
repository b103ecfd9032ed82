#include <KxUI/dock/DockTabBar.h>

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockTitleBar.h>
#include <KxUI/dock/Dock_p.h>
#include <KxUI/dock/DropZones_p.h>
#include <KxUI/dock/FocusKeeper_p.h>
#include <KxUI/dock/StripDrag_p.h>

#include <QApplication>
#include <QMouseEvent>
#include <QStyleOptionTab>
#include <QStylePainter>
#include <QToolButton>

#include <algorithm>

namespace Kestrel::UI {

class DockTabBarPrivate {
public:
    DockTabBarPrivate(DockTabBar* strip, Dock* pane, DockTitleBar* bar)
        : q(strip)
        , dock(pane)
        , titleBar(bar) {}

    void setUp();
    StripGeometry geometry() const;
    DockMainWindow* workspace() const { return dock ? dock->controller() : nullptr; }
    void execute(const StripDrag::Step& step, const QPoint& global);
    void movePage(int from, int to);
    void paintTab(int index, QStylePainter& painter);
    void highlight(QStyleOptionTab& option) const;

    DockTabBar* const q;
    Dock* const dock;
    DockTitleBar* const titleBar;
    StripDrag drag;
    bool hover = false;
};

DockTabBar::DockTabBar(Dock* dock, DockTitleBar* titleBar)
    : QTabBar(titleBar)
    , d(std::make_unique<DockTabBarPrivate>(this, dock, titleBar)) {
    d->setUp();
}

DockTabBar::DockTabBar(QWidget* parent)
    : QTabBar(parent)
    , d(std::make_unique<DockTabBarPrivate>(this, nullptr, nullptr)) {
    d->setUp();
}

void DockTabBarPrivate::setUp() {
    q->setFocusPolicy(Qt::NoFocus);
    // Nor its scroll buttons, which would have the focus before any page.
    const auto buttons = q->findChildren<QToolButton*>();
    for (QToolButton* button : buttons)
        button->setFocusPolicy(Qt::NoFocus);
    q->setDrawBase(false);
    // A move without a button tells that a release was lost.
    q->setMouseTracking(true);
    if (workspace() && workspace()->tabsAreClosable()) {
        q->setTabsClosable(true);
        QObject::connect(q, &QTabBar::tabCloseRequested, dock, &Dock::closeTab);
    }
}

DockTabBar::~DockTabBar() = default;

Dock* DockTabBar::dock() const {
    return d->dock;
}

void DockTabBar::onMouseOverDock(bool on) {
    if (d->hover == on)
        return;
    d->hover = on;
    update();
}

bool DockTabBar::event(QEvent* event) {
    // Qt goes on with the strip after it has made another tab current: the host, which may destroy
    // the strip, hears of it only then.
    const DockChange change(d ? d->workspace() : nullptr);
    return QTabBar::event(event);
}

StripGeometry DockTabBarPrivate::geometry() const {
    StripGeometry geometry;
    geometry.titleBar = titleBar ? titleBar->rect() : q->rect();
    geometry.titleBar.setLeft(-q->x());
    geometry.tabs = tabRects(*q);
    return geometry;
}

void DockTabBar::mousePressEvent(QMouseEvent* event) {
    const QPointer<DockTabBar> alive(this);
    DockDragSession::instance().cancel();
    if (!alive)
        return;
    d->drag.end();
    const StripGeometry before = d->geometry();
    QTabBar::mousePressEvent(event);
    // Making the pressed tab current showed and hid pages.
    if (!alive || !d->dock || event->button() != Qt::LeftButton)
        return;
    d->titleBar->setPressed(true);
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        d->dock->floatActiveTab();
        return;
    }
    d->drag.press(event->pos(), before);
    d->dock->setFocus(Qt::MouseFocusReason);
}

void DockTabBar::mouseMoveEvent(QMouseEvent* event) {
    DockDragSession& session = DockDragSession::instance();
    const bool leftHeld = event->buttons().testFlag(Qt::LeftButton);
    if (session.isActive()) {
        if (leftHeld)
            session.moveTo(event->globalPos());
        else
            session.cancel();
        return;
    }
    const StripDrag::Step step =
        d->drag.move(event->pos(), leftHeld, QApplication::startDragDistance(), d->geometry());
    if (step.command == StripDrag::Command::None && !d->drag.isDragging())
        QTabBar::mouseMoveEvent(event);
    else
        d->execute(step, event->globalPos());
}

void DockTabBarPrivate::execute(const StripDrag::Step& step, const QPoint& global) {
    switch (step.command) {
    case StripDrag::Command::TearOff:
        DockDragSession::instance().begin(q, dock->widget(step.index), drag.pressPosition(),
                                          global);
        break;
    case StripDrag::Command::Reorder:
        movePage(drag.index(), step.index);
        break;
    case StripDrag::Command::Begin:
    case StripDrag::Command::None:
        break;
    }
    if (drag.isDragging())
        q->update();
}

void DockTabBar::mouseReleaseEvent(QMouseEvent* event) {
    const QPointer<DockTabBar> alive(this);
    const QPointer<DockTitleBar> titleBar(d->titleBar);
    QTabBar::mouseReleaseEvent(event);
    if (!alive || event->button() != Qt::LeftButton)
        return;
    const bool wasReordering = d->drag.isDragging();
    d->drag.end();
    update();
    DockDragSession& session = DockDragSession::instance();
    if (!wasReordering && session.isActive())
        session.drop(event->globalPos(), event->modifiers().testFlag(Qt::ControlModifier));
    if (titleBar)
        titleBar->setPressed(false);
}

void DockTabBar::hideEvent(QHideEvent* event) {
    // A hidden widget gets no release.
    d->drag.end();
    DockDragSession& session = DockDragSession::instance();
    if (session.isActive() && session.source() == d->dock)
        session.cancel();
    if (d->titleBar)
        d->titleBar->setPressed(false);
    QTabBar::hideEvent(event);
}

void DockTabBarPrivate::movePage(int from, int to) {
    QWidget* page = dock->widget(from);
    if (!page)
        return;
    dock->setUpdatesEnabled(false);
    dock->insertWidget(to, page);
    dock->setCurrentWidget(page);
    dock->setUpdatesEnabled(true);
    drag.moved(to);
}

void DockTabBar::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    const int current = currentIndex();
    for (int i = 0; i < count(); ++i) {
        if (i != current)
            d->paintTab(i, painter);
    }
    if (current >= 0)
        d->paintTab(current, painter);
}

void DockTabBarPrivate::paintTab(int index, QStylePainter& painter) {
    QStyleOptionTab option;
    q->initStyleOption(&option, index);
    if (drag.isDragging()) {
        if (index == drag.index())
            option.rect.moveLeft(
                std::max(0, std::min(drag.left(), q->width() - option.rect.width())));
        else
            option.state.setFlag(QStyle::State_MouseOver, false);
    }
    const DockMainWindow* controller = workspace();
    if (controller && controller->highlightCurrentTab() && index == q->currentIndex())
        highlight(option);
    painter.drawControl(QStyle::CE_TabBarTab, option);
}

void DockTabBarPrivate::highlight(QStyleOptionTab& option) const {
    const bool hasFocus = isInside(dock, QApplication::focusWidget());
    if (!hasFocus && !hover)
        return;
    const QColor full = q->palette().color(QPalette::Highlight);
    const QColor color = hasFocus ? full : full.lighter(150);
    // Some styles paint tabs with the window colour, others with the button colour.
    option.palette.setColor(QPalette::Window, color);
    option.palette.setColor(QPalette::Button, color);
    option.palette.setColor(QPalette::WindowText, q->palette().color(QPalette::HighlightedText));
}

} // namespace Kestrel::UI
