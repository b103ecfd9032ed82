#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/WheelPolicy.h>
#include <KxUI/values/ValueUnits.h>

#include <QAbstractSpinBox>

#include <memory>

class QLabel;

namespace Kestrel::UI {

class DoubleSpinBoxPrivate;

/** A number that is typed, stepped or dragged. The value is a double that is kept as it was set;
    how many decimals are shown never changes it.

    Typing: a number in the user's locale or with a point; an expression of + - * / ^ and
    parentheses, functions (abs min max floor ceil round sqrt exp ln log10 log2 sin cos tan asin
    acos atan, in degrees, and stops), pi, e, and x for the number shown; units of units(). "+=",
    "-=", "*=" and "/=" first change the present value, by a part of it where "%" is no unit:
    "+=10%". Return takes it, Escape takes it back; what can not be read is marked and left to be
    mended.
    Mouse: a drag across the field or its label() changes the value by a step for 4 pixels, with
    Shift ten steps, with Control a tenth, with Alt in whole steps; while text is edited, the middle
    button does it. A click begins to type, a double click on the label resets.
    Keys: Up and Down step the digit right of the caret while text is edited, else by singleStep();
    Page Up and Page Down ten times as much; Ctrl+Home, Ctrl+End go to the soft ends; Backspace and
    Delete reset, and Ctrl+C and Ctrl+V copy and paste the value where no text is edited.

    In place of QDoubleSpinBox it takes the same calls for value, range, step, decimals, prefix and
    suffix. Interface thread. */
class KXUI_EXPORT DoubleSpinBox : public QAbstractSpinBox {
    Q_OBJECT
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged USER true)
    Q_PROPERTY(double minimum READ minimum WRITE setMinimum NOTIFY limitsChanged)
    Q_PROPERTY(double maximum READ maximum WRITE setMaximum NOTIFY limitsChanged)
    Q_PROPERTY(double softMinimum READ softMinimum WRITE setSoftMinimum NOTIFY limitsChanged)
    Q_PROPERTY(double softMaximum READ softMaximum WRITE setSoftMaximum NOTIFY limitsChanged)
    Q_PROPERTY(double defaultValue READ defaultValue WRITE setDefaultValue NOTIFY handlingChanged)
    Q_PROPERTY(double singleStep READ singleStep WRITE setSingleStep NOTIFY handlingChanged)
    Q_PROPERTY(StepMode stepMode READ stepMode WRITE setStepMode NOTIFY handlingChanged)
    Q_PROPERTY(Kestrel::UI::WheelPolicy::Policy wheelPolicy READ wheelPolicy WRITE setWheelPolicy
                   NOTIFY handlingChanged)
    Q_PROPERTY(
        bool fineTuneEnabled READ isFineTuneEnabled WRITE setFineTuneEnabled NOTIFY handlingChanged)
    Q_PROPERTY(int decimals READ decimals WRITE setDecimals NOTIFY displayChanged)
    Q_PROPERTY(int fewestDecimals READ fewestDecimals WRITE setFewestDecimals NOTIFY displayChanged)
    Q_PROPERTY(QString prefix READ prefix WRITE setPrefix NOTIFY displayChanged)
    Q_PROPERTY(QString suffix READ suffix WRITE setSuffix NOTIFY displayChanged STORED false)
    Q_PROPERTY(QString unit READ unit WRITE setUnit NOTIFY displayChanged)
    Q_PROPERTY(QString specialValueText READ specialValueText WRITE setSpecialValueText NOTIFY
                   displayChanged)
    Q_PROPERTY(bool barVisible READ isBarVisible WRITE setBarVisible NOTIFY displayChanged)
    Q_PROPERTY(bool mixed READ isMixed WRITE setMixed NOTIFY displayChanged)
    Q_PROPERTY(QString text READ text NOTIFY displayChanged)

public:
    /** What a step of keys, wheel and drags is. */
    enum StepMode {
        SingleSteps,  ///< singleStep()
        DigitSteps,   ///< the digit under the pointer, of what is shown
        AdaptiveSteps ///< a tenth of the value's first digit; singleStep() at 0
    };
    Q_ENUM(StepMode)

    /** A field at 0, without units, that any finite number fits in. */
    explicit DoubleSpinBox(QWidget* parent = nullptr);
    ~DoubleSpinBox() override;

    /** In the base of units(); 0 at first. */
    double value() const;
    /** Whether the user changes the value: between editStarted() and editFinished(). */
    bool isEditing() const;

    /** The ends that nothing passes; -DBL_MAX and DBL_MAX at first. Each moves the other one along
        where they would cross; what is not a number is ignored, and an infinite end is the largest
        double. The value follows. */
    double minimum() const;
    void setMinimum(double minimum);
    double maximum() const;
    void setMaximum(double maximum);
    /** Both, in either order. */
    void setRange(double minimum, double maximum);

    /** The ends of what is usual: where the bar begins and ends, and Ctrl+Home and Ctrl+End go to.
        Numbers beyond can be typed and dragged. Not a number, as at first: none. */
    double softMinimum() const;
    void setSoftMinimum(double minimum);
    double softMaximum() const;
    void setSoftMaximum(double maximum);
    void setSoftRange(double minimum, double maximum);

    /** What a reset goes to; 0 at first. Only finite ones are taken. */
    double defaultValue() const;
    void setDefaultValue(double value);

    /** A step, in the unit that is shown; 0.01 at first. Only finite ones above 0 are taken. */
    double singleStep() const;
    void setSingleStep(double step);
    StepMode stepMode() const;
    void setStepMode(StepMode mode);

    /** WheelWhenFocused at first. */
    WheelPolicy::Policy wheelPolicy() const;
    void setWheelPolicy(WheelPolicy::Policy policy);

    /** Whether drags change the value; true at first. */
    bool isFineTuneEnabled() const;
    void setFineTuneEnabled(bool enabled);

    /** The most places shown, from 0 to 15, 4 at first, and the fewest, 0 at first; between them
        zeros at the end are left away. */
    int decimals() const;
    void setDecimals(int decimals);
    int fewestDecimals() const;
    void setFewestDecimals(int decimals);

    /** Stands before the number. */
    QString prefix() const;
    void setPrefix(const QString& prefix);

    /** The units that can be typed; none at first. The first one is shown. */
    const ValueUnits& units() const;
    void setUnits(const ValueUnits& units);
    /** The symbol of the unit that is shown; one of units(), by symbol or alias, else ignored. */
    QString unit() const;
    void setUnit(const QString& symbol);
    /** As setUnits(ValueUnits::suffix()); the getter returns what stands behind the number. */
    QString suffix() const;
    void setSuffix(const QString& suffix);

    /** Shown, and read, in place of the minimum; none where it is empty. */
    QString specialValueText() const;
    void setSpecialValueText(const QString& text);

    /** Whether a bar behind the number shows where it is between the soft ends, or the hard ones.
     */
    bool isBarVisible() const;
    void setBarVisible(bool visible);

    /** Whether the field stands for several values, and shows a dash. A typed text is then told by
        relativeEdited(). Steps and drags start from value() and end this; where such an edit is not
        accepted, the host sets it again. */
    bool isMixed() const;
    void setMixed(bool mixed);

    /** A label that is a handle, too: dragged as the field is, double-clicked to reset, clicked to
        focus the field. Borrowed; null for none. */
    QLabel* label() const;
    void setLabel(QLabel* label);

    /** What is shown, or typed. */
    QString text() const;
    /** The number alone, as text() shows it. */
    QString cleanText() const;
    /** The number that is shown to its last digit, in the classic notation and without its unit:
        it reads back to the same bits. */
    QString exactText() const;
    /** A value as the field shows it, without prefix and unit; and back: not a number where a text
        can not be read. */
    QString textFromValue(double value) const;
    double valueFromText(const QString& text) const;

    /** Single steps, as the user, in one edit. */
    void stepBy(int steps) override;
    QValidator::State validate(QString& input, int& position) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Clamped to the range; not a number, and an infinite one, is ignored; -0 is 0. */
    void setValue(double value);
    /** As the user, in one edit. */
    void resetToDefault();
    /** Takes the edit back that goes on, as Escape does. Nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** The value became another one, by whomever. */
    void valueChanged(double value);
    /** The user begins to change the value. Always followed by one editFinished(), unless the field
        is deleted. */
    void editStarted();
    /** The user changed the value; at every movement of a drag, every notch, every repeat of a key.
     */
    void valueEdited(double value);
    /** The edit is over. Not accepted: the value is what it was at editStarted(), and valueEdited()
        said so before. */
    void editFinished(bool accepted);
    /** While isMixed(), between editStarted() and editFinished(): every value is to be changed by
        '+', '-', '*' or '/' and the operand, or set to it by '='. In the base of units(). */
    void relativeEdited(QChar operation, double operand);
    /** What was typed can not be read, for a reason that users understand, from the character at
        `column` on, counted from 0. */
    void textRefused(const QString& text, const QString& reason, int column);
    /** Ends, or soft ends, became other ones. */
    void limitsChanged();
    /** Steps, default, wheel policy or fine tuning became other ones. */
    void handlingChanged();
    /** The text, or the way it is made, became another one for another reason than the value. */
    void displayChanged();

protected:
    StepEnabled stepEnabled() const override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    friend class DoubleSpinBoxAccessible;
    friend class DoubleSpinBoxPrivate;
    const std::unique_ptr<DoubleSpinBoxPrivate> d;
};

} // namespace Kestrel::UI
