#include <KxUI/kit/QtCompat_p.h>
#include <KxUI/style/ApplicationStyle_p.h>
#include <KxUI/style/StyleMetrics_p.h>

#include <QPainter>

namespace Kestrel::UI {
namespace {

constexpr int Padding = 8;   // at both ends of an item
constexpr int MarkSide = 14; // of a check mark
constexpr int Gap = 6;       // between the column of marks and icons and the text
constexpr int ArrowSpace = 14;

int columnWidth(const QStyleOptionMenuItem& option) {
    const int marks = option.menuHasCheckableItems ? MarkSide : 0;
    return std::max({option.maxIconWidth, marks, 4});
}

/** The places of an item's parts, from left to right. */
struct MenuItemLayout {
    explicit MenuItemLayout(const QStyleOptionMenuItem& option) {
        const QRect inside = option.rect.adjusted(Padding, 0, -Padding, 0);
        const int column = columnWidth(option);
        const auto place = [&](int left, int width) {
            return QStyle::visualRect(option.direction, option.rect,
                                      QRect(left, inside.y(), width, inside.height()));
        };
        const int textLeft = inside.left() + column + Gap;
        const int textRight = inside.right() + 1 - ArrowSpace;
        mark = place(inside.left(), column);
        text = place(textLeft, std::max(0, textRight - textLeft));
        shortcut = place(textRight - shortcutWidth(option), shortcutWidth(option));
        arrow = place(inside.right() + 1 - ArrowSpace, ArrowSpace);
    }

    QRect mark;
    QRect text;
    QRect shortcut;
    QRect arrow;
};

} // namespace

QSize menuItemSize(const QStyleOptionMenuItem& option, const QSize& contents) {
    const int line = StyleMetrics::controlHeight(option.fontMetrics);
    if (option.menuItemType == QStyleOptionMenuItem::Separator)
        return {contents.width() + 2 * Padding, option.text.isEmpty() ? 7 : line};
    const int width = 2 * Padding + columnWidth(option) + Gap + contents.width() + ArrowSpace;
    const bool hasShortcut = option.text.contains(QLatin1Char('\t'));
    const int icon = option.icon.isNull() ? 0 : option.maxIconWidth + 2;
    return {width + (hasShortcut ? 3 * Padding : Padding),
            std::max({line, icon, contents.height()})};
}

void ApplicationStylePrivate::drawMenuItem(const QStyleOptionMenuItem& option, QPainter* painter,
                                           const QWidget* widget) {
    const bool isEnabled = option.state & QStyle::State_Enabled;
    const bool isSelected = isEnabled && (option.state & QStyle::State_Selected);
    const bool isSeparator = option.menuItemType == QStyleOptionMenuItem::Separator;
    const MenuItemLayout layout(option);
    const QPalette::ColorRole role = isSelected ? QPalette::HighlightedText : QPalette::WindowText;
    {
        StyleCanvas canvas = this->canvas(painter, option);
        const Shades& shades = canvas.shades();
        const QRgb ink = isSelected ? shades.highlightedText : shades.windowText;
        if (isSeparator && option.text.isEmpty()) {
            QRect line = option.rect.adjusted(Padding, 0, -Padding, 0);
            line.setTop(option.rect.center().y());
            canvas.line(JoinTop, line, mixedShade(shades.menu, shades.windowText, 0.25));
            return;
        }
        if (isSelected)
            canvas.fill(option.rect, shades.highlight);
        if (option.menuItemType == QStyleOptionMenuItem::SubMenu)
            canvas.mark(option.direction == Qt::RightToLeft ? StyleMark::ArrowLeft
                                                            : StyleMark::ArrowRight,
                        layout.arrow, StyleMetrics::ArrowMark, ink);
        if (option.checked && option.icon.isNull())
            canvas.mark(option.checkType == QStyleOptionMenuItem::Exclusive ? StyleMark::Dot
                                                                            : StyleMark::Check,
                        layout.mark, MarkSide, ink);
        if (option.checked && !option.icon.isNull())
            canvas.bevel(StyleElement::ToolButton, layout.mark.adjusted(-2, 1, 2, -1),
                         StateEnabled | StateOn);
    }
    const QStyle* style = q->proxy();
    if (!option.icon.isNull()) {
        const int side = style->pixelMetric(QStyle::PM_SmallIconSize, &option, widget);
        QRect icon(0, 0, side, side);
        icon.moveCenter(layout.mark.center());
        option.icon.paint(painter, icon, Qt::AlignCenter,
                          !isEnabled   ? QIcon::Disabled
                          : isSelected ? QIcon::Selected
                                       : QIcon::Normal,
                          option.checked ? QIcon::On : QIcon::Off);
    }
    const auto tab = option.text.indexOf(QLatin1Char('\t'));
    const int mnemonic = style->styleHint(QStyle::SH_UnderlineShortcut, &option, widget)
                             ? Qt::TextShowMnemonic
                             : Qt::TextHideMnemonic;
    const int flags =
        int(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter)) |
        mnemonic | Qt::TextSingleLine | Qt::TextDontClip;
    const QFont before = painter->font();
    painter->setFont(option.font);
    style->drawItemText(painter, layout.text, flags, option.palette, isEnabled && !isSeparator,
                        option.text.left(tab), role);
    if (tab >= 0)
        style->drawItemText(painter, layout.shortcut, flags, option.palette, isEnabled,
                            option.text.mid(tab + 1), role);
    painter->setFont(before);
}

void ApplicationStylePrivate::drawMenuBarItem(const QStyleOptionMenuItem& option, QPainter* painter,
                                              const QWidget* widget) {
    const bool isEnabled = option.state & QStyle::State_Enabled;
    const bool isSelected = isEnabled && (option.state & QStyle::State_Selected);
    if (isSelected) {
        StyleCanvas canvas = this->canvas(painter, option);
        canvas.fill(option.rect, canvas.shades().highlight);
    }
    const QStyle* style = q->proxy();
    if (!option.icon.isNull()) {
        const int side = style->pixelMetric(QStyle::PM_SmallIconSize, &option, widget);
        QRect icon(0, 0, side, side);
        icon.moveCenter(option.rect.center());
        option.icon.paint(painter, icon, Qt::AlignCenter,
                          isEnabled ? QIcon::Normal : QIcon::Disabled);
        return;
    }
    const int mnemonic = style->styleHint(QStyle::SH_UnderlineShortcut, &option, widget)
                             ? Qt::TextShowMnemonic
                             : Qt::TextHideMnemonic;
    style->drawItemText(painter, option.rect,
                        Qt::AlignCenter | mnemonic | Qt::TextDontClip | Qt::TextSingleLine,
                        option.palette, isEnabled, option.text,
                        isSelected ? QPalette::HighlightedText : QPalette::WindowText);
}

} // namespace Kestrel::UI
