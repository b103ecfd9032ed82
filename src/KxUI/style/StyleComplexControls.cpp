#include <KxUI/style/ApplicationStyle_p.h>
#include <KxUI/style/StyleMetrics_p.h>

#include <QPainter>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int TickLength = 3;

bool hasFocus(const QStyleOption& option) {
    return (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_Enabled);
}

// The states of one part of a control.
unsigned partState(const QStyleOptionComplex& option, QStyle::SubControl part) {
    const unsigned state = stateOf(option) & ~unsigned(StateFocus);
    return (option.activeSubControls & part) ? state : state & ~unsigned(StateHover | StateSunken);
}

// Lines beside the way of the handle's middle.
void drawTicks(StyleCanvas& canvas, const QStyleOptionSlider& option, const QRect& handle) {
    const bool isFlat = option.orientation == Qt::Horizontal;
    const qint64 step = option.tickInterval > 0 ? option.tickInterval
                                                : std::max(option.pageStep, option.singleStep);
    const int way =
        isFlat ? option.rect.width() - handle.width() : option.rect.height() - handle.height();
    if (option.tickPosition == QSlider::NoTicks || step <= 0 || way <= 0)
        return;
    const Shades& shades = canvas.shades();
    const QRgb color = mixedShade(shades.window, shades.windowText, 0.45);
    const int start =
        (isFlat ? option.rect.x() + handle.width() / 2 : option.rect.y() + handle.height() / 2);
    // Not more of them than can be told apart.
    const qint64 range = qint64(option.maximum) - option.minimum;
    const qint64 stride = step * std::max<qint64>(1, range / step * 3 / std::max(way, 1));
    for (qint64 value = option.minimum; value <= option.maximum; value += stride) {
        const int at = start + QStyle::sliderPositionFromValue(option.minimum, option.maximum,
                                                               int(value), way, option.upsideDown);
        const auto tick = [&](int from) {
            const QRect line =
                isFlat ? QRect(at, from, 1, TickLength) : QRect(from, at, TickLength, 1);
            canvas.line(isFlat ? JoinLeft : JoinTop, line, color);
        };
        if (option.tickPosition & QSlider::TicksAbove)
            tick((isFlat ? handle.top() : handle.left()) - TickLength - 1);
        if (option.tickPosition & QSlider::TicksBelow)
            tick((isFlat ? handle.bottom() : handle.right()) + 2);
    }
}

} // namespace

bool ApplicationStylePrivate::drawComplex(Complex control, const QStyleOptionComplex& option,
                                          QPainter* painter, const QWidget* widget) {
    switch (control) {
    case QStyle::CC_ComboBox:
        if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(&option))
            return drawComboBox(*combo, painter, widget), true;
        return false;
    case QStyle::CC_SpinBox:
        if (const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(&option))
            return drawSpinBox(*spin, painter, widget), true;
        return false;
    case QStyle::CC_Slider:
        if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(&option))
            return drawSlider(*slider, painter, widget), true;
        return false;
    case QStyle::CC_ScrollBar:
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option))
            return drawScrollBar(*bar, painter, widget), true;
        return false;
    default:
        return false;
    }
}

void ApplicationStylePrivate::drawComboBox(const QStyleOptionComboBox& option, QPainter* painter,
                                           const QWidget* widget) {
    StyleCanvas canvas = this->canvas(painter, option);
    const Shades& shades = canvas.shades();
    unsigned state = stateOf(option);
    if (option.editable) {
        state &= ~unsigned(StateHover | StateSunken | StateOn);
        if (hasFocus(option))
            state |= StateFocus;
    } else {
        state &= ~unsigned(StateOn); // which only says that the list is open
    }
    if (option.frame && (option.subControls & QStyle::SC_ComboBoxFrame))
        canvas.bevel(option.editable ? StyleElement::Field : StyleElement::Button, option.rect,
                     state);
    if (option.subControls & QStyle::SC_ComboBoxArrow) {
        const QRect arrow = q->proxy()->subControlRect(QStyle::CC_ComboBox, &option,
                                                       QStyle::SC_ComboBoxArrow, widget);
        canvas.mark(StyleMark::ArrowDown, arrow, StyleMetrics::ArrowMark,
                    option.editable ? shades.text : shades.buttonText);
    }
}

void ApplicationStylePrivate::drawSpinBox(const QStyleOptionSpinBox& option, QPainter* painter,
                                          const QWidget* widget) {
    StyleCanvas canvas = this->canvas(painter, option);
    const Shades& shades = canvas.shades();
    unsigned state = stateOf(option) & ~unsigned(StateHover | StateSunken | StateOn);
    if (hasFocus(option))
        state |= StateFocus;
    if (option.frame && (option.subControls & QStyle::SC_SpinBoxFrame))
        canvas.bevel(StyleElement::Field, option.rect, state);
    if (option.buttonSymbols == QAbstractSpinBox::NoButtons)
        return;
    const bool arrows = option.buttonSymbols == QAbstractSpinBox::UpDownArrows;
    const auto button = [&](QStyle::SubControl part, QAbstractSpinBox::StepEnabledFlag step,
                            StyleMark mark) {
        if (!(option.subControls & part))
            return;
        const QRect place = q->proxy()->subControlRect(QStyle::CC_SpinBox, &option, part, widget);
        const bool canStep = (option.stepEnabled & step) && (state & StateEnabled);
        if (canStep && (partState(option, part) & (StateHover | StateSunken)))
            canvas.fill(place.adjusted(0, 1, -1, 0),
                        (partState(option, part) & StateSunken)
                            ? mixedShade(shades.base, shades.text, 0.05)
                            : mixedShade(shades.base, shades.text, 0.15));
        canvas.mark(mark, place, StyleMetrics::StepMark,
                    canStep ? shades.text : mixedShade(shades.base, shades.text, 0.35));
    };
    button(QStyle::SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled,
           arrows ? StyleMark::ArrowUp : StyleMark::Plus);
    button(QStyle::SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled,
           arrows ? StyleMark::ArrowDown : StyleMark::Minus);
}

void ApplicationStylePrivate::drawSlider(const QStyleOptionSlider& option, QPainter* painter,
                                         const QWidget* widget) {
    const auto part = [&](QStyle::SubControl which) {
        return q->proxy()->subControlRect(QStyle::CC_Slider, &option, which, widget);
    };
    const bool isFlat = option.orientation == Qt::Horizontal;
    const QRect handle = part(QStyle::SC_SliderHandle);
    StyleCanvas canvas = this->canvas(painter, option);
    if (option.subControls & QStyle::SC_SliderTickmarks)
        drawTicks(canvas, option, handle);
    if (option.subControls & QStyle::SC_SliderGroove) {
        const QRect place = part(QStyle::SC_SliderGroove);
        constexpr int Width = StyleMetrics::GrooveWidth;
        QRect groove = place;
        if (isFlat)
            groove.setTop(handle.center().y() - Width / 2 + 1), groove.setHeight(Width);
        else
            groove.setLeft(handle.center().x() - Width / 2 + 1), groove.setWidth(Width);
        const unsigned along = isFlat ? 0 : unsigned(StateUpright);
        const unsigned enabled = stateOf(option) & StateEnabled;
        canvas.bevel(StyleElement::Groove, groove, enabled | along);
        // Filled from the minimum to the handle.
        QRect filled = groove;
        if (isFlat)
            option.upsideDown ? filled.setLeft(handle.center().x())
                              : filled.setRight(handle.center().x());
        else
            option.upsideDown ? filled.setTop(handle.center().y())
                              : filled.setBottom(handle.center().y());
        canvas.bevel(StyleElement::Groove, filled, enabled | along | StateOn);
    }
    if (option.subControls & QStyle::SC_SliderHandle) {
        unsigned state = partState(option, QStyle::SC_SliderHandle) & ~unsigned(StateOn);
        if (stateOf(option) & StateFocus)
            state |= StateFocus;
        canvas.bevel(StyleElement::Handle, handle, state);
    }
}

void ApplicationStylePrivate::drawScrollBar(const QStyleOptionSlider& option, QPainter* painter,
                                            const QWidget* widget) {
    StyleCanvas canvas = this->canvas(painter, option);
    canvas.fill(option.rect, canvas.shades().groove);
    if (!(option.subControls & QStyle::SC_ScrollBarSlider) || option.maximum <= option.minimum)
        return;
    const QRect place = q->proxy()->subControlRect(QStyle::CC_ScrollBar, &option,
                                                   QStyle::SC_ScrollBarSlider, widget);
    constexpr int Margin = StyleMetrics::ScrollMargin;
    unsigned state = partState(option, QStyle::SC_ScrollBarSlider) & ~unsigned(StateOn);
    if (option.orientation == Qt::Vertical)
        state |= StateUpright;
    canvas.bevel(StyleElement::ScrollHandle, place.adjusted(Margin, Margin, -Margin, -Margin),
                 state);
}

} // namespace Kestrel::UI
