#pragma once

#include <KxUI/curveedit/CurveModel.h>

namespace Kestrel::UI::CurveLimits {

/** Infinite ones. */
CurveModel::Limits none();

bool isSame(const CurveModel::Limits& a, const CurveModel::Limits& b);

/** Whether these are indices within a count, one at least, that rise. */
bool areIndices(const std::vector<int>& knots, std::size_t count);

/** The least x of a knot behind one at `x`, and the greatest one of a knot before it. */
double leastBehind(double x, double gap);
double mostBefore(double x, double gap);

/** `x` on the grid of the limits, if they have one. */
double onStep(const CurveModel::Limits& limits, double x);

/** The range where a knot between these neighbours (infinities without one) may be; `low` is above
    `high` where there is no room. */
struct Room {
    double low = 0;
    double high = 0;

    static Room between(const CurveModel::Limits& limits, double before, double after);
    bool isEmpty() const { return !(low <= high); }
    double nearest(double x) const;
};

/** The x nearest to `x` that a knot between these neighbours may have, on the grid if there is one.
    False where there is no room. */
bool place(const CurveModel::Limits& limits, double before, double after, double& x);

/** Whether a coordinate may become another one: within its limits, or left where it is. */
bool mayBecome(double was, double becomes, double low, double high);

/** Whether neighbours that were so far apart may come so near. */
bool keepsGap(double x, double nextX, double gap, double was);

} // namespace Kestrel::UI::CurveLimits
