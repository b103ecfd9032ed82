#pragma once

#include <KxUI/color/ColorWheelGeometry_p.h>

namespace Kestrel::UI {

/** What a drag needs to know about the wheel at the time of an input. */
struct ColorWheelScene {
    ColorWheelGeometry geometry;
    Hsv color;
    double zoom = 1.0;
    QPointF pan;
    bool zoomEnabled = true;
    bool relative = false;
    double interactionScale = 0.1;
};

/** The state of the mouse on a wheel. Positions are those of the cursor from the lower left corner
    of the widget, y upwards. */
class ColorWheelDrag {
public:
    ColorWheel::DragModes modes() const { return m_modes; }
    bool isActive() const { return m_modes != ColorWheel::NoDrag; }
    bool changesColor() const;

    /** Whether the colour goes to the cursor at once. */
    bool startsAtCursor(const ColorWheelScene& scene) const;

    /** Starts a drag, if there is one for this button at this place. */
    void press(const ColorWheelScene& scene, const QPointF& mouse, Qt::MouseButton button,
               Qt::KeyboardModifiers modifiers);
    void release() { m_modes = ColorWheel::NoDrag; }

    /** The colour for a cursor. `moving` is false for the press itself. */
    Hsv color(const ColorWheelScene& scene, const QPointF& mouse, Qt::KeyboardModifiers modifiers,
              bool moving) const;

    /** The pan and the zoom for a cursor. */
    QPointF pan(const ColorWheelScene& scene, const QPointF& mouse) const;
    float zoom(const QPointF& mouse) const;

private:
    bool isRelative(const ColorWheelScene& scene) const;
    Hsv colorOfSquare(const ColorWheelScene& scene, const QPointF& point,
                      Qt::KeyboardModifiers modifiers) const;
    float value(const ColorWheelScene& scene, const QPointF& point, bool moving) const;

    ColorWheel::DragModes m_modes = ColorWheel::NoDrag;
    QPointF m_pressPoint; ///< relative to the centre
    QPointF m_pressMouse;
    double m_pressZoom = 1.0;
    Hsv m_pressColor;
};

} // namespace Kestrel::UI
