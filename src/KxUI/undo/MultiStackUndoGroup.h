#pragma once

#include <KxUI/Export.h>
#include <KxUI/undo/UndoCommandItem.h>

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

class QAction;

namespace Kestrel::UI {

/** One undo history over several projects, in the order in which things were done. A new command
    drops only the redo entries of its own project; those of other projects stay above it.

    Every change of the history is announced before and after. From the first announcement until
    just before the second, further changes are refused with a warning: so a command can not reach
    into the history from its redo(), undo(), mergeWith() or destructor. QUndoCommand::id() and
    QUndoCommand::isObsolete() have no meaning here.
    Interface thread. */
class KXUI_EXPORT MultiStackUndoGroup : public QObject {
    Q_OBJECT

public:
    /** An empty history; `parent` owns the object, without one whoever made it does. */
    explicit MultiStackUndoGroup(QObject* parent = nullptr);

    /** Leaves the commands that are still in the history alone. A host that wants them deleted
        removes their projects first. */
    ~MultiStackUndoGroup() override;

    /** The history, oldest entry first. */
    const QList<UndoCommandItem*>& undoCommands() const { return m_history; }

    /** The number of entries that are done: the entry before it is the next to undo, the entry at
        it the next to redo. */
    int index() const { return m_index; }

    /** The projects that were added and not removed. */
    const QSet<UndoableProject*>& projects() const { return m_projects; }

    /** Drops the redo entries of `project`, calls `command->redo()`, and lets the last done command
        of the project merge the command, or makes it the entry at index(), which moves past it.
        The group owns `command` from here on; one that is merged or refused is deleted. Null, and
        a command that the group has already, are refused with a warning. */
    void performCommand(QUndoCommand* command, UndoableProject* project);

    /** Undoes or redoes, one announced step at a time, until index() is `target` or there is no
        further step. Stops early where a step is refused, or where the host moves the index in
        answer to a step. */
    void makeIndex(int target);

    /** Whether there is a step in that direction. */
    bool canUndo() const;
    bool canRedo() const;

    /** The text of the command that undo() or redo() acts on; empty where there is none. */
    QString undoText() const;
    QString redoText() const;

    /** The command that undo() or redo() acts on, owned by the group; null where there is none. */
    const QUndoCommand* getUndoCommand() const { return commandAt(m_index - 1); }
    const QUndoCommand* getRedoCommand() const { return commandAt(m_index); }
    QUndoCommand* getUndoCommand() { return commandAt(m_index - 1); }
    QUndoCommand* getRedoCommand() { return commandAt(m_index); }

    /** A new UndoAction, owned by `parent`, that calls undo() or redo() and follows this group. */
    QAction* createUndoAction(QObject* parent) const;
    QAction* createRedoAction(QObject* parent) const;

public slots:
    /** Registers a project, which is borrowed. */
    void addProject(Kestrel::UI::UndoableProject* project);

    /** Deletes the commands of a project, done and undone ones, and forgets the project. */
    void removeProject(Kestrel::UI::UndoableProject* project);

    /** One step back; nothing if there is none. */
    void undo();

    /** One step forward; nothing if there is none. */
    void redo();

signals:
    /** Sent before and after a project came or left. */
    void projectAboutToBeAdded();
    void projectAdded();
    void projectAboutToBeRemoved();
    void projectRemoved();

    /** Sent before and after every command that is performed, undone or redone. */
    void projectAboutToBeChanged();
    void projectChanged();

    /** The states and texts that actions show, at every change of the index and whenever else they
        are not what was sent last. Redoable comes first, then undoable, then the texts. */
    void setUndoable(bool undoable);
    void setRedoable(bool redoable);
    void setUndoActionText(const QString& text);
    void setRedoActionText(const QString& text);

private:
    struct ActionState {
        bool undoable = false;
        bool redoable = false;
        QString undoText;
        QString redoText;
    };

    bool refuse(const char* method) const;
    bool has(const QUndoCommand* command) const;
    QUndoCommand* commandAt(int position) const;
    bool mergeIntoLast(const QUndoCommand* command, const UndoableProject* project);
    QList<UndoCommandItem*> takeEntries(const UndoableProject* project, int first);
    ActionState actionState() const;
    void setIndex(int index);
    void sendActionState(const ActionState& state);

    QSet<UndoableProject*> m_projects;
    QList<UndoCommandItem*> m_history;
    int m_index = 0;
    ActionState m_sent;
    const QUndoCommand* m_performed = nullptr;
    bool m_changing = false;
};

} // namespace Kestrel::UI
