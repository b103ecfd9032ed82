#pragma once

#include <KxUI/undo/UndoCommandItem.h>

#include <QList>
#include <QSet>
#include <QString>

#include <cstddef>
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

/** Which commands a history has. They lie in one piece of memory, neighbours of the heap close to
    each other: a set that allocates and scatters costs as much as all else that a step does. */
class UndoCommandSet {
public:
    bool contains(const QUndoCommand* command) const;
    /** Not null, and not in the set. */
    void insert(const QUndoCommand* command);
    void remove(const QUndoCommand* command);

private:
    std::size_t home(const QUndoCommand* command) const;
    std::size_t next(std::size_t place) const { return (place + 1) & (m_places.size() - 1); }
    std::size_t placeOf(const QUndoCommand* command) const;
    void grow();

    std::vector<const QUndoCommand*> m_places; ///< a power of two, half of them null at least
    std::size_t m_count = 0;
};

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
    UndoCommandSet m_commands; ///< those of the history
    std::unordered_map<const UndoableProject*, Entries> m_entries;
};

} // namespace Kestrel::UI
