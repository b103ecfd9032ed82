#pragma once

#include <KxUI/picker/TrackBall.h>

#include <QRectF>

#include <array>

namespace Kestrel::UI {

/** Three factors as a ball and its ring show them. */
struct TrackBallPose {
    QPointF balance;      ///< from the middle, y upwards; the rim is 1 away
    double master = 0.0;  ///< of the three
    bool isOffset = true; ///< the factors are sums, whatever the mode
};

/** What a track ball holds: the factors, which are the value, and their pose. That has the digits that
    floats do not, so that a drag or a reset of the one leaves the other as it was. */
struct TrackBallValue {
    QVector3D factors;
    TrackBallPose pose;
};

inline bool operator==(const TrackBallValue& a, const TrackBallValue& b) {
    return a.factors == b.factors;
}

/** Between factors and poses, without a window. */
struct TrackBallScale {
    TrackBall::Mode mode = TrackBall::Offset;
    double range = 0.25;
    double neutral = 0.0;
    double rotation = 0.0; ///< of the hues, in radians

    /** Exactly what factorsOf() makes the factors of again, but for the rounding of doubles. They
        are finite. */
    TrackBallPose poseOf(const std::array<double, 3>& factors) const;
    std::array<double, 3> factorsOf(const TrackBallPose& pose) const;

    /** A master is neutral where floats can not tell it from that, so that a reset of the balance
        leads back to neutral factors. */
    TrackBallValue valueOf(const QVector3D& factors) const;
    /** What floats can not hold is the nearest that they can, and so is the pose. */
    TrackBallValue valueOf(const TrackBallPose& pose) const;
    /** Of an untouched ball. */
    TrackBallValue neutralValue() const;

    /** The master so many steps on, as far as floats go: a step is a stop, or the range where the
        factors are sums. */
    double masterAfter(const TrackBallPose& pose, double steps) const;
    /** The steps from neutral to the master. */
    double stepsTo(const TrackBallPose& pose) const;

private:
    std::array<QPointF, 3> directions() const;
    bool isOffset(double least) const { return mode != TrackBall::Gain || !(least > 0.0); }
};

bool operator==(const TrackBallScale& a, const TrackBallScale& b);

/** Where everything is on a track ball, in logical pixels as the widget paints. */
struct TrackBallGeometry {
    enum Part {
        Nowhere,
        Ball,
        Ring ///< with the gap inside it
    };
    static constexpr double MarkerRadius = 5.0;
    static constexpr double RingSpan = 4.0;  ///< steps of the master from neutral to an end
    static constexpr double RingTurn = 2.62; ///< radians from the top to an end; 150 degrees

    QRectF title; ///< empty without one
    QPointF centre;
    double ball = 0.0; ///< radii
    double ringInner = 0.0;
    double ringOuter = 0.0;

    /** For a widget with a title of this height, or without one. */
    static TrackBallGeometry of(const QSizeF& size, double titleHeight);

    /** False for a ball that is too small to draw or to drag. */
    bool isUsable() const { return ball >= 8.0; }

    Part partAt(const QPointF& point) const;
    /** The balance, in pixels, at the rim: the marker stays on the ball. */
    double reach() const { return ball - MarkerRadius - 3.0; }
    /** Where the marker stands, for one that is beyond the rim there. */
    QPointF markerOf(const QPointF& balance) const;
    static bool isBeyond(const QPointF& balance);

    /** The angle of a point around the ring, in radians clockwise from the top. */
    double angleAt(const QPointF& point) const;
    /** The angle of the ring's handle, limited to its ends. */
    static double angleOf(double steps);
    QPointF onRing(double angle, double radius) const;
    /** The radius at which a turn of the ring is measured. */
    double ringMiddle() const { return (ringInner + ringOuter) / 2.0; }
};

bool operator==(const TrackBallGeometry& a, const TrackBallGeometry& b);

} // namespace Kestrel::UI
