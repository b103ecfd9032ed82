#pragma once

#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayCall_p.h>

#include <QPoint>

#include <optional>

class QDragEnterEvent;
class QDropEvent;
class QEvent;
class QMouseEvent;
class QWidget;

namespace Kestrel::UI {

/** What all widgets that show one colour have in common: it is dragged out of them and dropped on
    them, the keys of the clipboard are theirs, and without a tool tip of the host theirs tells it. */
class ColorPlace {
public:
    /** All three are borrowed, and outlive this. */
    ColorPlace(QWidget* widget, const ColorValue& color, const DisplayCall& display);

    /** Shows the tool tip, and keeps keys from being shortcuts; false for other events. */
    bool takes(QEvent* event) const;

    /** A press of the left button, of which a click or a drag may come. */
    void press(const QMouseEvent& event);
    bool isPressed() const { return m_pressed.has_value(); }
    void forget() { m_pressed.reset(); }
    /** Whether the mouse drags the colour out now, which is no press any more. */
    bool drags(const QMouseEvent& event);

    /** A colour comes above the widget, leaves it, or is let go there: null where it is none. */
    void enter(QDragEnterEvent* event);
    void leave();
    std::optional<ColorValue> drop(QDropEvent* event);
    /** Whether one is above that may be dropped. */
    bool isDropping() const { return m_dropping; }

private:
    void setDropping(bool dropping);

    QWidget* m_widget;
    const ColorValue& m_color;
    const DisplayCall& m_display;
    std::optional<QPoint> m_pressed;
    bool m_dropping = false;
};

} // namespace Kestrel::UI
