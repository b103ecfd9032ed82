#include <KxUI/undo/MultiStackUndoGroup_p.h>

#include <QUndoCommand>

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <utility>

namespace Kestrel::UI {

bool operator==(const UndoActionState& a, const UndoActionState& b) {
    const auto fields = [](const UndoActionState& each) {
        return std::tie(each.undoable, each.redoable, each.undoText, each.redoText, each.index);
    };
    return fields(a) == fields(b);
}

bool UndoCommandSet::contains(const QUndoCommand* command) const {
    return !m_places.empty() && m_places[placeOf(command)];
}

void UndoCommandSet::insert(const QUndoCommand* command) {
    if (2 * ++m_count > m_places.size())
        grow();
    m_places[placeOf(command)] = command;
}

void UndoCommandSet::remove(const QUndoCommand* command) {
    if (!contains(command))
        return;
    // What was put aside because its place was taken moves up.
    std::size_t hole = placeOf(command);
    for (std::size_t place = next(hole); m_places[place]; place = next(place)) {
        const std::size_t mask = m_places.size() - 1;
        if (((place - home(m_places[place])) & mask) < ((place - hole) & mask))
            continue;
        m_places[hole] = m_places[place];
        hole = place;
    }
    m_places[hole] = nullptr;
    --m_count;
}

// By the address within its page of memory; pages are spread.
std::size_t UndoCommandSet::home(const QUndoCommand* command) const {
    constexpr std::uint64_t Spread = 0x9e3779b97f4a7c15U; // 2^64 over the golden ratio
    const std::uint64_t address = reinterpret_cast<std::uintptr_t>(command);
    return static_cast<std::size_t>((address >> 4U) + (address >> 12U) * Spread) &
           (m_places.size() - 1);
}

// Where the command is, or else a free place for it.
std::size_t UndoCommandSet::placeOf(const QUndoCommand* command) const {
    std::size_t place = home(command);
    while (m_places[place] && m_places[place] != command)
        place = next(place);
    return place;
}

void UndoCommandSet::grow() {
    constexpr std::size_t Least = 16;
    std::vector<const QUndoCommand*> old(std::max(Least, 2 * m_places.size()));
    old.swap(m_places);
    for (const QUndoCommand* command : old) {
        if (command)
            m_places[placeOf(command)] = command;
    }
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
