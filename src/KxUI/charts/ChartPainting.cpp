#include <KxUI/charts/ChartPainting_p.h>

#include <KxUI/charts/Chart_p.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QFontMetricsF>

#include <algorithm>
#include <functional>

namespace Kestrel::UI {
namespace {

constexpr double MarkWidth = 16;
constexpr double Gap = 6;
constexpr int MostRows = 12;

QString elided(const QString& text, const QFontMetricsF& metrics, double width) {
    return metrics.horizontalAdvance(text) <= width
               ? text
               : metrics.elidedText(text, Qt::ElideRight, width);
}

void drawGrid(DrawingContext& context, const PlotLayout& layout, const PlotRules& rules,
              const ChartLook& look) {
    const qreal ratio = context.devicePixelRatio();
    std::vector<QLineF> lines;
    if (rules.left->isGridVisible() && !rules.slotsOnLeft)
        for (const double value : layout.left.values) {
            const double y = crisp(layout.y.pixel(value), ratio);
            lines.emplace_back(layout.plot.left(), y, layout.plot.right(), y);
        }
    if (rules.bottom->isGridVisible() && (!rules.hasSlots || rules.slotsOnLeft))
        for (const double value : layout.bottom.values) {
            const double x = crisp(layout.x.pixel(value), ratio);
            lines.emplace_back(x, layout.plot.top(), x, layout.plot.bottom());
        }
    context.lines(lines.data(), int(lines.size()), {look.grid, 0});
}

void drawAxisLines(DrawingContext& context, const PlotLayout& layout, const PlotRules& rules,
                   const ChartLook& look) {
    const qreal ratio = context.devicePixelRatio();
    const QRectF& plot = layout.plot;
    const bool isLying = rules.slotsOnLeft;
    const double low = crisp(plot.bottom(), ratio);
    const double left = crisp(plot.left(), ratio);
    // The line that values stand on: the others are drawn by their ticks alone.
    const QLineF base = isLying ? QLineF(left, plot.top(), left, plot.bottom())
                                : QLineF(plot.left(), low, plot.right(), low);
    context.lines(&base, 1, {look.axis, 0});
    if (isLying || rules.hasSlots)
        return;
    std::vector<QLineF> ticks;
    for (const double value : layout.bottom.values)
        ticks.emplace_back(crisp(layout.x.pixel(value), ratio), plot.bottom(),
                           crisp(layout.x.pixel(value), ratio), plot.bottom() + 4);
    for (const double value : layout.bottom.minor)
        ticks.emplace_back(crisp(layout.x.pixel(value), ratio), plot.bottom(),
                           crisp(layout.x.pixel(value), ratio), plot.bottom() + 2);
    context.lines(ticks.data(), int(ticks.size()), {look.axis, 0});
}

void drawLabels(DrawingContext& context, const PlotLayout& layout, const PlotRules& rules,
                const ChartLook& look) {
    const QFontMetricsF metrics(look.font);
    const QRectF& plot = layout.plot;
    const double height = layout.lineHeight;
    const auto side = [&](const Ticks& ticks, const AxisScale& scale, double left, double right,
                          Qt::Alignment alignment) {
        for (std::size_t i = 0; i < ticks.values.size(); ++i)
            context.text({left, scale.pixel(ticks.values[i]) - height / 2, right - left, height},
                         int(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                         elided(ticks.texts[int(i)], metrics, right - left + 2), look.font,
                         look.faint);
    };
    side(layout.left, layout.y, rules.area.left(), plot.left() - 5, Qt::AlignRight);
    side(layout.right, layout.yRight, plot.right() + 5, rules.area.right(), Qt::AlignLeft);
    const double room =
        rules.hasSlots && !rules.slotsOnLeft && layout.bottom.values.size() > 1
            ? layout.x.pixel(layout.bottom.values[1]) - layout.x.pixel(layout.bottom.values[0])
            : 140;
    for (std::size_t i = 0; i < layout.bottom.values.size(); ++i) {
        const QString text = elided(layout.bottom.texts[int(i)], metrics, room - 2);
        const double width = metrics.horizontalAdvance(text);
        const double x =
            std::clamp(layout.x.pixel(layout.bottom.values[i]) - width / 2, rules.area.left(),
                       std::max(rules.area.left(), rules.area.right() - width));
        context.text({x, plot.bottom() + 5, width, height},
                     int(Qt::AlignLeft | Qt::AlignTop) | Qt::TextSingleLine, text, look.font,
                     look.faint);
    }
}

void drawTitles(DrawingContext& context, const PlotLayout& layout, const PlotRules& rules,
                const ChartLook& look) {
    const double height = layout.lineHeight;
    const QRectF above(rules.area.left(), rules.area.top(), rules.area.width(), height);
    context.text(above, int(Qt::AlignLeft) | Qt::TextSingleLine, rules.left->title(), look.font,
                 look.faint);
    if (rules.right)
        context.text(above, int(Qt::AlignRight) | Qt::TextSingleLine, rules.right->title(),
                     look.font, look.faint);
    if (!layout.bottom.values.empty())
        context.text(
            {layout.plot.left(), layout.plot.bottom() + height + 4, layout.plot.width(), height},
            int(Qt::AlignRight) | Qt::TextSingleLine, rules.bottom->title(), look.font, look.faint);
}

// Calls `place` with the rectangle of each item; how high all are.
double flow(const std::vector<ChartItem>& items, const QRectF& rect, const QFontMetricsF& metrics,
            const std::function<void(const ChartItem&, const QRectF&)>& place) {
    const double height = metrics.height() + 4;
    double x = 0;
    double y = 0;
    for (const ChartItem& item : items) {
        const double width =
            std::min(MarkWidth + 4 + metrics.horizontalAdvance(item.name) + 2 * Gap, rect.width());
        if (x > 0 && x + width > rect.width()) {
            x = 0;
            y += height;
        }
        place(item, {rect.left() + x, rect.top() + y, width, height});
        x += width;
    }
    return y + height;
}

} // namespace

ChartLook::ChartLook(const QPalette& palette, const QFont& textFont)
    : font(textFont)
    , titleFont(textFont)
    , ground(palette.color(QPalette::Base))
    , text(palette.color(QPalette::Text))
    , faint(mixed(text, ground, 0.25))
    , grid(mixed(ground, text, 0.13))
    , axis(mixed(ground, text, 0.5)) {
    titleFont.setBold(true);
}

void drawAxes(DrawingContext& context, const PlotLayout& layout, const PlotRules& rules,
              const ChartLook& look) {
    drawGrid(context, layout, rules, look);
    drawAxisLines(context, layout, rules, look);
    drawLabels(context, layout, rules, look);
    drawTitles(context, layout, rules, look);
}

void drawMark(DrawingContext& context, const QRectF& rect, const QColor& color,
              Qt::PenStyle style) {
    const double y = rect.center().y();
    if (style == Qt::SolidLine)
        context.fill({rect.left() + 2, y - 5, 10, 10}, color);
    else
        context.line({rect.left(), y}, {rect.right(), y}, {color, 2, style});
}

QRectF readoutBox(const QPointF& anchor, const QRectF& bounds, const ChartReadout& readout,
                  const ChartLook& look, qreal ratio) {
    const QFontMetricsF metrics(look.titleFont); // the widest that a line may be written in
    const double row = metrics.height() + 2;
    const int rows = std::min(int(readout.items.size()), MostRows);
    double names = 0;
    double values = 0;
    for (int i = 0; i < rows; ++i) {
        names = std::max(names, std::min(metrics.horizontalAdvance(readout.items[i].name), 200.0));
        values = std::max(values, metrics.horizontalAdvance(readout.items[i].text));
    }
    const bool hasHead = !readout.xText.isEmpty();
    const double width =
        std::max(MarkWidth + names + 2 * Gap + values, metrics.horizontalAdvance(readout.xText)) +
        2 * Gap;
    QRectF box(anchor.x() + 14, anchor.y() + 14, width, (rows + (hasHead ? 1 : 0)) * row + Gap);
    if (box.right() > bounds.right())
        box.moveRight(anchor.x() - 14);
    box.moveTop(std::clamp(box.top(), bounds.top(),
                           std::max(bounds.top(), bounds.bottom() - box.height())));
    box.moveLeft(std::max(box.left(), bounds.left()));
    return rectOnPixels(box, ratio);
}

void drawReadoutBox(DrawingContext& context, const QPointF& anchor, const QRectF& bounds,
                    const ChartReadout& readout, const ChartLook& look) {
    const QFontMetricsF metrics(look.titleFont);
    const double row = metrics.height() + 2;
    const int rows = std::min(int(readout.items.size()), MostRows);
    const QRectF box = readoutBox(anchor, bounds, readout, look, context.devicePixelRatio());
    context.fill(box, look.axis);
    const double hair = 1 / context.devicePixelRatio();
    context.fill(box.adjusted(hair, hair, -hair, -hair), mixed(look.ground, look.text, 0.06));
    QRectF line(box.left() + Gap, box.top() + Gap / 2, box.width() - 2 * Gap, row);
    if (!readout.xText.isEmpty()) {
        context.text(line, int(Qt::AlignLeft | Qt::AlignVCenter), readout.xText, look.font,
                     look.faint);
        line.translate(0, row);
    }
    for (int i = 0; i < rows; ++i, line.translate(0, row)) {
        const ChartReadout::Item& item = readout.items[i];
        drawMark(context, {line.left(), line.top(), MarkWidth - 4, line.height()}, item.color,
                 Qt::SolidLine);
        QFont font = look.font;
        font.setBold(i == readout.nearest && readout.items.size() > 1);
        context.text(line.adjusted(MarkWidth, 0, 0, 0), int(Qt::AlignLeft | Qt::AlignVCenter),
                     elided(item.name, metrics, 200), font, look.text);
        context.text(line, int(Qt::AlignRight | Qt::AlignVCenter), item.text, font, look.text);
    }
}

double legendHeight(const std::vector<ChartItem>& items, double width, const QFont& font) {
    return items.empty() ? 0
                         : flow(items, {0, 0, width, 0}, QFontMetricsF(font),
                                [](const ChartItem&, const QRectF&) {});
}

void drawLegend(DrawingContext& context, const QRectF& rect, const std::vector<ChartItem>& items,
                const ChartLook& look) {
    const QFontMetricsF metrics(look.font);
    flow(items, rect, metrics, [&](const ChartItem& item, const QRectF& place) {
        drawMark(context, {place.left(), place.top(), MarkWidth - 2, place.height()},
                 item.isVisible ? item.color : look.grid, item.style);
        context.text(place.adjusted(MarkWidth + 2, 0, 0, 0), int(Qt::AlignLeft | Qt::AlignVCenter),
                     elided(item.name, metrics, place.width() - MarkWidth - Gap), look.font,
                     item.isVisible ? look.text : look.axis);
    });
}

} // namespace Kestrel::UI
