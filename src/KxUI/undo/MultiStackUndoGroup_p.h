#pragma once

#include <KxUI/undo/UndoCommandItem.h>

#include <QList>
#include <QSet>
#include <QString>

#include <unordered_map>
#include <vector>

namespace Kestrel::UI {

/** What the actions of an undo group show, and the index that it goes with. */
struct UndoActionState {
    bool undoable = false;
    bool redoable = false;
    QString undoText;
    QString redoText;
    int index = 0;
};

bool operator==(const UndoActionState& a, const UndoActionState& b);

/** The history of an undo group, and what keeps each of its steps from having to walk it. */
class MultiStackUndoGroupPrivate {
public:
    const QList<UndoCommandItem*>& history() const { return m_history; }
    int index() const { return m_index; }
    QUndoCommand* commandAt(int position) const;
    bool has(const QUndoCommand* command) const { return m_commands.contains(command); }
    UndoActionState actionState() const;

    /** The last done command of the project; null where there is none. */
    QUndoCommand* lastDone(UndoableProject* project) const;

    /** Makes the command the entry at index(), which moves past it. */
    void insert(QUndoCommand* command, UndoableProject* project);

    /** Moves the index over one entry, which has been undone or is done again. */
    void stepBack();
    void stepForward();

    /** Take entries of a project out of the history: those that are not done, or all. */
    QList<UndoCommandItem*> takeUndone(UndoableProject* project);
    QList<UndoCommandItem*> takeAll(UndoableProject* project);

    QSet<UndoableProject*> projects;
    UndoActionState sent;
    const QUndoCommand* performed = nullptr; ///< while its redo() runs
    bool changing = false;

private:
    struct Entries {
        std::vector<int> done; ///< their positions in the history, upwards
        int undone = 0;        ///< how many there are
    };

    QList<UndoCommandItem*> take(const UndoableProject* project, int first, int count);
    void findDone();

    QList<UndoCommandItem*> m_history;
    int m_index = 0;
    QSet<const QUndoCommand*> m_commands; ///< those of the history
    std::unordered_map<const UndoableProject*, Entries> m_entries;
};

} // namespace Kestrel::UI
