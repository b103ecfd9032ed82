#include <KxUI/kit/RefusalFlash_p.h>

#include <QAccessible>
#include <QEvent>
#include <QPainter>

namespace Kestrel::UI {

void RefusalFlash::over(QWidget* widget) {
    for (QObject* child : widget->children()) {
        if (dynamic_cast<RefusalFlash*>(child))
            child->deleteLater();
    }
    (new RefusalFlash(widget))->show();
    if (QAccessible::isActive()) {
        QAccessibleEvent refused(widget, QAccessible::Alert);
        QAccessible::updateAccessibility(&refused);
    }
}

RefusalFlash::RefusalFlash(QWidget* widget)
    : QWidget(widget)
    , m_timer(startTimer(Milliseconds)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(widget->rect());
    widget->installEventFilter(this);
}

bool RefusalFlash::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void RefusalFlash::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_timer)
        deleteLater();
}

void RefusalFlash::paintEvent(QPaintEvent*) {
    constexpr double Width = 2.0;
    constexpr double Radius = 3.0;
    // Red that is seen on the window's colour.
    const bool dark = palette().color(QPalette::Window).lightness() < 128;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(dark ? QColor(0xf0, 0x70, 0x68) : QColor(0xb8, 0x20, 0x1c), Width));
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(Width / 2.0, Width / 2.0, -Width / 2.0, -Width / 2.0), Radius,
        Radius);
}

} // namespace Kestrel::UI
