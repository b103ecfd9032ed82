#pragma once

#include <KxUI/picker/TrackBallGeometry_p.h>

#include <optional>

namespace Kestrel::UI {

/** What a drag needs to know about the ball at the time of an input. */
struct TrackBallScene {
    TrackBallGeometry geometry;
    TrackBallScale scale;
    TrackBallPose pose;
    double sensitivity = 0.25;
};

/** A press or a movement, plainly. */
struct TrackBallInput {
    QPointF mouse;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

/** The drag of a track ball. Poses are counted from where the drag began, or from where modifiers or
    the host changed something, so nothing adds up and the value never jumps. */
class TrackBallDrag {
public:
    enum Kind {
        None,
        Roll,  ///< the balance follows the mouse
        Turn,  ///< the master follows the angle around the ring
        Slide, ///< the master follows the mouse rightwards
    };
    static constexpr double AxisSlack = 4.0; ///< pixels until an axis is chosen
    static constexpr double StepsPerPixel = 0.01;

    /** What a drag from here does. */
    static Kind kindFor(const TrackBallGeometry& geometry, const QPointF& mouse,
                        Qt::MouseButton button);

    Kind kind() const { return m_kind; }

    /** Begins a drag if there is one for this button at this place. Shows nothing new. */
    void press(const TrackBallScene& scene, const TrackBallInput& input, Qt::MouseButton button);
    /** The pose to show. */
    TrackBallPose move(const TrackBallScene& scene, const TrackBallInput& input);
    /** Goes on from what the scene shows: the host has changed it. */
    void rebase(const TrackBallScene& scene);
    void end() { m_kind = None; }

private:
    /** What modifiers make of movements. */
    struct Gear {
        double factor = 1.0;
        bool onOneAxis = false;
    };

    Gear gearFor(Qt::KeyboardModifiers modifiers) const;
    void turnTo(const TrackBallGeometry& geometry, const QPointF& mouse);
    QPointF rolled(const QPointF& moved);

    Kind m_kind = None;
    Gear m_gear;
    QPointF m_mouse;
    QPointF m_anchor;
    TrackBallPose m_pose;  ///< at the anchor
    double m_angle = 0.0;  ///< of the mouse around the ring
    double m_turned = 0.0; ///< pixels along the ring since the anchor
    std::optional<Qt::Orientation> m_axis;
};

} // namespace Kestrel::UI
