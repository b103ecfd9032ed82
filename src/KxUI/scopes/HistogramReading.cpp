#include <KxUI/scopes/HistogramScope_p.h>

#include <KxUI/color/ColorConversions.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double Rows = 100; // that keys move a cursor by, upwards

// What is at the end of an axis is still on it.
double justAbove(double end) {
    return double(std::nextafter(float(end), INFINITY));
}

// Which of the model's channels a trace selects by; alpha is none.
std::optional<ScopeSelection::Channel> selected(int trace) {
    using Trace = HistogramScopePrivate;
    switch (trace) {
    case Trace::Red:
        return ScopeSelection::Red;
    case Trace::Green:
        return ScopeSelection::Green;
    case Trace::Blue:
        return ScopeSelection::Blue;
    case Trace::Luma:
        return ScopeSelection::Luma;
    case Trace::Largest:
        return ScopeSelection::Largest;
    case Trace::Saturation:
        return ScopeSelection::Saturation;
    case Trace::Hue:
        return ScopeSelection::Hue;
    default:
        return std::nullopt;
    }
}

} // namespace

ScopeModel::Parts HistogramScopePrivate::parts() const {
    const bool hues = channels & (HistogramScope::Saturation | HistogramScope::Hue);
    return hues ? ScopeModel::Values | ScopeModel::Hues : ScopeModel::Parts(ScopeModel::Values);
}

QMarginsF HistogramScopePrivate::margins() const {
    const QFontMetricsF metrics(labelFont());
    const double names = layout == HistogramScope::SideBySide ? metrics.height() : 0;
    return {SideWidth + SideGap, names, SideGap + SideWidth + NoneGap + NoneWidth,
            metrics.height()};
}

ScopeHistogram::Axis HistogramScopePrivate::axisOf(Trace trace) const {
    if (isOfColor(trace))
        return ScopeHistogram::Axis::Linear;
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

double HistogramScopePrivate::position(Trace trace, double value) const {
    return double(ScopeHistogram::position(axisOf(trace), float(value), encoding().whiteNits));
}

double HistogramScopePrivate::valueAt(Trace trace, double u) const {
    const double from = position(trace, lowerOf(trace));
    const double at = from + u * (position(trace, upperOf(trace)) - from);
    return double(ScopeHistogram::valueAt(axisOf(trace), float(at), encoding().whiteNits));
}

// Where a value is in the whole.
double HistogramScopePrivate::placeOf(Trace trace, double value) const {
    const double from = position(trace, lowerOf(trace));
    return (position(trace, value) - from) / (position(trace, upperOf(trace)) - from);
}

QString HistogramScopePrivate::textOf(Trace trace, double value) const {
    const QLocale locale = q->locale();
    if (trace == Hue)
        return HistogramScope::tr("%1\u00b0").arg(locale.toString(360 * value, 'f', 1));
    if (trace == Saturation)
        return HistogramScope::tr("%1 %").arg(locale.toString(100 * value, 'f', 1));
    return valueText(value);
}

QString HistogramScopePrivate::traceName(Trace trace) {
    switch (trace) {
    case Red:
        return HistogramScope::tr("Red");
    case Green:
        return HistogramScope::tr("Green");
    case Blue:
        return HistogramScope::tr("Blue");
    case Alpha:
        return HistogramScope::tr("Alpha");
    case Luma:
        return HistogramScope::tr("Luma");
    case Saturation:
        return HistogramScope::tr("Saturation");
    case Hue:
        return HistogramScope::tr("Hue");
    default:
        return HistogramScope::tr("Largest");
    }
}

// Null where it was not counted.
const CodeCounts::Counts* HistogramScopePrivate::countsOf(const ScopeResult& result, Trace trace) {
    if (isOfColor(trace)) {
        const ScopeHues& hues = result.hues;
        return hues.isEmpty() ? nullptr : trace == Hue ? &hues.hue : &hues.saturation;
    }
    const auto channel = ScopeHistogram::Channel(trace);
    return result.values.has(channel) ? &result.values.counts()->counts[channel] : nullptr;
}

CodeAxis HistogramScopePrivate::codesOf(const ScopeResult& result, Trace trace) {
    return isOfColor(trace) ? CodeAxis{ScopeHues::Codes}
                            : result.values.counts()->axes[std::size_t(trace)];
}

std::vector<HistogramScopePrivate::Trace> HistogramScopePrivate::shown() const {
    std::vector<Trace> all;
    for (int i = 0; i < Traces; ++i) {
        if (int(channels) & 1 << i)
            all.push_back(Trace(i));
    }
    return all;
}

std::vector<HistogramScopePrivate::Trace> HistogramScopePrivate::shownAndCounted() const {
    std::vector<Trace> all = shown();
    const auto counted = result();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](Trace trace) { return !countsOf(*counted, trace); }),
              all.end());
    return all;
}

HistogramScope::Layout HistogramScopePrivate::arrangement(const ScopeGeometry& geometry) const {
    constexpr double LeastWidth = 32;
    const auto count = double(shown().size());
    const bool hasRoom = geometry.plot.width() >= count * (LeastWidth + CellGap) - CellGap;
    return layout == HistogramScope::SideBySide && !hasRoom ? HistogramScope::Stacked : layout;
}

std::vector<HistogramScopePrivate::Cell>
HistogramScopePrivate::cells(const ScopeGeometry& geometry) const {
    std::vector<Trace> traces = shownAndCounted();
    if (traces.empty())
        traces = shown();
    if (traces.empty())
        return {};
    const HistogramScope::Layout arranged = arrangement(geometry);
    if (arranged == HistogramScope::Overlay)
        return {{geometry.plot, traces}};
    std::vector<Cell> all;
    const auto count = double(traces.size());
    const bool rows = arranged == HistogramScope::Stacked;
    // Next to the axis that they share.
    if (rows)
        std::stable_partition(traces.begin(), traces.end(), isOfColor);
    const double gap = rows ? 1 : CellGap;
    const QRectF& plot = geometry.plot;
    const double size = ((rows ? plot.height() : plot.width()) - gap * (count - 1)) / count;
    const auto onPixel = [&](double at) {
        return std::round(at * geometry.ratio) / geometry.ratio;
    };
    for (std::size_t i = 0; i < traces.size(); ++i) {
        QRectF area = plot;
        const double shift = onPixel(double(i) * (size + gap));
        const double length = std::max(std::floor(size * geometry.ratio), 1.0) / geometry.ratio;
        if (rows)
            area = QRectF(plot.left(), plot.top() + shift, plot.width(), length);
        else
            area = QRectF(plot.left() + shift, plot.top(), length, plot.height());
        all.push_back({area, {traces[i]}});
    }
    return all;
}

HistogramScopePrivate::Trace HistogramScopePrivate::mainTrace(const Cell& cell) {
    const auto found = std::find_if(cell.traces.begin(), cell.traces.end(),
                                    [](Trace trace) { return !isOfColor(trace); });
    return found == cell.traces.end() ? cell.traces.front() : *found;
}

double HistogramScopePrivate::xOf(const Cell& cell, double u) const {
    return cell.area.left() + (u - viewport.left) / viewport.width * cell.area.width();
}

// In the cell that is nearest, on its axis or at one of its sides.
std::optional<HistogramScopePrivate::Spot>
HistogramScopePrivate::spotAt(const ScopeGeometry& geometry, const QPointF& at) const {
    constexpr double Rounding = 1e-6;
    std::optional<Spot> found;
    double least = 0;
    const auto apart = [](double value, double low, double high) {
        return std::max({low - value, value - high, 0.0});
    };
    for (const Cell& cell : cells(geometry)) {
        const QRectF& area = cell.area;
        const double distance =
            apart(at.x(), area.left(), area.right()) + apart(at.y(), area.top(), area.bottom());
        if (found && distance >= least)
            continue;
        least = distance;
        found = Spot{cell, 0, Spot::Inside};
    }
    if (!found)
        return found;
    const QRectF& area = found->cell.area;
    found->u = viewport.left + (at.x() - area.left()) / area.width() * viewport.width;
    if (at.x() < area.left() - Rounding)
        found->side = Spot::Below;
    else if (at.x() > area.right() + Rounding)
        found->side = at.x() > area.right() + SideGap + SideWidth && hasNone(found->cell)
                          ? Spot::NotANumber
                          : Spot::Above;
    return found;
}

bool HistogramScopePrivate::hasNone(const Cell& cell) const {
    const auto counted = result();
    return std::any_of(cell.traces.begin(), cell.traces.end(), [&](Trace trace) {
        return countsOf(*counted, trace) && beyond(trace).none > 0;
    });
}

QRectF HistogramScopePrivate::readArea(const ScopeGeometry& geometry) const {
    return geometry.plot.adjusted(-SideGap - SideWidth, 0,
                                  SideGap + SideWidth + NoneGap + NoneWidth, 0);
}

bool HistogramScopePrivate::pansAt(const ScopeGeometry& geometry, const QPointF& position) const {
    return position.y() > geometry.plot.bottom();
}

QPointF HistogramScopePrivate::panned(const QPointF& uv) const {
    const ScopeGeometry where = geometry();
    const std::vector<Cell> all = cells(where);
    return all.empty() ? uv
                       : QPointF(uv.x() * where.plot.width() / all.front().area.width(), uv.y());
}

void HistogramScopePrivate::zoomAbout(const QPointF& uv, double factor) {
    const ScopeGeometry where = geometry();
    const std::optional<Spot> spot = spotAt(where, where.toWidget(uv));
    ScopeViewPrivate::zoomAbout(spot ? QPointF(spot->u, uv.y()) : uv, factor);
}

// What a column at a spot counts: no further than the ends of what is seen.
std::uint64_t HistogramScopePrivate::countAt(Trace trace, const Spot& spot) const {
    const auto counted = result();
    const auto [begin, end] = seenOf(trace);
    const double half = (end - begin) / (spot.cell.area.width() * geometry().ratio) / 2;
    const double middle = begin + (spot.u - viewport.left) / viewport.width * (end - begin);
    return places(codesOf(*counted, trace), axisOf(trace))
        .count(*countsOf(*counted, trace), std::max(middle - half, begin),
               middle + half >= end ? justAbove(end) : middle + half);
}

// The ends of what is seen, on the axis.
std::pair<double, double> HistogramScopePrivate::seenOf(Trace trace) const {
    const double from = position(trace, lowerOf(trace));
    const double whole = position(trace, upperOf(trace)) - from;
    const double begin = from + viewport.left * whole;
    return {begin, begin + viewport.width * whole};
}

HistogramScopePrivate::Beyond HistogramScopePrivate::beyond(Trace trace) const {
    const auto counted = result();
    const CodeCounts::Counts& all = *countsOf(*counted, trace);
    const CodeAxis codes = codesOf(*counted, trace);
    const CodePlaces& at = places(codes, axisOf(trace));
    const auto [begin, end] = seenOf(trace);
    Beyond result;
    result.below = at.count(all, isOfColor(trace) ? -1 : position(trace, -65504), begin);
    result.above = isOfColor(trace) ? counted->hues.pixels : counted->values.pixels();
    if (codes.isHalf()) {
        result.below += all[HalfCode::Infinity | HalfCode::Sign];
        result.none = all[HalfCode::NotANumber];
    } else if (isOfColor(trace)) {
        result.none = counted->hues.none + (trace == Hue ? counted->hues.greys : 0);
    }
    result.above -= result.below + result.none + at.count(all, begin, justAbove(end));
    return result;
}

ScopeReadout HistogramScopePrivate::readoutAt(const QPointF& uv) const {
    const ScopeGeometry where = geometry();
    const std::optional<Spot> spot = spotAt(where, where.toWidget(uv));
    const std::uint64_t pixels = result()->values.pixels();
    if (pixels == 0 || !spot || !countsOf(*result(), spot->cell.traces.front()))
        return {};
    if (spot->side != Spot::Inside)
        return sideReadout(*spot);
    const std::vector<Trace>& traces = spot->cell.traces;
    const Trace main = mainTrace(spot->cell);
    ScopeReadout readout;
    readout.value = valueAt(main, spot->u);
    readout.valueText = textOf(main, readout.value);
    readout.channel = traceName(main);
    readout.count = countAt(main, *spot);
    readout.share = double(readout.count) / double(pixels);
    describe(readout);
    if (traces.size() > 1)
        readout.text = readout.valueText + QStringLiteral(": ") + countsText(*spot);
    return readout;
}

// Of all channels there; those with an axis of their own say where on it.
QString HistogramScopePrivate::countsText(const Spot& spot) const {
    QStringList each;
    for (const Trace trace : spot.cell.traces) {
        const QString count = q->locale().toString(quint64(countAt(trace, spot)));
        const bool hasOwnAxis = isOfColor(trace) && trace != mainTrace(spot.cell);
        each.append(hasOwnAxis
                        ? HistogramScope::tr("%1 %2: %3")
                              .arg(traceName(trace), textOf(trace, valueAt(trace, spot.u)), count)
                        : HistogramScope::tr("%1 %2").arg(traceName(trace), count));
    }
    return each.join(QStringLiteral(", "));
}

// What a bar at a side stands for.
ScopeReadout HistogramScopePrivate::sideReadout(const Spot& spot) const {
    const Trace main = mainTrace(spot.cell);
    ScopeReadout readout;
    const bool isBelow = spot.side == Spot::Below;
    readout.value = valueAt(main, isBelow ? viewport.left : viewport.left + viewport.width);
    readout.valueText = textOf(main, readout.value);
    QStringList each;
    for (const Trace trace : spot.cell.traces) {
        const std::uint64_t count = beyond(trace).of(spot.side);
        readout.count = std::max<quint64>(readout.count, count);
        each.append(HistogramScope::tr("%1 %2").arg(traceName(trace),
                                                    q->locale().toString(quint64(count))));
    }
    readout.share =
        double(readout.count) / double(std::max<std::uint64_t>(result()->values.pixels(), 1));
    const QString list = each.join(QStringLiteral(", "));
    if (spot.side == Spot::NotANumber)
        readout.text = main == Hue ? HistogramScope::tr("Without a hue: %1").arg(list)
                                   : HistogramScope::tr("No number: %1").arg(list);
    else
        readout.text =
            (isBelow ? HistogramScope::tr("Below %1: %2") : HistogramScope::tr("Above %1: %2"))
                .arg(readout.valueText, list);
    return readout;
}

QSizeF HistogramScopePrivate::step() const {
    const ScopeGeometry where = geometry();
    return {viewport.width / std::max(where.plot.width() * where.ratio, 1.0), 1 / Rows};
}

double HistogramScopePrivate::valueOf(const ScopeSample& sample, Trace trace) {
    float hue = 0;
    float saturation = 0;
    float value = 0;
    rgbToHsv(sample.rgb[0], sample.rgb[1], sample.rgb[2], hue, saturation, value);
    switch (trace) {
    case Alpha:
        return double(sample.alpha);
    case Luma:
        return double(sample.luma);
    case Largest:
        return double(value);
    case Saturation:
        return double(saturation);
    case Hue:
        return saturation > 0 ? double(hue) : std::nan("");
    default:
        return double(sample.rgb[std::size_t(trace)]);
    }
}

std::optional<ScopeSelection::Channel> HistogramScopePrivate::channelOf(const Cell& cell) {
    if (cell.traces.size() == 1)
        return selected(cell.traces.front());
    // Saturation and hue on one plot have no values in common.
    return isOfColor(mainTrace(cell)) ? selected(mainTrace(cell)) : ScopeSelection::Any;
}

bool HistogramScopePrivate::concerns(const ScopeSelection& selection, const Cell& cell) {
    return std::any_of(cell.traces.begin(), cell.traces.end(), [&](Trace trace) {
        return selected(trace) == selection.channel ||
               (selection.channel == ScopeSelection::Any && trace <= Blue);
    });
}

ScopeSelection HistogramScopePrivate::selectionOf(const QPointF& from, const QPointF& to,
                                                  const QVector<QPointF>&) const {
    ScopeSelection selection;
    const ScopeGeometry where = geometry();
    const std::optional<Spot> spot = spotAt(where, where.toWidget(from));
    const auto channel = spot ? channelOf(spot->cell) : std::nullopt;
    if (!channel)
        return selection;
    // A drag stays in the cell that it began in.
    const QRectF& area = spot->cell.area;
    const auto value = [&](const QPointF& uv) {
        const double x = std::clamp(where.toWidget(uv).x(), area.left(), area.right());
        const double u = viewport.left + (x - area.left()) / area.width() * viewport.width;
        return float(valueAt(mainTrace(spot->cell), u));
    };
    selection.kind = ScopeSelection::Kind::Values;
    selection.channel = *channel;
    selection.lower = std::min(value(from), value(to));
    selection.upper = std::max(value(from), value(to));
    return selection;
}

bool HistogramScopePrivate::click(const ScopeGeometry& geometry, const QPointF& position) {
    const std::optional<Spot> spot = spotAt(geometry, position);
    if (!spot || spot->side == Spot::Inside || position.y() > geometry.plot.bottom())
        return false;
    const auto channel = channelOf(spot->cell);
    if (!channel)
        return false;
    ScopeSelection selection;
    selection.channel = *channel;
    selection.kind = ScopeSelection::Kind::Values;
    const Trace trace = mainTrace(spot->cell);
    if (spot->side == Spot::NotANumber) {
        selection.kind = ScopeSelection::Kind::NotANumber;
    } else if (spot->side == Spot::Below) {
        selection.lower = -INFINITY;
        selection.upper = std::nextafter(float(valueAt(trace, viewport.left)), -INFINITY);
    } else {
        const auto last = float(valueAt(trace, viewport.left + viewport.width));
        selection.lower = std::nextafter(last, INFINITY);
        selection.upper = INFINITY;
    }
    select(selection, true);
    return true;
}

} // namespace Kestrel::UI
