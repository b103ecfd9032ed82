#include <KxUI/time/TimeField.h>

#include <KxUI/base/TimeArithmetic.h>
#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/OwnKeys_p.h>
#include <KxUI/kit/WheelNotches_p.h>
#include <KxUI/time/Beep_p.h>
#include <KxUI/time/TimeMetaTypes_p.h>

#include <QApplication>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>

#include <optional>

namespace Kestrel::UI {

using Base::InvalidTime;
using Base::Time;
using Base::TimeBase;

void (*beep)() = &QApplication::beep;

struct TimeField::Private {
    explicit Private(TimeField* field)
        : q(field)
        , bracket(
              field, [this] { return time; }, [this](Time edited) { show(edited); },
              [this](Time edited) {
                  const QPointer<TimeField> guard(q);
                  Q_EMIT guard->valueEdited(edited);
                  tellTime(guard, edited, false);
              }) {}

    TimeField* q;
    EditBracket<TimeField, Time> bracket;
    QPointer<TimeFormatter> formatter;
    QMetaObject::Connection followed;
    TimeBase timeBase{25, false};
    Time time = -1;
    Time minTime = -1;
    Time maxTime = -1;
    Time timecodeStart = 0;
    // The text that needs no reading: what was shown, or read, last.
    std::optional<QString> settledText;
    bool displayTimecode = true;
    bool displayDropFrames = false;
    bool useMinMaxTime = false;
    bool selectAllOnClick = false;
    bool ignoreTimecodeStart = false;
    std::optional<QPoint> selectingClick; // where the press was that selected all
    WheelNotches wheel;

    void setUp(bool frameless);
    void refresh();
    void redisplay();
    void updateWidth();
    void show(Time newTime);
    static void tellTime(const QPointer<TimeField>& field, Time time, bool flag);
    void finishEditing();
    bool finishSafely();
    bool finishInTime(const QFocusEvent& event);
    void incrementDigit(int direction);
    void leaveFocus();
    bool isOwnKey(const QKeyEvent& key) const;

    template <class T>
    void storeLimit(T& member, T value) {
        if (member == value)
            return;
        member = value;
        Q_EMIT q->limitsChanged();
    }
};

TimeField::TimeField(QWidget* parent)
    : TimeField(false, false, parent) {}

TimeField::TimeField(bool frameless, bool ignoreTimecodeStart, QWidget* parent)
    : QLineEdit(parent)
    , m(std::make_unique<Private>(this)) {
    registerTimeMetaTypes();
    m->ignoreTimecodeStart = ignoreTimecodeStart;
    m->setUp(frameless);
    connect(this, &QLineEdit::returnPressed, this, [this] {
        const QPointer<TimeField> guard(this);
        m->finishEditing();
        if (guard)
            selectAll();
    });
    connect(this, &QLineEdit::editingFinished, this, [this] { m->finishEditing(); });
}

TimeField::~TimeField() = default;

void TimeField::Private::setUp(bool frameless) {
    q->setFrame(false);
    q->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    q->setContextMenuPolicy(Qt::DefaultContextMenu);
    q->setAccessibleName(tr("Time"));
    if (frameless) {
        QPalette blended = q->palette();
        blended.setColor(QPalette::Text, QApplication::palette().color(QPalette::BrightText));
        blended.setColor(QPalette::Base, QApplication::palette().color(QPalette::Window));
        q->setPalette(blended);
    }
    updateWidth();
    refresh();
}

Time TimeField::time() const {
    return m->time;
}

void TimeField::setTime(Time time, bool flag) {
    KXUI_INTERFACE_THREAD(this);
    if (!isInRange(time))
        return;
    m->bracket.hostSet(time);
    if (time == m->time)
        return;
    const QPointer<TimeField> guard(this);
    m->show(time);
    Private::tellTime(guard, time, flag);
}

void TimeField::Private::show(Time newTime) {
    if (newTime == time)
        return;
    time = newTime;
    refresh();
    Q_EMIT q->valueChanged(newTime);
}

void TimeField::Private::tellTime(const QPointer<TimeField>& field, Time time, bool flag) {
    if (field)
        Q_EMIT field->timeChanged(time);
    if (field)
        Q_EMIT field->timeChanged(time, flag);
}

bool TimeField::isEditing() const {
    return m->bracket.isEditing();
}

void TimeField::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    m->bracket.cancel();
}

void TimeField::setText(const QString& text) {
    KXUI_INTERFACE_THREAD(this);
    QLineEdit::setText(text);
    m->settledText.reset();
}

void TimeField::setFormatter(TimeFormatter* formatter) {
    KXUI_INTERFACE_THREAD(this);
    if (formatter == m->formatter)
        return;
    disconnect(m->followed);
    m->formatter = formatter;
    if (formatter) {
        m->followed =
            connect(formatter, &TimeFormatter::timeFormatChanged, this, &TimeField::setTimeDisplay);
        setTimeDisplay(formatter->timeBase(), formatter->displayTimecode(),
                       formatter->displayDropFrames(), formatter->timecodeStart());
    }
    Q_EMIT formatterChanged();
}

TimeFormatter* TimeField::formatter() const {
    return m->formatter;
}

void TimeField::useMinMaxTime(bool use) {
    m->storeLimit(m->useMinMaxTime, use);
}

bool TimeField::usesMinMaxTime() const {
    return m->useMinMaxTime;
}

void TimeField::setMinTime(Time time) {
    KXUI_INTERFACE_THREAD(this);
    m->storeLimit(m->minTime, time);
}

Time TimeField::minTime() const {
    return m->minTime;
}

void TimeField::setMaxTime(Time time) {
    KXUI_INTERFACE_THREAD(this);
    m->storeLimit(m->maxTime, time);
}

Time TimeField::maxTime() const {
    return m->maxTime;
}

bool TimeField::isInRange(Time time) const {
    return !m->useMinMaxTime || (m->minTime <= time && time <= m->maxTime);
}

void TimeField::setTimeBase(TimeBase timeBase) {
    KXUI_INTERFACE_THREAD(this);
    if (timeBase == m->timeBase)
        return;
    m->timeBase = timeBase;
    m->redisplay();
}

TimeBase TimeField::timeBase() const {
    return m->timeBase;
}

void TimeField::setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames) {
    KXUI_INTERFACE_THREAD(this);
    const bool same =
        displayTimecode == m->displayTimecode && displayDropFrames == m->displayDropFrames;
    m->displayTimecode = displayTimecode;
    m->displayDropFrames = displayDropFrames;
    m->updateWidth();
    if (!same)
        m->redisplay();
}

void TimeField::setDisplayTimecode(bool displayTimecode) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplayFormat(displayTimecode, m->displayDropFrames);
}

bool TimeField::displayTimecode() const {
    return m->displayTimecode;
}

void TimeField::setDisplayDropFrames(bool displayDropFrames) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplayFormat(m->displayTimecode, displayDropFrames);
}

bool TimeField::displayDropFrames() const {
    return m->displayDropFrames;
}

Base::Timecode::DisplayType TimeField::timeDisplayFormat() const {
    return TimeFieldNotation::displayType(m->displayTimecode, m->displayDropFrames);
}

void TimeField::setTimecodeStart(Time timecodeStart) {
    KXUI_INTERFACE_THREAD(this);
    if (timecodeStart == m->timecodeStart)
        return;
    m->timecodeStart = timecodeStart;
    if (m->ignoreTimecodeStart)
        Q_EMIT displayChanged();
    else
        m->redisplay();
}

Time TimeField::timecodeStart() const {
    return m->timecodeStart;
}

void TimeField::ignoreTimecodeStart(bool ignore) {
    if (ignore == m->ignoreTimecodeStart)
        return;
    m->ignoreTimecodeStart = ignore;
    Q_EMIT displayChanged();
}

bool TimeField::isIgnoreTimecodeStart() const {
    return m->ignoreTimecodeStart;
}

TimeFieldNotation TimeField::notation() const {
    return {m->timeBase, timeDisplayFormat(), m->ignoreTimecodeStart ? 0 : m->timecodeStart};
}

void TimeField::setTimeDisplay(TimeBase timeBase, bool displayTimecode, bool displayDropFrames,
                               Time timecodeStart) {
    KXUI_INTERFACE_THREAD(this);
    if (timeBase == m->timeBase && displayTimecode == m->displayTimecode &&
        displayDropFrames == m->displayDropFrames && timecodeStart == m->timecodeStart)
        return;
    m->timeBase = timeBase;
    m->displayTimecode = displayTimecode;
    m->displayDropFrames = displayDropFrames;
    m->timecodeStart = timecodeStart;
    m->updateWidth();
    m->redisplay();
}

void TimeField::Private::refresh() {
    const QString shown = q->notation().text(time);
    // Playback sets times many times a second: a text that stays keeps caret and selection.
    if (shown != q->text())
        static_cast<QLineEdit*>(q)->setText(shown);
    settledText = shown;
}

void TimeField::Private::redisplay() {
    refresh();
    Q_EMIT q->displayChanged();
}

void TimeField::Private::updateWidth() {
    const QString widest =
        displayTimecode ? QStringLiteral("-00:00:00:00") : QStringLiteral("000000");
    q->setFixedWidth(q->fontMetrics().horizontalAdvance(widest) + 8);
}

void TimeField::Private::finishEditing() {
    using Edit = TimeFieldNotation::Edit;
    // Return and the loss of focus both end an edit; it is one edit all the same.
    if (settledText == q->text())
        return;
    settledText = q->text();
    const Edit edit = q->notation().read(q->text(), time);
    if (edit.kind == Edit::Failed) {
        beep();
        return;
    }
    refresh(); // where the time stays the text shows it again
    if (edit.kind == Edit::SetRange)
        Q_EMIT q->rangeChanged(edit.time, edit.upper);
    else if (edit.kind == Edit::SetTime && edit.time != time && q->isInRange(edit.time))
        bracket.editOnce(edit.time);
}

void TimeField::Private::incrementDigit(int direction) {
    if (q->isReadOnly())
        return;
    const QString before = q->text();
    const int caret = q->hasSelectedText() ? q->selectionStart() : q->cursorPosition();
    const Time step = q->notation().digitStep(before, caret);
    const std::optional<Time> sum =
        Base::exactSum(time == InvalidTime ? 0 : time, direction > 0 ? step : -step);
    if (step == 0 || !sum || *sum == time || !q->isInRange(*sum))
        return;
    // The digit is selected before the host hears of the time, and may set another one.
    bracket.note(*sum, [this, sum, caret, length = before.size()] {
        time = *sum;
        refresh();
        q->setSelection(int(qMax(0, q->text().size() - (length - caret))), 1);
        Q_EMIT q->valueChanged(*sum);
    });
}

// The base class can not stand to be deleted by those who hear that an edit finished, so it happens
// before it knows. False where the field is gone.
bool TimeField::Private::finishSafely() {
    const QPointer<TimeField> guard(q);
    if (q->hasAcceptableInput())
        finishEditing();
    return !guard.isNull();
}

bool TimeField::Private::finishInTime(const QFocusEvent& event) {
    const bool passing =
        event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
    return passing || finishSafely();
}

// The keys that the field uses must not trigger the host's shortcuts while it has the focus.
bool TimeField::Private::isOwnKey(const QKeyEvent& key) const {
    return UI::isOwnKey(key, {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Up,
                              Qt::Key_Down, Qt::Key_Left, Qt::Key_Right});
}

void TimeField::Private::leaveFocus() {
    for (QWidget* ancestor = q->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        if (ancestor->focusPolicy() != Qt::NoFocus) {
            ancestor->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

bool TimeField::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && m->isOwnKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    if (m->bracket.takes(event))
        return true;
    if (event->type() == QEvent::FocusOut && !m->finishInTime(*static_cast<QFocusEvent*>(event)))
        return true;
    return QLineEdit::event(event);
}

void TimeField::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        m->updateWidth();
    QLineEdit::changeEvent(event);
}

void TimeField::focusInEvent(QFocusEvent* event) {
    m->selectAllOnClick = event->reason() == Qt::MouseFocusReason;
    QLineEdit::focusInEvent(event);
}

void TimeField::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        m->leaveFocus();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!m->finishSafely())
            return;
        QLineEdit::keyPressEvent(event);
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        event->accept();
        if (!m->bracket.beginKey(*event))
            return;
        m->incrementDigit(event->key() == Qt::Key_Up ? 1 : -1);
        break;
    default:
        QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
}

void TimeField::mousePressEvent(QMouseEvent* event) {
    if (!m->selectAllOnClick) {
        QLineEdit::mousePressEvent(event);
        return;
    }
    m->selectAllOnClick = false;
    m->selectingClick = event->pos();
    selectAll();
    event->accept();
}

void TimeField::mouseMoveEvent(QMouseEvent* event) {
    if (m->selectingClick && event->buttons() & Qt::LeftButton) {
        const QPoint press = *m->selectingClick;
        if ((event->pos() - press).manhattanLength() < QApplication::startDragDistance())
            return; // still the click that selected all
        m->selectingClick.reset();
        setCursorPosition(cursorPositionAt(press)); // a drag selects what it passes
    }
    QLineEdit::mouseMoveEvent(event);
}

void TimeField::mouseReleaseEvent(QMouseEvent* event) {
    m->selectingClick.reset();
    QLineEdit::mouseReleaseEvent(event);
}

void TimeField::wheelEvent(QWheelEvent* event) {
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        QLineEdit::wheelEvent(event);
        return;
    }
    event->accept();
    // A digit a turn, however fast it is.
    const int notches = m->wheel.add(delta);
    if (m->bracket.beginWheel() && notches != 0)
        m->incrementDigit(notches);
}

} // namespace Kestrel::UI
