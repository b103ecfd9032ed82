#include <KxUI/kit/DisclosureHeader_p.h>

#include <KxUI/kit/ChoiceList_p.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/Disclosure_p.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcutEvent>
#include <QStyleOptionButton>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int ArrowSize = 10;
constexpr int DotSize = 6;
constexpr int PaddingY = 4;
constexpr int WidgetGap = 2;
constexpr double Radius = 3.0;

QString plain(const QString& text) {
    Choice label;
    label.text = text;
    return label.plainText();
}

QSize hintOf(const QWidget* widget) {
    return widget->sizeHint()
        .expandedTo(widget->minimumSizeHint())
        .expandedTo(widget->minimumSize())
        .boundedTo(widget->maximumSize());
}

} // namespace

DisclosureHeader::DisclosureHeader(Disclosure* section, DisclosurePrivate* owner)
    : QWidget(section)
    , m_section(section)
    , d(owner) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

void DisclosureHeader::addWidget(QWidget* widget) {
    QWidget* const before = lastInTabOrder();
    m_widgets.append(widget);
    widget->setParent(this);
    widget->show();
    if (widget->focusPolicy() & Qt::TabFocus)
        setTabOrder(before, widget);
    shownChanged();
}

QWidget* DisclosureHeader::lastInTabOrder() {
    for (auto widget = m_widgets.crbegin(); widget != m_widgets.crend(); ++widget) {
        if (*widget && ((*widget)->focusPolicy() & Qt::TabFocus))
            return *widget;
    }
    return this;
}

void DisclosureHeader::shownChanged() {
    const std::optional<Measures> before = std::exchange(m_measures, std::nullopt);
    if (!before || before->height != measures().height ||
        DisclosureHeaderLayout::wantedWidth(before->parts) != sizeHint().width())
        updateGeometry();
    placeWidgets();
    update();
}

void DisclosureHeader::grabLetter() {
    if (m_letter != 0)
        releaseShortcut(m_letter);
    const QKeySequence letter = QKeySequence::mnemonic(d->title);
    m_letter = letter.isEmpty() ? 0 : grabShortcut(letter);
}

DisclosureHeader::Measures DisclosureHeader::measure() const {
    Measures all;
    all.titleFont = font();
    all.titleFont.setBold(true);
    const QFontMetrics metrics(all.titleFont);
    DisclosureHeaderParts& parts = all.parts;
    all.height = std::max(metrics.height(), ArrowSize) + 2 * PaddingY;
    parts.arrow = ArrowSize;
    if (d->checkable)
        parts.check = style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this);
    parts.title = metrics.horizontalAdvance(plain(d->title));
    parts.dot = d->modified ? DotSize : 0;
    if (!d->expanded && !d->summary.isEmpty())
        parts.summary = fontMetrics().horizontalAdvance(d->summary) + 1; // widths are rounded
    for (const QPointer<QWidget>& widget : m_widgets) {
        if (!widget || widget->isHidden())
            continue;
        const QSize hint = hintOf(widget);
        parts.widgets += hint.width() + (parts.widgets > 0 ? WidgetGap : 0);
        all.height = std::max(all.height, hint.height() + 2);
    }
    return all;
}

const DisclosureHeader::Measures& DisclosureHeader::measures() const {
    ensurePolished();
    if (!m_measures)
        m_measures = measure();
    return *m_measures;
}

DisclosureHeaderLayout DisclosureHeader::layoutNow() const {
    return DisclosureHeaderLayout::of(size(), measures().parts, layoutDirection());
}

QSize DisclosureHeader::sizeHint() const {
    return {DisclosureHeaderLayout::wantedWidth(measures().parts), measures().height};
}

QSize DisclosureHeader::minimumSizeHint() const {
    return {DisclosureHeaderLayout::leastWidth(measures().parts), measures().height};
}

void DisclosureHeader::placeWidgets() {
    if (m_widgets.isEmpty())
        return;
    const QRect room = layoutNow().widgets;
    int left = room.left();
    for (const QPointer<QWidget>& widget : qAsConst(m_widgets)) {
        if (!widget || widget->isHidden())
            continue;
        const QSize hint = hintOf(widget);
        const int high = std::min(hint.height(), height());
        const QRect place(left, (height() - high) / 2, hint.width(), high);
        widget->setGeometry(QStyle::visualRect(layoutDirection(), room, place));
        left += hint.width() + WidgetGap;
    }
}

bool DisclosureHeader::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::LayoutRequest: // one of the host's widgets wants another size,
                                // or is gone
        shownChanged();
        break;
    case QEvent::Shortcut:
        if (static_cast<QShortcutEvent*>(event)->shortcutId() == m_letter) {
            setFocus(Qt::ShortcutFocusReason);
            d->setOpen(!d->expanded, true);
            return true;
        }
        break;
    case QEvent::ShortcutOverride:
        if (isOwn(*static_cast<QKeyEvent*>(event)))
            event->accept();
        break;
    case QEvent::Polish:
        grabLetter();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void DisclosureHeader::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    shownChanged();
}

void DisclosureHeader::resizeEvent(QResizeEvent*) {
    placeWidgets();
}

void DisclosureHeader::mousePressEvent(QMouseEvent* event) {
    m_pressed = event->button() == Qt::LeftButton;
    m_onCheck = m_pressed && d->checkable && layoutNow().check.contains(event->pos());
    event->setAccepted(m_pressed);
    update();
}

void DisclosureHeader::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_pressed || event->button() != Qt::LeftButton)
        return;
    m_pressed = false;
    update();
    if (!rect().contains(event->pos()))
        return;
    if (m_onCheck) {
        if (layoutNow().check.contains(event->pos()))
            switchCheck();
    } else if (event->modifiers() & Qt::AltModifier) {
        d->setAllOpen(!d->expanded);
    } else {
        d->setOpen(!d->expanded, true);
    }
}

void DisclosureHeader::switchCheck() {
    d->editChecked(!d->checked);
}

bool DisclosureHeader::isOwn(const QKeyEvent& event) const {
    switch (event.key()) {
    case Qt::Key_Space:
        return event.modifiers() == Qt::NoModifier ||
               (event.modifiers() == Qt::ControlModifier && d->checkable);
    case Qt::Key_Asterisk: // with Shift on many keyboards
        return (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return (event.modifiers() & ~Qt::KeypadModifier) == 0;
    default:
        return false;
    }
}

bool DisclosureHeader::handleKey(const QKeyEvent& event) {
    if (!isOwn(event))
        return false;
    const int opening = isRightToLeft() ? Qt::Key_Left : Qt::Key_Right;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        d->setOpen(event.key() == opening, true);
        break;
    case Qt::Key_Up:
        d->goToPeer(-1);
        break;
    case Qt::Key_Down:
        d->goToPeer(1);
        break;
    default:
        if (event.isAutoRepeat())
            break;
        if (event.key() == Qt::Key_Asterisk)
            d->setAllOpen(!d->expanded);
        else if (event.modifiers() & Qt::ControlModifier)
            switchCheck();
        else
            d->setOpen(!d->expanded, true);
    }
    return true;
}

void DisclosureHeader::keyPressEvent(QKeyEvent* event) {
    if (!handleKey(*event))
        QWidget::keyPressEvent(event);
}

QColor DisclosureHeader::ground() const {
    const double part = m_pressed && !m_onCheck ? 0.2 : underMouse() && isEnabled() ? 0.14 : 0.08;
    return mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), part);
}

void DisclosureHeader::paintEvent(QPaintEvent*) {
    const DisclosureHeaderLayout layout = layoutNow();
    QPainter painter(this);
    paintGround(painter);
    paintArrow(painter, layout.arrow);
    if (!layout.check.isEmpty())
        paintCheck(painter, layout.check);
    if (!layout.dot.isEmpty())
        paintDot(painter, layout.dot);
    paintTexts(painter, layout);
}

void DisclosureHeader::paintGround(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground());
    painter.drawRoundedRect(rect(), Radius, Radius);
    if (!hasFocus())
        return;
    const double ratio = devicePixelRatioF();
    const double width = std::max(1.0, std::round(1.5 * ratio)) / ratio;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(visibleHighlight(palette(), ground()), width));
    painter.drawRoundedRect(QRectF(rect()).adjusted(width / 2, width / 2, -width / 2, -width / 2),
                            Radius, Radius);
}

void DisclosureHeader::paintArrow(QPainter& painter, const QRect& place) {
    painter.save();
    painter.translate(QRectF(place).center());
    if (isRightToLeft())
        painter.scale(-1.0, 1.0);
    painter.rotate(90.0 * d->progress);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::WindowText));
    painter.drawPolygon(QPolygonF({{-2.0, -4.0}, {-2.0, 4.0}, {3.0, 0.0}}));
    painter.restore();
}

void DisclosureHeader::paintCheck(QPainter& painter, const QRect& place) {
    QStyleOptionButton option;
    option.initFrom(this);
    option.rect = place;
    option.rect.setHeight(style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, this));
    option.rect.moveTop((height() - option.rect.height()) / 2);
    option.state &= ~QStyle::State_HasFocus;
    option.state |= d->checked ? QStyle::State_On : QStyle::State_Off;
    if (m_pressed && m_onCheck)
        option.state |= QStyle::State_Sunken;
    style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &option, &painter, this);
}

void DisclosureHeader::paintDot(QPainter& painter, const QRect& place) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? visibleHighlight(palette(), ground())
                                 : palette().color(QPalette::WindowText));
    const double radius = DotSize / 2.0;
    painter.drawEllipse(QRectF(place).center(), radius, radius);
}

void DisclosureHeader::paintTexts(QPainter& painter, const DisclosureHeaderLayout& layout) {
    const QColor text = palette().color(QPalette::WindowText);
    const bool letters = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0;
    painter.setFont(measures().titleFont);
    painter.setPen(text);
    const bool whole = measures().parts.title <= layout.title.width();
    const int flags = Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine;
    if (whole)
        painter.drawText(layout.title,
                         QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) |
                             Qt::AlignVCenter | Qt::TextSingleLine |
                             (letters ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
                         d->title);
    else
        painter.drawText(layout.title, flags,
                         QFontMetrics(measures().titleFont)
                             .elidedText(plain(d->title), Qt::ElideRight, layout.title.width()));
    if (d->expanded || d->summary.isEmpty())
        return;
    painter.setFont(font());
    painter.setPen(firstVisible({mixed(ground(), text, 0.7), text}, {ground()}, ReadableContrast));
    painter.drawText(layout.summary, flags,
                     fontMetrics().elidedText(d->summary, Qt::ElideRight, layout.summary.width()));
}

} // namespace Kestrel::UI
