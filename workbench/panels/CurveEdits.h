#pragma once

#include <KxUI/curves/Curve.h>

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QSize>

namespace Kestrel::Workbench {

/** Where the unit square of a curve lies in a widget: x rightwards, y upwards. */
struct CurveViewGeometry {
    /** In pixels of the widget; leaves room around it for knots at the edge. */
    QRectF plot;

    static CurveViewGeometry of(const QSize& size);

    QPointF toWidget(const QPointF& point) const;
    QPointF toCurve(const QPointF& position) const;

    /** A knot is shown, and found, at the edge of the plot where it is outside the unit square. */
    QPointF positionOf(const UI::Knot& knot) const;

    /** The knot that a press at `position` takes, the nearest of several; -1 without one. */
    int knotAt(const UI::Curve& curve, const QPointF& position) const;

    /** Whether a press at `position` means a place on the curve's line. */
    bool isOnLine(const UI::Curve& curve, const QPointF& position) const;

    /** Whether a knot dragged to `position` has been pulled out of the view. */
    bool isPulledOut(const QPointF& position) const;

    /** The curve's line, a point for each pixel of the plot's width. */
    QPolygonF line(const UI::Curve& curve) const;
};

/** The index of the selected knot; -1 without one. */
int selectedKnot(const UI::Curve& curve);

/** Selects the knot at `index` alone; none for -1. */
void selectKnot(UI::Curve& curve, int index);

/** Moves a knot as near to `point` as its neighbours and the unit square let it. */
void moveKnot(UI::Curve& curve, int index, const QPointF& point);

/** Adds a knot at `point` and selects it. Its index, or -1 where the curve is full or its
    neighbours leave no room. */
int addKnot(UI::Curve& curve, const QPointF& point);

/** Removes a knot and selects its neighbour. False where only two are left. */
bool removeKnot(UI::Curve& curve, int index);

/** What a press on a knot does to the curve until its release. */
struct CurveDrag {
    /** The curve when the drag began, with the knot that is dragged. */
    UI::Curve start;
    int knot = -1;
    /** From the knot to the cursor, in pixels, so that a press moves nothing. */
    QPointF grip;

    /** The curve with the cursor at `position`: without the knot where that is pulled out, which
        the curve's ends never are. */
    UI::Curve curveAt(const CurveViewGeometry& geometry, const QPointF& position) const;
};

} // namespace Kestrel::Workbench
