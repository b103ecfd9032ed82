#pragma once

#include <QPointF>
#include <Qt>

namespace Kestrel::UI {

/** A drag that changes a number: from the press to its release, without a window. Right and up
    increase. Movements are logical pixels, numbers are in the unit that is shown. */
class ScrubDrag {
public:
    enum State {
        Idle,
        Armed, ///< pressed, and not moved yet
        Scrubbing,
        TakenBack, ///< what is left of the drag goes unheeded
    };
    static constexpr double PixelsPerStep = 4.0;

    /** What a drag starts from. */
    struct Start {
        double number = 0.0;
        double minimum = 0.0; ///< below the maximum; either may be infinite
        double maximum = 0.0;
        double grain = 1.0;         ///< the number changes by it each PixelsPerStep
        bool upAndDownOnly = false; ///< on the step arrows
    };

    State state() const { return m_state; }

    /** A button went down. */
    void press(const QPointF& at, const Start& start);
    /** The pointer moved; whether there is another number() to show. `factor` is the gear; a change
        of it in between moves nothing by itself. */
    bool moveTo(const QPointF& at, double factor, bool snap);
    /** The number goes on as though the pointer had moved: for a pointer at the screen's edge. */
    bool moveBy(double pixels, double factor, bool snap);
    /** The pointer was put elsewhere, which was no movement. */
    void jumpTo(const QPointF& at) { m_at = at; }
    /** Somebody else set the number; the drag goes on from there. */
    void rebase(double number) { m_base = m_exact = m_shown = number; }
    void takeBack() { m_state = m_state == Scrubbing ? TakenBack : Idle; }
    void release() { m_state = Idle; }

    double number() const { return m_shown; }
    /** The number that the drag began at, or that somebody set in it. */
    double base() const { return m_base; }
    bool isAtEnd() const { return m_shown == m_start.minimum || m_shown == m_start.maximum; }
    /** Where the pointer was last. */
    QPointF place() const { return m_at; }
    Qt::Orientation axis() const { return m_axis; }

private:
    State m_state = Idle;
    Start m_start;
    QPointF m_pressed;
    QPointF m_at;
    Qt::Orientation m_axis = Qt::Horizontal;
    double m_base = 0.0;  // where the drag began
    double m_exact = 0.0; // before it is rounded; never beyond the ends, so that a way back counts
    double m_shown = 0.0;

    bool begins(const QPointF& at);
};

} // namespace Kestrel::UI
