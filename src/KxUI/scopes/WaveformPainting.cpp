#include <KxUI/scopes/WaveformScope_p.h>

#include <KxUI/kit/Crisp_p.h>
#include <KxUI/scopes/CountWindow_p.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Kestrel::UI {
namespace {

constexpr double LabelGap = 4;
constexpr double BeyondSize = 3; // of the bars of what is beyond the axis
constexpr double BeyondGap = 2;
constexpr double FullLight = 16; // the density of it
constexpr float ReferenceDim = 0.45F;
constexpr double MarkHalf = 5; // of the mark of the viewer's pixel
constexpr double Close = 1e-6;

// The widest label of a unit.
QString widestLabel(ScopeUnit unit) {
    switch (unit) {
    case ScopeUnit::Percent:
    case ScopeUnit::Ire:
    case ScopeUnit::Code8:
    case ScopeUnit::NitsSdr:
        return QStringLiteral("100.5");
    case ScopeUnit::NitsPq:
    case ScopeUnit::NitsHlg:
        return QStringLiteral("10000");
    case ScopeUnit::Stops:
        return QStringLiteral("-12");
    case ScopeUnit::Value:
        return QStringLiteral("0.125");
    default:
        return QStringLiteral("4095");
    }
}

// What two opposite corners of a part of a cell stand for.
struct Corners {
    QPointF begin; // the smaller s and t
    QPointF end;
};

Corners cornersOf(const ScopeGeometry& geometry, const WaveformLayout& layout, std::size_t cell,
                  const QRectF& target) {
    const QPointF a = layout.toCell(cell, geometry.fromWidget(target.topLeft()));
    const QPointF b = layout.toCell(cell, geometry.fromWidget(target.bottomRight()));
    return {{std::min(a.x(), b.x()), std::min(a.y(), b.y())},
            {std::max(a.x(), b.x()), std::max(a.y(), b.y())}};
}

// The columns that are seen of a table with `step` counts each.
CountAxis columnAxis(const ScopeWaveform& waveform, const Corners& seen, std::ptrdiff_t step,
                     const std::vector<double>& expected) {
    CountAxis axis;
    axis.step = step;
    axis.cells = waveform.columns;
    axis.begin = seen.begin.x() * waveform.columns;
    axis.end = seen.end.x() * waveform.columns;
    axis.expected = expected.data();
    return axis;
}

// The bins that are seen, from the lowest or from the highest.
CountAxis binAxis(const ValueRange& range, const WaveformAxis& values, const Corners& seen,
                  bool fromHighest) {
    const double width = (double(range.upper) - double(range.lower)) / range.bins;
    const double lower = (values.valueAt(seen.begin.y()) - double(range.lower)) / width;
    const double upper = (values.valueAt(seen.end.y()) - double(range.lower)) / width;
    CountAxis axis;
    axis.step = fromHighest ? -1 : 1;
    axis.cells = range.bins;
    axis.begin = fromHighest ? range.bins - upper : lower;
    axis.end = fromHighest ? range.bins - lower : upper;
    return axis;
}

IntensityGrid gridOf(const std::uint32_t* first, CountAxis across, CountAxis down,
                     const QRectF& target, double ratio, double expected) {
    across.pixels = int(std::lround(target.width() * ratio));
    down.pixels = int(std::lround(target.height() * ratio));
    return densitiesOf(first, across, down, expected);
}

// By column, what lies on one side of the axis, infinities too.
std::vector<std::uint32_t> beyond(const ScopeWaveform& waveform, ScopeWaveform::Channel channel,
                                  const WaveformAxis& axis, bool above) {
    const ValueRange& range = waveform.range(channel);
    const double scale = double(range.bins) / (double(range.upper) - double(range.lower));
    const auto binAt = [&](double value) {
        const double bin = std::round((value - double(range.lower)) * scale);
        return int(std::clamp(bin, 0.0, double(range.bins)));
    };
    const int begin = above ? binAt(axis.upper) : 0;
    const int end = above ? range.bins : binAt(axis.lower);
    std::vector<std::uint32_t> all = above ? waveform.above[channel] : waveform.below[channel];
    for (int column = 0; column < waveform.columns; ++column) {
        const std::uint32_t* const bins = waveform.column0(channel, column);
        std::uint32_t& sum = all[std::size_t(column)];
        sum = std::accumulate(bins + begin, bins + end, sum);
    }
    return all;
}

} // namespace

QMarginsF WaveformScopePrivate::margins() const {
    const QFontMetricsF metrics(labelFont());
    const bool hasSecond = isSecondUnitShown || mode == WaveformScope::YCbCrParade;
    const ScopeUnit second = mode == WaveformScope::YCbCrParade ? unit : secondUnit;
    if (orientation == WaveformScope::Rows)
        return {0, hasSecond ? metrics.height() : 0, 0, metrics.height()};
    const double left = metrics.horizontalAdvance(widestLabel(unit));
    const double right = hasSecond ? metrics.horizontalAdvance(widestLabel(second)) : 0;
    return {left, 0, right, 0};
}

QColor WaveformScopePrivate::lightOf(Channel channel) const {
    switch (channel) {
    case ScopeWaveform::Red:
        return {255, 70, 70};
    case ScopeWaveform::Green:
        return {70, 255, 70};
    case ScopeWaveform::Blue:
        return {80, 120, 255};
    case ScopeWaveform::Cb:
        return {90, 140, 255};
    case ScopeWaveform::Cr:
        return {255, 110, 140};
    default:
        return coloring == WaveformScope::Phosphor ? QColor(70, 255, 120) : QColor(200, 220, 200);
    }
}

// What is seen of a part of the whole, between device pixels.
QRectF WaveformScopePrivate::visible(const ScopeGeometry& geometry, const QRectF& area) const {
    const QPointF lower = geometry.toWidget(area.topLeft());
    const QPointF upper = geometry.toWidget(area.bottomRight());
    return rectOnPixels(QRectF(lower, upper).normalized() & geometry.plot, geometry.ratio);
}

void WaveformScopePrivate::paintTrace(DrawingContext& context, const ScopeGeometry& geometry) {
    paintGraticules(context, geometry);
    if (!(m_key == TraceKey(geometry, shownReference().get())) || m_traces.empty())
        makeTraces(geometry);
    const ToneCurve curve = toneCurve();
    for (const Trace& each : m_traces)
        context.intensity(each.lit.target, each.lit.light, curve, each.color);
    paintEnvelopes(context, geometry);
    paintNames(context, geometry);
}

void WaveformScopePrivate::makeTraces(const ScopeGeometry& geometry) {
    m_traces.clear();
    const auto held = shownReference();
    m_key = TraceKey(geometry, held.get());
    if (held && held != result()) {
        QColor dim = colors.limit;
        dim.setAlphaF(ReferenceDim);
        addTraces(*held, geometry, dim);
    }
    addTraces(*result(), geometry, std::nullopt);
}

void WaveformScopePrivate::addTraces(const ScopeResult& counted, const ScopeGeometry& geometry,
                                     const std::optional<QColor>& color) {
    const ScopeWaveform& waveform = counted.waveform;
    if (!shows(counted))
        return;
    const WaveformLayout cells = layout();
    const std::vector<double> expected(waveform.columnPixels.begin(), waveform.columnPixels.end());
    for (std::size_t i = 0; i < cells.cells.size(); ++i) {
        const QRectF target = visible(geometry, cells.cells[i].area);
        for (const Channel channel : cells.cells[i].channels) {
            if (!waveform.has(channel) || target.isEmpty())
                continue;
            const Corners seen = cornersOf(geometry, cells, i, target);
            const ValueRange& range = waveform.range(channel);
            const WaveformAxis values = axisOf(channel);
            const CountAxis columns = columnAxis(waveform, seen, range.bins, expected);
            const CountAxis bins = binAxis(range, values, seen, !cells.byRows);
            // Even spread over the axis, whatever part of it was counted.
            const double share = (double(range.upper) - double(range.lower)) / range.bins /
                                 (values.upper - values.lower);
            const std::uint32_t* const first = waveform.column0(channel, 0);
            const IntensityGrid light =
                cells.byRows
                    ? gridOf(first, bins, columns, target, geometry.ratio, share)
                    : gridOf(first + range.bins - 1, columns, bins, target, geometry.ratio, share);
            const QColor shown = color.value_or(lightOf(channel));
            m_traces.push_back({withoutDark(target, light, geometry.ratio), shown});
            for (const bool above : {false, true})
                addBeyond(waveform, channel, geometry, i, above, shown);
        }
    }
}

// What lies beyond the axis, at its end if that is seen: beside the plot, or inside where a neighbour
// begins there.
void WaveformScopePrivate::addBeyond(const ScopeWaveform& waveform, Channel channel,
                                     const ScopeGeometry& geometry, std::size_t cell, bool above,
                                     const QColor& color) {
    const WaveformLayout cells = layout();
    const WaveformAxis values = axisOf(channel);
    const ValueRange& range = waveform.range(channel);
    const double slack = Close * (values.upper - values.lower);
    const bool isCounted = above ? double(range.upper) >= values.upper - slack
                                 : double(range.lower) <= values.lower + slack;
    const QRectF part = visible(geometry, cells.cells[cell].area);
    const Corners seen = cornersOf(geometry, cells, cell, part);
    const bool isSeen = above ? seen.end.y() > 1 - Close : seen.begin.y() < Close;
    if (!isCounted || !isSeen)
        return;
    const bool isInside = cells.arrangement == WaveformLayout::Stack;
    const double inset = isInside ? -BeyondSize : BeyondGap;
    QRectF bar = part;
    if (cells.byRows)
        bar.moveLeft(above ? part.right() + inset : part.left() - inset - BeyondSize);
    else
        bar.moveTop(above ? part.top() - inset - BeyondSize : part.bottom() + inset);
    bar.setSize(cells.byRows ? QSizeF(BeyondSize, part.height())
                             : QSizeF(part.width(), BeyondSize));
    bar = rectOnPixels(bar, geometry.ratio);
    const std::vector<std::uint32_t> counts = beyond(waveform, channel, values, above);
    const std::vector<double> expected(waveform.columnPixels.begin(), waveform.columnPixels.end());
    const CountAxis columns = columnAxis(waveform, seen, 1, expected);
    CountAxis whole;
    whole.step = waveform.columns;
    whole.cells = 1;
    whole.end = 1;
    const IntensityGrid light =
        cells.byRows ? gridOf(counts.data(), whole, columns, bar, geometry.ratio, 1 / FullLight)
                     : gridOf(counts.data(), columns, whole, bar, geometry.ratio, 1 / FullLight);
    m_traces.push_back({withoutDark(bar, light, geometry.ratio), color});
}

// ---- Lines, labels and marks.

GraticuleRules WaveformScopePrivate::rulesOf(const ScopeGeometry& geometry, std::size_t cell,
                                             ScopeUnit shownUnit) const {
    const WaveformLayout cells = layout();
    const QRectF part = visible(geometry, cells.cells[cell].area);
    const Corners seen = cornersOf(geometry, cells, cell, part);
    const Channel channel = cells.cells[cell].channels.front();
    const WaveformAxis values = axisOf(channel);
    GraticuleRules rules;
    rules.unit = shownUnit;
    rules.encoding = encoding();
    rules.chroma = isChroma(channel);
    rules.lower = values.valueAt(seen.begin.y());
    rules.upper = values.valueAt(seen.end.y());
    rules.length = cells.byRows ? part.width() : part.height();
    rules.limits = limits == WaveformScope::EbuR103;
    rules.locale = q->locale();
    const QFontMetricsF metrics(labelFont());
    const double height = metrics.height();
    const bool rows = cells.byRows;
    rules.textLength = [metrics, height, rows](const QString& text) {
        return rows ? metrics.horizontalAdvance(text) + 2 * LabelGap : height;
    };
    if (rules.chroma)
        return rules;
    rules.userLines = userLines;
    if (limits == WaveformScope::Legal)
        rules.userLines += {{0, colors.limit}, {1, colors.limit}};
    return rules;
}

void WaveformScopePrivate::paintGraticules(DrawingContext& context,
                                           const ScopeGeometry& geometry) const {
    const WaveformLayout cells = layout();
    const bool isParade = cells.arrangement == WaveformLayout::Parade;
    const std::size_t last = cells.cells.size() - 1;
    for (std::size_t i = 0; i <= last; ++i) {
        const QRectF part = visible(geometry, cells.cells[i].area);
        if (part.isEmpty())
            continue;
        std::vector<GraticuleLine> lines = planGraticule(rulesOf(geometry, i, unit));
        // The channels of a parade share the labels of the one at the side. Chroma has its own at the other.
        const std::size_t labelled = cells.byRows ? last : 0;
        const std::size_t opposite = last - labelled;
        const std::vector<GraticuleLine> own = lines;
        if (isParade && i != labelled) {
            for (GraticuleLine& line : lines)
                line.text.clear();
        }
        paintGraticule(context, part, lines, !cells.byRows);
        if (isParade && isYCbCr() && i == opposite)
            paintSecondLabels(context, part, own);
        else if (isSecondUnitShown && !(isParade && (isYCbCr() || i != opposite)))
            paintSecondLabels(context, part, planGraticule(rulesOf(geometry, i, secondUnit)));
    }
}

void WaveformScopePrivate::paintSecondLabels(DrawingContext& context, const QRectF& cell,
                                             const std::vector<GraticuleLine>& lines) const {
    constexpr double Far = 200; // longer than any label
    const bool rows = orientation == WaveformScope::Rows;
    for (const GraticuleLine& line : lines) {
        const double x = cell.left() + line.place * cell.width();
        const double y = cell.bottom() - line.place * cell.height();
        const QRectF room = rows ? QRectF(x - Far, cell.top() - LabelGap / 2 - Far, 2 * Far, Far)
                                 : QRectF(cell.right() + LabelGap, y - Far, Far, 2 * Far);
        const int flags =
            rows ? Qt::AlignHCenter | Qt::AlignBottom : Qt::AlignLeft | Qt::AlignVCenter;
        context.text(room, flags, line.text, labelFont(), colors.text);
    }
}

// What the cells are, and where one ends.
void WaveformScopePrivate::paintNames(DrawingContext& context,
                                      const ScopeGeometry& geometry) const {
    static const std::array<QString, ScopeWaveform::Channels> Names{
        QStringLiteral("R"), QStringLiteral("G"),  QStringLiteral("B"),
        QStringLiteral("Y"), QStringLiteral("Cb"), QStringLiteral("Cr")};
    const WaveformLayout cells = layout();
    const QFont font = labelFont();
    context.setClip(geometry.plot);
    for (std::size_t i = 0; i < cells.cells.size() && cells.cells.size() > 1; ++i) {
        const QRectF part = visible(geometry, cells.cells[i].area);
        const Channel channel = cells.cells[i].channels.front();
        context.text(part.adjusted(LabelGap, 1, 0, 0), Qt::AlignLeft | Qt::AlignTop, Names[channel],
                     font, lightOf(channel).lighter(130));
        const double thin = 1 / geometry.ratio;
        if (part.left() > geometry.plot.left() + thin)
            context.fill({part.left(), part.top(), thin, part.height()}, colors.strongLine);
        if (part.top() > geometry.plot.top() + thin)
            context.fill({part.left(), part.top(), part.width(), thin}, colors.strongLine);
    }
    context.setClip(QRectF());
}

void WaveformScopePrivate::paintEnvelopes(DrawingContext& context,
                                          const ScopeGeometry& geometry) const {
    const auto counted = result();
    if (envelope == WaveformScope::NoEnvelope || !shows(*counted))
        return;
    const WaveformLayout cells = layout();
    context.setClip(geometry.plot);
    for (std::size_t i = 0; i < cells.cells.size(); ++i) {
        for (const Channel channel : cells.cells[i].channels) {
            QColor color = lightOf(channel);
            color.setAlpha(200);
            if (envelope != WaveformScope::InstantEnvelope)
                paintEnvelope(context, geometry, i, channel, m_peaks[channel],
                              LineStroke(color.darker(150), 1));
            if (envelope != WaveformScope::PeakEnvelope)
                paintEnvelope(context, geometry, i, channel,
                              WaveformEnvelope(counted->waveform, channel), LineStroke(color, 1));
        }
    }
    context.setClip(QRectF());
}

void WaveformScopePrivate::paintEnvelope(DrawingContext& context, const ScopeGeometry& geometry,
                                         std::size_t cell, Channel channel,
                                         const WaveformEnvelope& values,
                                         const LineStroke& stroke) const {
    const WaveformLayout cells = layout();
    const WaveformAxis own = axisOf(channel);
    for (const std::vector<double>* side : {&values.lowest, &values.highest}) {
        const auto count = double(side->size());
        std::vector<QPointF> line;
        const auto draw = [&] {
            context.polyline(line.data(), int(line.size()), stroke);
            line.clear();
        };
        for (std::size_t i = 0; i < side->size(); ++i) {
            if (std::isnan((*side)[i])) {
                draw();
                continue;
            }
            const double t = std::clamp(own.placeOf((*side)[i]), 0.0, 1.0);
            for (const double s : {double(i), double(i) + 1})
                line.push_back(geometry.toWidget(cells.fromCell(cell, {s / count, t})));
        }
        draw();
    }
}

// The viewer's pixel: a short line at its column and each of its values.
void WaveformScopePrivate::paintMarks(DrawingContext& context, const ScopeGeometry& geometry) {
    const auto sample = model ? model->sample() : std::nullopt;
    const auto counted = result();
    if (!sample || !shows(*counted) || counted->waveform.pictureColumns == 0)
        return;
    const std::array<float, ScopeWaveform::Channels> values{
        sample->rgb[0], sample->rgb[1], sample->rgb[2], sample->luma, sample->cb, sample->cr};
    const WaveformLayout cells = layout();
    const ScopeRegion region = counted->region;
    const double place =
        cells.byRows ? double(sample->y - region.top) : double(sample->x - region.left);
    const double s = (std::floor(place / counted->proxy) + 0.5) / counted->waveform.pictureColumns;
    if (s < 0 || s > 1)
        return;
    for (std::size_t i = 0; i < cells.cells.size(); ++i) {
        for (const Channel channel : cells.cells[i].channels)
            paintMark(context, geometry, i, channel,
                      {s, axisOf(channel).placeOf(double(values[channel]))});
    }
}

void WaveformScopePrivate::paintMark(DrawingContext& context, const ScopeGeometry& geometry,
                                     std::size_t cell, Channel channel, const QPointF& st) const {
    if (!std::isfinite(st.y()))
        return;
    const WaveformLayout cells = layout();
    const QPointF half = cells.byRows ? QPointF(0, MarkHalf) : QPointF(MarkHalf, 0);
    const QPointF at =
        geometry.toWidget(cells.fromCell(cell, {st.x(), std::clamp(st.y(), 0.0, 1.0)}));
    context.line(at - half, at + half, LineStroke(QColor(0, 0, 0, 200), 5));
    context.line(at - half, at + half, LineStroke(lightOf(channel).lighter(120), 2));
}

void WaveformScopePrivate::paintSelection(DrawingContext& context, const ScopeGeometry& geometry) {
    if (!model || model->selection().kind != ScopeSelection::Kind::Values)
        return;
    const ScopeSelection& selection = model->selection();
    const WaveformLayout cells = layout();
    for (std::size_t i = 0; i < cells.cells.size(); ++i) {
        for (const Channel channel : cells.cells[i].channels) {
            const bool isRgb = channel <= ScopeWaveform::Blue;
            const bool isAny = selection.channel == ScopeSelection::Any ||
                               selection.channel == ScopeSelection::Largest;
            if (isAny ? !isRgb : int(selection.channel) != int(channel))
                continue;
            const WaveformAxis values = axisOf(channel);
            const double from = std::clamp(values.placeOf(double(selection.lower)), 0.0, 1.0);
            const double to = std::clamp(values.placeOf(double(selection.upper)), 0.0, 1.0);
            const QPointF a = geometry.toWidget(cells.fromCell(i, {0, from}));
            const QPointF b = geometry.toWidget(cells.fromCell(i, {1, to}));
            context.fill(QRectF(a, b).normalized() & geometry.plot, colors.selection);
            if (isAny && cells.cells.size() == 1)
                return;
        }
    }
}

} // namespace Kestrel::UI
