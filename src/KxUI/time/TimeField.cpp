#include <KxUI/time/TimeField.h>

#include <KxUI/time/Beep_p.h>
#include <KxUI/time/TimeFieldEdit_p.h>
#include <KxUI/time/TimeMetaTypes_p.h>

#include <QApplication>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

namespace Kestrel::UI {

using Base::InvalidTime;
using Base::Time;
namespace Timecode = Base::Timecode;

void (*beep)() = &QApplication::beep;

TimeField::TimeField(bool frameless, bool ignoreTimecodeStart, QWidget* parent)
    : QLineEdit(parent)
    , m_ignoreTimecodeStart(ignoreTimecodeStart) {
    registerTimeMetaTypes();
    setFrame(false);
    setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    setContextMenuPolicy(Qt::DefaultContextMenu);
    setAccessibleName(tr("Time"));
    if (frameless) {
        QPalette blended = palette();
        blended.setColor(QPalette::Text, QApplication::palette().color(QPalette::BrightText));
        blended.setColor(QPalette::Base, QApplication::palette().color(QPalette::Window));
        setPalette(blended);
    }
    connect(this, &QLineEdit::returnPressed, this, &TimeField::handleReturnPressed);
    connect(this, &QLineEdit::editingFinished, this, &TimeField::handleEditingFinished);
    updateWidth();
    refresh();
}

TimeField::~TimeField() = default;

void TimeField::setTime(Time time, bool flag) {
    if (time != m_time && isInRange(time))
        store(time, flag);
}

void TimeField::store(Time time, bool flag) {
    m_time = time;
    refresh();
    Q_EMIT timeChanged(time);
    Q_EMIT timeChanged(time, flag);
}

void TimeField::setText(const QString& text) {
    QLineEdit::setText(text);
    m_settledText.reset();
}

bool TimeField::isInRange(Time time) const {
    return !m_useMinMaxTime || (m_minTime <= time && time <= m_maxTime);
}

void TimeField::setTimeBase(Base::TimeBase timeBase) {
    if (timeBase == m_timeBase)
        return;
    m_timeBase = timeBase;
    refresh();
}

void TimeField::setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames) {
    if (displayTimecode != m_displayTimecode || displayDropFrames != m_displayDropFrames) {
        m_displayTimecode = displayTimecode;
        m_displayDropFrames = displayDropFrames;
        refresh();
    }
    updateWidth();
}

Timecode::DisplayType TimeField::timeDisplayFormat() const {
    if (!m_displayTimecode)
        return Timecode::Frames;
    return m_displayDropFrames ? Timecode::DropFrameTimecode : Timecode::Timecode;
}

void TimeField::setTimecodeStart(Time timecodeStart) {
    if (timecodeStart == m_timecodeStart)
        return;
    m_timecodeStart = timecodeStart;
    if (!m_ignoreTimecodeStart)
        refresh();
}

void TimeField::setTimeDisplay(Base::TimeBase timeBase, bool displayTimecode,
                               bool displayDropFrames, Time timecodeStart) {
    if (timeBase == m_timeBase && displayTimecode == m_displayTimecode &&
        displayDropFrames == m_displayDropFrames && timecodeStart == m_timecodeStart)
        return;
    m_updating = true;
    setTimeBase(timeBase);
    setTimeDisplayFormat(displayTimecode, displayDropFrames);
    setTimecodeStart(timecodeStart);
    m_updating = false;
    refresh();
}

TimeFieldNotation TimeField::notation() const {
    return {m_timeBase, timeDisplayFormat(), m_ignoreTimecodeStart ? 0 : m_timecodeStart};
}

void TimeField::refresh() {
    if (m_updating)
        return;
    const TimeFieldNotation shown = notation();
    QString shownText;
    if (m_time != InvalidTime)
        shownText = QString::fromStdString(
            Timecode::toString(m_time, shown.timeBase, shown.type, false, shown.offset));
    // Playback sets times many times a second: a text that stays keeps caret and selection.
    if (shownText != text())
        QLineEdit::setText(shownText);
    m_settledText = shownText;
}

void TimeField::updateWidth() {
    const QString widest =
        m_displayTimecode ? QStringLiteral("-00:00:00:00") : QStringLiteral("000000");
    setFixedWidth(fontMetrics().horizontalAdvance(widest) + 8);
}

void TimeField::handleReturnPressed() {
    handleEditingFinished();
    selectAll();
}

void TimeField::handleEditingFinished() {
    // Return and the loss of focus both end an edit; it is one edit all the same.
    if (m_updating || m_settledText == text())
        return;
    m_settledText = text();
    const TimeFieldEdit edit =
        readTimeFieldEdit(text().trimmed().toStdString(), notation(), m_time);
    switch (edit.kind) {
    case TimeFieldEdit::Nothing:
        refresh();
        break;
    case TimeFieldEdit::Failed:
        beep();
        break;
    case TimeFieldEdit::SetRange:
        refresh();
        Q_EMIT rangeChanged(edit.time, edit.upper);
        break;
    case TimeFieldEdit::SetTime:
        refresh(); // where setTime() stays at its time the text shows it again
        setTime(edit.time, false);
        break;
    }
}

void TimeField::incrementDigit(int direction) {
    if (isReadOnly())
        return;
    const QString before = text();
    const int caret = hasSelectedText() ? selectionStart() : cursorPosition();
    const Time step = timeFieldDigitStep(before.toStdString(), caret, notation());
    if (step == 0)
        return;
    const Time time = addTimes(m_time == InvalidTime ? 0 : m_time, direction > 0 ? step : -step);
    if (time == InvalidTime || time == m_time || !isInRange(time))
        return;
    // The digit is selected before the host hears of the time, and may set another one.
    const int fromEnd = before.size() - caret;
    m_time = time;
    refresh();
    setSelection(qMax(0, text().size() - fromEnd), 1);
    Q_EMIT timeChanged(time);
    Q_EMIT timeChanged(time, false);
}

bool TimeField::event(QEvent* event) {
    // The keys that the field uses must not trigger the host's shortcuts while it has the focus.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if ((key->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier) {
            switch (key->key()) {
            case Qt::Key_Escape:
            case Qt::Key_Return:
            case Qt::Key_Enter:
            case Qt::Key_Up:
            case Qt::Key_Down:
            case Qt::Key_Left:
            case Qt::Key_Right:
                event->accept();
                return true;
            default:
                break;
            }
        }
    }
    return QLineEdit::event(event);
}

void TimeField::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateWidth();
    QLineEdit::changeEvent(event);
}

void TimeField::focusInEvent(QFocusEvent* event) {
    m_selectAllOnClick = event->reason() == Qt::MouseFocusReason;
    QLineEdit::focusInEvent(event);
}

void TimeField::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        for (QWidget* ancestor = parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
            if (ancestor->focusPolicy() != Qt::NoFocus) {
                ancestor->setFocus(Qt::OtherFocusReason);
                break;
            }
        }
        event->accept();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        QLineEdit::keyPressEvent(event);
        event->accept();
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        incrementDigit(event->key() == Qt::Key_Up ? 1 : -1);
        event->accept();
        break;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void TimeField::mousePressEvent(QMouseEvent* event) {
    if (m_selectAllOnClick) {
        m_selectAllOnClick = false;
        selectAll();
        event->accept();
        return;
    }
    QLineEdit::mousePressEvent(event);
}

void TimeField::wheelEvent(QWheelEvent* event) {
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        QLineEdit::wheelEvent(event);
        return;
    }
    incrementDigit(delta > 0 ? 1 : -1);
    event->accept();
}

} // namespace Kestrel::UI
