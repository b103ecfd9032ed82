#include <KxUI/curveedit/CurveLimits_p.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>

namespace Kestrel::UI::CurveLimits {
namespace {

// What moves together comes a little nearer by rounding alone.
constexpr double GapSlack = 1e-6;
constexpr double RoundingSlack = 4e-16;

} // namespace

CurveModel::Limits none() {
    CurveModel::Limits limits;
    limits.lowX = limits.lowY = -HUGE_VAL;
    limits.highX = limits.highY = HUGE_VAL;
    return limits;
}

bool isSame(const CurveModel::Limits& a, const CurveModel::Limits& b) {
    const auto parts = [](const CurveModel::Limits& limits) {
        return std::tie(limits.lowX, limits.highX, limits.lowY, limits.highY, limits.gap,
                        limits.stepX, limits.fewestKnots, limits.mostKnots);
    };
    return parts(a) == parts(b);
}

bool areIndices(const std::vector<int>& knots, std::size_t count) {
    const auto falls = std::adjacent_find(knots.begin(), knots.end(), std::greater_equal<int>());
    return !knots.empty() && falls == knots.end() && knots.front() >= 0 &&
           std::size_t(knots.back()) < count;
}

double leastBehind(double x, double gap) {
    return std::max(x + gap, std::nextafter(x, HUGE_VAL));
}

double mostBefore(double x, double gap) {
    return std::min(x - gap, std::nextafter(x, -HUGE_VAL));
}

double onStep(const CurveModel::Limits& limits, double x) {
    if (!(limits.stepX > 0))
        return x;
    const double stepped = std::round(x / limits.stepX) * limits.stepX;
    return std::isfinite(stepped) ? stepped : x;
}

Room Room::between(const CurveModel::Limits& limits, double before, double after) {
    Room room{limits.lowX, limits.highX};
    if (before > -HUGE_VAL)
        room.low = std::max(room.low, leastBehind(before, limits.gap));
    if (after < HUGE_VAL)
        room.high = std::min(room.high, mostBefore(after, limits.gap));
    return room;
}

double Room::nearest(double x) const {
    return std::min(std::max(x, low), high);
}

bool place(const CurveModel::Limits& limits, double before, double after, double& x) {
    const Room room = Room::between(limits, before, after);
    if (room.isEmpty() || std::isnan(x))
        return false;
    double nearest = onStep(limits, room.nearest(x));
    if (nearest < room.low)
        nearest = onStep(limits, nearest + limits.stepX);
    else if (nearest > room.high)
        nearest = onStep(limits, nearest - limits.stepX);
    if (!(nearest >= room.low && nearest <= room.high) || !std::isfinite(nearest))
        return false;
    x = nearest;
    return true;
}

bool mayBecome(double was, double becomes, double low, double high) {
    return std::isfinite(becomes) && ((becomes >= low && becomes <= high) || becomes == was);
}

bool keepsGap(double x, double nextX, double gap, double was) {
    const double slack = gap * GapSlack + RoundingSlack * std::max(std::abs(x), std::abs(nextX));
    return nextX > x && nextX - x >= std::min(gap, was) - slack;
}

} // namespace Kestrel::UI::CurveLimits
