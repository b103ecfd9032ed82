#include <KxUI/browse/NoticeLine_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/PushButton.h>

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>

namespace Kestrel::UI {

using Kind = ChooserTexts::Notice::Kind;

namespace {

constexpr int Side = 16; // pixels of the sign

// A triangle for what will be lost, a disc for what cannot be.
QPainterPath outline(Kind kind) {
    QPainterPath path;
    if (kind == Kind::Warning) {
        path.moveTo(Side / 2.0, 1.5);
        path.lineTo(Side - 1.0, Side - 1.5);
        path.lineTo(1.0, Side - 1.5);
        path.closeSubpath();
    } else {
        path.addEllipse(QRectF(1.5, 1.5, Side - 3.0, Side - 3.0));
    }
    return path;
}

} // namespace

QColor noticeColor(Kind kind, const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Window);
    if (kind == Kind::Warning)
        return firstVisible({QColor(0x9a5200), QColor(0xffb454)}, {ground}, ReadableContrast);
    if (kind == Kind::Error)
        return firstVisible({QColor(0xb3261e), QColor(0xff8f87)}, {ground}, ReadableContrast);
    return palette.color(QPalette::WindowText);
}

QPixmap noticeSign(Kind kind, const QWidget& widget) {
    if (kind == Kind::None || kind == Kind::Hint)
        return {};
    const qreal ratio = widget.devicePixelRatioF();
    QPixmap pixmap(QSize(Side, Side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = noticeColor(kind, widget.palette());
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(outline(kind));
    const qreal middle = Side / 2.0;
    const qreal top = kind == Kind::Warning ? 5.8 : 4.6;
    painter.drawLine(QPointF(middle, top), QPointF(middle, top + 3.8));
    painter.setPen(QPen(color, 1.9, Qt::SolidLine, Qt::RoundCap));
    painter.drawPoint(QPointF(middle, top + 6.4));
    return pixmap;
}

NoticeLine::NoticeLine(QWidget* parent)
    : QWidget(parent)
    , m_sign(new QLabel)
    , m_text(new QLabel)
    , m_next(new PushButton(tr("Next &Version"))) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(m_sign);
    row->addWidget(m_text, 1);
    row->addWidget(m_next);
    m_sign->setFixedWidth(Side);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_next->setAutoDefault(false);
    m_next->setToolTip(tr("Give the name the next version that is free (Ctrl+Shift+Plus)"));
    m_next->hide();
    setObjectName(QStringLiteral("notice"));
    connect(m_next, &QAbstractButton::clicked, this, &NoticeLine::nextVersionWanted);
}

QSize NoticeLine::minimumSizeHint() const {
    return {0, m_next->sizeHint().height()};
}

void NoticeLine::tell(const ChooserTexts::Notice& notice) {
    const bool isOther = notice.text != m_notice.text;
    if (!isOther && notice.kind == m_notice.kind &&
        notice.offersNextVersion == m_notice.offersNextVersion)
        return;
    m_notice = notice;
    m_next->setVisible(notice.offersNextVersion);
    m_sign->setVisible(notice.kind != Kind::None && notice.kind != Kind::Hint);
    setAccessibleName(notice.text);
    color();
    elide();
    if (isOther && !notice.text.isEmpty() && isVisible()) {
        QAccessibleEvent event(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
}

void NoticeLine::color() {
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, noticeColor(m_notice.kind, palette()));
    m_text->setPalette(colors);
    m_sign->setPixmap(noticeSign(m_notice.kind, *this));
}

void NoticeLine::elide() {
    layout()->activate();
    const QString cut =
        fontMetrics().elidedText(m_notice.text, Qt::ElideRight, std::max(0, m_text->width()));
    m_text->setText(cut);
    m_text->setToolTip(cut == m_notice.text ? QString() : m_notice.text);
}

void NoticeLine::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        color();
    else if (event->type() == QEvent::FontChange)
        elide();
}

void NoticeLine::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    elide();
}

} // namespace Kestrel::UI
