#pragma once

#include <KxUI/curveedit/CurveScene_p.h>

#include <QLineF>
#include <QPointF>

#include <optional>
#include <vector>

namespace Kestrel::UI {

/** What a press takes. */
struct CurveHit {
    enum Part { Nothing, Knot, HandleIn, HandleOut, Line };

    Part part = Nothing;
    int curve = -1;
    int knot = -1;
    /** Where it is shown. */
    QPointF place;
    /** Of a line: where on the axis. */
    double x = 0;
    /** How many other knots are about as near. */
    int rivals = 0;

    explicit operator bool() const { return part != Nothing; }
    bool isHandle() const { return part == HandleIn || part == HandleOut; }
};

/** The handles of a knot: where its slopes are grabbed. */
struct CurveHandles {
    std::optional<QPointF> in;
    std::optional<QPointF> out;
};

/** What lies under the mouse. Knots come before lines, handles of selected knots before both. */
namespace CurvePick {

constexpr double KnotReach = 9; // pixels, as all of these
constexpr double HandleReach = 8;
constexpr double LineReach = 6;
constexpr double PullOutDistance = 32;
constexpr double HandleLength = 48;
/** To either side, of a slope that cannot be grabbed, and how near the mouse points at it. */
constexpr double SlopeLength = 16;
constexpr double SlopeReach = 4;
/** Of knots whose distances differ by this or less, others things decide. */
constexpr double TieReach = 2;
/** Of more selected knots no handles show. */
constexpr int MostHandles = 32;

/** All of it. With `previous`, which was taken at the same place just before, the next one of the
    knots that are about as near. */
CurveHit at(const CurveScene& scene, const QPointF& position, const CurveHit* previous = nullptr);

/** The nearest knot within reach; of several that are about as near a selected one, else one of the
    current curve. */
CurveHit knotAt(const CurveScene& scene, const QPointF& position,
                const CurveHit* previous = nullptr);
CurveHit handleAt(const CurveScene& scene, const QPointF& position);
/** The current curve's line comes before others. */
CurveHit lineAt(const CurveScene& scene, const QPointF& position);

/** A knot that lies outside of its limits is shown, and found, at their edge. */
QPointF shownAt(const CurveScene& scene, int curve, const QPointF& place);

/** The handles that a knot shows; none without slopes to change. */
CurveHandles handlesOf(const CurveScene& scene, int curve, int knot);
/** Whether so few knots are selected that they show their handles. */
bool showsHandles(const CurveScene& scene);

/** How the line goes through a knot whose slope follows from others. */
QLineF slopeLineOf(const CurveScene& scene, int curve, int knot);
/** Whether the mouse is on such a line of a selected knot. */
bool isOnSlopeLine(const CurveScene& scene, const QPointF& position);

/** Whether a knot that is dragged to `position` has been pulled out of the view. */
bool isPulledOut(const CurvePlot& plot, const QPointF& position);

/** The knots of a curve whose places are shown within a rectangle of the widget, rising. */
std::vector<int> knotsIn(const CurveScene& scene, int curve, const QRectF& rect);

} // namespace CurvePick
} // namespace Kestrel::UI
