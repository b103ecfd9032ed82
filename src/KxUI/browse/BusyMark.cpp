#include <KxUI/browse/BusyMark_p.h>

#include <QPainter>
#include <QStyle>
#include <QTimerEvent>

namespace Kestrel::UI {
namespace {

constexpr int TickInterval = 60; // milliseconds
constexpr int TicksARound = 16;
constexpr int DegreeParts = 16; // of QPainter

} // namespace

BusyMark::BusyMark(QWidget* parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(Side, Side);
    hide();
}

void BusyMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5);
    QColor color = palette().color(QPalette::Text);
    QPen pen(color, 2);
    pen.setCapStyle(Qt::FlatCap);
    color.setAlphaF(0.25F);
    pen.setColor(color);
    painter.setPen(pen);
    painter.drawEllipse(ring);
    pen.setColor(palette().color(QPalette::Text));
    painter.setPen(pen);
    painter.drawArc(ring, (90 - m_tick * 360 / TicksARound) * DegreeParts, -100 * DegreeParts);
}

void BusyMark::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_timer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    m_tick = (m_tick + 1) % TicksARound;
    update();
}

void BusyMark::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0)
        m_timer.start(TickInterval, this);
}

void BusyMark::hideEvent(QHideEvent* event) {
    m_timer.stop();
    QWidget::hideEvent(event);
}

} // namespace Kestrel::UI
