#include <KxUI/style/ApplicationStyle_p.h>
#include <KxUI/style/StyleMetrics_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

using namespace StyleMetrics;

QRect comboPart(const QStyleOptionComboBox& option, QStyle::SubControl part) {
    const QRect rect = option.rect;
    const int frame = option.frame ? 1 : 0;
    const int arrow = std::min(ArrowWidth, rect.width());
    QRect place = rect;
    switch (part) {
    case QStyle::SC_ComboBoxArrow:
        place.setLeft(rect.right() - arrow + 1);
        break;
    case QStyle::SC_ComboBoxEditField:
        place = rect.adjusted(option.editable ? frame + 1 : FieldPadding + 2 * frame, frame, -arrow,
                              -frame);
        break;
    default: // the frame and the list are as wide as the box
        return rect;
    }
    return QStyle::visualRect(option.direction, rect, place);
}

QRect spinPart(const QStyleOptionSpinBox& option, QStyle::SubControl part) {
    const QRect rect = option.rect;
    const int frame = option.frame ? 1 : 0;
    const bool hasButtons = option.buttonSymbols != QAbstractSpinBox::NoButtons;
    const int buttons = hasButtons ? std::min(StepWidth, rect.width() / 2) : 0;
    const int half = rect.height() / 2;
    const int left = rect.right() + 1 - frame - buttons;
    QRect place = rect;
    switch (part) {
    case QStyle::SC_SpinBoxUp:
        place = hasButtons ? QRect(left, rect.y() + frame, buttons, half - frame) : QRect();
        break;
    case QStyle::SC_SpinBoxDown:
        place = hasButtons ? QRect(left, rect.y() + half, buttons, rect.height() - half - frame)
                           : QRect();
        break;
    case QStyle::SC_SpinBoxEditField:
        place = rect.adjusted(frame + 2, frame, -buttons - frame, -frame);
        break;
    default:
        return rect;
    }
    return QStyle::visualRect(option.direction, rect, place);
}

QRect scrollPart(const QStyleOptionSlider& option, QStyle::SubControl part) {
    const QRect rect = option.rect;
    const bool isFlat = option.orientation == Qt::Horizontal;
    const int whole = isFlat ? rect.width() : rect.height();
    const qint64 range = qint64(option.maximum) - option.minimum;
    int length = whole;
    if (range > 0) {
        const qint64 page = std::max(option.pageStep, 0);
        const int least = std::min(scaled(24, option.fontMetrics.fontDpi()), whole);
        length = std::clamp(int(page * whole / (range + page)), least, whole);
    }
    const int start = QStyle::sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, whole - length, option.upsideDown);
    const auto along = [&](int from, int to) {
        const QRect place = isFlat ? QRect(rect.x() + from, rect.y(), to - from, rect.height())
                                   : QRect(rect.x(), rect.y() + from, rect.width(), to - from);
        return QStyle::visualRect(option.direction, rect, place);
    };
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        return along(start, start + length);
    case QStyle::SC_ScrollBarSubPage:
        return along(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return along(start + length, whole);
    case QStyle::SC_ScrollBarGroove:
        return rect;
    default: // there are no buttons
        return {};
    }
}

QRect sliderPart(const QStyleOptionSlider& option, QStyle::SubControl part, int thickness,
                 int length) {
    const bool isFlat = option.orientation == Qt::Horizontal;
    const QRect rect = option.rect;
    const int whole = isFlat ? rect.width() : rect.height();
    const int across = isFlat ? rect.height() : rect.width();
    const int start =
        QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                        std::max(0, whole - length), option.upsideDown);
    // Ticks on one side push it to the other one.
    const int ticks = (option.tickPosition & QSlider::TicksAbove ? 2 : 0) -
                      (option.tickPosition & QSlider::TicksBelow ? 2 : 0);
    const int top = (across - thickness) / 2 + ticks;
    const bool isHandle = part == QStyle::SC_SliderHandle;
    const int from = isHandle ? start : 0;
    const int size = isHandle ? length : whole;
    return isFlat ? QRect(rect.x() + from, rect.y() + top, size, thickness)
                  : QRect(rect.x() + top, rect.y() + from, thickness, size);
}

QSize buttonSize(const QStyleOptionButton& option, const QSize& contents) {
    const int line = controlHeight(option.fontMetrics);
    const int text =
        option.text.isEmpty() ? contents.width() : std::max(contents.width(), LeastButtonText);
    const int side = option.text.isEmpty() ? 4 : ButtonPadding;
    return {text + 2 * side, std::max(line, contents.height() + 6)};
}

} // namespace

std::optional<QRect> partRect(QStyle::ComplexControl control, const QStyleOptionComplex& option,
                              QStyle::SubControl part) {
    if (control == QStyle::CC_ComboBox) {
        if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(&option))
            return comboPart(*combo, part);
    } else if (control == QStyle::CC_SpinBox) {
        if (const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(&option))
            return spinPart(*spin, part);
    } else if (control == QStyle::CC_Slider &&
               (part == QStyle::SC_SliderHandle || part == QStyle::SC_SliderGroove)) {
        const double dpi = option.fontMetrics.fontDpi();
        if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(&option))
            return sliderPart(*slider, part, scaled(HandleThickness, dpi),
                              scaled(HandleLength, dpi));
    } else if (control == QStyle::CC_ScrollBar) {
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option))
            return scrollPart(*bar, part);
    }
    return {};
}

std::optional<QSize> sizeAround(QStyle::ContentsType type, const QStyleOption& option,
                                const QSize& contents) {
    const int line = controlHeight(option.fontMetrics);
    switch (type) {
    case QStyle::CT_PushButton:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option))
            return buttonSize(*button, contents);
        return {};
    case QStyle::CT_MenuItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option))
            return menuItemSize(*item, contents);
        return {};
    case QStyle::CT_LineEdit: {
        const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
        if (frame && frame->lineWidth <= 0)
            return contents;
        return QSize(contents.width() + 2 * FieldPadding, std::max(line, contents.height() + 2));
    }
    case QStyle::CT_ComboBox:
        return QSize(contents.width() + FieldPadding + 3 + ArrowWidth,
                     std::max(line, contents.height() + 4));
    case QStyle::CT_SpinBox: {
        const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(&option);
        const bool hasButtons = !spin || spin->buttonSymbols != QAbstractSpinBox::NoButtons;
        return QSize(contents.width() + 4 + (hasButtons ? StepWidth : 0),
                     std::max(line, contents.height() + 2));
    }
    case QStyle::CT_ToolButton: {
        const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(&option);
        const bool hasCorner = button && (button->features & QStyleOptionToolButton::HasMenu) &&
                               !(button->features & QStyleOptionToolButton::MenuButtonPopup);
        return QSize(contents.width() + 6 + (hasCorner ? ArrowMark : 0), contents.height() + 6);
    }
    case QStyle::CT_MenuBarItem:
        return contents.isEmpty() ? contents
                                  : QSize(contents.width() + 14, std::max(line, contents.height()));
    default:
        return {};
    }
}

} // namespace Kestrel::UI
