#include <KxUI/style/ApplicationStyle_p.h>
#include <KxUI/style/StyleMetrics_p.h>

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGroupBox>
#include <QPainter>

#include <algorithm>

namespace Kestrel::UI {
namespace {

bool isInsideOfField(const QWidget* widget) {
    const QWidget* parent = widget ? widget->parentWidget() : nullptr;
    return qobject_cast<const QAbstractSpinBox*>(parent) || qobject_cast<const QComboBox*>(parent);
}

// The style below lays the title of a group box out above its frame, and draws it.
int titleHeight(const QStyleOption& option, const QWidget* widget) {
    const auto* group = qobject_cast<const QGroupBox*>(widget);
    if (!group || group->title().isEmpty())
        return 0;
    return std::max(option.fontMetrics.height(), StyleMetrics::IndicatorSide) + 3;
}

bool has(const QStyleOption& option, QStyle::State flags) {
    return option.state & flags;
}

} // namespace

bool ApplicationStylePrivate::drawPrimitive(Primitive element, const QStyleOption& option,
                                            QPainter* painter, const QWidget* widget) {
    switch (element) {
    case QStyle::PE_PanelButtonCommand:
    case QStyle::PE_PanelButtonBevel:
        drawButton(StyleElement::Button, option, painter);
        return true;
    case QStyle::PE_PanelButtonTool:
        drawButton(StyleElement::ToolButton, option, painter);
        return true;
    case QStyle::PE_FrameDefaultButton: // part of the button
    case QStyle::PE_FrameMenu:          // part of its panel
    case QStyle::PE_FrameStatusBarItem:
        return true;
    default:
        return drawFrame(element, option, painter, widget) ||
               drawIndicator(element, option, painter);
    }
}

void ApplicationStylePrivate::drawButton(StyleElement element, const QStyleOption& option,
                                         QPainter* painter) {
    unsigned state = stateOf(option);
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    const bool isFlat =
        (button && (button->features & QStyleOptionButton::Flat)) ||
        (element == StyleElement::ToolButton && has(option, QStyle::State_AutoRaise));
    if (isFlat && !(state & (StateHover | StateSunken | StateOn | StateFocus)))
        return;
    if (button && (button->features & QStyleOptionButton::DefaultButton))
        state |= StateDefault;
    canvas(painter, option).bevel(element, option.rect, state);
}

bool ApplicationStylePrivate::drawFrame(Primitive element, const QStyleOption& option,
                                        QPainter* painter, const QWidget* widget) {
    switch (element) {
    case QStyle::PE_PanelLineEdit:
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option))
            drawLineEdit(*frame, painter, widget);
        return true;
    case QStyle::PE_FrameLineEdit: {
        const unsigned focus = has(option, QStyle::State_HasFocus) ? StateFocus : 0;
        canvas(painter, option).bevel(StyleElement::Frame, option.rect, stateOf(option) | focus);
        return true;
    }
    case QStyle::PE_Frame:
    case QStyle::PE_FrameDockWidget:
        canvas(painter, option).bevel(StyleElement::Frame, option.rect, StateEnabled);
        return true;
    case QStyle::PE_FrameGroupBox:
    case QStyle::PE_FrameTabWidget: {
        const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
        const QRect rect = option.rect.adjusted(0, titleHeight(option, widget), 0, 0);
        StyleCanvas canvas = this->canvas(painter, option);
        if (frame && (frame->features & QStyleOptionFrame::Flat))
            canvas.line(JoinTop, rect, canvas.shades().outline);
        else
            canvas.bevel(StyleElement::Panel, rect);
        return true;
    }
    case QStyle::PE_FrameFocusRect:
        if (has(option, QStyle::State_KeyboardFocusChange))
            canvas(painter, option).bevel(StyleElement::Focus, option.rect);
        return true;
    case QStyle::PE_FrameTabBarBase:
        if (const auto* base = qstyleoption_cast<const QStyleOptionTabBarBase*>(&option))
            drawTabBase(*base, painter);
        return true;
    case QStyle::PE_PanelMenu:
        canvas(painter, option).bevel(StyleElement::Menu, option.rect);
        return true;
    case QStyle::PE_PanelTipLabel:
        canvas(painter, option).bevel(StyleElement::Tip, option.rect);
        return true;
    default:
        return false;
    }
}

void ApplicationStylePrivate::drawLineEdit(const QStyleOptionFrame& option, QPainter* painter,
                                           const QWidget* widget) {
    if (isInsideOfField(widget))
        return; // which draws it
    if (option.lineWidth <= 0) {
        painter->fillRect(option.rect, option.palette.brush(QPalette::Base));
        return;
    }
    unsigned state = stateOf(option) & ~unsigned(StateHover);
    if (has(option, QStyle::State_HasFocus) && has(option, QStyle::State_Enabled))
        state |= StateFocus;
    canvas(painter, option).bevel(StyleElement::Field, option.rect, state);
}

void ApplicationStylePrivate::drawTabBase(const QStyleOptionTabBarBase& option, QPainter* painter) {
    StyleCanvas canvas = this->canvas(painter, option);
    const QRgb color = canvas.shades().outline;
    switch (option.shape) {
    case QTabBar::RoundedNorth:
    case QTabBar::TriangularNorth:
        canvas.line(JoinTop, option.rect, color);
        break;
    case QTabBar::RoundedSouth:
    case QTabBar::TriangularSouth:
        canvas.line(JoinBottom, option.rect, color);
        break;
    case QTabBar::RoundedWest:
    case QTabBar::TriangularWest:
        canvas.line(JoinLeft, option.rect, color);
        break;
    case QTabBar::RoundedEast:
    case QTabBar::TriangularEast:
        canvas.line(JoinRight, option.rect, color);
        break;
    }
}

bool ApplicationStylePrivate::drawIndicator(Primitive element, const QStyleOption& option,
                                            QPainter* painter) {
    const auto mark = [&](StyleMark shape) {
        StyleCanvas canvas = this->canvas(painter, option);
        const int side =
            std::min({option.rect.width(), option.rect.height(), StyleMetrics::ArrowMark});
        canvas.mark(shape, option.rect, side, canvas.shades().windowText);
        return true;
    };
    switch (element) {
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorItemViewItemCheck:
        drawCheck(StyleElement::Indicator, option, painter);
        return true;
    case QStyle::PE_IndicatorRadioButton:
        drawCheck(StyleElement::Radio, option, painter);
        return true;
    case QStyle::PE_IndicatorArrowUp:
        return mark(StyleMark::ArrowUp);
    case QStyle::PE_IndicatorArrowDown:
        return mark(StyleMark::ArrowDown);
    case QStyle::PE_IndicatorArrowLeft:
        return mark(StyleMark::ArrowLeft);
    case QStyle::PE_IndicatorArrowRight:
        return mark(StyleMark::ArrowRight);
    case QStyle::PE_IndicatorHeaderArrow: {
        const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
        if (header && header->sortIndicator == QStyleOptionHeader::None)
            return true;
        return mark(header && header->sortIndicator == QStyleOptionHeader::SortUp
                        ? StyleMark::ArrowUp
                        : StyleMark::ArrowDown);
    }
    case QStyle::PE_IndicatorToolBarHandle:
        return mark(has(option, QStyle::State_Horizontal) ? StyleMark::GripColumn
                                                          : StyleMark::GripRow);
    case QStyle::PE_IndicatorTabClose:
        if (has(option, QStyle::State_MouseOver | QStyle::State_Sunken))
            canvas(painter, option).bevel(StyleElement::ToolButton, option.rect, stateOf(option));
        return mark(StyleMark::Cross);
    default:
        return false;
    }
}

void ApplicationStylePrivate::drawCheck(StyleElement element, const QStyleOption& option,
                                        QPainter* painter) {
    const bool isPart = has(option, QStyle::State_NoChange);
    unsigned state = stateOf(option) & ~unsigned(StateFocus);
    if (isPart)
        state |= StateOn;
    StyleCanvas canvas = this->canvas(painter, option);
    canvas.bevel(element, option.rect, state);
    if (!(state & StateOn))
        return;
    const StyleMark mark = isPart                           ? StyleMark::Dash
                           : element == StyleElement::Radio ? StyleMark::Dot
                                                            : StyleMark::Check;
    const Shades& shades = canvas.shades();
    canvas.mark(mark, option.rect, (state & StateEnabled) ? shades.highlightedText : shades.text);
}

} // namespace Kestrel::UI
