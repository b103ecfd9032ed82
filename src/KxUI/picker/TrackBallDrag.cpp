#include <KxUI/picker/TrackBallDrag_p.h>

#include <KxUI/kit/EditModifiers.h>

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// Pixels around the middle where the angle of the mouse says nothing.
constexpr double DeadMiddle = 6.0;

} // namespace

TrackBallDrag::Kind TrackBallDrag::kindFor(const TrackBallGeometry& geometry, const QPointF& mouse,
                                           Qt::MouseButton button) {
    if (!geometry.isUsable())
        return None;
    if (button == Qt::RightButton)
        return Slide;
    if (button != Qt::LeftButton)
        return None;
    switch (geometry.partAt(mouse)) {
    case TrackBallGeometry::Ball:
        return Roll;
    case TrackBallGeometry::Ring:
        return Turn;
    case TrackBallGeometry::Nowhere:
        break;
    }
    return None;
}

TrackBallDrag::Gear TrackBallDrag::gearFor(Qt::KeyboardModifiers modifiers) const {
    if (m_kind != Roll)
        return {EditModifiers::factor(modifiers), false};
    // Control has another meaning here, so fine takes both.
    const bool shift = modifiers.testFlag(Qt::ShiftModifier);
    if (!modifiers.testFlag(Qt::ControlModifier))
        return {EditModifiers::factor(shift ? Qt::ShiftModifier : Qt::NoModifier), false};
    if (shift)
        return {EditModifiers::factor(Qt::ControlModifier), false};
    return {1.0, true};
}

void TrackBallDrag::press(const TrackBallScene& scene, const TrackBallInput& input,
                          Qt::MouseButton button) {
    m_kind = kindFor(scene.geometry, input.mouse, button);
    m_gear = gearFor(input.modifiers);
    m_mouse = input.mouse;
    m_angle = scene.geometry.angleAt(input.mouse);
    rebase(scene);
}

void TrackBallDrag::rebase(const TrackBallScene& scene) {
    m_anchor = m_mouse;
    m_pose = scene.pose;
    m_turned = 0.0;
    m_axis.reset();
}

void TrackBallDrag::turnTo(const TrackBallGeometry& geometry, const QPointF& mouse) {
    const QPointF away = mouse - geometry.centre;
    if (std::hypot(away.x(), away.y()) < DeadMiddle)
        return;
    const double angle = geometry.angleAt(mouse);
    m_turned += std::remainder(angle - m_angle, 2.0 * M_PI) * geometry.ringMiddle();
    m_angle = angle;
}

QPointF TrackBallDrag::rolled(const QPointF& moved) {
    if (!m_gear.onOneAxis)
        return moved;
    const double x = std::fabs(moved.x());
    const double y = std::fabs(moved.y());
    if (!m_axis && std::max(x, y) >= AxisSlack)
        m_axis = x >= y ? Qt::Horizontal : Qt::Vertical;
    if (!m_axis)
        return {};
    return *m_axis == Qt::Horizontal ? QPointF(moved.x(), 0.0) : QPointF(0.0, moved.y());
}

TrackBallPose TrackBallDrag::move(const TrackBallScene& scene, const TrackBallInput& input) {
    const Gear gear = gearFor(input.modifiers);
    if (gear.factor != m_gear.factor || gear.onOneAxis != m_gear.onOneAxis) {
        m_gear = gear;
        rebase(scene);
    }
    if (m_kind == Turn)
        turnTo(scene.geometry, input.mouse);
    m_mouse = input.mouse;
    const QPointF moved = m_mouse - m_anchor;
    TrackBallPose pose = m_pose;
    if (m_kind == Roll) {
        const double scale = scene.sensitivity * m_gear.factor / scene.geometry.ball;
        const QPointF way = rolled(moved) * scale;
        pose.balance += QPointF(way.x(), -way.y());
    } else if (m_kind != None) {
        const double pixels = m_kind == Turn ? m_turned : moved.x();
        // Exactly what it was where the mouse is back.
        if (pixels != 0.0)
            pose.master = scene.scale.masterAfter(m_pose, pixels * StepsPerPixel * m_gear.factor);
    }
    return pose;
}

} // namespace Kestrel::UI
