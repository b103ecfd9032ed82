#include <KxUI/scopes/HistogramScope_p.h>

#include <KxUI/color/ColorConversions.h>
#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/kit/QtCompat_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double FillLight = 0.55; // three of them are not yet white
constexpr double LineWidth = 1.25;
constexpr double HueBand = 4; // of the colours along an axis of hue
constexpr double NearlyAllColumns = 0.995;

// Lines of an axis once around.
std::vector<GraticuleLine> hueLines(const ScopeViewport& seen, double length, double textLength,
                                    bool withTexts) {
    std::vector<GraticuleLine> lines;
    const double gap = length / seen.width / 6;
    const int each = gap >= textLength ? 1 : gap * 3 >= textLength ? 3 : 6;
    const int last = gap * 6 >= textLength ? 6 : 0;
    for (int sixth = 0; sixth <= 6; ++sixth) {
        const double place = (sixth / 6.0 - seen.left) / seen.width;
        if (place < 0 || place > 1)
            continue;
        lines.push_back({sixth / 6.0, place, GraticuleLine::Faint, QString(), QColor()});
        if (withTexts && sixth % each == 0 && sixth <= last)
            lines.back().text = QString::number(60 * sixth) + QChar(0xB0);
    }
    return lines;
}

} // namespace

QColor HistogramScopePrivate::lightOf(Trace trace) const {
    switch (trace) {
    case Red:
        return {255, 70, 70};
    case Green:
        return {60, 220, 70};
    case Blue:
        return {80, 120, 255};
    case Alpha:
        return {200, 130, 255};
    case Largest:
        return {255, 190, 80};
    case Saturation:
        return {90, 220, 220};
    case Hue:
        return {240, 130, 200};
    default:
        return {225, 228, 225};
    }
}

const CodePlaces& HistogramScopePrivate::places(CodeAxis codes, ScopeHistogram::Axis on) const {
    const float white = encoding().whiteNits;
    for (const CodePlaces& each : m_places) {
        if (each.isOf(codes, on, white))
            return each;
    }
    // Colours, alpha, luma and hue may be counted in different codes; more are not in use at a time.
    if (m_places.size() >= 5)
        m_places.clear();
    m_places.emplace_back(codes, on, white);
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

// How many pixels of a column fill the height.
float HistogramScopePrivate::fullOf(const Columns& columns) const {
    const auto count = double(columns.heights.size());
    const auto column = [&](double value) {
        const double at = (placeOf(columns.trace, value) - viewport.left) / viewport.width * count;
        return at >= 0 && at < count && !isOfColor(columns.trace) ? int(at) : -2; // none
    };
    const float tallest = referenceHeight(columns.heights, column(0), column(1));
    if (fullHeight == HistogramScope::Share) {
        const auto counted = result();
        const std::uint64_t pixels =
            isOfColor(columns.trace) ? counted->hues.pixels : counted->values.pixels();
        return float(fullShare * double(pixels));
    }
    if (fullHeight == HistogramScope::TallestInside || columns.heights.empty())
        return tallest;
    std::vector<float> sorted = columns.heights;
    const auto rank = sorted.begin() + std::ptrdiff_t(NearlyAllColumns * (count - 1));
    std::nth_element(sorted.begin(), rank, sorted.end());
    return *rank > 0 ? *rank : tallest;
}

// Columns that cover more values than others get less for the same pixels.
void HistogramScopePrivate::makeAreasEqual(Trace trace, std::vector<float>& columns) const {
    if (!equalArea || axisOf(trace) == ScopeHistogram::Axis::Linear || columns.empty())
        return;
    const auto count = double(columns.size());
    const auto value = [&](std::size_t column) {
        return valueAt(trace, viewport.left + viewport.width * double(column) / count);
    };
    const double usual = (value(columns.size()) - value(0)) / count;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const double width = value(i + 1) - value(i);
        if (width > 0)
            columns[i] = float(double(columns[i]) * usual / width);
    }
}

HistogramScopePrivate::Columns HistogramScopePrivate::columnsOf(Trace trace, int count) const {
    const auto counted = result();
    const auto [begin, end] = seenOf(trace);
    Columns columns{trace, {}, {}, {}};
    const CodeCounts::Counts& all = *countsOf(*counted, trace);
    const CodePlaces& at = places(codesOf(*counted, trace), axisOf(trace));
    columns.heights = at.columns(all, begin, end, count);
    if (cumulative) {
        const double lowest = isOfColor(trace) ? -1 : position(trace, -65504);
        double sum = double(at.count(all, lowest, begin));
        const std::uint64_t pixels =
            isOfColor(trace) ? counted->hues.pixels : counted->values.pixels();
        for (const float each : columns.heights) {
            sum += double(each);
            columns.sums.push_back(
                float(std::min(sum / double(std::max<std::uint64_t>(pixels, 1)), 1.0)));
        }
    }
    makeAreasEqual(trace, columns.heights);
    const auto held = shownReference();
    if (const CodeCounts::Counts* const heldCounts = held ? countsOf(*held, trace) : nullptr) {
        columns.reference =
            places(codesOf(*held, trace), axisOf(trace)).columns(*heldCounts, begin, end, count);
        makeAreasEqual(trace, columns.reference);
    }
    return columns;
}

// One for each device pixel of a cell.
void HistogramScopePrivate::makeColumns(int count) {
    m_columns.clear();
    std::array<float, 3> full{};
    const auto group = [](Trace trace) { return std::size_t(std::max(trace - Largest, 0)); };
    for (const Trace trace : shownAndCounted()) {
        m_columns.push_back(columnsOf(trace, count));
        float& most = full[group(trace)];
        most = std::max(most, fullOf(m_columns.back()));
    }
    for (std::size_t i = 0; i < full.size(); ++i) {
        const bool isKept = model && model->isInteractive() && m_full[i] > 0;
        m_full[i] = isKept ? m_full[i] : full[i];
    }
    for (Columns& each : m_columns) {
        each.heights = heightsOf(each.heights, m_full[group(each.trace)]);
        each.reference = heightsOf(each.reference, m_full[group(each.trace)]);
    }
}

void HistogramScopePrivate::paintTrace(DrawingContext& context, const ScopeGeometry& geometry) {
    const std::vector<Cell> all = cells(geometry);
    if (all.empty())
        return;
    paintAxes(context, geometry, all);
    makeColumns(int(std::lround(all.front().area.width() * geometry.ratio)));
    const HistogramScope::Layout arranged = arrangement(geometry);
    for (const Cell& cell : all) {
        paintCell(context, cell);
        if (arranged != HistogramScope::Overlay)
            paintName(context, cell, arranged == HistogramScope::SideBySide);
        if (arranged == HistogramScope::SideBySide)
            paintSides(context, cell.area, cell.traces);
    }
    if (arranged == HistogramScope::SideBySide)
        return;
    // Of the colours of a plot that all share.
    std::vector<Trace> sides = shownAndCounted();
    if (sides.size() > 1)
        sides.erase(
            std::remove_if(sides.begin(), sides.end(), [](Trace trace) { return trace > Blue; }),
            sides.end());
    paintSides(context, geometry.plot, sides);
}

void HistogramScopePrivate::paintCell(DrawingContext& context, const Cell& cell) const {
    context.setClip(cell.area);
    for (const Columns& columns : m_columns) {
        if (std::find(cell.traces.begin(), cell.traces.end(), columns.trace) != cell.traces.end())
            paintChannel(context, cell.area, columns);
    }
    if (mainTrace(cell) == Hue)
        paintHues(context, cell.area);
    context.setClip(QRectF());
}

// Above a cell that has neighbours at its sides, or what is told in its corner would meet it.
void HistogramScopePrivate::paintName(DrawingContext& context, const Cell& cell,
                                      bool isAbove) const {
    const Trace trace = cell.traces.front();
    const QFontMetricsF metrics(labelFont());
    const QRectF room(cell.area.left() + (isAbove ? 0 : 4),
                      cell.area.top() + (isAbove ? -metrics.height() - 1 : 2), cell.area.width(),
                      metrics.height());
    context.text(room, Qt::AlignLeft | Qt::AlignVCenter,
                 metrics.elidedText(traceName(trace), Qt::ElideRight, room.width()), labelFont(),
                 lightOf(trace));
}

void HistogramScopePrivate::paintChannel(DrawingContext& context, const QRectF& area,
                                         const Columns& columns) const {
    const QColor color = lightOf(columns.trace);
    const bool isLine = layout == HistogramScope::Overlay && columns.trace > Blue;
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

// How many values lie beyond what is seen, as bars of their share; what has no place is at the right.
void HistogramScopePrivate::paintSides(DrawingContext& context, const QRectF& area,
                                       const std::vector<Trace>& traces) const {
    const auto counted = result();
    const auto bar = [&](double left, std::uint64_t count, double wide, std::uint64_t pixels,
                         QColor color) {
        if (count == 0)
            return;
        // A single pixel is seen; the whole picture fills it.
        const double share = std::log1p(double(count)) / std::log1p(double(pixels));
        const double tall = std::max(share * area.height(), 2.0);
        color.setAlpha(200);
        context.fill({left, area.bottom() - tall, wide, tall}, color);
    };
    double shift = 0;
    std::uint64_t none = 0;
    std::uint64_t pixels = 1;
    for (const Trace trace : traces) {
        if (!countsOf(*counted, trace))
            continue;
        pixels = std::max<std::uint64_t>(
            isOfColor(trace) ? counted->hues.pixels : counted->values.pixels(), 1);
        const double wide = SideWidth / double(traces.size());
        const Beyond here = beyond(trace);
        bar(area.left() - SideGap - SideWidth + shift, here.below, wide, pixels, lightOf(trace));
        bar(area.right() + SideGap + shift, here.above, wide, pixels, lightOf(trace));
        none = std::max(none, here.none);
        shift += wide;
    }
    bar(area.right() + SideGap + SideWidth + NoneGap, none, NoneWidth, pixels, colors.warning);
}

void HistogramScopePrivate::paintAxes(DrawingContext& context, const ScopeGeometry& geometry,
                                      const std::vector<Cell>& all) const {
    if (arrangement(geometry) == HistogramScope::SideBySide) {
        for (const Cell& cell : all)
            paintAxis(context, cell, true);
        return;
    }
    Cell whole{geometry.plot, {}};
    for (const Cell& cell : all)
        whole.traces.insert(whole.traces.end(), cell.traces.begin(), cell.traces.end());
    paintAxis(context, whole, true);
    // A row of hues among others has lines of its own.
    for (const Cell& cell : all) {
        const Trace trace = mainTrace(cell);
        if (isOfColor(trace) && trace != mainTrace(whole)) {
            context.fill(cell.area, colors.ground);
            paintAxis(context, cell, false);
        }
    }
}

void HistogramScopePrivate::paintAxis(DrawingContext& context, const Cell& cell,
                                      bool withTexts) const {
    const Trace trace = mainTrace(cell);
    const QFontMetricsF metrics(labelFont());
    if (trace == Hue) {
        const double widest = metrics.horizontalAdvance(QStringLiteral("360\u00b0")) + 8;
        paintGraticule(context, cell.area, hueLines(viewport, cell.area.width(), widest, withTexts),
                       false);
        return;
    }
    GraticuleRules rules;
    rules.unit = trace == Saturation ? ScopeUnit::Percent : unit;
    rules.encoding = encoding();
    rules.lower = valueAt(trace, viewport.left);
    rules.upper = valueAt(trace, viewport.left + viewport.width);
    rules.length = cell.area.width();
    rules.userLines = trace == Saturation ? QVector<ScopeLine>() : userLines;
    rules.locale = q->locale();
    rules.textLength = [metrics](const QString& text) {
        return metrics.horizontalAdvance(text) + 8;
    };
    if (axisOf(trace) != ScopeHistogram::Axis::Linear) {
        rules.position = [this, trace](double value) { return position(trace, value); };
        rules.landmarks = {-100, -10, -1,  -0.1, -0.01, 0,    0.001, 0.01, 0.05,
                           0.18, 0.5, 1.0, 2.0,  4.0,   10.0, 40.0,  100., 1000.};
    }
    std::vector<GraticuleLine> lines = planGraticule(rules);
    for (GraticuleLine& line : lines) {
        if (!withTexts)
            line.text.clear();
    }
    paintGraticule(context, cell.area, lines, false);
}

// The colours themselves, along the axis.
void HistogramScopePrivate::paintHues(DrawingContext& context, const QRectF& area) const {
    const int width = std::max(int(std::lround(area.width() * context.devicePixelRatio())), 1);
    QImage band(width, 1, QImage::Format_RGB32);
    for (int x = 0; x < width; ++x) {
        const double hue = viewport.left + viewport.width * (x + 0.5) / width;
        band.setPixelColor(x, 0,
                           QColor::fromHsvF(ColorPart(std::clamp(hue, 0.0, 1.0)), 0.85F, 0.95F));
    }
    context.image({area.left(), area.bottom() - HueBand, area.width(), HueBand}, band);
}

void HistogramScopePrivate::paintMarks(DrawingContext& context, const ScopeGeometry& geometry) {
    const auto sample = model ? model->sample() : std::nullopt;
    if (!sample)
        return;
    for (const Cell& cell : cells(geometry)) {
        for (const Trace trace : cell.traces) {
            const double value = valueOf(*sample, trace);
            if (!std::isfinite(value))
                continue;
            const double x = xOf(cell, placeOf(trace, value));
            if (x >= cell.area.left() && x <= cell.area.right())
                context.line({x, cell.area.top()}, {x, cell.area.bottom()},
                             LineStroke(lightOf(trace), 1.5));
        }
    }
}

void HistogramScopePrivate::paintSelection(DrawingContext& context, const ScopeGeometry& geometry) {
    if (!model || model->selection().kind != ScopeSelection::Kind::Values)
        return;
    const ScopeSelection& selection = model->selection();
    for (const Cell& cell : cells(geometry)) {
        const Trace trace = mainTrace(cell);
        if (!concerns(selection, cell))
            continue;
        const auto edge = [&](float value, double end) {
            return std::isfinite(value) ? xOf(cell, placeOf(trace, double(value))) : end;
        };
        const QRectF range(QPointF(edge(selection.lower, cell.area.left()), cell.area.top()),
                           QPointF(edge(selection.upper, cell.area.right()), cell.area.bottom()));
        context.fill(range & cell.area, colors.selection);
    }
}

} // namespace Kestrel::UI
