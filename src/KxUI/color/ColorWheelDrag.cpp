#include <KxUI/color/ColorWheelDrag_p.h>

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Wheel = ColorWheel;

double length(const QPointF& point) {
    return std::hypot(point.x(), point.y());
}

Wheel::DragModes modesOf(const ColorWheelScene& scene, const QPointF& point, Qt::MouseButton button,
                         Qt::KeyboardModifiers modifiers) {
    constexpr double Slack = 3.0;
    const bool shift = modifiers.testFlag(Qt::ShiftModifier);
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    const bool alt = modifiers.testFlag(Qt::AltModifier);
    const ColorWheelGeometry& geometry = scene.geometry;
    if (!geometry.isUsable())
        return Wheel::NoDrag;
    if (button == Qt::MiddleButton) {
        if (!scene.zoomEnabled)
            return Wheel::NoDrag;
        return control || alt ? Wheel::DragZoom : Wheel::DragPan;
    }
    if (button != Qt::LeftButton && button != Qt::RightButton)
        return Wheel::NoDrag;

    const double distance = length(point);
    const bool left = button == Qt::LeftButton && !alt;
    if (left && distance > geometry.ringOuter + Slack)
        return Wheel::NoDrag;
    if (geometry.mode == Wheel::SquareWheel) {
        if (left && distance > geometry.disc)
            return Wheel::DragHue;
        return Wheel::DragSaturation | Wheel::DragValue;
    }
    if (!left || (geometry.mode == Wheel::ValueRingWheel &&
                  distance > (geometry.disc + geometry.ringInner) / 2.0))
        return Wheel::DragValue;
    if (shift && control && scene.relative)
        return Wheel::DragHue | Wheel::DragSaturation | Wheel::DragAbsolute;
    if (shift != control)
        return shift ? Wheel::DragSaturation : Wheel::DragHue;
    return Wheel::DragHue | Wheel::DragSaturation;
}

} // namespace

bool ColorWheelDrag::changesColor() const {
    return (m_modes & (Wheel::DragHue | Wheel::DragSaturation | Wheel::DragValue)) != 0;
}

bool ColorWheelDrag::isRelative(const ColorWheelScene& scene) const {
    return scene.relative && !(m_modes & Wheel::DragAbsolute) &&
           (m_modes & (Wheel::DragHue | Wheel::DragSaturation));
}

bool ColorWheelDrag::startsAtCursor(const ColorWheelScene& scene) const {
    return changesColor() && !isRelative(scene);
}

void ColorWheelDrag::press(const ColorWheelScene& scene, const QPointF& mouse,
                           Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    m_pressPoint = mouse - scene.geometry.centre;
    m_modes = modesOf(scene, m_pressPoint, button, modifiers);
    m_pressMouse = mouse;
    m_pressZoom = scene.zoom;
    m_pressColor = scene.color;
    // The colour moves from where it is, not from where the cursor is.
    if (isRelative(scene)) {
        const bool onRing = scene.geometry.mode == Wheel::SquareWheel && m_modes == Wheel::DragHue;
        m_pressPoint = onRing ? scene.geometry.ringMarkerOf(scene.color, 0.0F).center()
                              : scene.geometry.markerOf(scene.color);
    }
}

Hsv ColorWheelDrag::color(const ColorWheelScene& scene, const QPointF& mouse,
                          Qt::KeyboardModifiers modifiers, bool moving) const {
    const ColorWheelGeometry& geometry = scene.geometry;
    if (!geometry.isUsable())
        return scene.color;
    const QPointF point = isRelative(scene)
                              ? m_pressPoint + (mouse - m_pressMouse) * scene.interactionScale
                              : mouse - geometry.centre;
    if (geometry.mode == Wheel::SquareWheel)
        return colorOfSquare(scene, point, modifiers);

    Hsv color{m_pressColor.hue, m_pressColor.saturation, scene.color.value};
    if (m_modes & Wheel::DragHue)
        color.hue = geometry.hueAt(point);
    if (m_modes & Wheel::DragSaturation)
        color.saturation = clampedUnit(length(point) / geometry.disc);
    if (geometry.mode == Wheel::ValueRingWheel && m_modes == Wheel::DragSaturation) {
        // Along the hue as it is without a rotation of the wheel, on purpose.
        const double angle = 2.0 * M_PI * static_cast<double>(m_pressColor.hue);
        const double along = QPointF::dotProduct(point, {std::cos(angle), std::sin(angle)});
        color.saturation = clampedUnit(along / geometry.disc);
    }
    if (m_modes & Wheel::DragValue)
        color.value = value(scene, point, moving);
    return color;
}

Hsv ColorWheelDrag::colorOfSquare(const ColorWheelScene& scene, const QPointF& point,
                                  Qt::KeyboardModifiers modifiers) const {
    Hsv color = scene.color;
    if (m_modes == Wheel::DragHue) {
        color.hue = scene.geometry.hueAt(point);
        return color;
    }
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    const bool shift = modifiers.testFlag(Qt::ShiftModifier);
    const double side = 2.0 * scene.geometry.halfSquare;
    if (control || !shift)
        color.saturation = clampedUnit(point.x() / side + 0.5);
    if (!control)
        color.value = clampedUnit(point.y() / side + 0.5);
    return color;
}

float ColorWheelDrag::value(const ColorWheelScene& scene, const QPointF& point, bool moving) const {
    if (scene.geometry.mode != Wheel::ValueRingWheel) {
        const double moved = (point.x() - m_pressPoint.x()) / 500.0;
        return clampedUnit(static_cast<double>(m_pressColor.value) + moved);
    }
    const float value = ColorWheelGeometry::ringValueAt(point);
    if (moving && scene.color.value > 0.9F && value < 0.1F)
        return 1.0F;
    if (moving && scene.color.value < 0.1F && value > 0.9F)
        return 0.0F;
    return value;
}

QPointF ColorWheelDrag::pan(const ColorWheelScene& scene, const QPointF& mouse) const {
    if (!scene.geometry.isUsable())
        return scene.pan;
    const QPointF point = mouse - scene.geometry.centre;
    return limitedPan(scene.pan + (point - m_pressPoint) / scene.geometry.disc);
}

float ColorWheelDrag::zoom(const QPointF& mouse) const {
    const QPointF moved = mouse - m_pressMouse;
    return limitedZoom(m_pressZoom * std::exp2((moved.x() + moved.y()) / 96.0));
}

} // namespace Kestrel::UI
