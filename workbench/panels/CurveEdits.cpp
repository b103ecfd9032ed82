#include "panels/CurveEdits.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Kestrel::Workbench {
namespace {

constexpr double Margin = 8.0;
constexpr double KnotReach = 9.0;
constexpr double LineReach = 6.0;
constexpr double PullOutDistance = 32.0;

// How near an edit brings two knots. Nearer ones could not be told apart nor grabbed again.
constexpr float SmallestGap = 1.0F / 512.0F;

// Also makes a number of what is none.
double limited(double value, double lowest, double highest) {
    return value > lowest ? std::min(value, highest) : lowest;
}

} // namespace

CurveViewGeometry CurveViewGeometry::of(const QSize& size) {
    const double width = std::max(1.0, size.width() - 2.0 * Margin);
    const double height = std::max(1.0, size.height() - 2.0 * Margin);
    return {QRectF(Margin, Margin, width, height)};
}

QPointF CurveViewGeometry::toWidget(const QPointF& point) const {
    return {plot.left() + point.x() * plot.width(), plot.bottom() - point.y() * plot.height()};
}

QPointF CurveViewGeometry::toCurve(const QPointF& position) const {
    return {(position.x() - plot.left()) / plot.width(),
            (plot.bottom() - position.y()) / plot.height()};
}

QPointF CurveViewGeometry::positionOf(const UI::Knot& knot) const {
    return toWidget({limited(double(knot.x), 0.0, 1.0), limited(double(knot.y), 0.0, 1.0)});
}

int CurveViewGeometry::knotAt(const UI::Curve& curve, const QPointF& position) const {
    int nearest = -1;
    double reach = KnotReach;
    for (int i = 0; i < curve.numKnots(); ++i) {
        const QPointF way = positionOf(curve.knot(i)) - position;
        const double distance = std::hypot(way.x(), way.y());
        if (distance <= reach) {
            reach = distance;
            nearest = i;
        }
    }
    return nearest;
}

bool CurveViewGeometry::isOnLine(const UI::Curve& curve, const QPointF& position) const {
    const double x = toCurve(position).x();
    const QPointF onLine = toWidget({x, double(curve.valueAt(float(x)))});
    return std::abs(onLine.y() - position.y()) <= LineReach;
}

bool CurveViewGeometry::isPulledOut(const QPointF& position) const {
    const double away = PullOutDistance;
    return !plot.adjusted(-away, -away, away, away).contains(position);
}

QPolygonF CurveViewGeometry::line(const UI::Curve& curve) const {
    const auto size = static_cast<unsigned int>(plot.width()) + 1;
    std::vector<float> table(size);
    curve.buildLUT(size, table.data());
    QPolygonF line;
    line.reserve(int(size));
    for (unsigned int i = 0; i < size; ++i) {
        const double x = size > 1 ? i / double(size - 1) : 0.0;
        line.append(toWidget({x, limited(double(table[i]), -1.0, 2.0)}));
    }
    return line;
}

int selectedKnot(const UI::Curve& curve) {
    for (int i = 0; i < curve.numKnots(); ++i) {
        if (curve.knot(i).selected)
            return i;
    }
    return -1;
}

void selectKnot(UI::Curve& curve, int index) {
    for (int i = 0; i < curve.numKnots(); ++i) {
        UI::Knot knot = curve.knot(i);
        knot.selected = i == index;
        curve.setKnot(i, knot);
    }
}

void moveKnot(UI::Curve& curve, int index, const QPointF& point) {
    UI::Knot knot = curve.knot(index);
    const float lowest = index > 0 ? std::max(0.0F, curve.knot(index - 1).x + SmallestGap) : 0.0F;
    const float highest =
        index + 1 < curve.numKnots() ? std::min(1.0F, curve.knot(index + 1).x - SmallestGap) : 1.0F;
    if (lowest <= highest)
        knot.x = float(limited(point.x(), double(lowest), double(highest)));
    knot.y = float(limited(point.y(), 0.0, 1.0));
    curve.setKnot(index, knot);
}

int addKnot(UI::Curve& curve, const QPointF& point) {
    if (curve.numKnots() >= curve.maxKnots())
        return -1;
    int index = 0;
    while (index < curve.numKnots() && double(curve.knot(index).x) <= point.x())
        ++index;
    const float before = index > 0 ? curve.knot(index - 1).x + SmallestGap : 0.0F;
    const float after = index < curve.numKnots() ? curve.knot(index).x - SmallestGap : 1.0F;
    if (before > after)
        return -1;
    curve.insertKnotAt(index);
    moveKnot(curve, index, point);
    selectKnot(curve, index);
    return index;
}

bool removeKnot(UI::Curve& curve, int index) {
    const int count = curve.numKnots();
    curve.removeKnotAt(index);
    if (curve.numKnots() == count)
        return false;
    selectKnot(curve, std::min(index, curve.numKnots() - 1));
    return true;
}

UI::Curve CurveDrag::curveAt(const CurveViewGeometry& geometry, const QPointF& position) const {
    UI::Curve curve = start;
    const bool isEnd = knot == 0 || knot == curve.numKnots() - 1;
    if (!isEnd && geometry.isPulledOut(position)) {
        removeKnot(curve, knot);
        selectKnot(curve, -1);
    } else {
        moveKnot(curve, knot, geometry.toCurve(position - grip));
    }
    return curve;
}

} // namespace Kestrel::Workbench
