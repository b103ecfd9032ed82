#include <KxUI/dock/DockTabBar.h>

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockTitleBar.h>
#include <KxUI/dock/DockTreeEdit_p.h>

#include <QApplication>
#include <QMouseEvent>
#include <QStackedWidget>
#include <QStyleOptionTab>
#include <QStylePainter>
#include <QToolButton>

#include <algorithm>

namespace Kestrel::UI {

DockTabBar::DockTabBar(Dock* dock, DockTitleBar* titleBar)
    : QTabBar(titleBar)
    , m_dock(dock)
    , m_titleBar(titleBar)
    , m_drag(std::make_unique<StripDrag>()) {
    setFocusPolicy(Qt::NoFocus);
    // Nor its scroll buttons, which would have the focus before any page.
    const auto buttons = findChildren<QToolButton*>();
    for (QToolButton* button : buttons)
        button->setFocusPolicy(Qt::NoFocus);
    setDrawBase(false);
    // A move without a button tells that a release was lost.
    setMouseTracking(true);
    if (dock->controller() && dock->controller()->tabsAreClosable()) {
        setTabsClosable(true);
        connect(this, &QTabBar::tabCloseRequested, dock, &Dock::closeTab);
    }
}

DockTabBar::~DockTabBar() = default;

void DockTabBar::onMouseOverDock(bool on) {
    if (m_hover == on)
        return;
    m_hover = on;
    update();
}

StripGeometry DockTabBar::geometryOfStrip() const {
    StripGeometry geometry;
    geometry.titleBar = m_titleBar->rect();
    geometry.titleBar.setLeft(-x());
    for (int i = 0; i < count(); ++i)
        geometry.tabs.append(tabRect(i));
    return geometry;
}

void DockTabBar::mousePressEvent(QMouseEvent* event) {
    DockDragSession::instance().cancel();
    m_drag->end();
    const QPointer<DockTabBar> alive(this);
    const StripGeometry before = geometryOfStrip();
    QTabBar::mousePressEvent(event);
    // Making the pressed tab current ran host code.
    if (!alive || event->button() != Qt::LeftButton)
        return;
    m_titleBar->setPressed(true);
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        m_dock->floatActiveTab();
        return;
    }
    m_drag->press(event->pos(), before);
    m_dock->setFocus(Qt::MouseFocusReason);
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
        m_drag->move(event->pos(), leftHeld, QApplication::startDragDistance(), geometryOfStrip());
    switch (step.command) {
    case StripDrag::Command::TearOff:
        session.begin(this, m_dock->widget(step.index), m_drag->pressPosition(),
                      event->globalPos());
        break;
    case StripDrag::Command::Reorder:
        movePage(m_drag->index(), step.index);
        break;
    case StripDrag::Command::Begin:
        break;
    case StripDrag::Command::None:
        if (!m_drag->isDragging())
            QTabBar::mouseMoveEvent(event);
        break;
    }
    if (m_drag->isDragging())
        update();
}

void DockTabBar::mouseReleaseEvent(QMouseEvent* event) {
    const QPointer<DockTabBar> alive(this);
    const QPointer<DockTitleBar> titleBar(m_titleBar);
    QTabBar::mouseReleaseEvent(event);
    if (!alive || event->button() != Qt::LeftButton)
        return;
    const bool wasReordering = m_drag->isDragging();
    m_drag->end();
    update();
    DockDragSession& session = DockDragSession::instance();
    if (!wasReordering && session.isActive())
        session.drop(event->globalPos(), event->modifiers().testFlag(Qt::ControlModifier));
    if (titleBar)
        titleBar->setPressed(false);
}

void DockTabBar::hideEvent(QHideEvent* event) {
    // A hidden widget gets no release.
    m_drag->end();
    DockDragSession& session = DockDragSession::instance();
    if (session.isActive() && session.source() == m_dock)
        session.cancel();
    m_titleBar->setPressed(false);
    QTabBar::hideEvent(event);
}

void DockTabBar::movePage(int from, int to) {
    QWidget* page = m_dock->widget(from);
    if (!page)
        return;
    const FocusKeeper keeper(page);
    m_dock->setUpdatesEnabled(false);
    m_dock->insertWidget(to, page);
    m_dock->setCurrentWidget(page);
    m_dock->setUpdatesEnabled(true);
    m_drag->moved(to);
}

void DockTabBar::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    const int current = currentIndex();
    for (int i = 0; i < count(); ++i) {
        if (i != current)
            paintTab(i, painter);
    }
    if (current >= 0)
        paintTab(current, painter);
}

void DockTabBar::paintTab(int index, QStylePainter& painter) {
    QStyleOptionTab option;
    initStyleOption(&option, index);
    if (m_drag->isDragging()) {
        if (index == m_drag->index())
            option.rect.moveLeft(
                std::max(0, std::min(m_drag->left(), width() - option.rect.width())));
        else
            option.state.setFlag(QStyle::State_MouseOver, false);
    }

    const DockMainWindow* controller = m_dock->controller();
    if (controller && controller->highlightCurrentTab() && index == currentIndex()) {
        const QColor highlight = palette().color(QPalette::Highlight);
        const bool hasFocus = isInside(m_dock, QApplication::focusWidget());
        if (hasFocus || m_hover) {
            const QColor color = hasFocus ? highlight : highlight.lighter(150);
            // Some styles paint tabs with the window colour, others with the button colour.
            option.palette.setColor(QPalette::Window, color);
            option.palette.setColor(QPalette::Button, color);
            option.palette.setColor(QPalette::WindowText,
                                    palette().color(QPalette::HighlightedText));
        }
    }
    painter.drawControl(QStyle::CE_TabBarTab, option);
}

} // namespace Kestrel::UI
