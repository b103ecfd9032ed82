#pragma once

#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/NumberEntry_p.h>
#include <KxUI/values/NumberText_p.h>
#include <KxUI/values/PointerTravel_p.h>
#include <KxUI/values/ScrubDrag_p.h>

#include <QLabel>
#include <QPointer>
#include <QStyle>
#include <QTimer>

#include <cfloat>
#include <limits>
#include <memory>
#include <optional>

class QHelpEvent;
class QLineEdit;
class QMenu;
class QPainter;

namespace Kestrel::UI {

/** The data of a DoubleSpinBox, and what its user does.

    While no text is edited, the line edit is hidden and the field paints its text itself: a panel
    of hundreds of numbers has nothing but numbers to lay out then.

    Functions that return bool return false where a listener deleted the field. */
class DoubleSpinBoxPrivate {
public:
    explicit DoubleSpinBoxPrivate(DoubleSpinBox* box);

    DoubleSpinBox* q;
    EditBracket<DoubleSpinBox, double> bracket;

    double value = 0.0;
    double minimum = -DBL_MAX;
    double maximum = DBL_MAX;
    double softMinimum = std::numeric_limits<double>::quiet_NaN();
    double softMaximum = std::numeric_limits<double>::quiet_NaN();
    double defaultValue = 0.0;
    double singleStep = 0.01;
    int decimals = 4;
    int fewestDecimals = 0;
    int shownUnit = -1;
    DoubleSpinBox::StepMode stepMode = DoubleSpinBox::SingleSteps;
    WheelPolicy::Policy wheelPolicy = WheelPolicy::WheelWhenFocused;
    bool fineTune = true;
    bool barVisible = false;
    bool mixed = false;
    QString prefix;
    QString specialText;
    ValueUnits units;
    NumberNotation notation;

    // Values and texts.
    double clamped(double wanted) const;
    /** Shows another value, and tells of it. */
    void keep(double wanted);
    void limit(double lowest, double highest);
    void limitSoftly(double lowest, double highest);
    /** The end that is usual, or the last one that is possible; not a number for none. */
    double usualEnd(bool upper) const;
    /** The unit that a value is shown in: another one where that has no number for it. */
    int unitOf(double base) const;
    double numberOf(double base) const;
    double baseOf(double number, int unit) const;
    QString numberTextOf(double base) const;
    QString suffixText() const;
    const QString& shownText();
    /** What can be edited without a loss. */
    QString editText() const;
    void redisplay();
    /** The same, and tells that another text is shown. */
    void changeDisplay();
    void setMixed(bool mixed);

    // Steps.
    /** The value so many steps further; by `grain` each, or as the step mode says. */
    double stepped(double steps, double factor, std::optional<double> grain = {}) const;
    /** The step of the digit at a place in the field. */
    std::optional<double> grainAt(const QPoint& at);
    bool changeTo(double wanted);
    bool setOnce(double wanted);

    // Typing.
    bool typing = false;
    bool relativeEditing = false;
    bool opensMenu = false;
    QString settledText; ///< what is in the line edit and needs no reading
    QString problem;     ///< why what was typed can not be read
    int problemColumn = 0;
    bool isText() const; ///< whether something was typed that was not taken yet
    void beginTyping();
    void beginTyping(const QString& text);
    void leaveTyping();
    void settle(const QString& text);
    NumberEntry read(const QString& text) const;
    bool takeText();
    bool finishTyping();
    bool stepDigit(double factor);

    // Keys.
    bool isOwnKey(const QKeyEvent& key) const;
    bool isStepKey(const QKeyEvent& key) const;
    bool startsTyping(const QKeyEvent& key) const;
    bool stepByKey(const QKeyEvent& key);
    void idleKey(QKeyEvent& key);
    void typingKey(QKeyEvent& key);
    void copyValue() const;
    bool pasteValue();

    // Mouse.
    /** Kept as what it is to its end: the last events come when it is no label any more. */
    QPointer<QObject> label;
    /** A button went down; `arrow` is that of the arrows which it is on. */
    bool press(const QMouseEvent& event, QStyle::SubControl arrow = QStyle::SC_None);
    bool move(const QMouseEvent& event);
    /** Ends the drag; `wasClick` where it was none. */
    bool release(bool& wasClick);
    void stopArrow();
    QStyle::SubControl arrowAt(const QPoint& at) const;
    QStyle::SubControl pressedArrow() const { return m_arrow; }
    bool filterEdit(QEvent* event);
    bool filterLabel(QEvent* event);
    void hover(const QPoint& at);

    // Painting.
    void paintText(QPainter& painter);
    void paintBar(QPainter& painter) const;
    void paintProblem(QPainter& painter) const;
    QSize sizeFor(const QStringList& numbers) const;
    QString sample(int digits) const;
    bool showToolTip(const QHelpEvent& event);

    QMenu* makeMenu();
    QLineEdit* edit() const { return q->lineEdit(); }

private:
    QString m_shown; ///< null: to be made
    bool m_keepsText = false;
    bool m_editIsWatched = false;
    bool m_snaps = false;
    QStyle::SubControl m_arrow = QStyle::SC_None;
    ScrubDrag m_scrub;
    int m_scrubUnit = -1;
    double m_scrubBase = 0.0; ///< the value that the drag began at, or was set in it
    Qt::KeyboardModifiers m_modifiers;
    PointerTravel m_travel;
    std::unique_ptr<QTimer> m_edge;   ///< made by the first drag that comes to an edge
    std::unique_ptr<QTimer> m_repeat; ///< made by the first press on an arrow

    bool refuse(const QString& text, const NumberEntry& entry);
    bool take(const NumberEntry& entry);
    bool takeMixed(const NumberEntry& entry);
    bool showScrubbed(bool isNew);
    void passEdge(const QMouseEvent& event);
    void goOnAtEdge();
    ScrubDrag::Start scrubStart(const QPoint& at, bool onArrow);
    void rebaseScrub(double base);
    void beginArrow(QStyle::SubControl arrow);
    void stepByArrow();
    void addStandardActions(QMenu* menu);
    void addValueActions(QMenu* menu);
    void addUnits(QMenu* menu);
    QRect textRect() const;
    int textLeft(const QString& text) const;
};

/** The reason in words for users. */
QString reasonOf(NumberProblem problem);

} // namespace Kestrel::UI
