#include "grade/GradeHistory.h"

#include "grade/UndoableProject.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::UndoableProject;

GradeHistory::GradeHistory(QObject* parent)
    : QObject(parent) {}

GradeHistory::~GradeHistory() {
    m_edit.reset();
    // Or else the group would leave their commands behind.
    for (const auto& project : m_projects)
        m_group.removeProject(project.get());
}

void GradeHistory::open(const Sequence& sequence, Base::Time leftAt) {
    if (m_open)
        m_open->leftAt = leftAt;
    if (isEditing()) {
        finish(m_editor, true);
        emit editInterrupted();
    }
    m_edit.reset();
    m_open = nullptr;
    if (!sequence.isEmpty()) {
        m_open = find(sequence);
        if (!m_open) {
            m_projects.push_back(std::make_unique<UndoableProject>(sequence));
            m_open = m_projects.back().get();
            m_group.addProject(m_open);
        }
        // It may have files now that it had not before.
        m_open->sequence = sequence;
    }
    emit gradeChanged();
}

const Grade& GradeHistory::grade() const {
    static const Grade identity;
    return m_open ? m_open->grade : identity;
}

const Grade& GradeHistory::gradeBefore() const {
    return isEditing() ? m_before : grade();
}

void GradeHistory::edit(const Grade& grade, const QString& text) {
    change(nullptr, grade, text);
    finish(nullptr, true);
}

void GradeHistory::change(const QObject* editor, const Grade& grade, const QString& text) {
    if (!m_open)
        return;
    if (!isEditing() || editor != m_editor)
        begin(editor, text);
    const QScopedValueRollback<bool> performing(m_performing, true);
    m_edit->change(grade);
}

void GradeHistory::begin(const QObject* editor, const QString& text) {
    finish(m_editor, true);
    UndoableProject* project = m_open;
    m_before = project->grade;
    m_editor = editor;
    m_edit = std::make_unique<UI::ValueEdit<Grade>>(
        &m_group, project, [this, project](const Grade& grade) { apply(project, grade); });
    m_edit->onCancelled([this] { emit editInterrupted(); });
    m_edit->begin(m_before, text);
}

void GradeHistory::finish(const QObject* editor, bool accepted) {
    if (!isEditing() || editor != m_editor)
        return;
    const QScopedValueRollback<bool> performing(m_performing, true);
    m_edit->finish(accepted);
}

QString GradeHistory::titleOf(int step) const {
    const auto& steps = m_group.undoCommands();
    return step < 0 || step >= steps.size() ? QString() : steps[step]->project->sequence.title();
}

void GradeHistory::setBypassed(bool bypassed) {
    if (bypassed == m_bypassed)
        return;
    m_bypassed = bypassed;
    emit bypassChanged(bypassed);
}

UndoableProject* GradeHistory::find(const Sequence& sequence) const {
    const auto found =
        std::find_if(m_projects.begin(), m_projects.end(), [&sequence](const auto& project) {
            return project->sequence.title() == sequence.title() &&
                   project->sequence.folder() == sequence.folder();
        });
    return found == m_projects.end() ? nullptr : found->get();
}

void GradeHistory::apply(UndoableProject* project, const Grade& grade) {
    project->grade = grade;
    if (!m_performing)
        showChanged(project);
    if (project == m_open)
        emit gradeChanged();
}

void GradeHistory::showChanged(UndoableProject* project) {
    if (!m_changed)
        QMetaObject::invokeMethod(this, &GradeHistory::askForChanged, Qt::QueuedConnection);
    m_changed = project;
}

std::optional<Base::TimeBase> GradeHistory::timeBase() const {
    return m_open ? m_open->timeBase : std::nullopt;
}

void GradeHistory::setTimeBase(Base::TimeBase timeBase) {
    if (m_open)
        m_open->timeBase = timeBase;
}

void GradeHistory::askForChanged() {
    const UndoableProject* changed = std::exchange(m_changed, nullptr);
    if (changed && changed != m_open)
        emit sequenceWanted(changed->sequence, changed->leftAt);
}

} // namespace Kestrel::Workbench
