#pragma once

#include <KxUI/curveedit/CurveDragStates_p.h>

#include <variant>

namespace Kestrel::UI {

/** The state of the mouse on a curve view. Each input moves it on and answers with commands; only
    the view executes them. Between two inputs the model may change, refuse, or be gone. */
class CurveDrag {
public:
    enum Mode { NoDrag, DragKnots, DragHandle, DragFrame, DragBox, DragPan, DragZoom };
    /** What an edit that comes of a drag does. */
    enum What { MovesKnots, AddsKnot, ChangesSlope, ScalesKnots };

    /** After so many milliseconds a second press at a place takes the next knot no more. */
    static constexpr qint64 RepickTime = 500;

    Mode mode() const { return Mode(m_state.index()); }
    bool isActive() const { return mode() != NoDrag; }
    /** Whether it changes knots, rather than what is shown or selected. */
    bool edits() const { return isActive() && mode() <= DragFrame; }
    What what() const;
    /** How many knots it changes, once it does. */
    int count() const;

    /** Whether the button of a drag is down, also of one that is over already. */
    bool isHeld() const { return m_button != Qt::NoButton; }
    Qt::MouseButton button() const { return m_button; }

    /** Starts a drag, if there is one for this button at this place. The right button takes a drag
        of another one back. */
    CurveCommands press(const CurveScene& scene, const CurveInput& input, Qt::MouseButton button);

    /** The answer to `CurveCommand::Add` or `AddOnLine`: the new knot, or -1. */
    CurveCommands added(const CurveScene& scene, int knot);

    /** Goes on with the drag; ends it when its button is not held any more, since the release went
        to somebody else then. */
    CurveCommands move(const CurveScene& scene, const CurveInput& input);

    CurveCommands release(const CurveScene& scene, Qt::MouseButton button);

    /** Ends the drag where it is. */
    CurveCommands finish();

    /** Ends it; what is shown or selected is what it was at the press. The knots are put back by
        whoever has saved them. What the mouse does until its release goes unheeded. */
    CurveCommands takeBack(const CurveScene& scene);

    /** Somebody else, or a host that was told of the drag, changed a curve. The drag goes on from
        where the knots are now, or ends where they are no more. */
    CurveCommands modelChanged(const CurveScene& scene);

    /** What a double click resets: a knot, or that of a handle. Nothing where it is a press as any
        other: beside knots, on one that the first of both presses added, and where knots overlap, of
        which it takes the next one. */
    CurveHit resetBy(const CurveScene& scene, const CurveInput& input) const;

    /** The rubber band, in pixels; null without one. */
    QRectF box(const CurvePlot& plot) const;
    /** Whether scroll() is to be called, every 100 ms. */
    bool scrolls(const CurveScene& scene) const;
    /** Shows more on the side where the mouse is beyond the plot. Call move() with the last input
        after it. */
    CurveCommands scroll(const CurveScene& scene) const;

    /** What holds the dragged knot. */
    std::optional<CurveSnapTarget> snapX() const;
    std::optional<CurveSnapTarget> snapY() const;
    /** Where a knot that was pulled out would be; nothing while none is. */
    std::optional<QPointF> pulledOut() const;
    /** What a frame's drag has scaled by; 1 without one. */
    QPointF scale() const;

private:
    CurveCommands pressLeft(const CurveScene& scene, const CurveInput& input);
    CurveCommands pressKnot(const CurveScene& scene, const CurveInput& input, const CurveHit& hit);
    CurveCommands pressBeside(const CurveScene& scene, const CurveInput& input,
                              const CurveHit& hit);
    CurveCommands startBox(const CurveScene& scene, const CurveInput& input);
    CurveCommands moveState(const CurveScene& scene, const CurveInput& input);
    const CurveHit* repicked(const CurveInput& input) const;

    // In the order of Mode.
    std::variant<std::monostate, CurveKnotsDrag, CurveHandleDrag, CurveFrameDrag, CurveBoxDrag,
                 CurvePanDrag, CurveZoomDrag>
        m_state;
    Qt::MouseButton m_button = Qt::NoButton;
    CurveInput m_press;
    CurveHit m_hit;      ///< what the last press took
    bool m_adds = false; ///< whether it has added a knot, or is about to
};

} // namespace Kestrel::UI
