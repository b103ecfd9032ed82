#include <KxUI/undo/MultiStackUndoGroup.h>

#include <KxUI/undo/UndoAction.h>

#include <QScopedValueRollback>
#include <QUndoCommand>

#include <algorithm>
#include <iterator>
#include <memory>
#include <tuple>

namespace Kestrel::UI {
namespace {

// The entries have left the history before: a command's destructor may look at it.
void deleteEntries(const QList<UndoCommandItem*>& entries) {
    for (UndoCommandItem* entry : entries) {
        delete entry->command;
        delete entry;
    }
}

} // namespace

MultiStackUndoGroup::MultiStackUndoGroup(QObject* parent)
    : QObject(parent) {}

MultiStackUndoGroup::~MultiStackUndoGroup() {
    qDeleteAll(m_history);
}

bool MultiStackUndoGroup::canUndo() const {
    return m_index > 0;
}

bool MultiStackUndoGroup::canRedo() const {
    return m_index < static_cast<int>(m_history.size());
}

QString MultiStackUndoGroup::undoText() const {
    const QUndoCommand* command = getUndoCommand();
    return command ? command->text() : QString();
}

QString MultiStackUndoGroup::redoText() const {
    const QUndoCommand* command = getRedoCommand();
    return command ? command->text() : QString();
}

QAction* MultiStackUndoGroup::createUndoAction(QObject* parent) const {
    auto* action = new UndoAction(tr("Undo"), parent);
    connect(this, &MultiStackUndoGroup::setUndoActionText, action, &UndoAction::setActionText);
    connect(this, &MultiStackUndoGroup::setUndoable, action, &QAction::setEnabled);
    connect(action, &QAction::triggered, this, &MultiStackUndoGroup::undo);
    action->setEnabled(canUndo());
    action->setActionText(undoText());
    return action;
}

QAction* MultiStackUndoGroup::createRedoAction(QObject* parent) const {
    auto* action = new UndoAction(tr("Redo"), parent);
    connect(this, &MultiStackUndoGroup::setRedoActionText, action, &UndoAction::setActionText);
    connect(this, &MultiStackUndoGroup::setRedoable, action, &QAction::setEnabled);
    connect(action, &QAction::triggered, this, &MultiStackUndoGroup::redo);
    action->setEnabled(canRedo());
    action->setActionText(redoText());
    return action;
}

void MultiStackUndoGroup::performCommand(QUndoCommand* command, UndoableProject* project) {
    if (!command || has(command)) {
        qWarning("MultiStackUndoGroup::performCommand - refused: %s",
                 command ? "the history has this command already" : "no command");
        return;
    }
    std::unique_ptr<QUndoCommand> owned(command);
    if (refuse("performCommand"))
        return;
    {
        const QScopedValueRollback<bool> changing(m_changing, true);
        const QScopedValueRollback<const QUndoCommand*> performed(m_performed, command);
        emit projectAboutToBeChanged();
        deleteEntries(takeEntries(project, m_index));
        command->redo();
        if (mergeIntoLast(command, project)) {
            owned.reset();
            const ActionState state = actionState();
            const auto fields = [](const ActionState& each) {
                return std::tie(each.undoable, each.redoable, each.undoText, each.redoText);
            };
            if (fields(state) != fields(m_sent))
                sendActionState(state);
        } else {
            m_history.insert(m_index, new UndoCommandItem{owned.release(), project});
            setIndex(m_index + 1);
        }
    }
    emit projectChanged();
}

void MultiStackUndoGroup::makeIndex(int target) {
    while (m_index > target && canUndo()) {
        const int next = m_index - 1;
        undo();
        if (m_index != next)
            return;
    }
    while (m_index < target && canRedo()) {
        const int next = m_index + 1;
        redo();
        if (m_index != next)
            return;
    }
}

void MultiStackUndoGroup::addProject(UndoableProject* project) {
    if (refuse("addProject"))
        return;
    {
        const QScopedValueRollback<bool> changing(m_changing, true);
        emit projectAboutToBeAdded();
        m_projects.insert(project);
    }
    emit projectAdded();
}

void MultiStackUndoGroup::removeProject(UndoableProject* project) {
    if (refuse("removeProject"))
        return;
    {
        const QScopedValueRollback<bool> changing(m_changing, true);
        emit projectAboutToBeRemoved();
        const auto isItsOwn = [project](const UndoCommandItem* entry) {
            return entry->project == project;
        };
        const auto done = std::count_if(m_history.cbegin(), m_history.cbegin() + m_index, isItsOwn);
        const QList<UndoCommandItem*> entries = takeEntries(project, 0);
        m_index -= static_cast<int>(done);
        deleteEntries(entries);
        setIndex(m_index);
        m_projects.remove(project);
    }
    emit projectRemoved();
}

void MultiStackUndoGroup::undo() {
    if (!canUndo() || refuse("undo"))
        return;
    {
        const QScopedValueRollback<bool> changing(m_changing, true);
        emit projectAboutToBeChanged();
        getUndoCommand()->undo();
        setIndex(m_index - 1);
    }
    emit projectChanged();
}

void MultiStackUndoGroup::redo() {
    if (!canRedo() || refuse("redo"))
        return;
    {
        const QScopedValueRollback<bool> changing(m_changing, true);
        emit projectAboutToBeChanged();
        getRedoCommand()->redo();
        setIndex(m_index + 1);
    }
    emit projectChanged();
}

bool MultiStackUndoGroup::refuse(const char* method) const {
    if (m_changing)
        qWarning("MultiStackUndoGroup::%s - refused: the history is being changed", method);
    return m_changing;
}

bool MultiStackUndoGroup::has(const QUndoCommand* command) const {
    return command == m_performed || std::any_of(m_history.cbegin(), m_history.cend(),
                                                 [command](const UndoCommandItem* entry) {
                                                     return entry->command == command;
                                                 });
}

QUndoCommand* MultiStackUndoGroup::commandAt(int position) const {
    const UndoCommandItem* entry = m_history.value(position);
    return entry ? entry->command : nullptr;
}

// Only the last done command of the project is asked.
bool MultiStackUndoGroup::mergeIntoLast(const QUndoCommand* command,
                                        const UndoableProject* project) {
    for (int position = m_index - 1; position >= 0; --position) {
        const UndoCommandItem* entry = m_history.at(position);
        if (entry->project == project)
            return entry->command->mergeWith(command);
    }
    return false;
}

QList<UndoCommandItem*> MultiStackUndoGroup::takeEntries(const UndoableProject* project,
                                                         int first) {
    const auto taken = std::stable_partition(
        m_history.begin() + first, m_history.end(),
        [project](const UndoCommandItem* entry) { return entry->project != project; });
    QList<UndoCommandItem*> entries;
    std::copy(taken, m_history.end(), std::back_inserter(entries));
    m_history.erase(taken, m_history.end());
    return entries;
}

MultiStackUndoGroup::ActionState MultiStackUndoGroup::actionState() const {
    return {canUndo(), canRedo(), undoText(), redoText()};
}

void MultiStackUndoGroup::setIndex(int index) {
    m_index = index;
    sendActionState(actionState());
}

void MultiStackUndoGroup::sendActionState(const ActionState& state) {
    m_sent = state;
    emit setRedoable(state.redoable);
    emit setUndoable(state.undoable);
    emit setUndoActionText(state.undoText);
    emit setRedoActionText(state.redoText);
}

} // namespace Kestrel::UI
