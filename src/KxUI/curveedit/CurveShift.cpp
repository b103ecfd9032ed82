#include <KxUI/curveedit/CurveShift_p.h>

#include <KxUI/curveedit/CurveLimits_p.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Kestrel::UI::CurveShift {

namespace {

constexpr double Endless = std::numeric_limits<double>::infinity();

using Limits = CurveModel::Limits;
using Move = CurveModel::Move;

Move stay(const CurveModel& model, const CurvePlace& place) {
    const CurveModel::Knot knot = model.knot(place.curve, place.knot);
    return {place.curve, place.knot, knot.x, knot.y};
}

double xOf(const CurveModel& model, int curve, int knot, double without) {
    return knot >= 0 && knot < model.knots(curve) ? model.knot(curve, knot).x : without;
}

double nearest(double value, double low, double high) {
    return std::max(low, std::min(value, high));
}

bool canMove(const CurveModel& model, int curve, Axis axis) {
    return axis == Y || model.abilities(curve).testFlag(CurveModel::CanMoveX);
}

/** How far a number may go down and up. What lies beyond a limit stays there. */
struct Way {
    double down = Endless;
    double up = Endless;

    void narrow(double value, double low, double high) {
        down = std::min(down, std::max(0.0, value - low));
        up = std::min(up, std::max(0.0, high - value));
    }
};

Way wayOf(const CurveModel& model, const std::vector<CurvePlace>& places, Axis axis) {
    Way way;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto [curve, knot] = places[i];
        const Limits limits = model.limits(curve);
        const Move at = stay(model, places[i]);
        if (axis == Y) {
            way.narrow(at.y, limits.lowY, limits.highY);
            continue;
        }
        const auto isPlace = [&](std::size_t other, int index) {
            return other < places.size() && places[other].curve == curve &&
                   places[other].knot == index;
        };
        // Neighbours that go along are none.
        const double before =
            isPlace(i - 1, knot - 1) ? -Endless : xOf(model, curve, knot - 1, -Endless);
        const double after =
            isPlace(i + 1, knot + 1) ? Endless : xOf(model, curve, knot + 1, Endless);
        const auto room = CurveLimits::Room::between(limits, before, after);
        way.narrow(at.x, room.low, room.high);
    }
    return way;
}

/** Whole steps of all grids together, towards 0. */
double onSteps(const CurveModel& model, const std::vector<CurvePlace>& places, double by) {
    double step = 0.0;
    for (const CurvePlace& place : places)
        step = std::max(step, model.limits(place.curve).stepX);
    return step > 0.0 ? std::trunc(by / step) * step : by;
}

double changed(double value, QChar operation, double operand) {
    switch (operation.unicode()) {
    case '*':
        return value * operand;
    case '/':
        return value / operand;
    default:
        return operand;
    }
}

} // namespace

std::vector<Move> moveTo(const CurveModel& model, const CurvePlace& place, Axis axis,
                         double value) {
    Move move = stay(model, place);
    const Limits limits = model.limits(place.curve);
    if (!canMove(model, place.curve, axis) || std::isnan(value))
        return {};
    if (axis == Y) {
        move.y = nearest(value, limits.lowY, limits.highY);
        return {move};
    }
    const double before = xOf(model, place.curve, place.knot - 1, -Endless);
    const double after = xOf(model, place.curve, place.knot + 1, Endless);
    move.x = value;
    if (!CurveLimits::place(limits, before, after, move.x))
        return {};
    return {move};
}

std::vector<Move> moveBy(const CurveModel& model, const std::vector<CurvePlace>& places, Axis axis,
                         double by) {
    const bool canAll = std::all_of(places.begin(), places.end(), [&](const CurvePlace& place) {
        return canMove(model, place.curve, axis);
    });
    if (!canAll || !std::isfinite(by))
        return {};
    const Way way = wayOf(model, places, axis);
    double limited = nearest(by, -way.down, way.up);
    if (axis == X)
        limited = onSteps(model, places, limited);
    std::vector<Move> moves;
    for (const CurvePlace& place : places) {
        moves.push_back(stay(model, place));
        (axis == X ? moves.back().x : moves.back().y) += limited;
    }
    return moves;
}

std::vector<Move> moveEach(const CurveModel& model, const std::vector<CurvePlace>& places,
                           Axis axis, QChar operation, double operand) {
    if (operation == QLatin1Char('+') || operation == QLatin1Char('-'))
        return moveBy(model, places, axis, operation == QLatin1Char('-') ? -operand : operand);
    const bool isFactor = operation == QLatin1Char('*') || operation == QLatin1Char('/');
    if (!isFactor && !(operation == QLatin1Char('=') && axis == Y))
        return {};
    std::vector<Move> moves;
    for (const CurvePlace& place : places) {
        const Limits limits = model.limits(place.curve);
        Move move = stay(model, place);
        double& number = axis == X ? move.x : move.y;
        number = changed(number, operation, operand);
        if (std::isnan(number) || !canMove(model, place.curve, axis))
            return {};
        if (axis == X)
            move.x = nearest(CurveLimits::onStep(limits, move.x), limits.lowX, limits.highX);
        else
            move.y = nearest(move.y, limits.lowY, limits.highY);
        moves.push_back(move);
    }
    return moves;
}

} // namespace Kestrel::UI::CurveShift
