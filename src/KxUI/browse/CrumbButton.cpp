#include <KxUI/browse/CrumbButton_p.h>

#include <KxUI/browse/CrumbButtonAccessible_p.h>
#include <KxUI/kit/ValueAccessible_p.h>

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int Padding = 6; // on each side of a name
constexpr double Rounding = 3.0;
constexpr int MostWidth = 260; // of a name, which is cut in the middle

} // namespace

CrumbButton::CrumbButton(Part part, QWidget* bar)
    : QAbstractButton(bar)
    , m_part(part) {
    installAccessible<CrumbButtonAccessible, CrumbButton>();
    setFocusPolicy(Qt::NoFocus); // the bar gives the focus to one of them
    setAttribute(Qt::WA_Hover);
    setLayoutDirection(Qt::LeftToRight);
    setCursor(Qt::ArrowCursor);
}

void CrumbButton::show(int index, const QByteArray& path, const QString& shown, bool isLast) {
    m_index = index;
    m_path = path;
    m_isLast = isLast;
    setText(shown);
    const QString isolated = QChar(0x2068) + shown + QChar(0x2069);
    switch (m_part) {
    case Name:
        setAccessibleName(shown);
        break;
    case Arrow:
        setAccessibleName(tr("Folders in %1").arg(isolated));
        setToolTip(accessibleName());
        break;
    case Dots:
        setAccessibleName(tr("Folders between"));
        setToolTip(accessibleName());
        break;
    }
    update();
}

void CrumbButton::setMenuOpen(bool open) {
    m_menuOpen = open;
    update();
}

QSize CrumbButton::sizeHint() const {
    const int height = std::max(ArrowWidth, fontMetrics().height() + 6);
    if (m_part != Name)
        return {ArrowWidth, height};
    const int wanted = fontMetrics().horizontalAdvance(text()) + 2 * Padding;
    return {std::clamp(wanted, ArrowWidth, MostWidth), height};
}

bool CrumbButton::event(QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::HoverEnter || type == QEvent::HoverLeave || type == QEvent::FocusIn ||
        type == QEvent::FocusOut)
        update();
    return QAbstractButton::event(event);
}

void CrumbButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        click();
        break;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Escape:
        event->ignore(); // for the bar
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void CrumbButton::paintBackground(QPainter& painter) const {
    const bool isPressed = isDown() || m_menuOpen;
    if (!isEnabled() || !(isPressed || underMouse()))
        return;
    QColor fill = palette().color(QPalette::Text);
    fill.setAlphaF(isPressed ? 0.2F : 0.1F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 1, -0.5, -1), Rounding, Rounding);
}

void CrumbButton::paintArrow(QPainter& painter) const {
    const QPointF middle = QRectF(rect()).center();
    QPen pen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Text),
             1.4);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.translate(middle);
    if (m_menuOpen)
        painter.rotate(90);
    painter.drawPolyline(QPolygonF({{-1.75, -3.5}, {1.75, 0}, {-1.75, 3.5}}));
}

void CrumbButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBackground(painter);
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = rect().adjusted(1, 2, -1, -2);
        option.backgroundColor = palette().color(QPalette::Base);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
    if (m_part == Arrow) {
        paintArrow(painter);
        return;
    }
    painter.setPen(palette().color(QPalette::Text));
    const QString shown = m_part == Dots ? QString(QChar(0x2026)) : text();
    painter.drawText(rect(), Qt::AlignCenter,
                     fontMetrics().elidedText(shown, Qt::ElideMiddle, width() - 2 * Padding + 2));
}

} // namespace Kestrel::UI
