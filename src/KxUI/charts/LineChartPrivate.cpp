#include <KxUI/charts/ChartAxis_p.h>
#include <KxUI/charts/ChartColorProvider.h>
#include <KxUI/charts/LineChart_p.h>
#include <KxUI/charts/LineDrawing_p.h>
#include <KxUI/charts/LineSeries_p.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr double AutoMargin = 0.05;
constexpr double DotRadius = 3.5;

QString number(double value) {
    return std::isfinite(value) ? QString::number(value, 'g', 15) : QString();
}

} // namespace

void LineChartPrivate::start(LineChart* lineChart) {
    chart = lineChart;
    for (ChartAxis** axis : {&xAxis, &yAxis, &rightAxis}) {
        *axis = new ChartAxis(chart);
        QObject::connect(*axis, &ChartAxis::rangeChanged, chart, [this] {
            // A range by hand shows other data, whose extent the other axes find.
            dataChanged();
            lookChanged();
        });
        QObject::connect(*axis, &ChartAxis::changed, chart, [this] {
            dataChanged();
            lookChanged();
        });
    }
    xAxis->setGridVisible(false);
    rightAxis->setGridVisible(false);
}

Extent LineChartPrivate::extentOfX() const {
    Extent all;
    for (const LineSeries* one : series) {
        const LineData& data = LineSeriesPrivate::dataOf(*one);
        if (!one->isVisible() || data.size() == 0)
            continue;
        all.add(data.x(0));
        all.add(data.x(data.size() - 1));
    }
    return all;
}

Extent LineChartPrivate::extentOfY(bool right) const {
    Extent all;
    for (const LineSeries* one : series) {
        if (!one->isVisible() || one->isOnRightAxis() != right)
            continue;
        const LineData& data = LineSeriesPrivate::dataOf(*one);
        // The points beside the plot count: lines lead to them.
        const std::size_t begin = data.firstFrom(xAxis->lower());
        const std::size_t end = data.firstFrom(xAxis->upper(), begin);
        all.add(data.extent(begin > 0 ? begin - 1 : 0, end + 1));
        if (one->style() == LineSeries::Area && !all.isEmpty())
            all.add(0);
    }
    return all;
}

void LineChartPrivate::updateRanges() {
    const Extent across = extentOfX();
    const QPointer<Chart> alive(q);
    if (isFollowing && !across.isEmpty()) {
        const double length = xAxis->upper() - xAxis->lower();
        ChartAxisPrivate::of(xAxis)->show(xAxis, across.highest - length, across.highest);
    } else if (xAxis->isAutoRange()) {
        ChartAxisPrivate::of(xAxis)->showData(xAxis, across.lowest, across.highest, 0);
    }
    for (const bool right : {false, true}) {
        if (!alive)
            return;
        ChartAxis* const axis = right ? rightAxis : yAxis;
        if (!axis->isAutoRange())
            continue;
        Extent extent = extentOfY(right);
        const bool standsOnGround = extent.lowest == 0;
        if (axis->isLogarithmic() && extent.lowest <= 0)
            extent.lowest = extent.highest > 0 ? extent.highest / 1000 : 1;
        ChartAxisPrivate::of(axis)->showData(axis, extent.lowest, extent.highest, AutoMargin);
        if (standsOnGround && alive && !axis->isLogarithmic() && axis->lower() < 0)
            ChartAxisPrivate::of(axis)->show(axis, 0, axis->upper());
    }
}

PlotRules LineChartPrivate::rulesOf(const QRectF& area, qreal ratio) const {
    PlotRules rules;
    rules.area = area;
    rules.font = q->font();
    rules.bottom = xAxis;
    rules.left = yAxis;
    rules.ratio = ratio;
    const bool hasRight = std::any_of(series.begin(), series.end(), [](const LineSeries* one) {
        return one->isVisible() && one->isOnRightAxis();
    });
    rules.right = hasRight ? rightAxis : nullptr;
    return rules;
}

void LineChartPrivate::arrange(const QRectF& area, qreal ratio) {
    m_rules = rulesOf(area, ratio);
    m_layout = PlotLayout::arrange(m_rules);
}

QColor LineChartPrivate::colorOfSeries(const LineSeries& one) {
    return colorOf(one.key(), one.color(), colorIndex(&one));
}

const AxisScale& LineChartPrivate::scaleOf(const LineSeries& one) const {
    return one.isOnRightAxis() ? m_layout.yRight : m_layout.y;
}

void LineChartPrivate::drawBands(DrawingContext& context) {
    const ChartLook colors = look();
    const QRectF& plot = m_layout.plot;
    for (const ChartBand& band : bands) {
        const QColor color = band.color.isValid() ? band.color : colors.faint;
        const double lower = m_layout.y.pixel(band.lower);
        const double upper = m_layout.y.pixel(band.upper);
        if (std::isnan(lower) || std::isnan(upper))
            continue;
        if (lower != upper) {
            context.fill({plot.left(), upper, plot.width(), lower - upper},
                         mixed(colors.ground, color, 0.16));
        } else {
            const double y = crisp(lower, context.devicePixelRatio());
            context.line({plot.left(), y}, {plot.right(), y}, {color, 1, Qt::DashLine});
        }
    }
}

// Over all bands, so that none hides the name of another one.
void LineChartPrivate::drawBandNames(DrawingContext& context) {
    const ChartLook colors = look();
    const QRectF& plot = m_layout.plot;
    for (const ChartBand& band : bands) {
        const QColor color = band.color.isValid() ? band.color : colors.faint;
        const double upper = m_layout.y.pixel(std::max(band.lower, band.upper));
        const double lower = m_layout.y.pixel(std::min(band.lower, band.upper));
        // Of one that is out of sight the name would stand at something else.
        if (std::isnan(upper) || upper > plot.bottom() || lower < plot.top())
            continue;
        // Below its edge where there is no room above.
        const bool hasRoom = upper - m_layout.lineHeight > plot.top();
        context.text({plot.left(),
                      hasRoom ? upper - m_layout.lineHeight - 1 : std::max(upper, plot.top()) + 1,
                      plot.width() - 3, m_layout.lineHeight},
                     int(Qt::AlignRight | Qt::AlignVCenter), band.label, colors.font,
                     ChartColorProvider::visible(color, colors.ground));
    }
}

void LineChartPrivate::drawSeries(DrawingContext& context, LineSeries& one) {
    LineLook line;
    line.style = one.style();
    line.color = colorOfSeries(one);
    line.width = one.width();
    line.dashes = styleOf(colorIndex(&one));
    drawLine(context, LineSeriesPrivate::dataOf(one), m_layout.plot, m_layout.x, scaleOf(one),
             line);
}

void LineChartPrivate::draw(DrawingContext& context) {
    context.setClip(m_layout.plot);
    drawBands(context);
    drawBandNames(context);
    context.setClip({});
    drawAxes(context, m_layout, m_rules, look());
    context.setClip(m_layout.plot);
    for (LineSeries* one : series)
        if (one->isVisible())
            drawSeries(context, *one);
    context.setClip({});
    if (extentOfX().isEmpty())
        context.text(m_layout.plot, int(Qt::AlignCenter), Chart::tr("No data"), q->font(),
                     look().axis);
}

QRect LineChartPrivate::cursorRect() const {
    constexpr double Around = 6;
    const double x = m_layout.x.pixel(cursor);
    if (!(x >= m_layout.plot.left() && x <= m_layout.plot.right()))
        return {};
    return QRectF(x, m_layout.plot.top(), 0, m_layout.plot.height())
        .adjusted(-Around, -Around, Around, Around)
        .toAlignedRect();
}

// A cursor that follows a film is drawn at each of its frames.
void LineChartPrivate::setCursor(double x) {
    const QRect before = cursorRect();
    cursor = x;
    q->update(QRegion(before) | cursorRect());
}

// The cursor, and the part that the mouse is taking.
void LineChartPrivate::drawMarks(DrawingContext& context) {
    const QRectF& plot = m_layout.plot;
    const ChartLook colors = look();
    const double x = m_layout.x.pixel(cursor);
    if (x >= plot.left() && x <= plot.right()) {
        const double middle = crisp(x, context.devicePixelRatio());
        context.line({middle, plot.top()}, {middle, plot.bottom()}, {colors.text, 1});
        const QPointF flag[]{
            {middle - 4, plot.top() - 4}, {middle + 4, plot.top() - 4}, {middle, plot.top() + 3}};
        context.polygon(flag, 3, colors.text);
    }
    if (m_drag != Drag::Taking)
        return;
    QColor light = q->palette().color(QPalette::Highlight);
    light.setAlpha(60);
    context.fill(
        QRectF(QPointF(m_dragStart.x(), plot.top()), QPointF(m_dragLast.x(), plot.bottom()))
            .normalized(),
        light);
}

void LineChartPrivate::drawReadout(DrawingContext& context) {
    const ChartLook colors = look();
    const double x = crisp(m_layout.x.pixel(readout.x), context.devicePixelRatio());
    context.line({x, m_layout.plot.top()}, {x, m_layout.plot.bottom()}, {colors.axis, 0});
    context.setClip(m_layout.plot.adjusted(-4, -4, 4, 4));
    for (const LineSeries* one : series) {
        if (!one->isVisible() || one->size() == 0)
            continue;
        const QPointF point = one->nearest(readout.x);
        const double y = scaleOf(*one).pixel(point.y());
        if (std::isnan(y) || point.x() != readout.x)
            continue;
        const QRectF dot(x - DotRadius, y - DotRadius, 2 * DotRadius, 2 * DotRadius);
        context.fill(dot.adjusted(-1, -1, 1, 1), colors.ground);
        context.fill(dot, colorOfSeries(*one));
    }
    context.setClip({});
}

QRectF LineChartPrivate::readoutRect() const {
    constexpr double Around = DotRadius + 2;
    const double x = m_layout.x.pixel(readout.x);
    return QRectF(x, m_layout.plot.top(), 0, m_layout.plot.height())
        .adjusted(-Around, -Around, Around, Around);
}

// Of the points of all series.
double LineChartPrivate::nearestX(double wanted) const {
    double nearest = qQNaN();
    for (const LineSeries* one : series) {
        const double x = one->isVisible() ? one->nearest(wanted).x() : qQNaN();
        if (std::isnan(nearest) || std::abs(x - wanted) < std::abs(nearest - wanted))
            nearest = x;
    }
    return nearest;
}

ChartReadout LineChartPrivate::readoutAt(const QPointF& place) {
    ChartReadout found;
    if (!m_layout.plot.adjusted(-1, -1, 1, 1).contains(place))
        return found;
    found.x = nearestX(m_layout.x.value(place.x()));
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < series.size(); ++i) {
        const LineSeries* const one = series[i];
        const QPointF point = one->nearest(found.x);
        const double away = std::abs(m_layout.x.pixel(point.x()) - m_layout.x.pixel(found.x));
        if (!one->isVisible() || !std::isfinite(point.y()) || away > 3)
            continue;
        const double down = std::abs(scaleOf(*one).pixel(point.y()) - place.y());
        if (down < nearest) {
            nearest = down;
            found.nearest = int(found.items.size());
        }
        const ChartAxis* const axis = one->isOnRightAxis() ? rightAxis : yAxis;
        found.items.append({one->name(), colorOfSeries(*one), point.y(), axis->text(point.y())});
        readoutSeries.push_back(int(i));
    }
    found.xText = xAxis->text(found.x);
    return found;
}

LineSeries* LineChartPrivate::chosenSeries() {
    std::vector<LineSeries*> all;
    for (LineSeries* one : series)
        if (one->isVisible() && one->size() > 0)
            all.push_back(one);
    if (all.empty())
        return nullptr;
    chosen = std::clamp(chosen, 0, int(all.size()) - 1);
    return all[std::size_t(chosen)];
}

// From point to point of the chosen series; the plot follows where it leads out.
std::optional<QPointF> LineChartPrivate::moved(const QPointF& from, int along, int across) {
    chosen += across;
    LineSeries* const one = chosenSeries();
    if (!one)
        return {};
    const LineData& data = LineSeriesPrivate::dataOf(*one);
    const bool isFirst = !m_layout.plot.contains(from) || readout.isEmpty();
    const double now = isFirst ? m_layout.x.value(m_layout.plot.center().x()) : readout.x;
    const auto last = std::ptrdiff_t(data.size()) - 1;
    const auto index = std::clamp(std::ptrdiff_t(nearestPoint(data, now)) + (isFirst ? 0 : along),
                                  std::ptrdiff_t(0), last);
    const double x = data.x(std::size_t(index));
    if (x < xAxis->lower() || x > xAxis->upper()) {
        const double half = (xAxis->upper() - xAxis->lower()) / 2;
        const QPointer<LineChart> alive(chart);
        showX(x - half, x + half);
        if (!alive)
            return {};
        arrange(plotArea(), q->devicePixelRatioF());
    }
    const double y = scaleOf(*one).pixel(data.y(std::size_t(index)));
    const QRectF& plot = m_layout.plot;
    return QPointF(m_layout.x.pixel(x),
                   std::isnan(y) ? plot.center().y() : std::clamp(y, plot.top(), plot.bottom()));
}

std::vector<ChartItem> LineChartPrivate::items() {
    std::vector<ChartItem> all;
    for (const LineSeries* one : series) {
        const ChartAxis* const axis = one->isOnRightAxis() ? rightAxis : yAxis;
        const QPointF last = one->size() > 0 ? one->at(one->size() - 1) : QPointF(qQNaN(), qQNaN());
        const QString value =
            one->size() > 0 ? Chart::tr("%1 at %2").arg(axis->text(last.y()), xAxis->text(last.x()))
                            : QString();
        all.push_back({one->name(), colorOfSeries(*one), styleOf(colorIndex(one)), one->isVisible(),
                       value, widestText(*axis)});
    }
    return all;
}

void LineChartPrivate::setItemVisible(int index, bool visible) {
    if (index >= 0 && index < int(series.size()))
        series[std::size_t(index)]->setVisible(visible);
}

// A row for each x of any series.
QString LineChartPrivate::toText() const {
    const auto clean = [](QString text) {
        return text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    };
    QString text = clean(xAxis->title());
    std::vector<std::size_t> next(series.size());
    for (const LineSeries* one : series)
        text += QLatin1Char('\t') + clean(one->name());
    text += QLatin1Char('\n');
    for (;;) {
        double x = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < series.size(); ++i)
            if (next[i] < series[i]->size())
                x = std::min(x, series[i]->at(next[i]).x());
        if (std::isinf(x))
            return text;
        text += number(x);
        for (std::size_t i = 0; i < series.size(); ++i) {
            text += QLatin1Char('\t');
            if (next[i] < series[i]->size() && series[i]->at(next[i]).x() == x)
                text += number(series[i]->at(next[i]++).y());
        }
        text += QLatin1Char('\n');
    }
}

} // namespace Kestrel::UI
