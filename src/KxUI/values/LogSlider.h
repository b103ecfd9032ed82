#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QSlider>

#include <memory>

namespace Kestrel::UI {

class LogSliderAccessible;
class LogSliderPrivate;

/** A slider over several decades: its whole positions stand for real values on a base-10
    logarithmic scale between two powers of ten. Decade ticks are drawn on one side of the groove
    and labels on the other. Call setRealRange() before anything that reads or writes a real value.

    Escape, or the right button pressed while the left one is down, takes back what was done since
    that was pressed. What the user does is told as one edit from the first change to the release of
    the button or key, or half a second after the last notch of the wheel; without tracking() a drag
    is one change at its release.
    Interface thread. */
class KXUI_EXPORT LogSlider : public QSlider {
    Q_OBJECT
    /** As realValue(), but 0 before a range was set; what can not be set then is ignored. */
    Q_PROPERTY(double realValue READ realValueOrZero WRITE setRealValueIfAny NOTIFY realValueChanged
                   STORED false USER true)
    Q_PROPERTY(bool drawLogTicks READ drawLogTicks WRITE setDrawLogTicks NOTIFY ticksChanged)
    Q_PROPERTY(int tickTextSize READ tickTextSize WRITE setTickTextSize NOTIFY ticksChanged)
    Q_PROPERTY(QColor tickColor READ tickColor WRITE setTickColor NOTIFY ticksChanged)
    Q_PROPERTY(QColor expTickColor READ expTickColor WRITE setExpTickColor NOTIFY ticksChanged)

public:
    /** A vertical slider without a range, as a plain QSlider is. */
    explicit LogSlider(QWidget* parent = nullptr);
    /** The same in the orientation given. */
    explicit LogSlider(Qt::Orientation orientation, QWidget* parent = nullptr);
    ~LogSlider() override;

    /** The range 10^minExp to 10^maxExp, in either order, with `precision` positions a decade.
        Throws std::invalid_argument, and changes nothing, for a precision below 1, for equal
        exponents, for exponents that a double can not hold (below -307 or above 308) and for a
        range that whole positions can not hold. */
    void setRealRange(int minExp, int maxExp, int precision);

    /** 10^(value() / precision). Throws std::logic_error before a range was set. */
    double realValue() const;

    /** Goes to the position of the value, clamped into the range. A slider that reads exactly this
        value already stays where it is. Throws std::logic_error before a range was set, and
        std::invalid_argument for a value that is not a number. */
    void setRealValue(double value);

    /** The hints of a plain slider, with room for the labels if they are drawn. */
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /** Whether ticks and labels are drawn; true at first. Takes effect with the next painting, as
        do the size and the colours. */
    bool drawLogTicks() const;
    void setDrawLogTicks(bool draw);

    /** The pixel size of the labels, and the room that is reserved for them; 8 at first. */
    int tickTextSize() const;
    void setTickTextSize(int size);

    /** The colour of the ticks and labels between powers of ten; an invalid one is replaced at the
        next painting by one of the palette. */
    QColor tickColor() const;
    void setTickColor(const QColor& color);

    /** The colour of the ticks and labels at powers of ten, as tickColor(). */
    QColor expTickColor() const;
    void setExpTickColor(const QColor& color);

    /** Whether the user has begun to change the value: from editStarted() to editFinished(). */
    bool isEditing() const;

public Q_SLOTS:
    /** Takes the current drag back, as Escape does. Nothing without a drag. */
    void cancelDrag();
    /** Takes the current edit back, as Escape does. Nothing without an edit. */
    void cancelEdit();

Q_SIGNALS:
    /** The position became another one, or came to stand for another value with the range. */
    void realValueChanged(double value);
    /** Whether ticks are drawn, their colours or the size of their labels changed. */
    void ticksChanged();
    /** The user begins to change the value. Always followed by one editFinished(), unless the
        slider is deleted. */
    void editStarted();
    /** The user changed the value; the property realValue. */
    void valueEdited(double value);
    /** The edit is over. Not accepted: it was taken back, the value is what it was at
        editStarted(), and valueEdited() said so before. */
    void editFinished(bool accepted);

protected:
    /** The real value of a position, for a slider whose range was set. */
    double calculateRealValue(int position) const;
    /** The position of a real value, for a slider whose range was set. */
    int calculateSliderValue(double value) const;

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    friend class LogSliderAccessible;
    friend class LogSliderPrivate;

    double realValueOrZero() const;
    void setRealValueIfAny(double value);
    void requireRange() const;
    void moved(int position);
    bool endDrag();
    int along(const QPoint& point) const;
    QSize withLabels(QSize hint) const;
    void paintTicks(QPainter& painter);

    const std::unique_ptr<LogSliderPrivate> d;
};

} // namespace Kestrel::UI
