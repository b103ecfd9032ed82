#pragma once

#include <QWidget>

namespace Kestrel::UI {
class MultiStackUndoView;
}

namespace Kestrel::Workbench {

class Session;

/** All edits of all sequences in their order, each with its sequence; what is undone is dimmed. A
    click goes to the state after that edit, and shows its sequence. */
class HistoryPanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit HistoryPanel(Session* session, QWidget* parent = nullptr);

    UI::MultiStackUndoView* view() const { return m_view; }

private:
    UI::MultiStackUndoView* m_view;
};

} // namespace Kestrel::Workbench
