#pragma once

#include <KxUI/Export.h>
#include <KxUI/undo/UndoCommandItem.h>

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

#include <memory>

class QAction;

namespace Kestrel::UI {

class MultiStackUndoGroupPrivate;

/** One undo history over several projects, in the order in which things were done. A new command
    drops only the redo entries of its own project; those of other projects stay above it.

    Every change of the history is announced before and after. From the first announcement until
    just before the second, further changes are refused with a warning: so a command can not reach
    into the history from its redo(), undo(), mergeWith() or destructor. QUndoCommand::id() and
    QUndoCommand::isObsolete() have no meaning here.
    Interface thread. */
class KXUI_EXPORT MultiStackUndoGroup : public QObject {
    Q_OBJECT
    Q_PROPERTY(int index READ index WRITE makeIndex NOTIFY indexChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY setUndoable)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY setRedoable)
    Q_PROPERTY(QString undoText READ undoText NOTIFY setUndoActionText)
    Q_PROPERTY(QString redoText READ redoText NOTIFY setRedoActionText)

public:
    /** An empty history; `parent` owns the object, without one whoever made it does. */
    explicit MultiStackUndoGroup(QObject* parent = nullptr);

    /** Leaves the commands that are still in the history alone. A host that wants them deleted
        removes their projects first. */
    ~MultiStackUndoGroup() override;

    /** The history, oldest entry first. */
    const QList<UndoCommandItem*>& undoCommands() const;

    /** The number of entries that are done: the entry before it is the next to undo, the entry at
        it the next to redo. */
    int index() const;

    /** The projects that were added and not removed. */
    const QSet<UndoableProject*>& projects() const;

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
    const QUndoCommand* getUndoCommand() const;
    const QUndoCommand* getRedoCommand() const;
    QUndoCommand* getUndoCommand();
    QUndoCommand* getRedoCommand();

    /** A new UndoAction that calls undo() or redo() and follows this group. `parent` owns it;
        without one the caller does. */
    QAction* createUndoAction(QObject* parent) const;
    QAction* createRedoAction(QObject* parent) const;

public Q_SLOTS:
    /** Registers a project, which is borrowed. Null is a project like any other, here as in
        performCommand(). */
    void addProject(Kestrel::UI::UndoableProject* project);

    /** Deletes the commands of a project, done and undone ones, and forgets the project. */
    void removeProject(Kestrel::UI::UndoableProject* project);

    /** One step back; nothing if there is none. */
    void undo();

    /** One step forward; nothing if there is none. */
    void redo();

Q_SIGNALS:
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

    /** The index became another one; after the texts. */
    void indexChanged(int index);

private:
    bool refuse(const char* method) const;
    void sendActionState();

    // Shared with a change that is under way, during which the group may be deleted.
    const std::shared_ptr<MultiStackUndoGroupPrivate> d;
};

} // namespace Kestrel::UI
