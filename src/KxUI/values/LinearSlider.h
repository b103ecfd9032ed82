#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/WheelPolicy.h>

#include <QVector>
#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class ColorSlider;
class LinearSliderPrivate;

/** A slider over real values, with ticks and labels where wanted. Values are doubles and nothing is
    rounded but at snap points and on a grid(). A value outside the range that the host sets stays
    as it is: the handle stands at that end with an arrow on it, and only what the user does lies
    within the range.

    Mouse: a press on the groove brings the handle there, or steps towards it, as pressMode() says;
    the middle button always brings it. A drag goes ten times as far with Shift, a tenth with
    Control, a hundredth with both; a press with one of them moves nothing by itself. Within 6
    pixels of the default value, a long tick, the centre or one of snapPoints() the value goes
    there, and leaves it 12 pixels away; not with Control, and the other way round with Alt, or
    after S, while dragging. A double click on the handle goes to the default value.

    Keys: arrows change the value by singleStep(), Page Up and Page Down by pageStep(), both with
    the factors above; Home and End go to the ends, Backspace and Delete to the default value. A
    digit, a sign, a point or F2 opens a field for the exact number. Interface thread. */
class KXUI_EXPORT LinearSlider : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged USER true)
    Q_PROPERTY(double minimum READ minimum WRITE setMinimum NOTIFY limitsChanged)
    Q_PROPERTY(double maximum READ maximum WRITE setMaximum NOTIFY limitsChanged)
    Q_PROPERTY(double singleStep READ singleStep WRITE setSingleStep NOTIFY handlingChanged)
    Q_PROPERTY(double pageStep READ pageStep WRITE setPageStep NOTIFY handlingChanged)
    Q_PROPERTY(double grid READ grid WRITE setGrid NOTIFY handlingChanged)
    Q_PROPERTY(double defaultValue READ defaultValue WRITE setDefaultValue NOTIFY handlingChanged)
    Q_PROPERTY(
        Qt::Orientation orientation READ orientation WRITE setOrientation NOTIFY displayChanged)
    Q_PROPERTY(TickMode tickMode READ tickMode WRITE setTickMode NOTIFY displayChanged)
    Q_PROPERTY(double exponent READ exponent WRITE setExponent NOTIFY displayChanged)
    Q_PROPERTY(double centre READ centre WRITE setCentre NOTIFY displayChanged)
    Q_PROPERTY(QString suffix READ suffix WRITE setSuffix NOTIFY displayChanged)
    Q_PROPERTY(PressMode pressMode READ pressMode WRITE setPressMode NOTIFY handlingChanged)
    Q_PROPERTY(Kestrel::UI::WheelPolicy::Policy wheelPolicy READ wheelPolicy WRITE setWheelPolicy
                   NOTIFY handlingChanged)

public:
    /** What is drawn beside the groove. Every few ticks is a long one. */
    enum TickMode {
        NoTicks = 0,       ///< nothing
        Ticks = 1,         ///< ticks at least 8 pixels apart
        TicksAndLabels = 2 ///< and a number at the long ones
    };
    Q_ENUM(TickMode)

    /** What a press of the left button on the groove does. */
    enum PressMode {
        JumpToPress = 0, ///< the handle goes there and is dragged on
        StepToPress = 1  ///< the value goes there by pageStep() while the button is down
    };
    Q_ENUM(PressMode)

    /** A horizontal slider from 0 to 1 at 0, without ticks. */
    explicit LinearSlider(QWidget* parent = nullptr);
    ~LinearSlider() override;

    /** The value as it was set. */
    double value() const;

    /** The range, in either order. The value stays as it is. Like every setter of a number here it
        ignores what is not finite. */
    double minimum() const;
    double maximum() const;
    void setRange(double minimum, double maximum);
    /** One end of the range; moves the other one along where it would lie beyond it. */
    void setMinimum(double minimum);
    void setMaximum(double maximum);

    /** What an arrow key or a notch of the wheel changes the value by. 0, as at first: about a
        hundredth of the range, which singleStep() then returns. Negative ones are ignored. */
    double singleStep() const;
    void setSingleStep(double step);
    /** What a Page key or a press that steps changes it by. 0, as at first: ten single steps. */
    double pageStep() const;
    void setPageStep(double step);

    /** The user gets to multiples of this only, and ticks are no closer; 1 for whole numbers. 0, as
        at first: to every value. The ends can be reached always. */
    double grid() const;
    void setGrid(double grid);

    /** What a reset goes to, if it lies within the range; 0 at first. */
    double defaultValue() const;
    void setDefaultValue(double value);

    /** Horizontal at first. A vertical slider has its high end at the top. */
    Qt::Orientation orientation() const;
    void setOrientation(Qt::Orientation orientation);

    /** What is drawn beside the groove; `NoTicks` at first. A long tick is snapped to only where it
        is drawn. */
    TickMode tickMode() const;
    void setTickMode(TickMode mode);

    /** How the groove shares its length: a value stands at the power 1/exponent of its part of the
        range. 1, straight, at first; 2 gives the low end more room. From 0.01 to 100, others are
        ignored. */
    double exponent() const;
    void setExponent(double exponent);

    /** Where the filled part of the groove begins; not a number, as at first: at the low end. */
    double centre() const;
    void setCentre(double value);

    /** What stands behind the value where it is told: in the field for an exact number and to
        assistive technology. Empty at first. */
    QString suffix() const;
    void setSuffix(const QString& suffix);

    /** `JumpToPress` at first. */
    PressMode pressMode() const;
    void setPressMode(PressMode mode);

    /** `WheelWhenFocused` at first. */
    WheelPolicy::Policy wheelPolicy() const;
    void setWheelPolicy(WheelPolicy::Policy policy);

    /** Values besides default value, centre and long ticks that a drag stops at. Those outside the
        range count for nothing. */
    QVector<double> snapPoints() const;
    void setSnapPoints(const QVector<double>& values);

    /** Between editStarted() and editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Shows the value, also one outside the range. -0 is 0. */
    void setValue(double value);
    /** Goes to the default value as the user does, in one edit. */
    void resetToDefault();
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();
    /** Opens the field for an exact number over the handle, as F2 does: one edit, limited to the
        range. Return takes the number, and so does a press elsewhere; Escape closes. */
    void editNumber();

Q_SIGNALS:
    /** The value became another one, by whomever. */
    void valueChanged(double value);
    /** The user begins to change the value. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user changed the value; at every movement of a drag, every notch, every key repeat. */
    void valueEdited(double value);
    /** The edit is over. Not accepted: taken back, by Escape, the right button or cancelEdit(); the
        value is what it was at editStarted(), and valueEdited() said so before. */
    void editFinished(bool accepted);

    /** The range became another one. */
    void limitsChanged();
    /** Steps, grid, default value, press mode or wheel policy became other ones. */
    void handlingChanged();
    /** What is drawn became something else, for another reason than the value or the range. */
    void displayChanged();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    friend class ColorSlider;
    friend class LinearSliderPrivate;
    friend class TinySlider;
    LinearSlider(std::unique_ptr<LinearSliderPrivate> own, QWidget* parent);

    const std::unique_ptr<LinearSliderPrivate> d;
};

} // namespace Kestrel::UI
