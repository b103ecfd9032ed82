// How a choice bar is drawn: by the palette alone, so that its buttons are joined in every style.

#include <KxUI/kit/ChoiceBar_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace Kestrel::UI {
namespace {

constexpr double Radius = 3.0;
constexpr int Underline = 2;
constexpr int UnderlineWhenOn = 3;

QColor frameColor(const QPalette& palette) {
    return mixed(palette.color(QPalette::Button), palette.color(QPalette::ButtonText), 0.4);
}

/** A triangle that points down, about a point. */
QPolygonF arrowAt(const QPointF& middle) {
    return {
        {middle + QPointF(-3.5, -1.75), middle + QPointF(3.5, -1.75), middle + QPointF(0.0, 1.75)}};
}

} // namespace

/** What one button looks like now. */
struct ChoiceBarPrivate::Look {
    QColor fill; ///< invalid for none
    QColor text;
    QColor underline; ///< invalid for none
    QIcon::Mode iconMode = QIcon::Normal;
    int underlineHeight = 0;
};

ChoiceBarPrivate::Look ChoiceBarPrivate::lookOf(int part) {
    const bool isMenu = part == MenuPart;
    const Choice none;
    const int current = list.current();
    const bool currentInMenu = current >= layout().seen();
    const Choice& choice = isMenu ? (currentInMenu ? list.at(current) : none) : list.at(part);
    const bool enabled = q->isEnabled() && choice.enabled;
    QPalette palette = q->palette();
    if (!enabled)
        palette.setCurrentColorGroup(QPalette::Disabled);

    const QColor button = palette.color(QPalette::Button);
    const QColor text = palette.color(QPalette::ButtonText);
    Look look;
    look.iconMode = enabled ? QIcon::Normal : QIcon::Disabled;
    look.text = text;
    const QColor accent =
        choice.color.isValid() ? choice.color : palette.color(QPalette::Highlight);
    if (choice.checked) // not the highlight itself, on which an icon in the text's colour is lost
        look.fill = mixed(button, accent, choice.color.isValid() || !enabled ? 0.22 : 0.4);
    else if (part == pressed)
        look.fill = mixed(button, text, 0.2);
    else if (part == hovered && enabled)
        look.fill = mixed(button, text, 0.08);
    const QColor ground = look.fill.isValid() ? look.fill : button;
    if (choice.checked || (choice.color.isValid() && enabled)) {
        look.underline = choice.checked ? accent : mixed(button, accent, 0.7);
        look.underlineHeight = choice.checked ? UnderlineWhenOn : Underline;
    }
    if (choice.color.isValid() && enabled) {
        const QColor end = brightness(ground) < 0.5 ? Qt::white : Qt::black;
        look.text = firstVisible(
            {choice.color, mixed(choice.color, end, 0.3), mixed(choice.color, end, 0.6), end},
            {ground}, ReadableContrast);
    }
    return look;
}

void ChoiceBarPrivate::paint(QPainter& painter) {
    const double ratio = q->devicePixelRatioF();
    const double thin = 1.0 / ratio;
    const QPalette palette = q->palette();
    const QRectF outline = QRectF(q->rect()).adjusted(thin / 2, thin / 2, -thin / 2, -thin / 2);
    QPainterPath shape;
    shape.addRoundedRect(outline, Radius, Radius);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, palette.color(QPalette::Button));
    painter.save();
    painter.setClipPath(shape);
    for (int i = 0; i < layout().seen(); ++i)
        paintPart(painter, i, layout().partOf(i));
    if (!layout().menu.isEmpty())
        paintPart(painter, MenuPart, layout().menu);
    painter.restore();
    painter.setPen(QPen(frameColor(palette), thin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(shape);

    if (q->hasFocus() && cursor() >= 0) {
        QStyleOptionFocusRect option;
        option.initFrom(q);
        option.state |= QStyle::State_KeyboardFocusChange;
        option.rect = layout().partOf(cursor()).adjusted(2, 2, -2, -2);
        option.backgroundColor = palette.color(QPalette::Button);
        q->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, q);
    }
}

void ChoiceBarPrivate::paintPart(QPainter& painter, int part, const QRect& rect) {
    const double ratio = q->devicePixelRatioF();
    const Look look = lookOf(part);
    if (look.fill.isValid())
        painter.fillRect(rect, look.fill);
    if (look.underline.isValid())
        painter.fillRect(QRect(rect.left(), rect.bottom() + 1 - look.underlineHeight, rect.width(),
                               look.underlineHeight),
                         look.underline);
    const bool mirrored = q->isRightToLeft();
    if (mirrored ? rect.right() < q->width() - 1 : rect.left() > 0) { // not before the first
        const double edge = mirrored ? rect.right() + 1 : rect.left();
        painter.fillRect(QRectF(onPixels(edge, ratio), rect.top(), 1.0 / ratio, rect.height()),
                         frameColor(q->palette()));
    }
    painter.setPen(look.text);
    if (part == MenuPart)
        paintMenuLabel(painter, rect, look);
    else
        paintLabel(painter, list.at(part), rect.adjusted(PaddingX, 0, -PaddingX, 0), look);
}

void ChoiceBarPrivate::paintLabel(QPainter& painter, const Choice& choice, const QRect& rect,
                                  const Look& look) {
    const bool hasIcon = !choice.icon.isNull();
    const bool iconOnly = hasIcon && (layout().iconsOnly || style() == Qt::ToolButtonIconOnly);
    const int letters = q->style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, q)
                            ? Qt::TextShowMnemonic
                            : Qt::TextHideMnemonic;
    const auto paintIcon = [&](const QRect& place) {
        choice.icon.paint(&painter, place, Qt::AlignCenter, look.iconMode);
    };
    if (iconOnly) {
        paintIcon(rect);
        return;
    }
    if (!hasIcon || style() == Qt::ToolButtonTextOnly) {
        painter.drawText(rect, Qt::AlignCenter | letters, choice.text);
        return;
    }
    const int icon = iconSize();
    const QFontMetrics metrics = q->fontMetrics();
    if (style() == Qt::ToolButtonTextUnderIcon) {
        const int top = (rect.height() - icon - metrics.height() - LabelGap / 2) / 2;
        paintIcon(QRect(rect.left(), rect.top() + top, rect.width(), icon));
        painter.drawText(rect.adjusted(0, 0, 0, -top), Qt::AlignHCenter | Qt::AlignBottom | letters,
                         choice.text);
        return;
    }
    const int text = metrics.horizontalAdvance(choice.plainText());
    const int left = rect.left() + (rect.width() - text - icon - LabelGap) / 2;
    const auto place = [&](int x, int width) {
        return QStyle::visualRect(q->layoutDirection(), rect,
                                  QRect(x, rect.top(), width, rect.height()));
    };
    paintIcon(place(left, icon));
    painter.drawText(place(left + icon + LabelGap, text), Qt::AlignCenter | letters, choice.text);
}

void ChoiceBarPrivate::paintMenuLabel(QPainter& painter, const QRect& rect, const Look& look) {
    const int current = list.current();
    const bool shows = current >= layout().seen();
    const auto place = [&](const QRect& part) {
        return QStyle::visualRect(q->layoutDirection(), rect, part);
    };
    const QString text = shows ? list.at(current).plainText() : QStringLiteral("\u2026");
    const QRect label = rect.adjusted(PaddingX, 0, -ArrowRoom, 0);
    painter.drawText(place(label), Qt::AlignCenter,
                     q->fontMetrics().elidedText(text, Qt::ElideRight, label.width()));
    const QRect arrow(rect.right() + 1 - ArrowRoom, rect.top(), ArrowRoom, rect.height());
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.text);
    painter.drawPolygon(arrowAt(QRectF(place(arrow)).center()));
    painter.restore();
}

} // namespace Kestrel::UI
