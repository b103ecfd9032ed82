#pragma once

namespace Kestrel::UI {

/** A drag across the view that selects a span of time, as a machine: plain input in, what to do
    out. It knows pixels only. */
class SelectionDrag {
public:
    /** What the view is to do. */
    struct Command {
        enum What { Nothing, Select, Clear };

        What what = Nothing;
        int from = 0; ///< for Select: the x where the drag began
        int to = 0;   ///< and where it is
    };

    /** A drag begins as soon as the pointer has moved `threshold` pixels. */
    explicit SelectionDrag(int threshold = 10)
        : m_threshold(threshold) {}

    void press(int x);

    /** Without the button the drag has ended where nobody told of it. */
    Command move(int x, bool buttonHeld);

    /** A press without a drag clears the selection. */
    Command release();

private:
    enum class State { Idle, Pressed, Dragging };

    int m_threshold;
    State m_state = State::Idle;
    int m_from = 0;
};

} // namespace Kestrel::UI
