#include <KxUI/dock/DockTitleBar.h>

#include <KxUI/dock/Dock.h>

#include <QPainter>
#include <QTimerEvent>

namespace Kestrel::UI {

namespace {

constexpr int RevealDelay = 200; // ms

}

DockTitleBar::DockTitleBar(Dock* dock)
    : QWidget(dock)
    , m_dock(dock) {}

DockTitleBar::~DockTitleBar() = default;

void DockTitleBar::setPressed(bool pressed) {
    if (m_pressed == pressed)
        return;
    m_pressed = pressed;
    if (!pressed)
        hideRevealedTitle();
}

void DockTitleBar::enterEvent(QEvent* event) {
    if (!m_dock->titleVisible()) {
        stopTimer();
        m_revealTimer = startTimer(RevealDelay, Qt::CoarseTimer);
        update();
    }
    QWidget::enterEvent(event);
}

void DockTitleBar::leaveEvent(QEvent* event) {
    stopTimer();
    hideRevealedTitle();
    update();
    QWidget::leaveEvent(event);
}

void DockTitleBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_revealTimer) {
        QWidget::timerEvent(event);
        return;
    }
    stopTimer();
    if (m_dock->titleVisible())
        return;
    m_dock->setTitleVisible(true);
    m_revealed = true;
}

void DockTitleBar::paintEvent(QPaintEvent*) {
    if (m_dock->titleVisible() || !underMouse())
        return;
    QPainter painter(this);
    painter.fillRect(rect(), palette().highlight());
}

void DockTitleBar::stopTimer() {
    if (m_revealTimer != 0)
        killTimer(m_revealTimer);
    m_revealTimer = 0;
}

void DockTitleBar::hideRevealedTitle() {
    if (!m_revealed || m_pressed || underMouse())
        return;
    m_revealed = false;
    m_dock->setTitleVisible(false);
}

} // namespace Kestrel::UI
