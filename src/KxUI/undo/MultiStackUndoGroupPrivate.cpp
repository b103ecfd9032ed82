#include <KxUI/undo/MultiStackUndoGroup_p.h>

#include <QUndoCommand>

#include <tuple>
#include <utility>

namespace Kestrel::UI {

bool operator==(const UndoActionState& a, const UndoActionState& b) {
    const auto fields = [](const UndoActionState& each) {
        return std::tie(each.undoable, each.redoable, each.undoText, each.redoText, each.index);
    };
    return fields(a) == fields(b);
}

QUndoCommand* MultiStackUndoGroupPrivate::commandAt(int position) const {
    const UndoCommandItem* entry = m_history.value(position);
    return entry ? entry->command : nullptr;
}

UndoActionState MultiStackUndoGroupPrivate::actionState() const {
    const QUndoCommand* undo = commandAt(m_index - 1);
    const QUndoCommand* redo = commandAt(m_index);
    return {undo != nullptr, redo != nullptr, undo ? undo->text() : QString(),
            redo ? redo->text() : QString(), m_index};
}

QUndoCommand* MultiStackUndoGroupPrivate::lastDone(UndoableProject* project) const {
    const auto found = m_entries.find(project);
    return found == m_entries.end() || found->second.done.empty()
               ? nullptr
               : commandAt(found->second.done.back());
}

void MultiStackUndoGroupPrivate::insert(QUndoCommand* command, UndoableProject* project) {
    m_history.insert(m_index, new UndoCommandItem{command, project});
    m_commands.insert(command);
    m_entries[project].done.push_back(m_index++);
}

void MultiStackUndoGroupPrivate::stepBack() {
    Entries& entries = m_entries[m_history.at(--m_index)->project];
    entries.done.pop_back();
    ++entries.undone;
}

void MultiStackUndoGroupPrivate::stepForward() {
    Entries& entries = m_entries[m_history.at(m_index)->project];
    --entries.undone;
    entries.done.push_back(m_index++);
}

QList<UndoCommandItem*> MultiStackUndoGroupPrivate::takeUndone(UndoableProject* project) {
    const auto found = m_entries.find(project);
    if (found == m_entries.end())
        return {};
    return take(project, m_index, std::exchange(found->second.undone, 0));
}

QList<UndoCommandItem*> MultiStackUndoGroupPrivate::takeAll(UndoableProject* project) {
    const auto found = m_entries.find(project);
    if (found == m_entries.end())
        return {};
    const int done = static_cast<int>(found->second.done.size());
    const int count = done + found->second.undone;
    m_entries.erase(found);
    m_index -= done;
    QList<UndoCommandItem*> taken = take(project, 0, count);
    if (done > 0)
        findDone();
    return taken;
}

// The first `count` entries of the project from `first` on, where there are as many.
QList<UndoCommandItem*> MultiStackUndoGroupPrivate::take(const UndoableProject* project, int first,
                                                         int count) {
    QList<UndoCommandItem*> taken;
    taken.reserve(count);
    const auto begin = m_history.begin() + first;
    auto kept = begin;
    auto next = begin;
    for (; taken.size() < count; ++next) {
        if ((*next)->project == project)
            taken.append(*next);
        else
            *kept++ = *next;
    }
    m_history.erase(kept, next);
    for (const UndoCommandItem* entry : qAsConst(taken))
        m_commands.remove(entry->command);
    return taken;
}

// Entries below have gone.
void MultiStackUndoGroupPrivate::findDone() {
    for (auto& [project, entries] : m_entries)
        entries.done.clear();
    for (int position = 0; position < m_index; ++position)
        m_entries[m_history.at(position)->project].done.push_back(position);
}

} // namespace Kestrel::UI
