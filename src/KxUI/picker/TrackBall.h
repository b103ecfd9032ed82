#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/WheelPolicy.h>

#include <QPointF>
#include <QVector3D>
#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class TrackBallAccessible;
class TrackBallPrivate;
class TrackBallRingAccessible;

/** A grading ball: three factors, for red, green and blue, as a balance that is pushed towards a
    colour and a master that moves all three. As with the thing on a desk a drag is relative: it
    rolls the ball on from where it is, wherever it begins. Nothing is limited: what lies beyond the
    rim is kept, and its marker stands on the rim with an arrow.

    With b the balance and u the direction of a channel's colour (red to the right, green and blue a
    third of a turn further each, counterclockwise), a factor is
    - `Offset`: master + range * (b . u);
    - `Gain`: master * 2^(range * (b . u)).
    The three parts b . u add up to nothing, so balance and master tell the factors exactly and the
    other way round. Where a `Gain` has a factor that is not positive, master and balance are those
    of an offset until all are, and the marker is a lozenge.

    Mouse: the left button rolls the ball, rightwards and upwards; with Control along one axis only,
    with Shift ten times as far, with both a tenth. On the ring around it, it turns the master: a
    pixel clockwise is a hundredth of the range, in `Gain` of a stop. So is a pixel rightwards with
    the right button, anywhere; a notch of the wheel is a twentieth. There Shift, Control and both
    count ten times, a tenth and a hundredth. A double click on the ball takes the balance back to
    neutral, on the ring the master. Escape, or the right button beside the left one, takes the
    drag back.

    Keys: arrows move the balance by a hundredth of the way to the rim, Page Up and Page Down the
    master by a notch, both with the factors of the ring; Home, Backspace and Delete go back to
    neutral. Interface thread. */
class KXUI_EXPORT TrackBall : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QVector3D factors READ factors WRITE setFactors NOTIFY factorsChanged USER true)
    Q_PROPERTY(QPointF balance READ balance NOTIFY factorsChanged)
    Q_PROPERTY(double master READ master NOTIFY factorsChanged)
    Q_PROPERTY(Mode mode READ mode WRITE setMode NOTIFY scaleChanged)
    Q_PROPERTY(double range READ range WRITE setRange NOTIFY scaleChanged)
    Q_PROPERTY(double neutral READ neutral WRITE setNeutral NOTIFY scaleChanged)
    Q_PROPERTY(double hueRotation READ hueRotation WRITE setHueRotation NOTIFY scaleChanged)
    Q_PROPERTY(double sensitivity READ sensitivity WRITE setSensitivity NOTIFY handlingChanged)
    Q_PROPERTY(Kestrel::UI::WheelPolicy::Policy wheelPolicy READ wheelPolicy WRITE setWheelPolicy
                   NOTIFY handlingChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)

public:
    /** How balance and master make the factors. */
    enum Mode {
        Offset = 0, ///< they are added
        Gain = 1    ///< they are multiplied, in stops
    };
    Q_ENUM(Mode)

    /** An `Offset` ball at neutral. */
    explicit TrackBall(QWidget* parent = nullptr);
    ~TrackBall() override;

    /** Red, green and blue, as they were set. Until they are, or the user edits them, neutral(). */
    QVector3D factors() const;
    /** Shows the three. Ignored unless all are finite. */
    void setFactors(const QVector3D& factors);
    void setFactors(float red, float green, float blue);

    /** The way from the middle, rightwards and upwards; the rim is 1 away. */
    QPointF balance() const;
    /** What the ring shows: the mean of the factors, in `Gain` the geometric one. */
    double master() const;

    /** `Offset` at first. The factors stay; like all that makes scaleChanged() it ends an edit. */
    Mode mode() const;
    void setMode(Mode mode);

    /** What the rim means: added there at most, or the number of stops. 0, as at first, is 0.25 for
        `Offset` and 1 stop for `Gain`, which range() then returns. From 1e-6 to 1e6, as the
        sensitivity; others are ignored, as is whatever is not finite by all setters of numbers
        here. The factors stay. */
    double range() const;
    void setRange(double range);

    /** The master of a ball that does nothing: 0 for `Offset` and 1 for `Gain` until it is set. The
        factors stay, but those of an untouched ball. */
    double neutral() const;
    void setNeutral(double neutral);

    /** Where red is, in radians counterclockwise from the right; 0 at first. The factors stay. */
    double hueRotation() const;
    void setHueRotation(double radians);

    /** How far the balance goes for a drag by the radius of the ball, in ways from the middle to the
        rim; 0.25 at first. */
    double sensitivity() const;
    void setSensitivity(double sensitivity);

    /** `WheelWhenFocused` at first. */
    WheelPolicy::Policy wheelPolicy() const;
    void setWheelPolicy(WheelPolicy::Policy policy);

    /** What stands above the ball, and names it to assistive technology; empty, and without room for
        it, at first. */
    QString title() const;
    void setTitle(const QString& title);

    /** Between editStarted() and editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Go back to neutral as the user does, each in one edit: the balance, the master, both. */
    void resetBalance();
    void resetMaster();
    void resetToNeutral();
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** The factors became other ones, by whomever; or, after scaleChanged(), balance and master for
        the same ones. */
    void factorsChanged(const QVector3D& factors);
    /** The user begins to change the factors. Always followed by exactly one editFinished(), unless
        the ball is deleted. */
    void editStarted();
    /** The user changed the factors; at every movement of a drag, every notch, every key repeat. */
    void valueEdited(const QVector3D& factors);
    /** The edit is over. Not accepted: taken back, by Escape, the right button or cancelEdit(); the
        factors are what they were at editStarted(), and valueEdited() said so before. */
    void editFinished(bool accepted);

    /** Mode, range, neutral or the rotation of the hues became other ones. */
    void scaleChanged();
    /** The sensitivity or the wheel policy became another one. */
    void handlingChanged();
    /** The title became another one. */
    void titleChanged(const QString& title);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    friend class TrackBallAccessible;
    friend class TrackBallPrivate;
    friend class TrackBallRingAccessible;

    const std::unique_ptr<TrackBallPrivate> d;
};

} // namespace Kestrel::UI
