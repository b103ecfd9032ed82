#pragma once

#include <QAccessibleWidget>
#include <QPointer>

namespace Kestrel::UI {

class TrackBall;

/** A track ball as assistive technology sees it: a colour chooser whose value is the three factors in
    words, with the ring as its child. */
class TrackBallAccessible : public QAccessibleWidget {
public:
    explicit TrackBallAccessible(TrackBall* ball);
    ~TrackBallAccessible() override;
    TrackBallAccessible(const TrackBallAccessible&) = delete;
    TrackBallAccessible& operator=(const TrackBallAccessible&) = delete;

    /** The factors became other ones. */
    static void tellValue(TrackBall* ball);

    QString text(QAccessible::Text kind) const override;
    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;

private:
    TrackBall* ball() const;

    mutable QAccessible::Id m_ring = 0; ///< made when it is asked for
};

/** The ring: a dial whose value is the master, in the unit of the factors. Setting it is an edit of
    the user; it is not limited to what the ring can show. */
class TrackBallRingAccessible : public QAccessibleInterface, public QAccessibleValueInterface {
public:
    explicit TrackBallRingAccessible(TrackBall* ball);

    bool isValid() const override { return !m_ball.isNull(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::Dial; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    /** The ends that the ring shows. */
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    /** A notch of the wheel. */
    QVariant minimumStepSize() const override;

private:
    double masterAt(double steps) const;

    QPointer<TrackBall> m_ball;
};

} // namespace Kestrel::UI
