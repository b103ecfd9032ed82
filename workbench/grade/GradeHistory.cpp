#include "grade/GradeHistory.h"

#include "grade/UndoableProject.h"

#include <QScopedValueRollback>
#include <QUndoCommand>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::UndoableProject;

class GradeHistory::Command : public QUndoCommand {
public:
    Command(GradeHistory* history, UndoableProject* project, const Grade& after, Part part,
            const QString& text)
        : QUndoCommand(text)
        , m_history(history)
        , m_project(project)
        , m_before(project->grade)
        , m_after(after)
        , m_part(part)
        , m_edit(history->m_edit) {}

    void redo() override { m_history->apply(m_project, m_after); }
    void undo() override { m_history->apply(m_project, m_before); }

    bool mergeWith(const QUndoCommand* other) override {
        // The history holds nothing else.
        const auto* command = static_cast<const Command*>(other);
        if (command->m_part != m_part || command->m_edit != m_edit)
            return false;
        m_after = command->m_after;
        return true;
    }

private:
    GradeHistory* m_history;
    UndoableProject* m_project;
    const Grade m_before;
    Grade m_after;
    const Part m_part;
    const quint64 m_edit;
};

GradeHistory::GradeHistory(QObject* parent)
    : QObject(parent) {}

GradeHistory::~GradeHistory() {
    // Or else the group would leave their commands behind.
    for (const auto& project : m_projects)
        m_group.removeProject(project.get());
}

void GradeHistory::open(const Sequence& sequence, Base::Time leftAt) {
    if (m_open)
        m_open->leftAt = leftAt;
    finishEdit();
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

void GradeHistory::edit(const Grade& grade, Part part, const QString& text) {
    if (!m_open || grade == m_open->grade)
        return;
    const QScopedValueRollback<bool> performing(m_performing, true);
    m_group.performCommand(new Command(this, m_open, grade, part, text), m_open);
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
    if (!m_performing) {
        // What is edited next is no continuation of what was edited before.
        finishEdit();
        if (!m_changed)
            QMetaObject::invokeMethod(this, &GradeHistory::askForChanged, Qt::QueuedConnection);
        m_changed = project;
    }
    if (project == m_open)
        emit gradeChanged();
}

void GradeHistory::askForChanged() {
    const UndoableProject* changed = std::exchange(m_changed, nullptr);
    if (changed && changed != m_open)
        emit sequenceWanted(changed->sequence, changed->leftAt);
}

} // namespace Kestrel::Workbench
