#pragma once

#include <KxUI/curveedit/CurveAxis_p.h>

#include <QPointF>
#include <QRectF>

namespace Kestrel::UI {

/** Where curves lie in a widget: a rectangle of it, and what of both axes that shows; x rightwards,
    y upwards. A range is a rectangle of the curves' numbers, whose top is the least y. */
class CurvePlot {
public:
    /** How both axes are drawn. */
    struct Scales {
        AxisScale x = AxisScale::Linear;
        AxisScale y = AxisScale::Linear;
        double shadowBase = CurveAxis::UsualShadowBase;
    };

    /** The unit square on a pixel. */
    CurvePlot() = default;
    /** An axis whose range is empty or not finite shows the unit. */
    CurvePlot(const QRectF& rect, const QRectF& range, const Scales& scales);
    CurvePlot(const QRectF& rect, const QRectF& range)
        : CurvePlot(rect, range, Scales()) {}

    const QRectF& rect() const { return m_rect; }
    QRectF range() const;
    const CurveAxis& xAxis() const { return m_x; }
    const CurveAxis& yAxis() const { return m_y; }
    bool isLinearX() const { return m_x.isLinear(); }
    bool isLinearY() const { return m_y.isLinear(); }

    double toX(double x) const { return m_x.pixelOf(x); }
    double toY(double y) const { return m_y.pixelOf(y); }
    double xAt(double pixel) const { return m_x.valueAt(pixel); }
    double yAt(double pixel) const { return m_y.valueAt(pixel); }
    QPointF toWidget(const QPointF& point) const { return {toX(point.x()), toY(point.y())}; }
    QPointF toCurve(const QPointF& position) const {
        return {xAt(position.x()), yAt(position.y())};
    }

    /** The way on the screen of a line with a slope, rightwards; of length 1. */
    QPointF direction(const QPointF& point, double slope) const;
    /** The slope of a line that goes `way` on the screen from a point; x of the way is not 0. */
    double slope(const QPointF& point, const QPointF& way) const;

    /** The range that shows everything `factor` times as large, with what is at `position` staying
        there, as far as the limits of zooming about a nominal range allow. */
    QRectF zoomed(const QPointF& position, double factorX, double factorY,
                  const QRectF& nominal) const;
    /** The range that shows everything moved so many pixels. */
    QRectF panned(const QPointF& pixels, const QRectF& nominal) const;

    friend bool operator==(const CurvePlot& a, const CurvePlot& b) {
        return a.m_rect == b.m_rect && a.m_x == b.m_x && a.m_y == b.m_y;
    }
    friend bool operator!=(const CurvePlot& a, const CurvePlot& b) { return !(a == b); }

private:
    QRectF m_rect{0, 0, 1, 1};
    CurveAxis m_x{AxisScale::Linear, {0, 1}, 0, 1};
    CurveAxis m_y{AxisScale::Linear, {0, 1}, 1, -1};
};

/** The nearest range to `range` that a zoom about `nominal` may show: finite, not empty, 1e-9 to 1e9
    times as wide and high as `nominal`. */
QRectF limitedCurveRange(const QRectF& range, const QRectF& nominal);

} // namespace Kestrel::UI
