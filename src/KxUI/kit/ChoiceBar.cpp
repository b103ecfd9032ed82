#include <KxUI/kit/ChoiceBar.h>

#include <KxUI/kit/ChoiceAccessible_p.h>
#include <KxUI/kit/ChoiceBar_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QFontMetrics>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QShortcutEvent>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace Kestrel::UI {

ChoiceBar::ChoiceBar(QWidget* parent)
    : QWidget(parent)
    , Choices(std::make_unique<ChoiceBarPrivate>(this)) {
    ChoiceBarAccessible::install();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed, QSizePolicy::ToolButton));
}

ChoiceBar::~ChoiceBar() = default;

ChoiceBarPrivate& ChoiceBar::d() const {
    return static_cast<ChoiceBarPrivate&>(choices());
}

Qt::ToolButtonStyle ChoiceBar::buttonStyle() const {
    return d().buttonStyle;
}

void ChoiceBar::setButtonStyle(Qt::ToolButtonStyle style) {
    KXUI_INTERFACE_THREAD(this);
    if (style == d().buttonStyle)
        return;
    d().buttonStyle = style;
    d().shown(true);
    Q_EMIT buttonStyleChanged(style);
}

bool ChoiceBar::uniformSizes() const {
    return d().uniformSizes;
}

void ChoiceBar::setUniformSizes(bool uniform) {
    KXUI_INTERFACE_THREAD(this);
    if (uniform == d().uniformSizes)
        return;
    d().uniformSizes = uniform;
    d().shown(true);
    Q_EMIT uniformSizesChanged(uniform);
}

QSize ChoiceBar::sizeHint() const {
    return {ChoiceBarLayout::wantedWidth(d().widths(), d().uniformSizes), d().height()};
}

QSize ChoiceBar::minimumSizeHint() const {
    return {ChoiceBarLayout::leastWidth(d().widths(), d().uniformSizes, d().menuWidth()),
            d().height()};
}

void ChoiceBar::setCurrentIndex(int index) {
    Choices::setCurrentIndex(index);
}

void ChoiceBar::cancelEdit() {
    takeBack();
}

void ChoiceBarPrivate::tell(ChoiceSignal signal, int value) {
    if (signal == ChoiceSignal::CheckedChanged)
        ChoiceBarAccessible::tellChecked(q);
    emitSignal(q, signal, value);
}

void ChoiceBarPrivate::shown(bool sizes) {
    if (sizes) {
        pressed = hovered = -1;
        keyboardAt = std::min(keyboardAt, list.count() - 1);
        forgetSizes();
        q->updateGeometry();
        if (q->testAttribute(Qt::WA_WState_Polished))
            grabLetters();
    }
    q->update();
}

void ChoiceBarPrivate::forgetSizes() {
    m_widths.reset();
    m_layout.reset();
}

int ChoiceBarPrivate::iconSize() const {
    return q->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, q);
}

Qt::ToolButtonStyle ChoiceBarPrivate::style() const {
    if (buttonStyle != Qt::ToolButtonFollowStyle)
        return buttonStyle;
    return static_cast<Qt::ToolButtonStyle>(
        q->style()->styleHint(QStyle::SH_ToolButtonStyle, nullptr, q));
}

const std::vector<ChoiceWidth>& ChoiceBarPrivate::widths() {
    if (m_widths)
        return *m_widths;
    m_widths.emplace();
    m_widths->reserve(list.all.size());
    const QFontMetrics metrics = q->fontMetrics();
    const int icon = iconSize();
    for (const Choice& choice : list.all) {
        const bool hasIcon = !choice.icon.isNull();
        const int iconOnly = hasIcon ? icon + 2 * PaddingX : 0;
        int full = metrics.horizontalAdvance(choice.plainText()) + 2 * PaddingX;
        if (hasIcon && style() == Qt::ToolButtonIconOnly)
            full = iconOnly;
        else if (hasIcon && style() == Qt::ToolButtonTextUnderIcon)
            full = std::max(full, iconOnly);
        else if (hasIcon && style() != Qt::ToolButtonTextOnly)
            full += icon + LabelGap;
        m_widths->push_back({full, iconOnly});
    }
    return *m_widths;
}

int ChoiceBarPrivate::height() const {
    const int text = q->fontMetrics().height();
    if (!list.hasIcons())
        return text + 2 * PaddingY;
    const int icon = iconSize();
    const bool under = style() == Qt::ToolButtonTextUnderIcon;
    return (under ? text + icon + LabelGap / 2 : std::max(text, icon)) + 2 * PaddingY;
}

int ChoiceBarPrivate::menuWidth() const {
    return q->fontMetrics().averageCharWidth() * 3 + ArrowRoom + PaddingX;
}

const ChoiceBarLayout& ChoiceBarPrivate::layout() {
    if (!m_layout)
        m_layout = ChoiceBarLayout::of(
            widths(), {q->size(), menuWidth(), uniformSizes, q->layoutDirection()});
    return *m_layout;
}

int ChoiceBarPrivate::partAt(const QPoint& point) {
    if (layout().menu.contains(point))
        return MenuPart;
    return layout().choiceAt(point);
}

int ChoiceBarPrivate::cursor() const {
    const int current = list.current();
    if (list.has(keyboardAt) && (!list.exclusive || current < 0))
        return keyboardAt;
    return current >= 0 ? current : list.next(-1, 1);
}

void ChoiceBarPrivate::goTo(int index, const QKeyEvent& event) {
    if (!list.has(index))
        return;
    keyboardAt = index;
    q->update();
    ChoiceBarAccessible::tellFocus(q, index);
    if (list.exclusive)
        chooseByKey(index, event);
}

std::optional<int> ChoiceBarPrivate::wayOf(int key) const {
    const bool mirrored = q->isRightToLeft();
    switch (key) {
    case Qt::Key_Left:
        return list.next(cursor(), mirrored ? 1 : -1);
    case Qt::Key_Right:
        return list.next(cursor(), mirrored ? -1 : 1);
    case Qt::Key_Home:
        return list.next(-1, 1);
    case Qt::Key_End:
        return list.next(list.count(), -1);
    default:
        return {};
    }
}

bool ChoiceBarPrivate::isOwn(const QKeyEvent& event) const {
    return (event.modifiers() & ~Qt::KeypadModifier) == 0 &&
           (wayOf(event.key()) || event.key() == Qt::Key_Space);
}

bool ChoiceBarPrivate::handleKey(const QKeyEvent& event) {
    const int key = event.key();
    if (const std::optional<int> way = wayOf(key)) {
        if (*way != -1 && *way != list.current())
            goTo(*way, event);
        return true;
    }
    const int at = cursor();
    const bool inMenu = at >= layout().seen() && at >= 0;
    if (inMenu && (key == Qt::Key_Space || key == Qt::Key_Down)) {
        openMenu();
        return true;
    }
    if (key != Qt::Key_Space)
        return false;
    if (!event.isAutoRepeat())
        choose(at);
    return true;
}

void ChoiceBarPrivate::openMenu() {
    const QRect part = layout().menu;
    if (part.isEmpty())
        return;
    if (!m_menu) {
        m_menu = new QMenu(q);
        QObject::connect(m_menu, &QMenu::aboutToHide, q, [this] { setPressed(-1); });
    }
    fillMenu(m_menu, layout().seen());
    setPressed(MenuPart);
    m_menu->popup(q->mapToGlobal(part.bottomLeft() + QPoint(0, 1)));
}

void ChoiceBarPrivate::setHovered(int part) {
    if (part == hovered)
        return;
    hovered = part;
    q->update();
}

void ChoiceBarPrivate::setPressed(int part) {
    if (part == pressed)
        return;
    pressed = part;
    q->update();
}

void ChoiceBarPrivate::grabLetters() {
    for (const int id : m_letters) {
        if (id != 0)
            q->releaseShortcut(id);
    }
    m_letters.clear();
    for (const Choice& choice : list.all) {
        const QKeySequence letter = QKeySequence::mnemonic(choice.text);
        m_letters.push_back(letter.isEmpty() ? 0 : q->grabShortcut(letter));
    }
}

void ChoiceBarPrivate::letterUsed(int id) {
    const auto letter = std::find(m_letters.begin(), m_letters.end(), id);
    if (id == 0 || letter == m_letters.end())
        return;
    const int index = static_cast<int>(letter - m_letters.begin());
    keyboardAt = index;
    q->setFocus(Qt::ShortcutFocusReason);
    choose(index);
}

bool ChoiceBar::event(QEvent* event) {
    if (d().takes(event))
        return true;
    switch (event->type()) {
    case QEvent::Polish:
        d().grabLetters();
        break;
    case QEvent::Resize:
    case QEvent::LayoutDirectionChange:
        d().forgetLayout();
        break;
    case QEvent::Shortcut:
        d().letterUsed(static_cast<QShortcutEvent*>(event)->shortcutId());
        return true;
    case QEvent::ShortcutOverride:
        event->setAccepted(d().isOwn(*static_cast<QKeyEvent*>(event)));
        break;
    case QEvent::ToolTip:
        showToolTip(static_cast<QHelpEvent*>(event));
        return true;
    default:
        break;
    }
    return QWidget::event(event);
}

void ChoiceBar::showToolTip(QHelpEvent* event) {
    const int part = d().partAt(event->pos());
    QString text;
    if (d().list.has(part)) {
        const Choice& choice = d().list.at(part);
        const bool textSeen = choice.icon.isNull() || (!d().layout().iconsOnly &&
                                                       d().buttonStyle != Qt::ToolButtonIconOnly);
        text = choice.toolTip.isEmpty() && !textSeen ? choice.plainText() : choice.toolTip;
    }
    QToolTip::showText(event->globalPos(), text.isEmpty() ? toolTip() : text, this,
                       d().layout().partOf(part));
}

void ChoiceBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        d().shown(true);
    else
        update();
}

void ChoiceBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const int part = d().partAt(event->pos());
    if (part == ChoiceBarPrivate::MenuPart)
        d().openMenu();
    else if (isChoiceEnabled(part))
        d().setPressed(part);
}

void ChoiceBar::mouseMoveEvent(QMouseEvent* event) {
    d().setHovered(d().partAt(event->pos()));
}

void ChoiceBar::mouseReleaseEvent(QMouseEvent* event) {
    const int part = d().pressed;
    if (event->button() != Qt::LeftButton || part == ChoiceBarPrivate::MenuPart)
        return;
    d().setPressed(-1);
    if (part < 0 || d().partAt(event->pos()) != part)
        return;
    d().keyboardAt = part;
    d().choose(part);
}

void ChoiceBar::leaveEvent(QEvent* event) {
    d().setHovered(-1);
    QWidget::leaveEvent(event);
}

void ChoiceBar::keyPressEvent(QKeyEvent* event) {
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == 0;
    if (!plain || !d().handleKey(*event))
        QWidget::keyPressEvent(event);
}

void ChoiceBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    d().paint(painter);
}

} // namespace Kestrel::UI
