#include <KxUI/time/TimeFormatChooser.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/time/TimeField.h>

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QPointer>
#include <QVector>

namespace Kestrel::UI {

using Base::Time;
using Base::TimeBase;

struct TimeFormatChooser::Private {
    TimeFormatChooser* q = nullptr;
    QPointer<TimeFormatter> formatter;
    QMetaObject::Connection followed;
    QVector<QPointer<TimeField>> fields;
    QAction* timecode = nullptr;
    QAction* actualTimecode = nullptr;
    QAction* edgeCode = nullptr;
    QAction* clipFrames = nullptr;
    QAction* timelineFrames = nullptr;
    Time framesStart = 0;
    Time timecodeStart = 0;
    Time formatterStart = 0; // what the formatter said last
    Mode mode = ClipMode;
    bool displayTimecode = true;
    bool displayDropFrames = false;

    void makeMenu();
    QAction* addEntry(const QString& text, void (TimeFormatChooser::*slot)());
    void follow(bool newDisplayTimecode, bool newDisplayDropFrames, Time newStart);
    void updateChecks();
    void updateText();
};

TimeFormatChooser::TimeFormatChooser(QWidget* parent)
    : TimeFormatChooser(nullptr, parent) {}

TimeFormatChooser::TimeFormatChooser(TimeFormatter* formatter, QWidget* parent)
    : QToolButton(parent)
    , m(std::make_unique<Private>()) {
    m->q = this;
    setFocusPolicy(Qt::NoFocus);
    setPopupMode(QToolButton::InstantPopup);
    setToolButtonStyle(Qt::ToolButtonTextOnly);
    setToolTip(tr("Set the time display format."));
    setAccessibleName(tr("Time display format"));
    m->makeMenu();
    m->updateText();
    setFormatter(formatter);
}

TimeFormatChooser::~TimeFormatChooser() = default;

void TimeFormatChooser::Private::makeMenu() {
    q->setMenu(new QMenu(q));
    new QActionGroup(q->menu()); // exclusive
    using Self = TimeFormatChooser;
    timecode = addEntry(tr("TC (Timecode)"), &Self::showTimecode);
    actualTimecode = addEntry(tr("AC (Absolute Time)"), &Self::showActualTimecode);
    edgeCode = addEntry(tr("EC (Edge Code)"), &Self::showEdgeTimecode);
    clipFrames = addEntry(tr("CF (Clip Frames)"), &Self::showFrames);
    timelineFrames = addEntry(tr("TF (Timeline Frames)"), &Self::showFrames);
    timelineFrames->setVisible(false);
    timecode->setChecked(true);
}

QAction* TimeFormatChooser::Private::addEntry(const QString& text,
                                              void (TimeFormatChooser::*slot)()) {
    QAction* action = q->menu()->addAction(text);
    action->setCheckable(true);
    action->setActionGroup(q->menu()->findChild<QActionGroup*>());
    // Checking an entry in code is no choice of the user's, so not toggled().
    connect(action, &QAction::triggered, q, slot);
    return action;
}

void TimeFormatChooser::setFormatter(TimeFormatter* formatter) {
    KXUI_INTERFACE_THREAD(this);
    if (formatter == m->formatter)
        return;
    disconnect(m->followed);
    const QPointer<TimeFormatChooser> guard(this);
    const QPointer<TimeFormatter> before = m->formatter;
    m->formatter = formatter;
    if (formatter) {
        m->followed =
            connect(formatter, &TimeFormatter::timeFormatChanged, this,
                    [this](const TimeBase&, bool displayTimecode, bool displayDropFrames,
                           Time start) { m->follow(displayTimecode, displayDropFrames, start); });
        // Taken over also where it is what the last formatter said.
        m->formatterStart = Base::InvalidTime;
        m->follow(formatter->displayTimecode(), formatter->displayDropFrames(),
                  formatter->timecodeStart());
    }
    const auto fields = guard ? m->fields : decltype(m->fields)();
    for (const QPointer<TimeField>& field : fields) {
        if (field && field->formatter() == before) // a field may have got one of its own
            field->setFormatter(guard ? guard->formatter() : nullptr);
    }
    if (guard)
        Q_EMIT formatterChanged();
}

TimeFormatter* TimeFormatChooser::formatter() const {
    return m->formatter;
}

void TimeFormatChooser::addTimefield(TimeField* field) {
    KXUI_INTERFACE_THREAD(this);
    if (!field)
        return;
    m->fields.removeAll(nullptr);
    if (!m->fields.contains(field))
        m->fields.append(field);
    if (m->formatter)
        field->setFormatter(m->formatter);
}

void TimeFormatChooser::setMode(Mode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (mode == m->mode || (mode != ClipMode && mode != TimelineMode))
        return;
    m->mode = mode;
    const bool clip = mode == ClipMode;
    m->actualTimecode->setVisible(clip);
    m->edgeCode->setVisible(clip);
    m->clipFrames->setVisible(clip);
    m->timelineFrames->setVisible(!clip);
    // The check moves on from an entry that is no longer there.
    if (clip && m->timelineFrames->isChecked())
        m->clipFrames->setChecked(true);
    else if (!clip && m->clipFrames->isChecked())
        m->timelineFrames->setChecked(true);
    else if (!clip && (m->actualTimecode->isChecked() || m->edgeCode->isChecked()))
        m->timecode->setChecked(true);
    Q_EMIT modeChanged();
}

TimeFormatChooser::Mode TimeFormatChooser::mode() const {
    return m->mode;
}

void TimeFormatChooser::setTimecodeStart(Time framesStart, Time timecodeStart) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplay(m->displayTimecode, m->displayDropFrames, framesStart, timecodeStart);
}

void TimeFormatChooser::setFramesStart(Time framesStart) {
    KXUI_INTERFACE_THREAD(this);
    setTimecodeStart(framesStart, m->timecodeStart);
}

Time TimeFormatChooser::framesStart() const {
    return m->framesStart;
}

void TimeFormatChooser::setTimecodeStart(Time timecodeStart) {
    KXUI_INTERFACE_THREAD(this);
    setTimecodeStart(m->framesStart, timecodeStart);
}

Time TimeFormatChooser::timecodeStart() const {
    return m->timecodeStart;
}

void TimeFormatChooser::setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplay(displayTimecode, displayDropFrames, m->framesStart, m->timecodeStart);
}

void TimeFormatChooser::setDisplayTimecode(bool displayTimecode) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplayFormat(displayTimecode, m->displayDropFrames);
}

bool TimeFormatChooser::displayTimecode() const {
    return m->displayTimecode;
}

void TimeFormatChooser::setDisplayDropFrames(bool displayDropFrames) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplayFormat(m->displayTimecode, displayDropFrames);
}

bool TimeFormatChooser::displayDropFrames() const {
    return m->displayDropFrames;
}

void TimeFormatChooser::setTimeDisplay(bool displayTimecode, bool displayDropFrames,
                                       Time framesStart, Time timecodeStart) {
    KXUI_INTERFACE_THREAD(this);
    if (displayTimecode == m->displayTimecode && displayDropFrames == m->displayDropFrames &&
        framesStart == m->framesStart && timecodeStart == m->timecodeStart)
        return;
    m->displayTimecode = displayTimecode;
    m->displayDropFrames = displayDropFrames;
    m->framesStart = framesStart;
    m->timecodeStart = timecodeStart;
    const QPointer<TimeFormatChooser> guard(this);
    refresh();
    if (guard)
        Q_EMIT displayChanged();
}

void TimeFormatChooser::showTimecode() {
    KXUI_INTERFACE_THREAD(this);
    setDisplayTimecode(true);
}

void TimeFormatChooser::showFrames() {
    KXUI_INTERFACE_THREAD(this);
    setDisplayTimecode(false);
}

void TimeFormatChooser::showActualTimecode() {}

void TimeFormatChooser::showEdgeTimecode() {}

void TimeFormatChooser::refresh() {
    const QPointer<TimeFormatChooser> guard(this);
    m->updateChecks();
    if (m->formatter)
        m->formatter->setTimeDisplay(m->formatter->timeBase(), m->displayTimecode,
                                     m->displayDropFrames,
                                     m->displayTimecode ? m->timecodeStart : m->framesStart);
    if (guard)
        m->updateText();
}

// Only what the formatter changed: the start of the notation that is not shown is the chooser's
// own.
void TimeFormatChooser::Private::follow(bool newDisplayTimecode, bool newDisplayDropFrames,
                                        Time newStart) {
    Time& start = newDisplayTimecode ? timecodeStart : framesStart;
    const bool startChanged = newStart != formatterStart && newStart != start;
    const bool changed = startChanged || newDisplayTimecode != displayTimecode ||
                         newDisplayDropFrames != displayDropFrames;
    formatterStart = newStart;
    displayTimecode = newDisplayTimecode;
    displayDropFrames = newDisplayDropFrames;
    if (startChanged)
        start = newStart;
    updateChecks();
    updateText();
    if (changed)
        Q_EMIT q->displayChanged();
}

void TimeFormatChooser::Private::updateChecks() {
    if (displayTimecode)
        timecode->setChecked(true);
    else
        (mode == ClipMode ? clipFrames : timelineFrames)->setChecked(true);
}

void TimeFormatChooser::Private::updateText() {
    q->setText(displayTimecode ? QStringLiteral("TC") : QStringLiteral("TF"));
    q->setAccessibleDescription(displayTimecode ? tr("Timecode") : tr("Frames"));
}

} // namespace Kestrel::UI
