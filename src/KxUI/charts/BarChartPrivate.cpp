#include <KxUI/charts/BarChart_p.h>
#include <KxUI/charts/ChartAxis_p.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double AutoMargin = 1.05;

} // namespace

void BarChartPrivate::start(BarChart* barChart) {
    for (ChartAxis** axis : {&categoryAxis, &valueAxis}) {
        *axis = new ChartAxis(barChart);
        QObject::connect(*axis, &ChartAxis::changed, barChart, [this] { itemsChanged(); });
        QObject::connect(*axis, &ChartAxis::rangeChanged, barChart, [this] { lookChanged(); });
    }
}

std::vector<BarSeries*> BarChartPrivate::visibleSeries() const {
    std::vector<BarSeries*> all;
    std::copy_if(series.begin(), series.end(), std::back_inserter(all),
                 [](const BarSeries* one) { return one->isVisible(); });
    return all;
}

std::vector<std::vector<double>> BarChartPrivate::visibleValues() const {
    std::vector<std::vector<double>> all;
    for (const BarSeries* one : visibleSeries())
        all.push_back(one->values());
    return all;
}

// Hidden series keep their places.
double BarChartPrivate::categoryCount() const {
    auto count = std::size_t(categoryAxis->categories().size());
    for (const BarSeries* one : series)
        count = std::max(count, one->values().size());
    return double(count);
}

void BarChartPrivate::updateRanges() {
    const QPointer<Chart> alive(q);
    ChartAxisPrivate::of(categoryAxis)
        ->show(categoryAxis, -0.5, std::max(categoryCount(), 1.0) - 0.5);
    if (!alive || !valueAxis->isAutoRange())
        return;
    const BarRange range = rangeOfBars(visibleValues(), arrangement);
    if (arrangement == BarChart::Percent) {
        ChartAxisPrivate::of(valueAxis)->show(valueAxis, range.lowest < 0 ? -1 : 0,
                                              range.highest > 0 || range.lowest == 0 ? 1 : 0);
        return;
    }
    const bool isEmpty = range.lowest == range.highest;
    // Sums beyond what a double holds end where the axis does.
    const auto limited = [](double x) { return std::clamp(x, -DBL_MAX / 2, DBL_MAX / 2); };
    ChartAxisPrivate::of(valueAxis)->show(valueAxis, limited(range.lowest * AutoMargin),
                                          isEmpty ? 1 : limited(range.highest * AutoMargin));
}

void BarChartPrivate::arrange(const QRectF& area, qreal ratio) {
    m_rules = PlotRules();
    m_rules.area = area;
    m_rules.font = q->font();
    m_rules.bottom = areLying() ? valueAxis : categoryAxis;
    m_rules.left = areLying() ? categoryAxis : valueAxis;
    m_rules.ratio = ratio;
    m_rules.hasSlots = true;
    m_rules.slotsOnLeft = areLying();
    m_rules.isPercent = arrangement == BarChart::Percent;
    const std::vector<BarSeries*> shown = visibleSeries();
    m_shown.assign(shown.begin(), shown.end());
    BarRules bars;
    bars.values = visibleValues();
    bars.order = orderOfBars(bars.values, int(categoryCount()), isSorted);
    m_rules.order = bars.order;
    m_layout = PlotLayout::arrange(m_rules);
    bars.arrangement = arrangement;
    bars.areLying = areLying();
    bars.places = areLying() ? m_layout.y : m_layout.x;
    bars.scale = areLying() ? m_layout.x : m_layout.y;
    bars.ratio = ratio;
    m_bars = arrangeBars(bars);
}

QColor BarChartPrivate::colorOfSeries(const BarSeries& one) {
    return colorOf(one.key(), one.color(), colorIndex(&one));
}

// From the ninth series on the same colours come again, in stripes.
void BarChartPrivate::drawBar(DrawingContext& context, const Bar& bar, const BarSeries& one) {
    QColor color = colorOfSeries(one);
    if (styleOf(colorIndex(&one)) == Qt::SolidLine) {
        context.fill(bar.rect, color);
        return;
    }
    std::vector<QRectF> stripes;
    for (double y = bar.rect.top(); y < bar.rect.bottom(); y += 4)
        stripes.emplace_back(bar.rect.left(), y, bar.rect.width(),
                             std::min(2.0, bar.rect.bottom() - y));
    context.rectangles(stripes.data(), int(stripes.size()), color);
    color.setAlpha(90);
    context.fill(bar.rect, color);
}

// Beside bars that lie, where they stand alone.
void BarChartPrivate::drawValues(DrawingContext& context) {
    if (!areLying() || m_shown.size() != 1)
        return;
    const QFontMetricsF metrics(q->font());
    for (const Bar& bar : m_bars) {
        const QString text = valueAxis->text(bar.value);
        const double width = metrics.horizontalAdvance(text);
        if (bar.rect.height() < metrics.height() * 0.8 || bar.value < 0)
            continue;
        // In the end of a bar that leaves no room beside it.
        const bool isBeside = bar.rect.right() + width + 6 <= m_layout.plot.right() + 4;
        const QColor inside = firstVisible({look().ground, look().text},
                                           {colorOfSeries(*m_shown.front())}, ReadableContrast);
        context.text({bar.rect.right() + (isBeside ? 5 : -5 - width), bar.rect.top(), width,
                      bar.rect.height()},
                     int(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine, text, q->font(),
                     isBeside ? look().faint : inside);
    }
}

void BarChartPrivate::draw(DrawingContext& context) {
    drawAxes(context, m_layout, m_rules, look());
    context.setClip(m_layout.plot);
    for (const Bar& bar : m_bars)
        drawBar(context, bar, *m_shown[std::size_t(bar.series)]);
    context.setClip({});
    const double ground =
        crisp(areLying() ? m_layout.x.pixel(0) : m_layout.y.pixel(0), context.devicePixelRatio());
    const QRectF& plot = m_layout.plot;
    if (areLying() && ground >= plot.left() && ground <= plot.right())
        context.line({ground, plot.top()}, {ground, plot.bottom()}, {look().axis, 0});
    else if (!areLying() && ground >= plot.top() && ground <= plot.bottom())
        context.line({plot.left(), ground}, {plot.right(), ground}, {look().axis, 0});
    drawValues(context);
    if (m_bars.empty())
        context.text(plot, int(Qt::AlignCenter), Chart::tr("No data"), q->font(), look().axis);
}

int BarChartPrivate::slotAt(const QPointF& place) const {
    if (!m_layout.plot.adjusted(-1, -1, 1, 1).contains(place))
        return -1;
    const double slot = areLying() ? m_layout.y.value(place.y()) : m_layout.x.value(place.x());
    return std::clamp(int(std::lround(slot)), 0, std::max(0, int(m_rules.order.size()) - 1));
}

ChartReadout BarChartPrivate::readoutAt(const QPointF& place) {
    ChartReadout found;
    const int slot = slotAt(place);
    double best = std::numeric_limits<double>::infinity();
    for (const Bar& bar : m_bars) {
        if (bar.slot != slot || !m_shown[std::size_t(bar.series)])
            continue;
        const QPointF middle = bar.rect.center();
        const double away = bar.rect.contains(place) ? -1 : (middle - place).manhattanLength();
        if (away < best) {
            best = away;
            found.nearest = int(found.items.size());
        }
        const BarSeries& one = *m_shown[std::size_t(bar.series)];
        found.x = bar.category;
        found.items.append({one.name(), colorOfSeries(one), bar.value, valueAxis->text(bar.value)});
        const auto owner = std::find(series.begin(), series.end(), &one);
        readoutSeries.push_back(int(owner - series.begin()));
    }
    found.xText = found.isEmpty() ? QString() : categoryAxis->text(found.x);
    return found;
}

// The slot, from edge to edge of the plot.
QRectF BarChartPrivate::readoutRect() const {
    const auto slot = std::find(m_rules.order.begin(), m_rules.order.end(), int(readout.x));
    if (slot == m_rules.order.end())
        return {};
    const auto place = double(slot - m_rules.order.begin());
    const QRectF& plot = m_layout.plot;
    if (areLying())
        return {QPointF(plot.left(), m_layout.y.pixel(place - 0.5)),
                QPointF(plot.right(), m_layout.y.pixel(place + 0.5))};
    return {QPointF(m_layout.x.pixel(place - 0.5), plot.top()),
            QPointF(m_layout.x.pixel(place + 0.5), plot.bottom())};
}

void BarChartPrivate::drawReadout(DrawingContext& context) {
    QColor light = look().text;
    light.setAlpha(28);
    if (const QRectF slot = readoutRect(); !slot.isNull())
        context.fill(slot, light);
}

// To another slot along the axis, to another bar of it across.
std::optional<QPointF> BarChartPrivate::moved(const QPointF& from, int along, int across) {
    if (m_bars.empty())
        return {};
    if (areLying())
        std::swap(along, across);
    chosen = std::clamp(chosen + across, 0, int(m_shown.size()) - 1);
    const int now = slotAt(from);
    const int slot =
        now < 0 ? 0 : std::clamp(now + along, 0, std::max(0, int(m_rules.order.size()) - 1));
    const Bar* found = nullptr;
    for (const Bar& bar : m_bars)
        if (bar.slot == slot && (!found || bar.series == chosen))
            found = &bar;
    if (found)
        return found->rect.center();
    const QPointF middle = m_layout.plot.center();
    return areLying() ? QPointF(middle.x(), m_layout.y.pixel(slot))
                      : QPointF(m_layout.x.pixel(slot), middle.y());
}

std::vector<ChartItem> BarChartPrivate::items() {
    std::vector<ChartItem> all;
    for (const BarSeries* one : series) {
        QStringList words;
        const std::vector<double> values = one->values();
        for (std::size_t i = 0; i < std::min<std::size_t>(values.size(), 20); ++i)
            words += Chart::tr("%1 at %2")
                         .arg(valueAxis->text(values[i]), categoryAxis->text(double(i)));
        all.push_back({one->name(), colorOfSeries(*one), Qt::SolidLine, one->isVisible(),
                       words.join(QStringLiteral("; ")), widestText(*valueAxis)});
    }
    return all;
}

void BarChartPrivate::setItemVisible(int index, bool visible) {
    if (index >= 0 && index < int(series.size()))
        series[std::size_t(index)]->setVisible(visible);
}

QString BarChartPrivate::toText() const {
    const auto clean = [](QString text) {
        return text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    };
    QString text = clean(categoryAxis->title());
    for (const BarSeries* one : series)
        text += QLatin1Char('\t') + clean(one->name());
    for (int category = 0; category < int(categoryCount()); ++category) {
        text += QLatin1Char('\n') + clean(categoryAxis->text(category));
        for (const BarSeries* one : series) {
            const std::vector<double> values = one->values();
            const auto i = std::size_t(category);
            text += QLatin1Char('\t');
            if (i < values.size() && std::isfinite(values[i]))
                text += QString::number(values[i], 'g', 15);
        }
    }
    return text + QLatin1Char('\n');
}

} // namespace Kestrel::UI
