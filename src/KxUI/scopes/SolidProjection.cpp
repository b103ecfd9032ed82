#include <KxUI/scopes/SolidProjection_p.h>

#include <QVector4D>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr double DegreesPerPixel = 0.5;
constexpr double ViewAngle = 30; // degrees, over the shorter side
constexpr double Depth = 1.5;    // of what is not cut off, in reaches

double radians(double degrees) {
    return degrees * M_PI / 180;
}

} // namespace

SolidOrbit SolidOrbit::normalized() const {
    const double around = std::isfinite(yaw) ? std::remainder(yaw, 360.0) : 0;
    const double above = std::isnan(pitch) ? 0 : std::clamp(pitch, -90.0, 90.0);
    return {around == 180 ? -180 : around, above};
}

SolidOrbit SolidOrbit::turned(const QPointF& path) const {
    return SolidOrbit{yaw - path.x() * DegreesPerPixel, pitch + path.y() * DegreesPerPixel}
        .normalized();
}

SolidProjection::SolidProjection(const SolidOrbit& orbit, bool perspective, double reach,
                                 const ScopeGeometry& geometry)
    : m_perspective(perspective)
    , m_plot(geometry.plot) {
    const double distance = reach / std::sin(radians(ViewAngle / 2));
    const double up = std::sin(radians(orbit.pitch));
    const double level = std::cos(radians(orbit.pitch));
    const QVector3D direction(float(level * std::sin(radians(orbit.yaw))), float(up),
                              float(level * std::cos(radians(orbit.yaw))));
    m_eye = perspective ? direction * float(distance) : direction;

    // The part of the picture that is seen, then its sides, then the space.
    const ScopeViewport& seen = geometry.view;
    const auto part = [](double start, double size) {
        return std::pair(float(1 / size), float((1 - 2 * start - size) / size));
    };
    const auto [width, left] = part(seen.left, seen.width);
    const auto [height, bottom] = part(seen.bottom, seen.height);
    m_matrix = QMatrix4x4(width, 0, 0, left, 0, height, 0, bottom, 0, 0, 1, 0, 0, 0, 0, 1);
    const double side = std::min(m_plot.width(), m_plot.height());
    m_matrix.scale(float(side / m_plot.width()), float(side / m_plot.height()), 1);
    const double deep = reach * Depth;
    if (perspective)
        m_matrix.perspective(float(ViewAngle), 1, float(distance - deep), float(distance + deep));
    else
        m_matrix.ortho(-float(reach), float(reach), -float(reach), float(reach),
                       float(distance - deep), float(distance + deep));
    m_matrix.translate(0, 0, -float(distance));
    m_matrix.rotate(float(orbit.pitch), 1, 0, 0);
    m_matrix.rotate(-float(orbit.yaw), 0, 1, 0);
}

QPointF SolidProjection::toWidget(const QVector3D& place) const {
    const QVector4D at = m_matrix * QVector4D(place, 1);
    return {m_plot.left() + (double(at.x() / at.w()) + 1) / 2 * m_plot.width(),
            m_plot.top() + (1 - double(at.y() / at.w())) / 2 * m_plot.height()};
}

double SolidProjection::depth(const QVector3D& place) const {
    const QVector4D at = m_matrix * QVector4D(place, 1);
    return double(at.z() / at.w());
}

QVector3D SolidProjection::towardsEye(const QVector3D& place) const {
    return m_perspective ? (m_eye - place).normalized() : m_eye;
}

bool SolidProjection::isFront(const QVector3D& place, const QVector3D& outward) const {
    return QVector3D::dotProduct(outward, towardsEye(place)) > 0;
}

} // namespace Kestrel::UI
