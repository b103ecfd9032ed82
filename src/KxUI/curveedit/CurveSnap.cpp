#include <KxUI/curveedit/CurveSnap_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Target = CurveSnapTarget;

// Snapping looks at the labelled ticks, which stand as far apart as labels do.
constexpr double TickSpacing = 10;
constexpr double LongTickSpacing = 48;

double away(const CurveAxis& axis, const Target& target, double value) {
    return std::abs(axis.pixelOf(target.value) - axis.pixelOf(value));
}

const Target* find(const std::vector<Target>& targets, const Target& wanted) {
    const auto found = std::find_if(targets.begin(), targets.end(),
                                    [&](const Target& each) { return each.isSameAs(wanted); });
    return found == targets.end() ? nullptr : &*found;
}

void addTicks(const CurveAxis& axis, std::vector<Target>& targets) {
    for (const CurveTick& tick : CurveTicks::of(axis, TickSpacing, LongTickSpacing).ticks) {
        if (tick.isLong)
            targets.push_back({Target::Tick, tick.value});
    }
}

void addLimits(double low, double high, std::vector<Target>& targets) {
    for (const double limit : {low, high}) {
        if (std::isfinite(limit))
            targets.push_back({Target::Limit, limit});
    }
}

bool isUnitSquare(const CurveModel::Limits& limits) {
    return limits.lowX == 0 && limits.highX == 1 && limits.lowY == 0 && limits.highY == 1;
}

} // namespace

void CurveAxisSnap::begin(const CurveAxis& axis, double value,
                          const std::vector<CurveSnapTarget>& targets) {
    m_held.reset();
    m_beside.clear();
    for (const Target& each : targets) {
        if (each.kind != Target::Frame && away(axis, each, value) <= Leave)
            m_beside.push_back(each);
    }
}

std::optional<CurveSnapTarget> CurveAxisSnap::snapped(const CurveAxis& axis, double value,
                                                      const std::vector<CurveSnapTarget>& targets) {
    // A line across the plot has moved on with x.
    const auto isLeft = [&](const Target& each) {
        const Target* const present = find(targets, each);
        return away(axis, present ? *present : each, value) > Leave;
    };
    m_beside.erase(std::remove_if(m_beside.begin(), m_beside.end(), isLeft), m_beside.end());
    if (m_held && m_held->kind != Target::Frame && !isLeft(*m_held)) {
        const Target* const present = find(targets, *m_held);
        return present ? *present : *m_held;
    }
    m_held.reset();
    double nearest = Enter;
    for (const Target& each : targets) {
        const double distance = away(axis, each, value);
        const bool isLast = each.kind == Target::Frame && m_held;
        if (isLast || distance > nearest || (m_held && distance == nearest) || find(m_beside, each))
            continue;
        nearest = distance;
        m_held = each;
    }
    return m_held;
}

void CurveSnap::begin(const CurveScene& scene, int curve, int knot, const QPointF& place) {
    m_curve = curve;
    m_knot = knot;
    m_x.begin(scene.plot.xAxis(), place.x(), targetsX(scene, place.x()));
    m_y.begin(scene.plot.yAxis(), place.y(), targetsY(scene, place));
}

CurveSnap::Result CurveSnap::snapped(const CurveScene& scene, const QPointF& wanted, bool isFreeX,
                                     bool isFreeY) {
    Result result{wanted, {}, {}};
    if (!scene.holds(m_curve, m_knot))
        return result;
    if (isFreeX)
        result.x = m_x.snapped(scene.plot.xAxis(), wanted.x(), targetsX(scene, wanted.x()));
    else
        m_x.leave();
    if (result.x)
        result.place.setX(result.x->value);
    // What depends on x counts from where x has been taken to.
    if (isFreeY)
        result.y = m_y.snapped(scene.plot.yAxis(), wanted.y(), targetsY(scene, result.place));
    else
        m_y.leave();
    if (result.y)
        result.place.setY(result.y->value);
    return result;
}

void CurveSnap::leave() {
    m_x.leave();
    m_y.leave();
}

std::vector<CurveSnapTarget> CurveSnap::targetsX(const CurveScene& scene, double x) const {
    std::vector<Target> targets;
    if (!std::isnan(scene.playhead))
        targets.push_back({Target::Playhead, scene.playhead});
    for (const double line : scene.snapX)
        targets.push_back({Target::SnapLine, line});
    // Of another curve no more than the knots on both sides can be near.
    for (int curve = 0; curve < scene.model->count(); ++curve) {
        const int next = curve == m_curve ? 0 : scene.model->firstKnotFrom(curve, x);
        for (int knot = std::max(0, next - 1); knot <= next && curve != m_curve; ++knot) {
            if (scene.holds(curve, knot))
                targets.push_back({Target::OtherKnot, scene.model->knot(curve, knot).x});
        }
    }
    const CurveModel::Limits limits = scene.model->limits(m_curve);
    addLimits(limits.lowX, limits.highX, targets);
    if (!scene.hasFrames)
        addTicks(scene.plot.xAxis(), targets);
    else if (std::isfinite(x))
        targets.push_back({Target::Frame, std::round(x)});
    return targets;
}

std::vector<CurveSnapTarget> CurveSnap::targetsY(const CurveScene& scene,
                                                 const QPointF& place) const {
    std::vector<Target> targets;
    for (const double line : scene.snapY)
        targets.push_back({Target::SnapLine, line});
    const bool hasBefore = scene.holds(m_curve, m_knot - 1);
    const bool hasBehind = scene.holds(m_curve, m_knot + 1);
    const CurveModel::Knot before = scene.model->knot(m_curve, hasBefore ? m_knot - 1 : m_knot);
    const CurveModel::Knot behind = scene.model->knot(m_curve, hasBehind ? m_knot + 1 : m_knot);
    if (hasBefore)
        targets.push_back({Target::Neighbour, before.y});
    if (hasBehind)
        targets.push_back({Target::Neighbour, behind.y});
    targets.push_back({Target::Unit, 0});
    targets.push_back({Target::Unit, 1});
    const CurveModel::Limits limits = scene.model->limits(m_curve);
    addLimits(limits.lowY, limits.highY, targets);
    if (isUnitSquare(limits))
        targets.push_back({Target::Identity, place.x()});
    if (hasBefore && hasBehind && before.x < behind.x) {
        const double part = (place.x() - before.x) / (behind.x - before.x);
        targets.push_back({Target::Chord, before.y + part * (behind.y - before.y)});
    }
    addTicks(scene.plot.yAxis(), targets);
    return targets;
}

} // namespace Kestrel::UI
