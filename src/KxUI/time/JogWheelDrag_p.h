#pragma once

#include <Qt>

#include <optional>

namespace Kestrel::UI {

/** The state of the mouse on a jog wheel. Each input moves it on and answers with the value to go
    to, if any, which the wheel still limits; only the wheel goes there. */
class JogWheelDrag {
public:
    /** Whether a drag goes on, so that it can be taken back. */
    bool isActive() const { return m_state == Dragging; }

    /** Whether a drag goes on or waits for its release. */
    bool isHeld() const { return m_state != Idle; }

    /** A press of any button begins a drag; the right one's takes one back that another button
     * began.
     */
    std::optional<double> press(int x, Qt::MouseButton button, int value);

    /** A move; one without the button of the press ends the drag, whose release went elsewhere. */
    std::optional<double> move(int x, Qt::MouseButtons held, float sensitivity);

    void release(Qt::MouseButton button);

    /** Takes the drag back: goes to the value at the press, and waits for the release. */
    std::optional<double> takeBack();

    /** The drag cannot go on; the value stays. */
    void cancel() { m_state = Idle; }

private:
    enum State { Idle, Dragging, TakenBack };

    State m_state = Idle;
    Qt::MouseButton m_button = Qt::NoButton;
    int m_pressX = 0;
    int m_pressValue = 0;
};

} // namespace Kestrel::UI
