#include <KxUI/values/DoubleSpinBox_p.h>

#include <KxUI/kit/EditModifiers.h>
#include <KxUI/values/NumberSteps_p.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {

QString reasonOf(NumberProblem problem) {
    switch (problem) {
    case NumberProblem::None:
        break;
    case NumberProblem::MissingNumber:
        return DoubleSpinBox::tr("A number is missing");
    case NumberProblem::UnexpectedText:
        return DoubleSpinBox::tr("This does not belong here");
    case NumberProblem::UnclosedParenthesis:
        return DoubleSpinBox::tr("A parenthesis is not closed");
    case NumberProblem::UnknownName:
        return DoubleSpinBox::tr("Unknown name");
    case NumberProblem::UnknownUnit:
        return DoubleSpinBox::tr("Unknown unit");
    case NumberProblem::UnitInDivisor:
        return DoubleSpinBox::tr("A unit in the divisor");
    case NumberProblem::UnitNotHere:
        return DoubleSpinBox::tr("No unit can stand here");
    case NumberProblem::UnitsDiffer:
        return DoubleSpinBox::tr("These units do not go together");
    case NumberProblem::WrongArguments:
        return DoubleSpinBox::tr("This function takes one number");
    case NumberProblem::DigitGroups:
        return DoubleSpinBox::tr("Digit groups are not read");
    case NumberProblem::TooLong:
        return DoubleSpinBox::tr("The text is too long");
    case NumberProblem::TooDeep:
        return DoubleSpinBox::tr("Too many parentheses");
    case NumberProblem::NoResult:
        return DoubleSpinBox::tr("The result is not a number");
    }
    return QString();
}

bool DoubleSpinBoxPrivate::isText() const {
    return typing && edit()->text() != settledText;
}

void DoubleSpinBoxPrivate::settle(const QString& text) {
    QLineEdit* line = edit();
    const bool all = line->selectedText() == line->text();
    const int caret = line->cursorPosition();
    settledText = text;
    line->setText(text);
    line->setCursorPosition(caret);
    if (all)
        line->selectAll();
}

void DoubleSpinBoxPrivate::beginTyping() {
    if (typing)
        return;
    QLineEdit* line = edit();
    if (!std::exchange(m_editIsWatched, true)) {
        line->installEventFilter(q);
        // By the name that it has Qt knows it as one that assistive technology need not see.
        line->setObjectName(QString());
        QObject::connect(line, &QLineEdit::textEdited, q, [this] {
            if (!std::exchange(problem, QString()).isNull())
                q->update();
        });
    }
    typing = true;
    settledText = editText();
    line->setText(settledText);
    line->setPlaceholderText(mixed ? shownText() : QString());
    line->selectAll();
    line->show();
    q->unsetCursor();
    if (!q->hasFocus())
        q->setFocus(Qt::OtherFocusReason);
    QFocusEvent focus(QEvent::FocusIn, Qt::OtherFocusReason); // for the caret
    line->event(&focus);
    q->update();
}

void DoubleSpinBoxPrivate::beginTyping(const QString& text) {
    beginTyping();
    if (!edit()->isReadOnly())
        edit()->setText(text);
}

void DoubleSpinBoxPrivate::leaveTyping() {
    if (!typing)
        return;
    typing = false;
    problem = QString();
    QFocusEvent focus(QEvent::FocusOut, Qt::OtherFocusReason);
    edit()->event(&focus);
    edit()->hide();
    redisplay();
}

NumberEntry DoubleSpinBoxPrivate::read(const QString& text) const {
    NumberEntry entry;
    if (!specialText.isEmpty() && text.trimmed() == specialText) {
        entry.kind = NumberEntry::Set;
        entry.value = minimum;
        return entry;
    }
    const bool hasPrefix = !prefix.isEmpty() && text.startsWith(prefix);
    const int from = hasPrefix ? int(prefix.size()) : 0;
    entry = readNumber(text.mid(from), {notation, units, unitOf(value), value});
    entry.column += from;
    return entry;
}

bool DoubleSpinBoxPrivate::refuse(const QString& text, const NumberEntry& entry) {
    problem = reasonOf(entry.problem);
    problemColumn = entry.column;
    edit()->setCursorPosition(entry.column);
    q->update();
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(q, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
    const QPointer<DoubleSpinBox> alive(q);
    Q_EMIT q->textRefused(text, problem, entry.column);
    return !alive.isNull();
}

bool DoubleSpinBoxPrivate::takeText() {
    if (!isText())
        return true;
    const QString text = edit()->text();
    const NumberEntry entry = read(text);
    if (entry.kind == NumberEntry::Failed)
        return refuse(text, entry);
    problem = QString();
    settledText = text; // the loss of focus while somebody is told reads it no more
    if (entry.kind != NumberEntry::Nothing && !take(entry))
        return false;
    if (typing)
        settle(editText());
    return true;
}

// Takes the text and shows the value. A text that can not be read stays.
bool DoubleSpinBoxPrivate::finishTyping() {
    if (!takeText())
        return false;
    if (!problem.isNull()) {
        QApplication::beep();
        return true;
    }
    leaveTyping();
    const QPointer<DoubleSpinBox> alive(q);
    Q_EMIT q->editingFinished();
    return !alive.isNull();
}

// The digit right of the caret, with whatever else was typed.
bool DoubleSpinBoxPrivate::stepDigit(double factor) {
    const int caret =
        edit()->hasSelectedText() ? edit()->selectionStart() : edit()->cursorPosition();
    const QString text = edit()->text();
    if (std::fabs(factor) < 1.0) {
        const auto place = digitAt(text, caret, notation);
        if (!takeText() || !problem.isNull() || !place)
            return true;
        return changeTo(
            stepped(factor < 0.0 ? -1.0 : 1.0, std::fabs(factor), powerOfTen(place->exponent)));
    }
    const auto step = steppedDigit(text, caret, int(std::lround(factor)), notation);
    const NumberEntry entry = step ? read(step->text) : NumberEntry();
    if (entry.kind != NumberEntry::Set) {
        if (!takeText() || !problem.isNull())
            return true;
        return changeTo(stepped(factor, 1.0));
    }
    const double wanted = clamped(entry.value) + 0.0;
    const QPointer<DoubleSpinBox> alive(q);
    settledText = wanted == entry.value ? step->text : exactNumberText(numberOf(wanted), notation);
    edit()->setText(settledText);
    edit()->setSelection(step->position, 1); // before the host hears of it, and may set another one
    m_keepsText = true;
    const bool changed = changeTo(wanted);
    if (!alive)
        return false;
    m_keepsText = false;
    if (typing && value != wanted && !isText())
        settle(editText());
    return changed;
}

bool DoubleSpinBoxPrivate::isStepKey(const QKeyEvent& key) const {
    switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        return key.modifiers().testFlag(Qt::ControlModifier);
    default:
        return false;
    }
}

// What begins a number or an expression. Letters are left to the shortcuts of the host.
bool DoubleSpinBoxPrivate::startsTyping(const QKeyEvent& key) const {
    if (key.text().isEmpty() || key.modifiers().testFlag(Qt::ControlModifier) ||
        key.modifiers().testFlag(Qt::AltModifier))
        return false;
    const QChar first = key.text().front();
    return first.isDigit() || first.unicode() == notation.point || first.unicode() == 0x2212 ||
           QStringLiteral(".-+*/(=").contains(first);
}

bool DoubleSpinBoxPrivate::isOwnKey(const QKeyEvent& key) const {
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return true;
    case Qt::Key_Escape:
        return typing;
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
    case Qt::Key_F2:
    case Qt::Key_Left:
    case Qt::Key_Right:
        return !typing;
    case Qt::Key_S:
        return bracket.gesture() == EditGestures::Drag;
    default:
        return isStepKey(key) ||
               (!typing && (startsTyping(key) || key.matches(QKeySequence::Copy) ||
                            key.matches(QKeySequence::Paste)));
    }
}

bool DoubleSpinBoxPrivate::stepByKey(const QKeyEvent& key) {
    if (q->isReadOnly())
        return true;
    if (!bracket.beginKey(key))
        return false;
    if (bracket.gesture() != EditGestures::Keys)
        return true;
    if (key.key() == Qt::Key_Home || key.key() == Qt::Key_End) {
        const double end = usualEnd(key.key() == Qt::Key_End);
        return std::isnan(end) || changeTo(end);
    }
    const bool up = key.key() == Qt::Key_Up || key.key() == Qt::Key_PageUp;
    const bool pages = key.key() == Qt::Key_PageUp || key.key() == Qt::Key_PageDown;
    const double steps = (up ? 1.0 : -1.0) * (pages ? 10.0 : 1.0);
    const double factor = EditModifiers::factor(key.modifiers());
    return typing ? stepDigit(steps * factor) : changeTo(stepped(steps, factor));
}

void DoubleSpinBoxPrivate::copyValue() const {
    QApplication::clipboard()->setText(q->exactText());
}

bool DoubleSpinBoxPrivate::pasteValue() {
    if (q->isReadOnly())
        return true;
    const QString text = QApplication::clipboard()->text().trimmed();
    if (text.isEmpty())
        return true;
    beginTyping(text);
    if (edit()->text() == settledText) { // the same number again
        leaveTyping();
        return true;
    }
    return finishTyping();
}

void DoubleSpinBoxPrivate::idleKey(QKeyEvent& key) {
    const bool writes = !q->isReadOnly();
    if (bracket.gesture() == EditGestures::Drag) {
        if (key.key() == Qt::Key_S)
            m_snaps = !m_snaps; // window managers often keep Alt and the mouse to themselves
        else
            key.ignore();
    } else if (isStepKey(key)) {
        stepByKey(key);
    } else if (key.matches(QKeySequence::Copy)) {
        copyValue();
    } else if (key.matches(QKeySequence::Paste)) {
        pasteValue();
    } else if (writes && (key.key() == Qt::Key_Backspace || key.key() == Qt::Key_Delete)) {
        q->resetToDefault();
    } else if (writes && startsTyping(key)) {
        beginTyping(key.text() == QLatin1String("=") ? QString() : key.text());
    } else if (key.key() != Qt::Key_Escape && isOwnKey(key)) {
        beginTyping();
        if (key.key() == Qt::Key_Left || key.key() == Qt::Key_Right)
            edit()->event(&key);
    } else {
        key.ignore();
    }
}

void DoubleSpinBoxPrivate::typingKey(QKeyEvent& key) {
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finishTyping();
        return;
    case Qt::Key_Escape:
        if (isText()) {
            problem = QString();
            settle(settledText);
            edit()->selectAll();
            q->update();
        } else {
            leaveTyping();
            key.ignore(); // for the dialog
        }
        return;
    default:
        if (isStepKey(key))
            stepByKey(key);
        else
            edit()->event(&key);
    }
}

void DoubleSpinBox::keyPressEvent(QKeyEvent* event) {
    event->accept();
    if (d->typing)
        d->typingKey(*event);
    else
        d->idleKey(*event);
}

void DoubleSpinBox::keyReleaseEvent(QKeyEvent* event) {
    QWidget::keyReleaseEvent(event);
}

void DoubleSpinBox::focusInEvent(QFocusEvent* event) {
    if (d->typing)
        lineEdit()->event(event);
    QWidget::focusInEvent(event);
    update();
}

void DoubleSpinBox::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
    d->stopArrow();
    if (!d->typing || event->reason() == Qt::PopupFocusReason || d->opensMenu)
        return; // the menu acts on the text
    if (!d->takeText())
        return;
    d->leaveTyping(); // a text that can not be read gives way to the value
    Q_EMIT editingFinished();
}

void DoubleSpinBox::inputMethodEvent(QInputMethodEvent* event) {
    const bool writes = !event->commitString().isEmpty() || !event->preeditString().isEmpty();
    if (!d->typing && writes && !isReadOnly())
        d->beginTyping(QString());
    if (d->typing)
        lineEdit()->event(event);
}

} // namespace Kestrel::UI
