#pragma once

#include <KxUI/scopes/ScopeGeometry_p.h>

#include <QMatrix4x4>
#include <QPointF>
#include <QVector3D>

namespace Kestrel::UI {

/** From where a solid is looked at. */
struct SolidOrbit {
    double yaw = 0;   ///< degrees around it; 0: along z, with x to the right
    double pitch = 0; ///< degrees above it, -90 to 90

    /** Within those ranges, yaw -180 up to 180; what is no number is 0. */
    SolidOrbit normalized() const;
    /** After the mouse went so far, in logical pixels: the solid follows it. */
    SolidOrbit turned(const QPointF& path) const;

    friend bool operator==(const SolidOrbit& a, const SolidOrbit& b) {
        return a.yaw == b.yaw && a.pitch == b.pitch;
    }
};

/** How what is around the middle of a space comes onto a scope. */
class SolidProjection {
public:
    /** `reach`: how far from the middle is seen without zoom, all around. */
    SolidProjection(const SolidOrbit& orbit, bool perspective, double reach,
                    const ScopeGeometry& geometry);

    /** To -1..1 in the plot, z -1 being nearest, as DrawingContext::points() reads it. */
    const QMatrix4x4& matrix() const { return m_matrix; }
    QPointF toWidget(const QVector3D& place) const;
    /** Less is nearer: -1 to 1 within the reach, and half as far again. */
    double depth(const QVector3D& place) const;
    /** From a place towards the eye, of length 1. */
    QVector3D towardsEye(const QVector3D& place) const;
    /** Whether a face at a place, with this normal, is seen from outside. */
    bool isFront(const QVector3D& place, const QVector3D& outward) const;

private:
    QMatrix4x4 m_matrix;
    QVector3D m_eye; // or, without perspective, the direction to it
    bool m_perspective;
    QRectF m_plot;
};

} // namespace Kestrel::UI
