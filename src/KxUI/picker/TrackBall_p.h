#pragma once

#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/picker/TrackBallDrag_p.h>
#include <KxUI/picker/TrackBallPictures_p.h>

#include <optional>

class QKeyEvent;
class QMouseEvent;
class QPainter;

namespace Kestrel::UI {

/** What a track ball shows and the steps that its events consist of. Functions that change the value
    may delete the ball. */
class TrackBallPrivate {
public:
    static constexpr double StepsPerNotch = 0.05;

    explicit TrackBallPrivate(TrackBall* ball);

    TrackBallScale scale() const;
    double titleHeight() const;
    TrackBallGeometry geometry() const;
    TrackBallScene scene() const;
    static TrackBallInput inputOf(const QMouseEvent& event);

    void setByHost(const TrackBallValue& wanted);
    /** Another mode, range, neutral or rotation, with which balance and master are others for the
        same factors. Ends an edit: its start has those of the old one. */
    template <class T>
    void setScale(T& member, const T& now) {
        if (member == now || !bracket.finish())
            return;
        member = now;
        rescale();
    }

    /** Whether the press begins a drag; true also where the ball is gone. */
    bool press(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release();
    /** Whether a wheel says anything to the ball. */
    bool turn(const QWheelEvent& event);
    static bool isOwnKey(const QKeyEvent& event);
    void pressKey(const QKeyEvent& event);
    /** The pose that a reset of a part leads to. */
    TrackBallPose resetPose(bool balance, bool master) const;
    void editOnce(const TrackBallPose& pose);
    void hover(TrackBallGeometry::Part part);

    void paint(QPainter& painter);
    QString valueText() const;
    /** What the ring alone is told as. */
    QString masterText() const;

    TrackBall* q;
    TrackBall::Mode mode = TrackBall::Offset;
    std::optional<double> range;
    std::optional<double> neutral;
    double rotation = 0.0;
    double sensitivity = 0.25;
    WheelPolicy::Policy wheelPolicy = WheelPolicy::WheelWhenFocused;
    QString title;
    TrackBallValue value;
    bool isTouched = false; ///< the factors are somebody's
    EditBracket<TrackBall, TrackBallValue> bracket;

private:
    void rescale();
    bool isDragged(TrackBallDrag::Kind kind) const;
    void store(const TrackBallValue& wanted);
    void show(const TrackBallPose& pose);
    void tellAccessible();
    TrackBallPose posed(const QKeyEvent& event) const;
    QString number(double number) const;
    void paintTitle(QPainter& painter, const TrackBallGeometry& places);
    void paintMaster(QPainter& painter, const TrackBallGeometry& places,
                     const TrackBallColors& colors);
    void paintBalance(QPainter& painter, const TrackBallGeometry& places,
                      const TrackBallColors& colors);
    void paintFocus(QPainter& painter, const TrackBallColors& colors);

    TrackBallDrag m_drag;
    TrackBallValue m_before; ///< the last movement
    TrackBallGeometry::Part m_hovered = TrackBallGeometry::Nowhere;
    TrackBallPictures m_pictures;
};

} // namespace Kestrel::UI
