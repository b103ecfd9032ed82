#pragma once

class QUndoCommand;

namespace Kestrel::UI {

/** A project of the host, which defines the class: the history uses only its address. */
class UndoableProject;

/** An entry of the history of a MultiStackUndoGroup. A plain value; its layout is frozen. */
struct UndoCommandItem {
    /** Owned by the group, which deletes it when the entry is removed. */
    QUndoCommand* command = nullptr;
    /** Borrowed; only compared. */
    UndoableProject* project = nullptr;
};

} // namespace Kestrel::UI
