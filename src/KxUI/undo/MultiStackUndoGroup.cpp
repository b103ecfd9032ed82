#include <KxUI/undo/MultiStackUndoGroup.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/undo/MultiStackUndoGroup_p.h>
#include <KxUI/undo/UndoAction.h>

#include <QPointer>
#include <QUndoCommand>

#include <utility>

namespace Kestrel::UI {
namespace {

// The entries have left the history before: a command's destructor may look at it.
void deleteEntries(const QList<UndoCommandItem*>& entries) {
    for (UndoCommandItem* entry : entries) {
        delete entry->command;
        delete entry;
    }
}

// The time between the two announcements of a change. Whoever is told meanwhile may delete the
// group: its data live on until the change has ended.
class Change {
public:
    Change(MultiStackUndoGroup* group, std::shared_ptr<MultiStackUndoGroupPrivate> data)
        : m_group(group)
        , m_data(std::move(data)) {
        m_data->changing = true;
    }
    ~Change() {
        m_data->changing = false;
        m_data->performed = nullptr;
    }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    bool isOver() const { return m_group.isNull(); }

private:
    QPointer<MultiStackUndoGroup> m_group;
    std::shared_ptr<MultiStackUndoGroupPrivate> m_data;
};

} // namespace

MultiStackUndoGroup::MultiStackUndoGroup(QObject* parent)
    : QObject(parent)
    , d(std::make_shared<MultiStackUndoGroupPrivate>()) {}

MultiStackUndoGroup::~MultiStackUndoGroup() {
    qDeleteAll(d->history());
}

const QList<UndoCommandItem*>& MultiStackUndoGroup::undoCommands() const {
    return d->history();
}

int MultiStackUndoGroup::index() const {
    return d->index();
}

const QSet<UndoableProject*>& MultiStackUndoGroup::projects() const {
    return d->projects;
}

bool MultiStackUndoGroup::canUndo() const {
    return d->index() > 0;
}

bool MultiStackUndoGroup::canRedo() const {
    return d->index() < static_cast<int>(d->history().size());
}

const QUndoCommand* MultiStackUndoGroup::getUndoCommand() const {
    return d->commandAt(d->index() - 1);
}

const QUndoCommand* MultiStackUndoGroup::getRedoCommand() const {
    return d->commandAt(d->index());
}

QUndoCommand* MultiStackUndoGroup::getUndoCommand() {
    return d->commandAt(d->index() - 1);
}

QUndoCommand* MultiStackUndoGroup::getRedoCommand() {
    return d->commandAt(d->index());
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
    KXUI_INTERFACE_THREAD(this);
    if (!command || command == d->performed || d->has(command)) {
        qWarning("MultiStackUndoGroup::performCommand - refused: %s",
                 command ? "the history has this command already" : "no command");
        return;
    }
    std::unique_ptr<QUndoCommand> owned(command);
    if (refuse("performCommand"))
        return;
    {
        const Change change(this, d);
        d->performed = command;
        Q_EMIT projectAboutToBeChanged();
        if (change.isOver())
            return;
        deleteEntries(d->takeUndone(project));
        command->redo();
        if (change.isOver())
            return;
        // Only the last done command of the project is asked.
        QUndoCommand* last = d->lastDone(project);
        const bool merged = last && last->mergeWith(command);
        if (change.isOver())
            return;
        if (!merged)
            d->insert(owned.release(), project);
        owned.reset();
        if (change.isOver())
            return;
        if (!merged || !(d->actionState() == d->sent))
            sendActionState();
        if (change.isOver())
            return;
    }
    Q_EMIT projectChanged();
}

void MultiStackUndoGroup::makeIndex(int target) {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<MultiStackUndoGroup> self(this);
    while (self && index() > target && canUndo()) {
        const int next = index() - 1;
        undo();
        if (self && index() != next)
            return;
    }
    while (self && index() < target && canRedo()) {
        const int next = index() + 1;
        redo();
        if (self && index() != next)
            return;
    }
}

void MultiStackUndoGroup::addProject(UndoableProject* project) {
    KXUI_INTERFACE_THREAD(this);
    if (refuse("addProject"))
        return;
    {
        const Change change(this, d);
        Q_EMIT projectAboutToBeAdded();
        if (change.isOver())
            return;
        d->projects.insert(project);
    }
    Q_EMIT projectAdded();
}

void MultiStackUndoGroup::removeProject(UndoableProject* project) {
    KXUI_INTERFACE_THREAD(this);
    if (refuse("removeProject"))
        return;
    {
        const Change change(this, d);
        Q_EMIT projectAboutToBeRemoved();
        if (change.isOver())
            return;
        deleteEntries(d->takeAll(project));
        if (!change.isOver())
            sendActionState();
        if (change.isOver())
            return;
        d->projects.remove(project);
    }
    Q_EMIT projectRemoved();
}

void MultiStackUndoGroup::undo() {
    KXUI_INTERFACE_THREAD(this);
    if (!canUndo() || refuse("undo"))
        return;
    {
        const Change change(this, d);
        Q_EMIT projectAboutToBeChanged();
        if (change.isOver())
            return;
        getUndoCommand()->undo();
        if (change.isOver())
            return;
        d->stepBack();
        sendActionState();
        if (change.isOver())
            return;
    }
    Q_EMIT projectChanged();
}

void MultiStackUndoGroup::redo() {
    KXUI_INTERFACE_THREAD(this);
    if (!canRedo() || refuse("redo"))
        return;
    {
        const Change change(this, d);
        Q_EMIT projectAboutToBeChanged();
        if (change.isOver())
            return;
        getRedoCommand()->redo();
        if (change.isOver())
            return;
        d->stepForward();
        sendActionState();
        if (change.isOver())
            return;
    }
    Q_EMIT projectChanged();
}

bool MultiStackUndoGroup::refuse(const char* method) const {
    if (d->changing)
        qWarning("MultiStackUndoGroup::%s - refused: the history is being changed", method);
    return d->changing;
}

void MultiStackUndoGroup::sendActionState() {
    const QPointer<MultiStackUndoGroup> self(this);
    const int before = d->sent.index;
    const UndoActionState state = d->sent = d->actionState();
    Q_EMIT setRedoable(state.redoable);
    if (self)
        Q_EMIT setUndoable(state.undoable);
    if (self)
        Q_EMIT setUndoActionText(state.undoText);
    if (self)
        Q_EMIT setRedoActionText(state.redoText);
    if (self && state.index != before)
        Q_EMIT indexChanged(state.index);
}

} // namespace Kestrel::UI
