// How a choice bar is drawn: by the palette alone, so that its buttons are
// joined in every style.

#include <KxUI/kit/ChoiceBar_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Kestrel::UI {
namespace {

constexpr double Radius = 3.0;
constexpr int Underline = 2;
constexpr int UnderlineWhenOn = 3;

QColor frameColor(const QPalette& palette) {
    return mixed(palette.color(QPalette::Button), palette.color(QPalette::ButtonText), 0.4);
}

/** What lies under a button's label. */
struct Ground {
    QRgb frame = 0;
    QRgb fill = 0;
    QRgb underline = 0; ///< transparent for none
    int underlineHeight = 0;
};

/** The rounded ends of a bar, next to each other. */
struct Ends {
    static constexpr int Width = 4; ///< of one: whole device pixels in steps of a quarter

    Ground ground;
    int height = 0; ///< device pixels
    double ratio = 1.0;
    QImage picture;

    bool isOf(const Ground& other, int otherHeight, double otherRatio) const {
        return ground.frame == other.frame && ground.fill == other.fill &&
               ground.underline == other.underline &&
               ground.underlineHeight == other.underlineHeight && height == otherHeight &&
               ratio == otherRatio;
    }
};

QImage drawEnds(const Ground& ground, int height, double ratio) {
    QImage picture(qRound(2 * Ends::Width * ratio), height, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const double thin = 1.0 / ratio;
    const QRectF whole(0, 0, 2 * Ends::Width, height / ratio);
    QPainterPath shape;
    shape.addRoundedRect(whole.adjusted(thin / 2, thin / 2, -thin / 2, -thin / 2), Radius, Radius);
    painter.fillPath(shape, QColor::fromRgba(ground.fill));
    painter.setClipPath(shape);
    painter.fillRect(
        QRectF(0, whole.bottom() - ground.underlineHeight, whole.width(), ground.underlineHeight),
        QColor::fromRgba(ground.underline));
    painter.setClipping(false);
    painter.setPen(QPen(QColor::fromRgba(ground.frame), thin));
    painter.drawPath(shape);
    return picture;
}

/** A few looks of a theme serve all bars of a program: rounded corners are slow
 * to draw. */
const QImage& endsOf(const Ground& ground, int height, double ratio) {
    constexpr std::size_t most = 64;
    static std::vector<Ends> known;
    for (const Ends& ends : known) {
        if (ends.isOf(ground, height, ratio))
            return ends.picture;
    }
    if (known.size() == most)
        known.clear();
    known.push_back({ground, height, ratio, drawEnds(ground, height, ratio)});
    return known.back().picture;
}

/** Draws the part `from` to `to` of a bar of the size, in whole device pixels.
 */
void paintGround(QPainter& painter, const Ground& ground, const QSizeF& size, double from,
                 double to, double ratio) {
    const double thin = 1.0 / ratio;
    const double height = size.height();
    if (from <= 0 || to >= size.width()) {
        const QImage& ends = endsOf(ground, qRound(height * ratio), ratio);
        const QSizeF part(Ends::Width * ratio, qRound(height * ratio));
        if (from <= 0) {
            painter.drawImage(QPointF(), ends, QRectF(QPointF(), part));
            from = Ends::Width;
        }
        if (to >= size.width()) {
            painter.drawImage(QPointF(size.width() - Ends::Width, 0), ends,
                              QRectF(QPointF(Ends::Width * ratio, 0), part));
            to = size.width() - Ends::Width;
        }
    }
    const auto fill = [&](double top, double bottom, QRgb color) {
        painter.fillRect(QRectF(from, top, to - from, bottom - top), QColor::fromRgba(color));
    };
    fill(0, thin, ground.frame);
    fill(thin, height - thin, ground.fill);
    if (ground.underlineHeight > 0)
        fill(height - ground.underlineHeight, height - thin, ground.underline);
    fill(height - thin, height, ground.frame);
}

/** At scales between whole numbers a widget may begin and end between device pixels, of which it is
    cut down to whole ones. */
QRectF wholePixels(const QTransform& toDevice, const QSizeF& size) {
    constexpr double Rounding = 1e-6;
    const QRectF device = toDevice.mapRect(QRectF(QPointF(), size));
    const QRectF whole(
        QPointF(std::ceil(device.left() - Rounding), std::ceil(device.top() - Rounding)),
        QPointF(std::floor(device.right() + Rounding), std::floor(device.bottom() + Rounding)));
    return toDevice.inverted().mapRect(whole);
}

/** A triangle that points down, about a point. */
QPolygonF arrowAt(const QPointF& middle) {
    return {
        {middle + QPointF(-3.5, -1.75), middle + QPointF(3.5, -1.75), middle + QPointF(0.0, 1.75)}};
}

} // namespace

/** What one button looks like now. */
struct ChoiceBarPrivate::Look {
    QColor fill;
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
    look.fill = button;
    look.iconMode = enabled ? QIcon::Normal : QIcon::Disabled;
    look.text = text;
    const QColor accent =
        choice.color.isValid() ? choice.color : palette.color(QPalette::Highlight);
    if (choice.checked) // not the highlight itself, on which an icon in the
                        // text's colour is lost
        look.fill = mixed(button, accent, choice.color.isValid() || !enabled ? 0.22 : 0.4);
    else if (part == pressed)
        look.fill = mixed(button, text, 0.2);
    else if (part == hovered && enabled)
        look.fill = mixed(button, text, 0.08);
    if (choice.checked || (choice.color.isValid() && enabled)) {
        look.underline = choice.checked ? accent : mixed(button, accent, 0.7);
        look.underlineHeight = choice.checked ? UnderlineWhenOn : Underline;
    }
    if (choice.color.isValid() && enabled) {
        const QColor end = brightness(look.fill) < 0.5 ? Qt::white : Qt::black;
        look.text = firstVisible(
            {choice.color, mixed(choice.color, end, 0.3), mixed(choice.color, end, 0.6), end},
            {look.fill}, ReadableContrast);
    }
    return look;
}

void ChoiceBarPrivate::paint(QPainter& painter) {
    const QTransform toDevice = painter.deviceTransform();
    const QRectF whole = wholePixels(toDevice, q->size());
    const Canvas canvas{whole.size(), std::abs(toDevice.m22())};
    painter.translate(whole.topLeft());
    for (int i = 0; i < layout().seen(); ++i)
        paintPart(painter, i, layout().partOf(i), canvas);
    if (!layout().menu.isEmpty())
        paintPart(painter, MenuPart, layout().menu, canvas);
    if (q->hasFocus() && cursor() >= 0)
        paintFocus(painter, canvas.ratio);
}

void ChoiceBarPrivate::paintFocus(QPainter& painter, double ratio) {
    const double width = std::max(1.0, std::round(1.5 * ratio)) / ratio;
    const int part = cursor() < layout().seen() ? cursor() : MenuPart;
    const QRectF rect = rectOnPixels(layout().partOf(cursor()), ratio);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(visibleHighlight(q->palette(), lookOf(part).fill), width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(width / 2, width / 2, -width / 2, -width / 2), Radius,
                            Radius);
    painter.restore();
}

void ChoiceBarPrivate::paintPart(QPainter& painter, int part, const QRect& rect,
                                 const Canvas& canvas) {
    const auto& [size, ratio] = canvas;
    const Look look = lookOf(part);
    const QRgb frame = frameColor(q->palette()).rgba();
    const Ground ground{frame, look.fill.rgba(),
                        look.underline.isValid() ? look.underline.rgba() : 0, look.underlineHeight};
    const double from = onPixels(rect.left(), ratio);
    const double to = std::min(onPixels(rect.right() + 1, ratio), size.width());
    paintGround(painter, ground, size, from, to, ratio);
    const bool mirrored = q->isRightToLeft();
    if (mirrored ? to < size.width() : from > 0) // not before the first
        painter.fillRect(QRectF(mirrored ? to : from, 0, 1.0 / ratio, size.height()),
                         QColor::fromRgba(frame));
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
    const int letters =
        Qt::TextSingleLine |
        (q->style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, q) ? Qt::TextShowMnemonic
                                                                         : Qt::TextHideMnemonic);
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
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.text);
    painter.drawPolygon(arrowAt(QRectF(place(arrow)).center()));
    painter.restore();
}

} // namespace Kestrel::UI
