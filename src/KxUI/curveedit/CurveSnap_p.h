#pragma once

#include <KxUI/curveedit/CurveScene_p.h>

#include <optional>
#include <vector>

namespace Kestrel::UI {

/** What holds a dragged knot in one direction. */
struct CurveSnapTarget {
    /** Of those that are equally near the first kind here holds it. */
    enum Kind {
        Playhead,
        SnapLine,  ///< one of the host's
        OtherKnot, ///< of another curve
        Neighbour, ///< the y of the knot before or behind
        Unit,      ///< 0 or 1
        Limit,     ///< where knots end
        Identity,  ///< y where x is
        Chord,     ///< the straight line between both neighbours
        Tick,      ///< a labelled one
        Frame      ///< a whole one; last, since they are everywhere
    };

    Kind kind = Tick;
    double value = 0;

    /** Whether it is the same one, which follows x where it is a line across the plot. */
    bool isSameAs(const CurveSnapTarget& other) const {
        return kind == other.kind && (kind == Identity || kind == Chord || value == other.value);
    }
};

/** The snapping of one coordinate: taken within `Enter` pixels, left after `Leave`. What lay that
    near when the drag began holds nothing until it has been left, so that a drag can begin beside. */
class CurveAxisSnap {
public:
    static constexpr double Enter = 6;
    static constexpr double Leave = 12;

    void begin(const CurveAxis& axis, double value, const std::vector<CurveSnapTarget>& targets);
    /** What holds a knot that the mouse wants at `value`. */
    std::optional<CurveSnapTarget> snapped(const CurveAxis& axis, double value,
                                           const std::vector<CurveSnapTarget>& targets);
    /** Lets go. */
    void leave() { m_held.reset(); }

private:
    std::optional<CurveSnapTarget> m_held;
    std::vector<CurveSnapTarget> m_beside;
};

/** The snapping of a knot that is dragged. */
class CurveSnap {
public:
    /** `place` is where the knot is. */
    void begin(const CurveScene& scene, int curve, int knot, const QPointF& place);

    struct Result {
        QPointF place;
        std::optional<CurveSnapTarget> x;
        std::optional<CurveSnapTarget> y;
    };
    /** Where the knot goes instead of `wanted`; only those directions that are free snap. */
    Result snapped(const CurveScene& scene, const QPointF& wanted, bool isFreeX, bool isFreeY);
    void leave();

private:
    std::vector<CurveSnapTarget> targetsX(const CurveScene& scene, double x) const;
    std::vector<CurveSnapTarget> targetsY(const CurveScene& scene, const QPointF& place) const;

    int m_curve = -1;
    int m_knot = -1;
    CurveAxisSnap m_x;
    CurveAxisSnap m_y;
};

} // namespace Kestrel::UI
