#include <KxUI/charts/PieChart_p.h>
#include <KxUI/kit/ColorContrast_p.h>

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double LabelWidth = 130;
constexpr double LeastRadius = 36; // of a pie that leaves room to labels
constexpr double Seam = 1.5;

} // namespace

void PieChartPrivate::take(PieChart* pieChart, PieSeries* other) {
    delete series.data();
    series = other;
    other->setParent(pieChart);
    // What was arranged is of slices that may be there no more.
    const auto forget = [this] {
        m_sectors.clear();
        itemsChanged();
    };
    QObject::connect(other, &PieSeries::changed, pieChart, forget);
    QObject::connect(other, &QObject::destroyed, pieChart, forget);
    forget();
}

std::vector<PieSector> PieChartPrivate::sectors() const {
    if (!series)
        return {};
    const std::vector<PieSlice> slices = series->slices();
    std::vector<bool> visible;
    for (int i = 0; i < int(slices.size()); ++i)
        visible.push_back(series->isSliceVisible(i));
    return pieSectors(slices, visible, series->othersBelow());
}

void PieChartPrivate::arrange(const QRectF& area, qreal) {
    m_area = area;
    m_sectors = sectors();
    m_middle = area.center();
    const double half = std::min(area.width(), area.height()) / 2 - 2;
    const double beside = area.width() / 2 - LabelWidth;
    m_hasLabels = labelPlace == PieChart::Outside && std::min(half, beside) >= LeastRadius;
    m_outer = std::max(m_hasLabels ? std::min(half - 6, beside) : half, 1.0);
    m_inner = series ? m_outer * series->hole() : 0;
}

QColor PieChartPrivate::colorOfSlice(int index) const {
    const PieSlice slice = series->slices()[std::size_t(index)];
    return colorOf(slice.key.isEmpty() ? slice.name : slice.key, slice.color, index);
}

QColor PieChartPrivate::colorOfSector(const PieSector& sector) const {
    return sector.slice < 0 ? look().axis : colorOfSlice(sector.slice);
}

QString PieChartPrivate::nameOf(const PieSector& sector) const {
    return sector.slice < 0 ? Chart::tr("Others")
                            : series->slices()[std::size_t(sector.slice)].name;
}

QString PieChartPrivate::valueText(double value) const {
    return Ticks::text(value, 0, value, series->unit());
}

// An empty ring says that there is nothing, and not that nothing is drawn.
void PieChartPrivate::drawNothing(DrawingContext& context) {
    const ChartLook colors = look();
    const PieSector all{0, 0, 0, 1, 0};
    const auto outline = sectorOutline(all, m_middle, m_outer * 0.9, m_outer);
    context.polygon(outline.data(), int(outline.size()), colors.grid);
    context.text(m_area, int(Qt::AlignCenter), Chart::tr("No data"), q->font(), colors.axis);
}

void PieChartPrivate::draw(DrawingContext& context) {
    if (m_sectors.empty()) {
        drawNothing(context);
        return;
    }
    const QColor ground = look().ground;
    for (const PieSector& sector : m_sectors) {
        const auto outline = sectorOutline(sector, m_middle, m_inner, m_outer);
        context.polygon(outline.data(), int(outline.size()), colorOfSector(sector));
    }
    for (const PieSector& sector : m_sectors)
        if (m_sectors.size() > 1)
            context.line(onPie(m_middle, std::max(m_inner - 1, 0.0), sector.begin),
                         onPie(m_middle, m_outer + 1, sector.begin), {ground, Seam});
    if (m_hasLabels) {
        drawLabels(context, true);
        drawLabels(context, false);
    } else if (labelPlace == PieChart::Inside) {
        drawShares(context);
    }
    drawWhole(context);
}

// Beside one half of the pie, from above.
void PieChartPrivate::drawLabels(DrawingContext& context, bool onRight) {
    const ChartLook colors = look();
    const QFontMetricsF metrics(q->font());
    const double height = metrics.height();
    std::vector<const PieSector*> all;
    for (const PieSector& sector : m_sectors)
        if ((sector.middle() < 0.5) == onRight)
            all.push_back(&sector);
    if (!onRight)
        std::reverse(all.begin(), all.end());
    // Where there is no room for all, the smallest are in the legend only.
    while (double(all.size()) * height > m_area.height())
        all.erase(
            std::min_element(all.begin(), all.end(), [](const PieSector* a, const PieSector* b) {
                return a->value < b->value;
            }));
    std::vector<double> tops;
    for (const PieSector* sector : all)
        tops.push_back(onPie(m_middle, m_outer + 8, sector->middle()).y() - height / 2);
    tops = spreadLabels(tops, height, m_area.top(), m_area.bottom());
    for (std::size_t i = 0; i < all.size(); ++i) {
        const double side = onRight ? 1 : -1;
        const QPointF start = onPie(m_middle, m_outer + 2, all[i]->middle());
        const QPointF end(m_middle.x() + side * (m_outer + 14), tops[i] + height / 2);
        const QPointF lead[]{start, onPie(m_middle, m_outer + 8, all[i]->middle()), end};
        context.polyline(lead, 3, {colors.axis, 1});
        const QString share = QStringLiteral(" %1 %").arg(all[i]->percent);
        const double room = LabelWidth - 20 - metrics.horizontalAdvance(share);
        const QString text = metrics.elidedText(nameOf(*all[i]), Qt::ElideRight, room) + share;
        const QRectF place(onRight ? end.x() + 3 : end.x() - 3 - LabelWidth, tops[i], LabelWidth,
                           height);
        context.text(place,
                     int((onRight ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter) |
                         Qt::TextSingleLine,
                     text, q->font(), colors.text);
    }
}

void PieChartPrivate::drawShares(DrawingContext& context) {
    const QFontMetricsF metrics(q->font());
    for (const PieSector& sector : m_sectors) {
        const double radius = m_inner > 0 ? (m_inner + m_outer) / 2 : m_outer * 0.65;
        const QString text = QStringLiteral("%1 %").arg(sector.percent);
        if ((sector.end - sector.begin) * 2 * M_PI * radius < metrics.horizontalAdvance(text) + 4)
            continue;
        const QPointF middle = onPie(m_middle, radius, sector.middle());
        const QColor ground = colorOfSector(sector);
        context.text({middle.x() - 40, middle.y() - 10, 80, 20}, int(Qt::AlignCenter), text,
                     q->font(), firstVisible({Qt::white, Qt::black}, {ground}, ReadableContrast));
    }
}

void PieChartPrivate::drawWhole(DrawingContext& context) {
    double sum = 0;
    for (const PieSector& sector : m_sectors)
        sum += sector.value;
    const QString text = valueText(sum);
    const ChartLook colors = look();
    if (QFontMetricsF(colors.titleFont).horizontalAdvance(text) < m_inner * 1.8)
        context.text({m_middle.x() - m_inner, m_middle.y() - m_inner, 2 * m_inner, 2 * m_inner},
                     int(Qt::AlignCenter), text, colors.titleFont, colors.text);
}

int PieChartPrivate::sectorAt(const QPointF& place) const {
    const QPointF away = place - m_middle;
    const double radius = std::hypot(away.x(), away.y());
    if (radius > m_outer || radius < m_inner)
        return -1;
    double turn = std::atan2(away.x(), -away.y()) / (2 * M_PI);
    turn += turn < 0 ? 1 : 0;
    for (std::size_t i = 0; i < m_sectors.size(); ++i)
        if (turn >= m_sectors[i].begin && turn <= m_sectors[i].end)
            return int(i);
    return -1;
}

ChartReadout PieChartPrivate::readoutAt(const QPointF& place) {
    ChartReadout found;
    const int index = sectorAt(place);
    if (index < 0)
        return found;
    const PieSector& sector = m_sectors[std::size_t(index)];
    found.x = sector.slice;
    found.nearest = 0;
    found.items.append(
        {nameOf(sector), colorOfSector(sector), sector.value,
         QStringLiteral("%1  (%2 %)").arg(valueText(sector.value)).arg(sector.percent)});
    return found;
}

void PieChartPrivate::drawReadout(DrawingContext& context) {
    for (const PieSector& sector : m_sectors) {
        if (double(sector.slice) != readout.x)
            continue;
        const auto edge = sectorOutline(sector, m_middle, m_outer, m_outer + 4);
        context.polygon(edge.data(), int(edge.size()), colorOfSector(sector));
    }
}

std::optional<QPointF> PieChartPrivate::moved(const QPointF& from, int along, int across) {
    const auto count = int(m_sectors.size());
    if (count == 0)
        return {};
    const int now = sectorAt(from);
    const int next = now < 0 ? 0 : ((now + along + across) % count + count) % count;
    return onPie(m_middle, (m_inner + m_outer) / 2, m_sectors[std::size_t(next)].middle());
}

std::vector<ChartItem> PieChartPrivate::items() {
    std::vector<ChartItem> all;
    if (!series)
        return all;
    const std::vector<PieSlice> slices = series->slices();
    const std::vector<PieSector> shown = sectors();
    for (int i = 0; i < int(slices.size()); ++i) {
        const PieSlice& slice = slices[std::size_t(i)];
        const auto found = std::find_if(shown.begin(), shown.end(),
                                        [i](const PieSector& sector) { return sector.slice == i; });
        QString value = valueText(slice.value);
        if (found != shown.end())
            value += QStringLiteral(", %1 %").arg(found->percent);
        all.push_back(
            {slice.name, colorOfSlice(i), Qt::SolidLine, series->isSliceVisible(i), value});
    }
    return all;
}

void PieChartPrivate::setItemVisible(int index, bool visible) {
    if (series)
        series->setSliceVisible(index, visible);
}

QString PieChartPrivate::toText() const {
    QString text = QStringLiteral("%1\t%2\n").arg(Chart::tr("Name"), Chart::tr("Value"));
    if (!series)
        return text;
    for (const PieSlice& slice : series->slices()) {
        text +=
            QString(slice.name).replace(QLatin1Char('\t'), QLatin1Char(' ')) + QLatin1Char('\t');
        if (std::isfinite(slice.value))
            text += QString::number(slice.value, 'g', 15);
        text += QLatin1Char('\n');
    }
    return text;
}

} // namespace Kestrel::UI
