#pragma once

#include <KxUI/curveedit/CurveGroup_p.h>
#include <KxUI/curveedit/CurvePick_p.h>
#include <KxUI/curveedit/CurveSnap_p.h>

#include <QByteArray>
#include <QPointF>
#include <QRectF>

#include <optional>
#include <vector>

namespace Kestrel::UI {

/** A press or a movement, plainly. */
struct CurveInput {
    QPointF mouse; ///< in pixels of the widget
    Qt::MouseButtons held = Qt::NoButton;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    qint64 time = 0; ///< milliseconds of any clock

    bool has(Qt::KeyboardModifier modifier) const { return modifiers.testFlag(modifier); }
};

/** One thing for the view to do. Those from Move on are edits, and certain to change something
    unless the model refuses. */
struct CurveCommand {
    enum Kind {
        SetCurrent, ///< `curve`
        Select,     ///< knots `first` to `last` of `curve`, by `mode`
        ShowRange,  ///< `range`
        End,        ///< the drag is over, and what it did stands
        Move,       ///< all of `moves`
        Add,        ///< a knot of `curve` at `place`; answer by CurveDrag::added()
        AddOnLine,  ///< one on the line, at the x of `place`; the same
        Remove,     ///< the knot `first` of `curve`
        Restore,    ///< load `bytes` into `curve`
        SetSlopes   ///< of the knot `first` of `curve` to `place`, in and out, and `broken`
    };
    Kind kind = End;
    int curve = -1;
    int first = -1;
    int last = -1;
    CurveModel::SelectionMode mode = CurveModel::SelectOnly;
    bool broken = false;
    QPointF place = {};
    QRectF range = {};
    CurveGroup::Moves moves = {};
    QByteArray bytes = {};

    bool isEdit() const { return kind >= Move; }
};

/** What to do, in this order. */
using CurveCommands = std::vector<CurveCommand>;

/** Pixels that the mouse has to go before a press means a drag, where it means something else. */
constexpr double CurveDragDistance = 4;

/** Where something that is dragged is wanted: under the mouse, or a part of the way where that
    counts finely. Another factor begins anew from where both are, so that nothing jumps. */
class CurveGrip {
public:
    CurveGrip() = default;
    /** `place` is what was grabbed, in pixels. */
    CurveGrip(const QPointF& place, const CurveInput& input);

    /** Where it is wanted now; `shown` is where it is. */
    QPointF wanted(const CurveInput& input, const QPointF& shown);
    /** Goes on from there. */
    void rebase(const QPointF& place);
    /** The directions that are free: one of them while Shift is held. */
    QPointF freedom(const CurveInput& input);
    bool isFine() const { return m_factor < 1; }
    /** The greatest distance from the press so far. */
    double farthest() const { return m_farthest; }

private:
    QPointF m_anchorPlace;
    QPointF m_anchorMouse;
    QPointF m_pressMouse;
    QPointF m_lastMouse;
    double m_factor = 1;
    double m_farthest = 0;
    std::optional<QPointF> m_freedom;
};

/** Knots that follow the mouse. */
class CurveKnotsDrag {
public:
    /** `selects`: a press that moves nothing selects the knot alone. `waits`: nothing moves before
        the mouse has gone CurveDragDistance. */
    CurveKnotsDrag(const CurveScene& scene, const CurveHit& hit, const CurveInput& input,
                   bool selects, bool waits);

    CurveCommands move(const CurveScene& scene, const CurveInput& input);
    CurveCommands release(const CurveScene& scene) const;
    CurveCommands modelChanged(const CurveScene& scene);

    int count() const { return m_group.count(); }
    const CurveSnap::Result& snapped() const { return m_snapped; }
    std::optional<QPointF> pulledOut() const;

private:
    bool isThere(const CurveScene& scene) const;
    bool begin(const CurveScene& scene);
    bool canPullOut(const CurveScene& scene) const;
    QPointF wantedWay(const CurveScene& scene, const CurveInput& input);

    int m_curve;
    int m_knot;
    int m_count; ///< of the curve's knots at the press
    CurveGrip m_grip;
    QPointF m_start;      ///< of the knot, as the model has it
    QPointF m_startPlace; ///< in pixels
    bool m_selects;
    bool m_waits;
    bool m_begun = false;
    bool m_moved = false;
    CurveGroup m_group;
    QPointF m_way; ///< that the group has gone
    CurveSnap m_snap;
    CurveSnap::Result m_snapped;
    std::optional<QByteArray> m_pulled; ///< the curve when its knot was pulled out
    QPointF m_mouse;
};

/** A slope that follows the mouse. */
class CurveHandleDrag {
public:
    CurveHandleDrag(const CurveHit& hit, const CurveInput& input);

    CurveCommands move(const CurveScene& scene, const CurveInput& input);

private:
    CurveHit m_hit;
    CurveGrip m_grip;
};

/** Knots that are scaled by a grip of the frame around them. */
class CurveFrameDrag {
public:
    CurveFrameDrag(const CurveScene& scene, int grip, const CurveInput& input);

    CurveCommands move(const CurveScene& scene, const CurveInput& input);
    CurveCommands modelChanged(const CurveScene& scene);

    int count() const { return m_group.count(); }
    const QPointF& scale() const { return m_scale; }

private:
    QPointF sideAt(const QPointF& side) const;

    QPointF m_side;
    CurveGrip m_grip;
    QPointF m_start; ///< of the grip, in pixels, within the frame's margin
    CurveGroup m_group;
    QPointF m_low;
    QPointF m_high;
    QPointF m_scale{1, 1};
    QPointF m_about;
};

/** A rubber band that selects. */
class CurveBoxDrag {
public:
    CurveBoxDrag(const CurveScene& scene, const CurveInput& input);

    CurveCommands move(const CurveScene& scene, const CurveInput& input);
    /** The selection of the press. */
    CurveCommands takeBack(const CurveScene& scene) const;
    QRectF rect(const CurvePlot& plot) const;
    const QPointF& mouse() const { return m_mouse; }

private:
    struct Selected {
        int curve;
        std::vector<int> knots;
    };

    std::vector<int> stillThere(const CurveScene& scene, const Selected& before) const;
    std::vector<int> wanted(const CurveScene& scene, const Selected& before) const;

    CurveModel::SelectionMode m_mode;
    QPointF m_corner; ///< of the press, in the curves' numbers, since the view may scroll
    QPointF m_mouse;
    std::vector<Selected> m_before;
};

/** What is visible follows the mouse. */
class CurvePanDrag {
public:
    CurvePanDrag(const CurveScene& scene, const CurveInput& input);
    CurveCommands move(const CurveScene& scene, const CurveInput& input) const;
    CurveCommands takeBack() const;

private:
    CurvePlot m_plot;
    QPointF m_mouse;
};

/** What is visible grows about the press, twice for 96 pixels to the right or up. */
class CurveZoomDrag {
public:
    static constexpr double DoubleZoom = 96;

    CurveZoomDrag(const CurveScene& scene, const CurveInput& input);
    CurveCommands move(const CurveScene& scene, const CurveInput& input) const;
    CurveCommands takeBack() const;

private:
    CurvePlot m_plot;
    QPointF m_mouse;
};

} // namespace Kestrel::UI
