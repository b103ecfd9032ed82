#include "play/MarkHistory.h"

#include "grade/GradeHistory.h"
#include "grade/UndoableProject.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::TimeSliderModel;

MarkHistory::MarkHistory(TimeSliderModel* model, GradeHistory* grades)
    : m_model(model)
    , m_grades(grades) {
    connect(model, &TimeSliderModel::timeChanged, this, &MarkHistory::follow);
    connect(model, &TimeSliderModel::inOutTimesModified, this, &MarkHistory::lookLater);
}

void MarkHistory::hold(bool holds) {
    m_holds = holds;
    if (!holds)
        lookLater();
}

void MarkHistory::leave() {
    m_holds = false;
    look();
    m_ignores = true;
}

void MarkHistory::enter() {
    m_ignores = false;
    UI::UndoableProject* project = m_grades->openProject();
    if (!project)
        return;
    show(project->marks);
    // The sequence may have become shorter: then they are what is left of them.
    project->marks = marks();
}

void MarkHistory::follow(TimeSliderModel::TimeFlags flags) {
    if (flags & (TimeSliderModel::InTime | TimeSliderModel::OutTime | TimeSliderModel::KeyFrames))
        lookLater();
}

void MarkHistory::lookLater() {
    if (m_looksLater || m_ignores)
        return;
    m_looksLater = true;
    QMetaObject::invokeMethod(this, &MarkHistory::look, Qt::QueuedConnection);
}

void MarkHistory::look() {
    m_looksLater = false;
    UI::UndoableProject* project = m_grades->openProject();
    if (m_holds || m_ignores || !project)
        return;
    const Marks before = project->marks;
    const Marks now = marks();
    if (now == before)
        return;
    const QScopedValueRollback<bool> ignores(m_ignores, true);
    UI::ValueEdit<Marks> edit(m_grades->group(), project,
                              [this, project](const Marks& marks) { apply(project, marks); });
    edit.begin(before, now.keyFrames == before.keyFrames ? tr("Marks") : tr("Keyframes"));
    edit.change(now);
    edit.finish(true);
}

Marks MarkHistory::marks() const {
    Marks marks;
    marks.in = m_model->inTime();
    marks.out = m_model->outTime();
    marks.isLocked = m_model->inOutLock();
    marks.keyFrames = m_model->keyFrames();
    return marks;
}

void MarkHistory::show(const Marks& marks) {
    const auto within = [this](Base::Time time) {
        return time == Base::InvalidTime
                   ? time
                   : std::clamp(time, m_model->startTime(), m_model->endTime());
    };
    TimeSliderModel::Times times = m_model->times();
    times.in = within(marks.in);
    times.out = within(marks.out);
    m_model->setTimes(times);
    m_model->enableInOutLock(marks.isLocked);
    m_model->setKeyFrames(marks.keyFrames);
}

void MarkHistory::apply(UI::UndoableProject* project, const Marks& marks) {
    project->marks = marks;
    if (project == m_grades->openProject()) {
        if (marks != this->marks())
            show(marks);
    } else {
        m_grades->showChanged(project);
    }
}

} // namespace Kestrel::Workbench
