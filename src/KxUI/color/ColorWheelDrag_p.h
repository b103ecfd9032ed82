#pragma once

#include <KxUI/color/ColorWheelGeometry_p.h>

#include <QVarLengthArray>

namespace Kestrel::UI {

/** What a drag needs to know about the wheel at the time of an input. */
struct ColorWheelScene {
    ColorWheelGeometry geometry;
    Hsv color;
    float ringValue = 1.0F;
    float zoom = 1.0F;
    QPointF pan;
    bool zoomEnabled = true;
    bool relative = false;
    double interactionScale = 0.1;
};

/** A press or a movement, plainly. */
struct ColorWheelInput {
    QPointF mouse; ///< from the lower left corner of the widget, y upwards
    Qt::MouseButtons held = Qt::NoButton;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

/** One thing for the wheel to do. */
struct ColorWheelCommand {
    enum Kind {
        Begin,     ///< emit startDragSignal()
        ShowColor, ///< show `color` and `ringValue` and emit hsvChanged()
        ShowView,  ///< show `zoom` and `pan`
        Moved,     ///< emit draggingSignal()
        End,       ///< emit stopDragSignal()
        Changed    ///< emit changedSignal()
    };
    Kind kind;
    Hsv color = {};
    float ringValue = 0.0F;
    float zoom = 1.0F;
    QPointF pan = {};
};

/** What to do, in this order. */
using ColorWheelCommands = QVarLengthArray<ColorWheelCommand, 4>;

/** The state of the mouse on a wheel. Each input moves it on and answers with commands; only the
    wheel executes them. */
class ColorWheelDrag {
public:
    ColorWheel::DragModes modes() const { return m_modes; }
    bool isActive() const { return m_modes != ColorWheel::NoDrag; }

    /** Whether the button of a drag is down, also of one that was taken back meanwhile. */
    bool isHeld() const { return m_button != Qt::NoButton; }
    Qt::MouseButton button() const { return m_button; }

    /** What a drag that starts here would change. */
    static ColorWheel::DragModes modesFor(const ColorWheelScene& scene, const QPointF& mouse,
                                          Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

    /** Starts a drag, if there is one for this button at this place. The right button takes a drag
        of another one back. */
    ColorWheelCommands press(const ColorWheelScene& scene, const ColorWheelInput& input,
                             Qt::MouseButton button);

    /** Goes on with the drag; ends it when its button is not held any more, since the release went
        to somebody else then, as that of a drag over which a dialog opened. */
    ColorWheelCommands move(const ColorWheelScene& scene, const ColorWheelInput& input);

    ColorWheelCommands release(Qt::MouseButton button);

    /** Ends the drag where it is. */
    ColorWheelCommands finish();

    /** Shows again what was shown at the press. What the mouse does until its release goes
        unheeded. */
    ColorWheelCommands takeBack();

private:
    bool changesColor() const;
    bool isRelative(const ColorWheelScene& scene) const;
    ColorWheelCommand showColor(const ColorWheelScene& scene, const ColorWheelInput& input,
                                bool moving);
    Hsv colorOfDisc(const ColorWheelScene& scene, const QPointF& point, bool moving) const;
    Hsv colorOfSquare(const ColorWheelScene& scene, const QPointF& point,
                      Qt::KeyboardModifiers modifiers) const;
    float value(const ColorWheelScene& scene, const QPointF& point, bool moving) const;
    QPointF pan(const ColorWheelScene& scene, const QPointF& mouse) const;
    float zoom(const QPointF& mouse) const;

    ColorWheel::DragModes m_modes = ColorWheel::NoDrag;
    Qt::MouseButton m_button = Qt::NoButton;
    bool m_colorChanged = false;
    QPointF m_pressPoint; ///< relative to the centre
    QPointF m_pressMouse;
    ColorWheelScene m_start;
};

} // namespace Kestrel::UI
