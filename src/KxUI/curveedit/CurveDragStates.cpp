#include <KxUI/curveedit/CurveDragStates_p.h>

#include <KxUI/kit/EditModifiers.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Kestrel::UI {
namespace {

double length(const QPointF& way) {
    return std::hypot(way.x(), way.y());
}

QPointF placeOf(const CurveScene& scene, int curve, int knot) {
    QPointF place;
    scene.model->places(curve, knot, 1, &place);
    return place;
}

CurveCommands end() {
    return {CurveCommand()};
}

CurveCommand selection(int curve, int first, int last, CurveModel::SelectionMode mode) {
    CurveCommand command{CurveCommand::Select};
    command.curve = curve;
    command.first = first;
    command.last = last;
    command.mode = mode;
    return command;
}

// The knots, each run of neighbours at once.
void addSelections(int curve, const std::vector<int>& knots, CurveModel::SelectionMode mode,
                   CurveCommands& commands) {
    for (std::size_t i = 0; i < knots.size();) {
        std::size_t last = i;
        while (last + 1 < knots.size() && knots[last + 1] == knots[last] + 1)
            ++last;
        commands.push_back(selection(curve, knots[i], knots[last], mode));
        i = last + 1;
    }
}

// What makes one selection of the other.
void addDifference(int curve, const std::vector<int>& present, const std::vector<int>& wanted,
                   CurveCommands& commands) {
    std::vector<int> fewer;
    std::vector<int> more;
    std::set_difference(present.begin(), present.end(), wanted.begin(), wanted.end(),
                        std::back_inserter(fewer));
    std::set_difference(wanted.begin(), wanted.end(), present.begin(), present.end(),
                        std::back_inserter(more));
    addSelections(curve, fewer, CurveModel::SelectRemove, commands);
    addSelections(curve, more, CurveModel::SelectAdd, commands);
}

// Whether the knots are where they were moved to, as far as one sees: a model may round.
bool areThere(const CurveScene& scene, const CurveGroup::Moves& moves) {
    constexpr double Unseen = 0.01;
    return std::all_of(moves.begin(), moves.end(), [&](const CurveModel::Move& move) {
        const QPointF place = placeOf(scene, move.curve, move.knot);
        const QPointF away = scene.plot.toWidget(place) - scene.plot.toWidget({move.x, move.y});
        return (place.x() == move.x || std::abs(away.x()) < Unseen) &&
               (place.y() == move.y || std::abs(away.y()) < Unseen);
    });
}

CurveCommand show(const QRectF& range) {
    CurveCommand command{CurveCommand::ShowRange};
    command.range = range;
    return command;
}

} // namespace

CurveGrip::CurveGrip(const QPointF& place, const CurveInput& input)
    : m_anchorPlace(place)
    , m_anchorMouse(input.mouse)
    , m_pressMouse(input.mouse)
    , m_lastMouse(input.mouse) {}

QPointF CurveGrip::wanted(const CurveInput& input, const QPointF& shown) {
    const double factor = EditModifiers::factor(input.modifiers & Qt::ControlModifier);
    if (factor != m_factor) {
        m_factor = factor;
        rebase(shown);
    }
    m_lastMouse = input.mouse;
    m_farthest = std::max(m_farthest, length(input.mouse - m_pressMouse));
    return m_anchorPlace + (input.mouse - m_anchorMouse) * m_factor;
}

void CurveGrip::rebase(const QPointF& place) {
    m_anchorPlace = place;
    m_anchorMouse = m_lastMouse;
}

QPointF CurveGrip::freedom(const CurveInput& input) {
    if (!input.has(Qt::ShiftModifier)) {
        m_freedom.reset();
        return {1, 1};
    }
    const QPointF way = input.mouse - m_pressMouse;
    if (!m_freedom && m_farthest >= CurveDragDistance)
        m_freedom = std::abs(way.x()) >= std::abs(way.y()) ? QPointF(1, 0) : QPointF(0, 1);
    return m_freedom.value_or(QPointF(1, 1));
}

CurveKnotsDrag::CurveKnotsDrag(const CurveScene& scene, const CurveHit& hit,
                               const CurveInput& input, bool selects, bool waits)
    : m_curve(hit.curve)
    , m_knot(hit.knot)
    , m_count(scene.model->knots(hit.curve))
    , m_grip(hit.place, input)
    , m_startPlace(hit.place)
    , m_selects(selects)
    , m_waits(waits)
    , m_mouse(input.mouse) {}

// The selection has been made meanwhile.
bool CurveKnotsDrag::begin(const CurveScene& scene) {
    if (!isThere(scene))
        return false;
    m_group = CurveGroup::selected(scene);
    if (!m_group.holds(m_curve, m_knot))
        m_group = CurveGroup::of(scene, m_curve, m_knot);
    m_start = placeOf(scene, m_curve, m_knot);
    const QPointF place = CurvePick::shownAt(scene, m_curve, m_start);
    if (place != m_startPlace) // since the press, by somebody else
        m_grip.rebase(place);
    m_startPlace = place;
    m_way = {};
    m_snap.begin(scene, m_curve, m_knot, m_start);
    m_begun = true;
    return true;
}

bool CurveKnotsDrag::isThere(const CurveScene& scene) const {
    return scene.holds(m_curve, m_knot) && scene.model->knots(m_curve) == m_count;
}

bool CurveKnotsDrag::canPullOut(const CurveScene& scene) const {
    const int count = scene.model->knots(m_curve);
    return !scene.several && m_group.count() == 1 && m_knot > 0 && m_knot + 1 < count &&
           scene.can(m_curve, CurveModel::CanRemove) &&
           count > scene.model->limits(m_curve).fewestKnots;
}

QPointF CurveKnotsDrag::wantedWay(const CurveScene& scene, const CurveInput& input) {
    const QPointF shown = m_way.isNull() ? m_startPlace : scene.plot.toWidget(m_start + m_way);
    const QPointF pixel = m_grip.wanted(input, shown);
    const QPointF freedom = m_grip.freedom(input);
    // What has not moved keeps its number, which the way by the pixels might miss by a little.
    QPointF place = scene.plot.toCurve(pixel);
    if (pixel.x() == m_startPlace.x() || freedom.x() == 0)
        place.setX(m_start.x());
    if (pixel.y() == m_startPlace.y() || freedom.y() == 0)
        place.setY(m_start.y());
    m_snapped = {place, {}, {}};
    if (scene.snaps != input.has(Qt::AltModifier) && !m_grip.isFine())
        m_snapped = m_snap.snapped(scene, place, freedom.x() != 0, freedom.y() != 0);
    else
        m_snap.leave();
    const QPointF wanted = m_snapped.place - m_start;
    const QPointF way = m_group.limitedWay(wanted, m_start);
    // A fine drag turns back at once where it could go no further.
    if (m_grip.isFine() && way != wanted)
        m_grip.rebase(way.isNull() ? m_startPlace : scene.plot.toWidget(m_start + way));
    return way;
}

CurveCommands CurveKnotsDrag::move(const CurveScene& scene, const CurveInput& input) {
    m_mouse = input.mouse;
    if (!m_begun && !begin(scene))
        return end();
    CurveCommands commands;
    if (m_pulled) {
        if (CurvePick::isPulledOut(scene.plot, input.mouse))
            return commands;
        commands.push_back({CurveCommand::Restore});
        commands.back().curve = m_curve;
        commands.back().bytes = *m_pulled;
        m_pulled.reset();
    } else if (!m_group.isPresent(scene)) {
        return end();
    } else if (canPullOut(scene) && CurvePick::isPulledOut(scene.plot, input.mouse)) {
        m_pulled = scene.model->save(m_curve);
        m_snapped = {};
        m_moved = true;
        commands.push_back({CurveCommand::Remove});
        commands.back().curve = m_curve;
        commands.back().first = m_knot;
        return commands;
    }
    const QPointF way = wantedWay(scene, input);
    if (way == m_way || (m_waits && m_grip.farthest() < CurveDragDistance))
        return commands;
    m_way = way;
    m_moved = true;
    commands.push_back({CurveCommand::Move});
    commands.back().moves = m_group.moved(way);
    m_group.meet(commands.back().moves, m_curve, m_knot, way, m_snapped.place);
    m_group.keepApart(commands.back().moves);
    return commands;
}

CurveCommands CurveKnotsDrag::release(const CurveScene& scene) const {
    CurveCommands commands;
    if (!m_selects || m_moved || !isThere(scene))
        return commands;
    for (const int curve : scene.curves) {
        const bool isOwn = curve == m_curve;
        commands.push_back(
            selection(curve, isOwn ? m_knot : 0, isOwn ? m_knot : -1, CurveModel::SelectOnly));
    }
    return commands;
}

CurveCommands CurveKnotsDrag::modelChanged(const CurveScene& scene) {
    if (!m_begun)
        return isThere(scene) ? CurveCommands() : end();
    if (m_pulled || !m_group.isPresent(scene))
        return end();
    if (areThere(scene, m_group.moved(m_way)))
        return {};
    return begin(scene) ? CurveCommands() : end();
}

std::optional<QPointF> CurveKnotsDrag::pulledOut() const {
    return m_pulled ? std::make_optional(m_mouse) : std::nullopt;
}

CurveHandleDrag::CurveHandleDrag(const CurveHit& hit, const CurveInput& input)
    : m_hit(hit)
    , m_grip(hit.place, input) {}

CurveCommands CurveHandleDrag::move(const CurveScene& scene, const CurveInput& input) {
    constexpr double StepAngle = M_PI / 12;
    if (!scene.holds(m_hit.curve, m_hit.knot) || !scene.can(m_hit.curve, CurveModel::HasSlopes))
        return end();
    const CurveModel::Knot knot = scene.model->knot(m_hit.curve, m_hit.knot);
    const QPointF point(knot.x, knot.y);
    const QPointF place = CurvePick::shownAt(scene, m_hit.curve, point);
    const bool isIn = m_hit.part == CurveHit::HandleIn;
    const CurveHandles handles = CurvePick::handlesOf(scene, m_hit.curve, m_hit.knot);
    const QPointF wanted =
        m_grip.wanted(input, (isIn ? handles.in : handles.out).value_or(m_hit.place));
    if (m_grip.farthest() == 0)
        return {};
    QPointF way = isIn ? place - wanted : wanted - place;
    if (input.has(Qt::ShiftModifier)) {
        const double angle = std::round(std::atan2(way.y(), std::max(way.x(), 0.0)) / StepAngle);
        way = QPointF(std::cos(angle * StepAngle), std::sin(angle * StepAngle)) * length(way);
    }
    way.setX(std::max(way.x(), 1.0));
    const double slope = scene.plot.slope(point, way);
    if (!std::isfinite(slope))
        return {};
    CurveCommand command{CurveCommand::SetSlopes};
    command.curve = m_hit.curve;
    command.first = m_hit.knot;
    command.broken = knot.broken || input.has(Qt::AltModifier);
    command.place = {slope, slope};
    if (command.broken)
        command.place = isIn ? QPointF(slope, knot.slopeOut) : QPointF(knot.slopeIn, slope);
    if (command.place == QPointF(knot.slopeIn, knot.slopeOut) && command.broken == knot.broken)
        return {};
    return {command};
}

CurveFrameDrag::CurveFrameDrag(const CurveScene& scene, int grip, const CurveInput& input)
    : m_side(CurveFrame::side(grip))
    , m_group(CurveGroup::selected(scene))
    , m_low(m_group.low())
    , m_high(m_group.high())
    , m_about(sideAt({0, 0})) {
    m_start = scene.plot.toWidget(sideAt(m_side));
    m_grip = CurveGrip(m_start, input);
}

// Exactly at the ends, so that what is there stays.
QPointF CurveFrameDrag::sideAt(const QPointF& side) const {
    const auto at = [](double low, double high, double where) {
        return where < 0 ? low : where > 0 ? high : low + (high - low) / 2;
    };
    return {at(m_low.x(), m_high.x(), side.x()), at(m_low.y(), m_high.y(), side.y())};
}

CurveCommands CurveFrameDrag::move(const CurveScene& scene, const CurveInput& input) {
    if (!m_group.isPresent(scene))
        return end();
    const QPointF start = sideAt(m_side);
    const QPointF about = sideAt(input.has(Qt::AltModifier) ? QPointF() : -m_side);
    const QPointF shown(m_about.x() + (start.x() - m_about.x()) * m_scale.x(),
                        m_about.y() + (start.y() - m_about.y()) * m_scale.y());
    const QPointF pixel = m_grip.wanted(input, scene.plot.toWidget(shown));
    const QPointF freedom = m_grip.freedom(input);
    const QPointF wanted = scene.plot.toCurve(pixel);
    const auto factor = [](double place, double from, double to, bool isFree) {
        return isFree && from != to ? (place - from) / (to - from) : 1;
    };
    const bool isFreeX = m_side.x() != 0 && freedom.x() != 0 && pixel.x() != m_start.x();
    const bool isFreeY = m_side.y() != 0 && freedom.y() != 0 && pixel.y() != m_start.y();
    const QPointF scale =
        m_group.limitedScale(about, {factor(wanted.x(), about.x(), start.x(), isFreeX),
                                     factor(wanted.y(), about.y(), start.y(), isFreeY)});
    if (scale == m_scale && (about == m_about || scale == QPointF(1, 1)))
        return {};
    m_scale = scale;
    m_about = about;
    CurveCommand command{CurveCommand::Move};
    command.moves = m_group.scaled(about, scale);
    return {command};
}

CurveCommands CurveFrameDrag::modelChanged(const CurveScene& scene) {
    const bool isOwn =
        m_group.isPresent(scene) && areThere(scene, m_group.scaled(m_about, m_scale));
    return isOwn ? CurveCommands() : end();
}

CurveBoxDrag::CurveBoxDrag(const CurveScene& scene, const CurveInput& input)
    : m_mode(input.has(Qt::ShiftModifier)     ? CurveModel::SelectAdd
             : input.has(Qt::ControlModifier) ? CurveModel::SelectRemove
                                              : CurveModel::SelectOnly)
    , m_corner(scene.plot.toCurve(input.mouse))
    , m_mouse(input.mouse) {
    for (const int curve : scene.curves) {
        if (scene.holds(curve))
            m_before.push_back({curve, scene.model->selectedKnots(curve)});
    }
}

// Of the knots that were selected at the press: others may have been taken away meanwhile.
std::vector<int> CurveBoxDrag::stillThere(const CurveScene& scene, const Selected& before) const {
    std::vector<int> knots = before.knots;
    const int end = scene.model->knots(before.curve);
    knots.erase(std::lower_bound(knots.begin(), knots.end(), end), knots.end());
    return knots;
}

std::vector<int> CurveBoxDrag::wanted(const CurveScene& scene, const Selected& before) const {
    const std::vector<int> inside = CurvePick::knotsIn(scene, before.curve, rect(scene.plot));
    std::vector<int> wanted;
    const auto out = std::back_inserter(wanted);
    if (m_mode == CurveModel::SelectOnly)
        return inside;
    const std::vector<int> knots = stillThere(scene, before);
    if (m_mode == CurveModel::SelectAdd)
        std::set_union(knots.begin(), knots.end(), inside.begin(), inside.end(), out);
    else
        std::set_difference(knots.begin(), knots.end(), inside.begin(), inside.end(), out);
    return wanted;
}

CurveCommands CurveBoxDrag::move(const CurveScene& scene, const CurveInput& input) {
    m_mouse = input.mouse;
    CurveCommands commands;
    for (const Selected& before : m_before) {
        if (scene.holds(before.curve))
            addDifference(before.curve, scene.model->selectedKnots(before.curve),
                          wanted(scene, before), commands);
    }
    return commands;
}

CurveCommands CurveBoxDrag::takeBack(const CurveScene& scene) const {
    CurveCommands commands;
    for (const Selected& before : m_before) {
        if (scene.holds(before.curve))
            addDifference(before.curve, scene.model->selectedKnots(before.curve),
                          stillThere(scene, before), commands);
    }
    return commands;
}

QRectF CurveBoxDrag::rect(const CurvePlot& plot) const {
    return QRectF(plot.toWidget(m_corner), m_mouse).normalized();
}

CurvePanDrag::CurvePanDrag(const CurveScene& scene, const CurveInput& input)
    : m_plot(scene.plot)
    , m_mouse(input.mouse) {}

CurveCommands CurvePanDrag::move(const CurveScene& scene, const CurveInput& input) const {
    return {show(m_plot.panned(input.mouse - m_mouse, scene.nominal))};
}

CurveCommands CurvePanDrag::takeBack() const {
    return {show(m_plot.range())};
}

CurveZoomDrag::CurveZoomDrag(const CurveScene& scene, const CurveInput& input)
    : m_plot(scene.plot)
    , m_mouse(input.mouse) {}

CurveCommands CurveZoomDrag::move(const CurveScene& scene, const CurveInput& input) const {
    const QPointF way = input.mouse - m_mouse;
    return {show(m_plot.zoomed(m_mouse, std::exp2(way.x() / DoubleZoom),
                               std::exp2(-way.y() / DoubleZoom), scene.nominal))};
}

CurveCommands CurveZoomDrag::takeBack() const {
    return {show(m_plot.range())};
}

} // namespace Kestrel::UI
