#pragma once

#include <QMarginsF>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <Qt>

namespace Kestrel::UI {

/** The part of a scope that is seen. Its whole is 0 to 1 each way, u rightwards and v upwards. */
struct ScopeViewport {
    static constexpr double MostZoom = 64;

    double left = 0;
    double bottom = 0;
    double width = 1;
    double height = 1;

    /** Zoomed so that what is at `uv` stays there; in either direction only where it may. */
    ScopeViewport zoomed(const QPointF& uv, double factor, Qt::Orientations along) const;
    /** Moved by a part of the whole. */
    ScopeViewport moved(const QPointF& uv) const;
    bool isWhole() const { return width >= 1 && height >= 1; }

    friend bool operator==(const ScopeViewport& a, const ScopeViewport& b) {
        return a.left == b.left && a.bottom == b.bottom && a.width == b.width &&
               a.height == b.height;
    }
};

/** Where everything of a scope lies, in logical pixels of its widget. */
struct ScopeGeometry {
    /** Room is left for the margins of labels, and a little around the plot. With `square` the plot is
        one, in the middle. */
    ScopeGeometry(const QSizeF& size, const QMarginsF& margins, const ScopeViewport& seen,
                  bool square, double ratio);

    QPointF toWidget(const QPointF& uv) const;
    QPointF fromWidget(const QPointF& position) const;
    double x(double u) const { return toWidget({u, 0}).x(); }
    double y(double v) const { return toWidget({0, v}).y(); }

    QRectF bounds;
    QRectF plot; ///< between device pixels
    ScopeViewport view;
    double ratio = 1; ///< device pixels to a logical one
};

} // namespace Kestrel::UI
