#include <KxUI/color/ColorWheelDrag_p.h>

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Wheel = ColorWheel;

constexpr double FullValue = 500.0; // pixels to the right from the value 0 to 1
constexpr double DoubleZoom = 96.0; // pixels up or right for twice the zoom
constexpr double PressSlack = 3.0;  // pixels around the wheel that still count as its edge
// A movement on the value ring from beyond the one to beyond the other crosses the seam.
constexpr float NearFull = 0.9F;
constexpr float NearEmpty = 0.1F;

double length(const QPointF& point) {
    return std::hypot(point.x(), point.y());
}

} // namespace

ColorWheel::DragModes ColorWheelDrag::modesFor(const ColorWheelScene& scene, const QPointF& mouse,
                                               Qt::MouseButton button,
                                               Qt::KeyboardModifiers modifiers) {
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

    const double distance = length(mouse - geometry.centre);
    const bool left = button == Qt::LeftButton && !alt;
    if (left && distance > geometry.ringOuter + PressSlack)
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

bool ColorWheelDrag::changesColor() const {
    return (m_modes & (Wheel::DragHue | Wheel::DragSaturation | Wheel::DragValue)) != 0;
}

bool ColorWheelDrag::isRelative(const ColorWheelScene& scene) const {
    return scene.relative && !(m_modes & Wheel::DragAbsolute) &&
           (m_modes & (Wheel::DragHue | Wheel::DragSaturation));
}

ColorWheelCommands ColorWheelDrag::press(const ColorWheelScene& scene, const ColorWheelInput& input,
                                         Qt::MouseButton button) {
    if (isHeld() && button != m_button)
        return button == Qt::RightButton ? takeBack() : ColorWheelCommands();
    ColorWheelCommands commands = finish(); // of the same button, whose release was lost
    m_modes = modesFor(scene, input.mouse, button, input.modifiers);
    m_button = isActive() ? button : Qt::NoButton;
    if (!isActive())
        return commands;
    m_colorChanged = false;
    m_start = scene;
    m_pressMouse = input.mouse;
    m_pressPoint = input.mouse - scene.geometry.centre;
    // The colour moves from where it is, not from where the cursor is.
    if (isRelative(scene)) {
        const bool onRing = scene.geometry.mode == Wheel::SquareWheel && m_modes == Wheel::DragHue;
        m_pressPoint = onRing ? scene.geometry.ringMarkerOf(scene.color, 0.0F).center()
                              : scene.geometry.markerOf(scene.color);
    }
    commands.append({ColorWheelCommand::Begin});
    if (changesColor() && !isRelative(scene))
        commands.append(showColor(scene, input, false));
    return commands;
}

ColorWheelCommands ColorWheelDrag::move(const ColorWheelScene& scene,
                                        const ColorWheelInput& input) {
    if (!(input.held & m_button))
        return finish();
    if (!isActive())
        return {};
    ColorWheelCommands commands;
    if (changesColor()) {
        commands.append(showColor(scene, input, true));
    } else {
        ColorWheelCommand view{ColorWheelCommand::ShowView};
        view.zoom = m_modes & Wheel::DragZoom ? zoom(input.mouse) : scene.zoom;
        view.pan = m_modes & Wheel::DragPan ? pan(scene, input.mouse) : scene.pan;
        commands.append(view);
    }
    commands.append({ColorWheelCommand::Moved});
    return commands;
}

ColorWheelCommands ColorWheelDrag::release(Qt::MouseButton button) {
    return button == m_button ? finish() : ColorWheelCommands();
}

ColorWheelCommands ColorWheelDrag::finish() {
    m_button = Qt::NoButton;
    if (!isActive())
        return {};
    m_modes = Wheel::NoDrag;
    ColorWheelCommands commands{{ColorWheelCommand::End}};
    if (m_colorChanged)
        commands.append({ColorWheelCommand::Changed});
    return commands;
}

ColorWheelCommands ColorWheelDrag::takeBack() {
    if (!isActive())
        return {};
    ColorWheelCommands commands;
    if (m_colorChanged)
        commands.append({ColorWheelCommand::ShowColor, m_start.color, m_start.ringValue});
    else if (!changesColor())
        commands.append({ColorWheelCommand::ShowView, {}, 0.0F, m_start.zoom, m_start.pan});
    commands.append({ColorWheelCommand::End});
    m_modes = Wheel::NoDrag;
    return commands;
}

ColorWheelCommand ColorWheelDrag::showColor(const ColorWheelScene& scene,
                                            const ColorWheelInput& input, bool moving) {
    const ColorWheelGeometry& geometry = scene.geometry;
    m_colorChanged = true;
    ColorWheelCommand command{ColorWheelCommand::ShowColor, scene.color, scene.ringValue};
    if (!geometry.isUsable())
        return command;
    const QPointF point = isRelative(scene)
                              ? m_pressPoint + (input.mouse - m_pressMouse) * scene.interactionScale
                              : input.mouse - geometry.centre;
    command.color = geometry.mode == Wheel::SquareWheel
                        ? colorOfSquare(scene, point, input.modifiers)
                        : colorOfDisc(scene, point, moving);
    if (m_modes & Wheel::DragValue)
        command.ringValue = command.color.value;
    return command;
}

Hsv ColorWheelDrag::colorOfDisc(const ColorWheelScene& scene, const QPointF& point,
                                bool moving) const {
    const ColorWheelGeometry& geometry = scene.geometry;
    const Hsv& start = m_start.color;
    Hsv color{start.hue, start.saturation, scene.color.value};
    if (m_modes & Wheel::DragHue)
        color.hue = geometry.hueAt(point);
    if (m_modes & Wheel::DragSaturation)
        color.saturation = clampedUnit(length(point) / geometry.disc);
    if (geometry.mode == Wheel::ValueRingWheel && m_modes == Wheel::DragSaturation) {
        // Along the hue's own angle: a rotation of the wheel turns the picture, not this measure.
        const double angle = 2.0 * M_PI * static_cast<double>(start.hue);
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
        const double moved = (point.x() - m_pressPoint.x()) / FullValue;
        return clampedUnit(static_cast<double>(m_start.color.value) + moved);
    }
    const float value = ColorWheelGeometry::ringValueAt(point);
    if (moving && scene.color.value > NearFull && value < NearEmpty)
        return 1.0F;
    if (moving && scene.color.value < NearEmpty && value > NearFull)
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
    return limitedZoom(static_cast<double>(m_start.zoom) *
                       std::exp2((moved.x() + moved.y()) / DoubleZoom));
}

} // namespace Kestrel::UI
