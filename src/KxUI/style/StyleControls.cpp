#include <KxUI/style/ApplicationStyle_p.h>
#include <KxUI/style/StyleMetrics_p.h>

#include <QPainter>

namespace Kestrel::UI {
namespace {

// How a tab lies: which of its sides is open towards its page.
unsigned openSide(QTabBar::Shape shape) {
    switch (shape) {
    case QTabBar::RoundedSouth:
    case QTabBar::TriangularSouth:
        return JoinTop;
    case QTabBar::RoundedWest:
    case QTabBar::TriangularWest:
        return JoinRight;
    case QTabBar::RoundedEast:
    case QTabBar::TriangularEast:
        return JoinLeft;
    case QTabBar::RoundedNorth:
    case QTabBar::TriangularNorth:
        break;
    }
    return JoinBottom;
}

// A tab that is not the current one is a little lower, and its bar's line goes on above its page.
QRect shownTab(const QRect& rect, unsigned open, bool isCurrent) {
    const int top = isCurrent ? 0 : 2;
    const int base = isCurrent ? 0 : 1;
    switch (open) {
    case JoinTop:
        return rect.adjusted(0, base, 0, -top);
    case JoinRight:
        return rect.adjusted(top, 0, -base, 0);
    case JoinLeft:
        return rect.adjusted(base, 0, -top, 0);
    default:
        return rect.adjusted(0, top, 0, -base);
    }
}

template <class Option>
const Option* as(const QStyleOption& option) {
    return qstyleoption_cast<const Option*>(&option);
}

} // namespace

bool ApplicationStylePrivate::drawControl(Control element, const QStyleOption& option,
                                          QPainter* painter, const QWidget* widget) {
    switch (element) {
    case QStyle::CE_PushButton:
        if (const auto* button = as<QStyleOptionButton>(option))
            return drawPushButton(*button, painter, widget), true;
        return false;
    case QStyle::CE_PushButtonLabel:
        if (const auto* button = as<QStyleOptionButton>(option))
            return drawPushButtonLabel(*button, painter);
        return false;
    case QStyle::CE_ComboBoxLabel:
        if (const auto* combo = as<QStyleOptionComboBox>(option))
            return drawComboLabel(*combo, painter, widget);
        return false;
    case QStyle::CE_TabBarTabShape:
        if (const auto* tab = as<QStyleOptionTab>(option))
            return drawTab(*tab, painter), true;
        return false;
    case QStyle::CE_HeaderSection:
        if (const auto* header = as<QStyleOptionHeader>(option))
            return drawHeader(*header, painter), true;
        return false;
    case QStyle::CE_MenuItem:
        if (const auto* item = as<QStyleOptionMenuItem>(option))
            return drawMenuItem(*item, painter, widget), true;
        return false;
    case QStyle::CE_MenuBarItem:
        if (const auto* item = as<QStyleOptionMenuItem>(option))
            return drawMenuBarItem(*item, painter, widget), true;
        return false;
    default:
        return drawBar(element, option, painter, widget);
    }
}

bool ApplicationStylePrivate::drawBar(Control element, const QStyleOption& option,
                                      QPainter* painter, const QWidget* widget) {
    switch (element) {
    case QStyle::CE_ProgressBarGroove:
        canvas(painter, option).bevel(StyleElement::Field, option.rect, StateEnabled);
        return true;
    case QStyle::CE_ProgressBarContents:
        if (const auto* bar = as<QStyleOptionProgressBar>(option))
            return drawProgress(*bar, painter);
        return false;
    case QStyle::CE_Splitter: {
        StyleCanvas canvas = this->canvas(painter, option);
        const bool isHovered = stateOf(option) & (StateHover | StateSunken);
        if (isHovered)
            canvas.fill(option.rect, canvas.shades().groove);
        // The flag tells how the parts lie beside each other.
        const bool isUpright = option.state & QStyle::State_Horizontal;
        canvas.mark(isUpright ? StyleMark::GripColumn : StyleMark::GripRow, option.rect, 14,
                    canvas.shades().grip);
        return true;
    }
    case QStyle::CE_DockWidgetTitle:
        if (const auto* dock = as<QStyleOptionDockWidget>(option))
            return drawDockTitle(*dock, painter, widget), true;
        return false;
    case QStyle::CE_HeaderEmptyArea: {
        StyleCanvas canvas = this->canvas(painter, option);
        canvas.bevel(StyleElement::Header, option.rect);
        canvas.line(JoinBottom, option.rect, canvas.shades().outline);
        return true;
    }
    case QStyle::CE_MenuBarEmptyArea:
    case QStyle::CE_ToolBar: // no more than the window behind them
        return true;
    default:
        return false;
    }
}

void ApplicationStylePrivate::drawPushButton(const QStyleOptionButton& option, QPainter* painter,
                                             const QWidget* widget) {
    const QStyle* style = q->proxy();
    style->drawControl(QStyle::CE_PushButtonBevel, &option, painter, widget);
    QStyleOptionButton label = option;
    label.rect = style->subElementRect(QStyle::SE_PushButtonContents, &option, widget);
    style->drawControl(QStyle::CE_PushButtonLabel, &label, painter, widget);
}

bool ApplicationStylePrivate::drawPushButtonLabel(const QStyleOptionButton& option,
                                                  QPainter* painter) {
    if (!option.icon.isNull() || (option.features & QStyleOptionButton::HasMenu))
        return false;
    const int mnemonic = q->proxy()->styleHint(QStyle::SH_UnderlineShortcut, &option)
                             ? Qt::TextShowMnemonic
                             : Qt::TextHideMnemonic;
    q->proxy()->drawItemText(painter, option.rect, Qt::AlignCenter | mnemonic, option.palette,
                             option.state & QStyle::State_Enabled, option.text,
                             QPalette::ButtonText);
    return true;
}

bool ApplicationStylePrivate::drawComboLabel(const QStyleOptionComboBox& option, QPainter* painter,
                                             const QWidget* widget) {
    if (option.editable || !option.currentIcon.isNull())
        return false;
    if (option.currentText.isEmpty())
        return true;
    const QRect place = q->proxy()->subControlRect(QStyle::CC_ComboBox, &option,
                                                   QStyle::SC_ComboBoxEditField, widget);
    const int width = option.fontMetrics.horizontalAdvance(option.currentText);
    const QString text =
        width <= place.width()
            ? option.currentText
            : option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, place.width());
    q->proxy()->drawItemText(
        painter, place,
        int(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter)),
        option.palette, option.state & QStyle::State_Enabled, text, QPalette::ButtonText);
    return true;
}

void ApplicationStylePrivate::drawTab(const QStyleOptionTab& option, QPainter* painter) {
    const bool isCurrent = option.state & QStyle::State_Selected;
    const unsigned open = openSide(option.shape);
    unsigned state = stateOf(option) & ~unsigned(StateSunken | StateFocus | StateOn);
    if (isCurrent)
        state |= StateOn;
    if (open == JoinLeft || open == JoinRight)
        state |= StateUpright;
    StyleCanvas canvas = this->canvas(painter, option);
    canvas.bevel(StyleElement::Tab, shownTab(option.rect, open, isCurrent), state, open);
}

void ApplicationStylePrivate::drawHeader(const QStyleOptionHeader& option, QPainter* painter) {
    StyleCanvas canvas = this->canvas(painter, option);
    const QRgb outline = canvas.shades().outline;
    canvas.bevel(StyleElement::Header, option.rect, stateOf(option) & ~unsigned(StateFocus));
    canvas.line(JoinBottom, option.rect, outline);
    const bool isLast = option.position == QStyleOptionHeader::End ||
                        option.position == QStyleOptionHeader::OnlyOneSection;
    if (option.orientation == Qt::Horizontal && !isLast)
        canvas.line(option.direction == Qt::RightToLeft ? JoinLeft : JoinRight, option.rect,
                    outline);
    if (option.orientation == Qt::Vertical)
        canvas.line(JoinRight, option.rect, outline);
}

bool ApplicationStylePrivate::drawProgress(const QStyleOptionProgressBar& option,
                                           QPainter* painter) {
    const qint64 range = qint64(option.maximum) - option.minimum;
    if (range <= 0)
        return false; // busy: Fusion moves its stripes
    const bool isFlat = option.state & QStyle::State_Horizontal;
    const QRect inside = option.rect.adjusted(1, 1, -1, -1);
    const qint64 done = std::clamp<qint64>(qint64(option.progress) - option.minimum, 0, range);
    const int whole = isFlat ? inside.width() : inside.height();
    const int length = int(done * whole / range);
    if (length <= 0)
        return true;
    const bool fromEnd = isFlat ? (option.direction == Qt::RightToLeft) != option.invertedAppearance
                                : !option.invertedAppearance;
    QRect part = inside;
    if (isFlat)
        fromEnd ? part.setLeft(inside.right() - length + 1) : part.setWidth(length);
    else
        fromEnd ? part.setTop(inside.bottom() - length + 1) : part.setHeight(length);
    canvas(painter, option)
        .bevel(StyleElement::Progress, part,
               isFlat ? unsigned(StateEnabled) : unsigned(StateEnabled | StateUpright));
    return true;
}

void ApplicationStylePrivate::drawDockTitle(const QStyleOptionDockWidget& option, QPainter* painter,
                                            const QWidget* widget) {
    {
        StyleCanvas canvas = this->canvas(painter, option);
        canvas.fill(option.rect, canvas.shades().idleTab);
        canvas.line(JoinBottom, option.rect, canvas.shades().outline);
    }
    if (option.title.isEmpty())
        return;
    const QRect place =
        q->proxy()->subElementRect(QStyle::SE_DockWidgetTitleBarText, &option, widget);
    painter->save();
    QRect text = place;
    if (option.verticalTitleBar) {
        text = QRect(0, 0, place.height(), place.width());
        painter->translate(place.left(), place.bottom() + 1);
        painter->rotate(-90);
    }
    const QString title = option.fontMetrics.elidedText(option.title, Qt::ElideRight, text.width());
    q->proxy()->drawItemText(painter, text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic,
                             option.palette, option.state & QStyle::State_Enabled, title,
                             QPalette::WindowText);
    painter->restore();
}

} // namespace Kestrel::UI
