#include <KxUI/scopes/HistogramScope_p.h>

#include <KxUI/draw/IntensityGrid.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double SideWidth = 6;    // of the bars of what is beyond the range
constexpr double SideGap = 3;      // between them and the plot
constexpr double FillLight = 0.55; // three of them are not yet white
constexpr double LineWidth = 1.25;
constexpr double Rows = 100; // that keys move a cursor by, upwards

} // namespace

QMarginsF HistogramScopePrivate::margins() const {
    const QFontMetricsF metrics(labelFont());
    return {SideWidth + SideGap, 0, SideWidth + SideGap, metrics.height()};
}

ScopeHistogram::Axis HistogramScopePrivate::histogramAxis() const {
    switch (axis) {
    case HistogramScope::LogAxis:
        return ScopeHistogram::Axis::SymmetricLog;
    case HistogramScope::TransferAxis:
        return ScopeHistogram::Axis::Srgb;
    case HistogramScope::PqAxis:
        return ScopeHistogram::Axis::Pq;
    case HistogramScope::LinearAxis:
        break;
    }
    return ScopeHistogram::Axis::Linear;
}

double HistogramScopePrivate::position(double value) const {
    return double(ScopeHistogram::position(histogramAxis(), float(value), encoding().whiteNits));
}

double HistogramScopePrivate::valueAt(double u) const {
    const double from = position(lower);
    const double at = from + u * (position(upper) - from);
    return double(ScopeHistogram::valueAt(histogramAxis(), float(at), encoding().whiteNits));
}

// Where a value is in the whole.
double HistogramScopePrivate::placeOf(double value) const {
    const double from = position(lower);
    return (position(value) - from) / (position(upper) - from);
}

std::vector<ScopeHistogram::Channel> HistogramScopePrivate::shown() const {
    std::vector<Channel> result;
    for (int i = 0; i < ScopeHistogram::Channels; ++i) {
        if (int(channels) & 1 << i)
            result.push_back(Channel(i));
    }
    return result;
}

QRectF HistogramScopePrivate::cell(const ScopeGeometry& geometry, std::size_t index,
                                   std::size_t count) const {
    if (layout == HistogramScope::Overlay || count == 0)
        return geometry.plot;
    QRectF area = geometry.plot;
    const double height = area.height() / double(count);
    area.setTop(area.top() + height * double(index) + (index > 0 ? 1 : 0));
    area.setBottom(geometry.plot.top() + height * double(index + 1));
    return area;
}

QColor HistogramScopePrivate::lightOf(Channel channel) const {
    switch (channel) {
    case ScopeHistogram::Red:
        return {255, 70, 70};
    case ScopeHistogram::Green:
        return {60, 220, 70};
    case ScopeHistogram::Blue:
        return {80, 120, 255};
    case ScopeHistogram::Alpha:
        return {200, 130, 255};
    case ScopeHistogram::Largest:
        return {255, 190, 80};
    default:
        return {225, 228, 225};
    }
}

QString HistogramScopePrivate::channelName(Channel channel) {
    switch (channel) {
    case ScopeHistogram::Red:
        return HistogramScope::tr("Red");
    case ScopeHistogram::Green:
        return HistogramScope::tr("Green");
    case ScopeHistogram::Blue:
        return HistogramScope::tr("Blue");
    case ScopeHistogram::Alpha:
        return HistogramScope::tr("Alpha");
    case ScopeHistogram::Luma:
        return HistogramScope::tr("Luma");
    default:
        return HistogramScope::tr("Largest");
    }
}

const CodePlaces& HistogramScopePrivate::places(CodeAxis codes) const {
    const float white = encoding().whiteNits;
    for (const CodePlaces& each : m_places) {
        if (each.isOf(codes, histogramAxis(), white))
            return each;
    }
    // Colours and luma may be counted in different codes; more are not in use at a time.
    if (m_places.size() >= 3)
        m_places.clear();
    m_places.emplace_back(codes, histogramAxis(), white);
    return m_places.back();
}

std::vector<float> HistogramScopePrivate::heightsOf(const std::vector<float>& columns,
                                                    float most) const {
    std::vector<float> heights(columns.size());
    const double gain = std::exp2(brightness);
    for (std::size_t i = 0; i < columns.size() && most > 0; ++i) {
        const double count = double(columns[i]);
        const double height =
            logCounts ? std::log1p(count) / std::log1p(double(most)) : count / double(most);
        heights[i] = float(std::min(height * gain, 1.0));
    }
    return heights;
}

// One for each device pixel of the plot.
void HistogramScopePrivate::makeColumns(int count) {
    m_columns.clear();
    m_columnCount = count;
    const auto counted = result();
    const CodeCounts* const counts = counted->values.counts();
    if (!counts)
        return;
    const auto held = shownReference();
    const CodeCounts* const heldCounts = held ? held->values.counts() : nullptr;
    const double from = position(lower);
    const double whole = position(upper) - from;
    const double begin = from + viewport.left * whole;
    const double end = begin + viewport.width * whole;
    const auto column = [&](double value) {
        const double at = (position(value) - begin) / (end - begin) * count;
        return at >= 0 && at < count ? int(at) : -2; // none
    };
    float most = 0;
    for (const Channel channel : shown()) {
        if (!counted->values.has(channel))
            continue;
        Columns columns{channel, {}, {}, {}};
        const auto& all = counts->counts[channel];
        columns.heights = places(counts->axes[channel]).columns(all, begin, end, count);
        if (heldCounts && held->values.has(channel))
            columns.reference = places(heldCounts->axes[channel])
                                    .columns(heldCounts->counts[channel], begin, end, count);
        if (cumulative) {
            const double infinite =
                double(ScopeHistogram::position(histogramAxis(), -65504.0F, encoding().whiteNits));
            const std::uint64_t below = places(counts->axes[channel]).count(all, infinite, begin);
            double sum = double(below);
            const auto pixels = double(std::max<std::uint64_t>(counts->pixels, 1));
            for (const float each : columns.heights) {
                sum += double(each);
                columns.sums.push_back(float(std::min(sum / pixels, 1.0)));
            }
        }
        most = std::max(most, referenceHeight(columns.heights, column(0), column(1)));
        m_columns.push_back(std::move(columns));
    }
    for (Columns& each : m_columns) {
        each.heights = heightsOf(each.heights, most);
        each.reference = heightsOf(each.reference, most);
    }
}

void HistogramScopePrivate::paintTrace(DrawingContext& context, const ScopeGeometry& geometry) {
    paintAxis(context, geometry);
    makeColumns(int(std::lround(geometry.plot.width() * geometry.ratio)));
    context.setClip(geometry.plot);
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        paintChannel(context, cell(geometry, i, m_columns.size()), m_columns[i]);
    context.setClip(QRectF());
    paintSides(context, geometry);
}

void HistogramScopePrivate::paintChannel(DrawingContext& context, const QRectF& area,
                                         const Columns& columns) const {
    const QColor color = lightOf(columns.channel);
    const bool isLine = layout == HistogramScope::Overlay && columns.channel > ScopeHistogram::Blue;
    if (!isLine) {
        const double ratio = context.devicePixelRatio();
        const int width = int(columns.heights.size());
        const int height = int(std::lround(area.height() * ratio));
        std::vector<float> light(std::size_t(width) * std::size_t(std::max(height, 0)));
        for (int y = 0; y < height; ++y) {
            float* const row = light.data() + std::size_t(y) * std::size_t(width);
            const auto above = float(height - 1 - y); // pixels below this one
            for (int x = 0; x < width; ++x) {
                const float covered = columns.heights[std::size_t(x)] * float(height) - above;
                row[x] = float(FillLight) * std::clamp(covered, 0.0F, 1.0F);
            }
        }
        ToneCurve even; // light as it is
        even.kind = ToneCurve::Linear;
        even.brightness = 3;
        even.least = 0;
        context.intensity(area, IntensityGrid(width, height, std::move(light)), even, color);
    }
    QColor line = color;
    line.setAlpha(isLine ? 255 : 150);
    paintLine(context, area, columns.heights, LineStroke(line, LineWidth));
    QColor reference = color;
    reference.setAlpha(170);
    paintLine(context, area, columns.reference, LineStroke(reference, 1, Qt::DotLine));
    paintLine(context, area, columns.sums, LineStroke(color, 1, Qt::DashLine));
}

void HistogramScopePrivate::paintLine(DrawingContext& context, const QRectF& area,
                                      const std::vector<float>& heights,
                                      const LineStroke& stroke) const {
    if (heights.empty())
        return;
    std::vector<QPointF> points;
    points.reserve(heights.size());
    const double step = area.width() / double(heights.size());
    for (std::size_t i = 0; i < heights.size(); ++i)
        points.emplace_back(area.left() + (double(i) + 0.5) * step,
                            area.bottom() - double(heights[i]) * area.height());
    context.polyline(points.data(), int(points.size()), stroke);
}

// How many values of each channel lie beyond the seen range, as bars of their share.
void HistogramScopePrivate::paintSides(DrawingContext& context,
                                       const ScopeGeometry& geometry) const {
    const auto counted = result();
    if (counted->values.isEmpty())
        return;
    const ValueRange seen{float(valueAt(viewport.left)),
                          float(valueAt(viewport.left + viewport.width)), 1};
    const ScopeHistogram histogram = counted->values.histogram(seen);
    const double pixels = double(histogram.pixels);
    const auto height = [&](std::uint64_t count) {
        if (count == 0)
            return 0.0;
        // A single pixel is seen; the whole picture fills it.
        return std::max(std::log1p(double(count)) / std::log1p(pixels) * geometry.plot.height(),
                        2.0);
    };
    const auto bar = [&](double left, double tall, double wide, Channel channel) {
        QColor color = lightOf(channel);
        color.setAlpha(200);
        context.fill({left, geometry.plot.bottom() - tall, wide, tall}, color);
    };
    for (int i = ScopeHistogram::Red; i <= ScopeHistogram::Blue; ++i) {
        const auto channel = Channel(i);
        if (!(int(channels) & 1 << i) || !histogram.has(channel))
            continue;
        const double wide = SideWidth / 3;
        const double shift = wide * i;
        bar(geometry.plot.left() - SideGap - SideWidth + shift,
            height(histogram.below[channel] + histogram.negativeInfinity[channel]), wide, channel);
        bar(geometry.plot.right() + SideGap + shift,
            height(histogram.above[channel] + histogram.positiveInfinity[channel]), wide, channel);
    }
}

void HistogramScopePrivate::paintAxis(DrawingContext& context,
                                      const ScopeGeometry& geometry) const {
    GraticuleRules rules;
    rules.unit = unit;
    rules.encoding = encoding();
    rules.lower = valueAt(viewport.left);
    rules.upper = valueAt(viewport.left + viewport.width);
    rules.length = geometry.plot.width();
    rules.userLines = userLines;
    rules.locale = q->locale();
    const QFontMetricsF metrics(labelFont());
    rules.textLength = [metrics](const QString& text) {
        return metrics.horizontalAdvance(text) + 8;
    };
    if (axis != HistogramScope::LinearAxis) {
        rules.position = [this](double value) { return position(value); };
        rules.landmarks = {-100, -10, -1,  -0.1, -0.01, 0,    0.001, 0.01, 0.05,
                           0.18, 0.5, 1.0, 2.0,  4.0,   10.0, 40.0,  100., 1000.};
    }
    paintGraticule(context, geometry.plot, planGraticule(rules), false);
}

void HistogramScopePrivate::paintMarks(DrawingContext& context, const ScopeGeometry& geometry) {
    const auto sample = model ? model->sample() : std::nullopt;
    if (!sample)
        return;
    for (std::size_t i = 0; i < 3; ++i) {
        if (!(int(channels) & 1 << i) || !std::isfinite(sample->rgb[i]))
            continue;
        const double x = geometry.x(placeOf(double(sample->rgb[i])));
        context.line({x, geometry.plot.top()}, {x, geometry.plot.bottom()},
                     LineStroke(lightOf(Channel(i)), 1.5));
    }
}

void HistogramScopePrivate::paintSelection(DrawingContext& context, const ScopeGeometry& geometry) {
    if (!model || model->selection().kind != ScopeSelection::Kind::Values)
        return;
    const ScopeSelection& selection = model->selection();
    const double left = std::isfinite(selection.lower)
                            ? geometry.x(placeOf(double(selection.lower)))
                            : geometry.plot.left();
    const double right = std::isfinite(selection.upper)
                             ? geometry.x(placeOf(double(selection.upper)))
                             : geometry.plot.right();
    context.fill(QRectF(QPointF(left, geometry.plot.top()), QPointF(right, geometry.plot.bottom())),
                 colors.selection);
}

// The channels that a place speaks of: that of its row, or all.
std::vector<ScopeHistogram::Channel> HistogramScopePrivate::channelsAt(double v) const {
    std::vector<Channel> all;
    for (const Channel channel : shown()) {
        if (result()->values.has(channel))
            all.push_back(channel);
    }
    if (layout == HistogramScope::Overlay || all.empty())
        return all;
    const auto rows = double(all.size());
    return {all[std::size_t(std::clamp((1 - v) * rows, 0.0, rows - 0.5))]};
}

std::uint64_t HistogramScopePrivate::countAt(Channel channel, double u) const {
    const CodeCounts& counts = *result()->values.counts();
    const double half = step().width() / 2;
    const double from = position(lower);
    const double whole = position(upper) - from;
    return places(counts.axes[channel])
        .count(counts.counts[channel], from + (u - half) * whole, from + (u + half) * whole);
}

ScopeReadout HistogramScopePrivate::readoutAt(const QPointF& uv) const {
    const std::uint64_t pixels = result()->values.pixels();
    const std::vector<Channel> channelsThere = channelsAt(uv.y());
    if (pixels == 0 || channelsThere.empty() || uv.x() < 0 || uv.x() > 1)
        return {};
    ScopeReadout readout;
    readout.value = valueAt(uv.x());
    readout.valueText = valueText(readout.value);
    readout.channel = channelName(channelsThere.front());
    readout.count = countAt(channelsThere.front(), uv.x());
    readout.share = double(readout.count) / double(pixels);
    describe(readout);
    if (channelsThere.size() == 1)
        return readout;
    QStringList each;
    for (const Channel channel : channelsThere)
        each.append(HistogramScope::tr("%1 %2").arg(
            channelName(channel), q->locale().toString(quint64(countAt(channel, uv.x())))));
    readout.text = readout.valueText + QStringLiteral(": ") + each.join(QStringLiteral(", "));
    return readout;
}

QSizeF HistogramScopePrivate::step() const {
    const ScopeGeometry where = geometry();
    return {viewport.width / std::max(where.plot.width() * where.ratio, 1.0), 1 / Rows};
}

ScopeSelection HistogramScopePrivate::selectionOf(const QPointF& from, const QPointF& to,
                                                  const QVector<QPointF>&) const {
    ScopeSelection selection;
    selection.kind = ScopeSelection::Kind::Values;
    selection.lower = float(valueAt(std::clamp(std::min(from.x(), to.x()), 0.0, 1.0)));
    selection.upper = float(valueAt(std::clamp(std::max(from.x(), to.x()), 0.0, 1.0)));
    const std::vector<Channel> all = channelsAt(from.y());
    selection.channel = ScopeSelection::Any;
    if (all.size() == 1 && all[0] <= ScopeHistogram::Blue)
        selection.channel = ScopeSelection::Channel(all[0]);
    else if (all.size() == 1)
        selection.channel =
            all[0] == ScopeHistogram::Largest ? ScopeSelection::Largest : ScopeSelection::Luma;
    return selection;
}

bool HistogramScopePrivate::click(const ScopeGeometry& geometry, const QPointF& position) {
    const bool below = position.x() < geometry.plot.left();
    const bool above = position.x() > geometry.plot.right();
    if (!below && !above)
        return false;
    ScopeSelection selection;
    selection.kind = ScopeSelection::Kind::Values;
    selection.channel = ScopeSelection::Any;
    const double edge = below ? viewport.left : viewport.left + viewport.width;
    const auto value = float(valueAt(edge));
    selection.lower = below ? -INFINITY : std::nextafter(value, INFINITY);
    selection.upper = below ? std::nextafter(value, -INFINITY) : INFINITY;
    select(selection, true);
    return true;
}

} // namespace Kestrel::UI
