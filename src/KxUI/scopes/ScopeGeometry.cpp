#include <KxUI/scopes/ScopeGeometry_p.h>

#include <KxUI/kit/Crisp_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr double Padding = 6; // so that a trace at the edge is seen as a trace

void zoomAlong(double& start, double& size, double at, double factor) {
    const double wanted = std::clamp(size / factor, 1 / ScopeViewport::MostZoom, 1.0);
    start = std::clamp(at - (at - start) * wanted / size, 0.0, 1 - wanted);
    size = wanted;
}

} // namespace

ScopeViewport ScopeViewport::zoomed(const QPointF& uv, double factor,
                                    Qt::Orientations along) const {
    ScopeViewport result = *this;
    if (!(factor > 0))
        return result;
    if (along & Qt::Horizontal)
        zoomAlong(result.left, result.width, uv.x(), factor);
    if (along & Qt::Vertical)
        zoomAlong(result.bottom, result.height, uv.y(), factor);
    return result;
}

ScopeViewport ScopeViewport::moved(const QPointF& uv) const {
    ScopeViewport result = *this;
    result.left = std::clamp(left + uv.x(), 0.0, 1 - width);
    result.bottom = std::clamp(bottom + uv.y(), 0.0, 1 - height);
    return result;
}

ScopeGeometry::ScopeGeometry(const QSizeF& size, const QMarginsF& margins,
                             const ScopeViewport& seen, bool square, double pixelRatio)
    : bounds(QPointF(), size)
    , view(seen)
    , ratio(pixelRatio) {
    QRectF inner = bounds.marginsRemoved(margins + Padding);
    inner.setSize(inner.size().expandedTo(QSizeF(1, 1)));
    if (square) {
        const double side = std::min(inner.width(), inner.height());
        const QPointF middle = inner.center();
        inner = QRectF(middle.x() - side / 2, middle.y() - side / 2, side, side);
    }
    plot = rectOnPixels(inner, ratio);
}

QPointF ScopeGeometry::toWidget(const QPointF& uv) const {
    return {plot.left() + (uv.x() - view.left) / view.width * plot.width(),
            plot.bottom() - (uv.y() - view.bottom) / view.height * plot.height()};
}

QPointF ScopeGeometry::fromWidget(const QPointF& position) const {
    return {view.left + (position.x() - plot.left()) / plot.width() * view.width,
            view.bottom + (plot.bottom() - position.y()) / plot.height() * view.height};
}

} // namespace Kestrel::UI
