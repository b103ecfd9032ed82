#include <KxUI/time/TimeFormatChooser.h>

#include <KxUI/time/TimeField.h>
#include <KxUI/time/TimeFormatter.h>

#include <QAction>
#include <QActionGroup>
#include <QMenu>

namespace Kestrel::UI {

using Base::Time;

TimeFormatChooser::TimeFormatChooser(TimeFormatter* formatter, QWidget* parent)
    : QToolButton(parent)
    , m_formatter(formatter) {
    setFocusPolicy(Qt::NoFocus);
    setPopupMode(QToolButton::InstantPopup);
    setToolButtonStyle(Qt::ToolButtonTextOnly);
    setToolTip(tr("Set the time display format."));
    setAccessibleName(tr("Time display format"));

    setMenu(new QMenu(this));
    new QActionGroup(menu()); // exclusive
    m_timecode = addEntry(tr("TC (Timecode)"), &TimeFormatChooser::showTimecode);
    m_actualTimecode = addEntry(tr("AC (Absolute Time)"), &TimeFormatChooser::showActualTimecode);
    m_edgeCode = addEntry(tr("EC (Edge Code)"), &TimeFormatChooser::showEdgeTimecode);
    m_clipFrames = addEntry(tr("CF (Clip Frames)"), &TimeFormatChooser::showFrames);
    m_timelineFrames = addEntry(tr("TF (Timeline Frames)"), &TimeFormatChooser::showFrames);
    m_timelineFrames->setVisible(false);
    m_timecode->setChecked(true);

    if (m_formatter) {
        connect(m_formatter, &TimeFormatter::timeFormatChanged, this,
                &TimeFormatChooser::updateTimeDisplayFormat);
        updateTimeDisplayFormat(m_formatter->timeBase(), m_formatter->displayTimecode(),
                                m_formatter->displayDropFrames(), m_formatter->timecodeStart());
    }
    updateText();
}

TimeFormatChooser::~TimeFormatChooser() = default;

QAction* TimeFormatChooser::addEntry(const QString& text, void (TimeFormatChooser::*slot)()) {
    QAction* action = menu()->addAction(text);
    action->setCheckable(true);
    action->setActionGroup(menu()->findChild<QActionGroup*>());
    // Checking an entry in code is no choice of the user's, so not toggled().
    connect(action, &QAction::triggered, this, slot);
    return action;
}

void TimeFormatChooser::addTimefield(TimeField* field) {
    if (!m_formatter || !field)
        return;
    connect(m_formatter, &TimeFormatter::timeFormatChanged, field, &TimeField::setTimeDisplay);
    field->setTimeDisplay(m_formatter->timeBase(), m_formatter->displayTimecode(),
                          m_formatter->displayDropFrames(), m_formatter->timecodeStart());
}

void TimeFormatChooser::setMode(Mode mode) {
    if (mode == m_mode || (mode != ClipMode && mode != TimelineMode))
        return;
    m_mode = mode;
    const bool clip = mode == ClipMode;
    m_actualTimecode->setVisible(clip);
    m_edgeCode->setVisible(clip);
    m_clipFrames->setVisible(clip);
    m_timelineFrames->setVisible(!clip);
    // The check moves on from an entry that is no longer there.
    if (clip && m_timelineFrames->isChecked())
        m_clipFrames->setChecked(true);
    else if (!clip && m_clipFrames->isChecked())
        m_timelineFrames->setChecked(true);
    else if (!clip && (m_actualTimecode->isChecked() || m_edgeCode->isChecked()))
        m_timecode->setChecked(true);
}

void TimeFormatChooser::setTimecodeStart(Time framesStart, Time timecodeStart) {
    setTimeDisplay(m_displayTimecode, m_displayDropFrames, framesStart, timecodeStart);
}

void TimeFormatChooser::setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames) {
    setTimeDisplay(displayTimecode, displayDropFrames, m_framesStart, m_timecodeStart);
}

void TimeFormatChooser::setTimeDisplay(bool displayTimecode, bool displayDropFrames,
                                       Time framesStart, Time timecodeStart) {
    if (displayTimecode == m_displayTimecode && displayDropFrames == m_displayDropFrames &&
        framesStart == m_framesStart && timecodeStart == m_timecodeStart)
        return;
    m_displayTimecode = displayTimecode;
    m_displayDropFrames = displayDropFrames;
    m_framesStart = framesStart;
    m_timecodeStart = timecodeStart;
    refresh();
}

void TimeFormatChooser::showTimecode() {
    setTimeDisplayFormat(true, m_displayDropFrames);
}

void TimeFormatChooser::showFrames() {
    setTimeDisplayFormat(false, m_displayDropFrames);
}

void TimeFormatChooser::showActualTimecode() {}

void TimeFormatChooser::showEdgeTimecode() {}

void TimeFormatChooser::refresh() {
    updateChecks();
    if (m_formatter)
        m_formatter->setTimeDisplay(m_formatter->timeBase(), m_displayTimecode, m_displayDropFrames,
                                    m_displayTimecode ? m_timecodeStart : m_framesStart);
    updateText();
}

void TimeFormatChooser::updateTimeDisplayFormat(Base::TimeBase, bool displayTimecode,
                                                bool displayDropFrames, Time timecodeStart) {
    m_displayTimecode = displayTimecode;
    m_displayDropFrames = displayDropFrames;
    // A start that the host gave to the formatter must not be taken back by the next choice.
    (displayTimecode ? m_timecodeStart : m_framesStart) = timecodeStart;
    updateChecks();
    updateText();
}

void TimeFormatChooser::updateChecks() {
    if (m_displayTimecode)
        m_timecode->setChecked(true);
    else
        (m_mode == ClipMode ? m_clipFrames : m_timelineFrames)->setChecked(true);
}

void TimeFormatChooser::updateText() {
    setText(m_displayTimecode ? QStringLiteral("TC") : QStringLiteral("TF"));
    setAccessibleDescription(m_displayTimecode ? tr("Timecode") : tr("Frames"));
}

} // namespace Kestrel::UI
