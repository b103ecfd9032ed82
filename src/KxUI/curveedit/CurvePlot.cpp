#include <KxUI/curveedit/CurvePlot_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

CurveSpan spanX(const QRectF& range) {
    return {range.left(), range.left() + range.width()};
}

CurveSpan spanY(const QRectF& range) {
    return {range.top(), range.top() + range.height()};
}

QRectF rangeOf(const CurveSpan& x, const CurveSpan& y) {
    return {x.low, y.low, x.width(), y.width()};
}

} // namespace

CurvePlot::CurvePlot(const QRectF& rect, const QRectF& range, const Scales& scales)
    : m_rect(rect.left(), rect.top(), std::max(rect.width(), 1.0), std::max(rect.height(), 1.0))
    , m_x(scales.x, spanX(range), m_rect.left(), m_rect.width(), scales.shadowBase)
    , m_y(scales.y, spanY(range), m_rect.bottom(), -m_rect.height(), scales.shadowBase) {}

QRectF CurvePlot::range() const {
    return rangeOf(m_x.span(), m_y.span());
}

QPointF CurvePlot::direction(const QPointF& point, double slope) const {
    const double x = m_x.pixelsPerUnit(point.x());
    const double y = slope * m_y.pixelsPerUnit(point.y());
    const double length = std::hypot(x, y);
    if (!std::isfinite(length)) // as steep as can be
        return {0, y < 0 ? -1.0 : 1.0};
    return length > 0 ? QPointF(x, y) / length : QPointF(1, 0);
}

double CurvePlot::slope(const QPointF& point, const QPointF& way) const {
    return (way.y() / m_y.pixelsPerUnit(point.y())) / (way.x() / m_x.pixelsPerUnit(point.x()));
}

QRectF CurvePlot::zoomed(const QPointF& position, double factorX, double factorY,
                         const QRectF& nominal) const {
    return rangeOf(m_x.zoomed(position.x(), factorX, spanX(nominal)),
                   m_y.zoomed(position.y(), factorY, spanY(nominal)));
}

QRectF CurvePlot::panned(const QPointF& pixels, const QRectF& nominal) const {
    return rangeOf(m_x.panned(pixels.x(), spanX(nominal)), m_y.panned(pixels.y(), spanY(nominal)));
}

QRectF limitedCurveRange(const QRectF& range, const QRectF& nominal) {
    return rangeOf(limitedSpan(spanX(range), spanX(nominal)),
                   limitedSpan(spanY(range), spanY(nominal)));
}

} // namespace Kestrel::UI
