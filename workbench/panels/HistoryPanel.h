#pragma once

#include <KxUI/kit/SearchPattern.h>

#include <QWidget>

namespace Kestrel::UI {
class MultiStackUndoView;
class SearchField;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class GradeHistory;
class Session;

/** All edits of all sequences in their order, each with its sequence; what is undone is dimmed. A
    click goes to the state after that edit, and shows its sequence. A search leaves the edits in
    sight whose text, or whose sequence, has the words. */
class HistoryPanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit HistoryPanel(Session* session, QWidget* parent = nullptr);

    UI::MultiStackUndoView* view() const { return m_view; }

private:
    void search(const QString& words);
    void showMatches();

    GradeHistory* m_grades;
    UI::SearchField* m_search;
    UI::MultiStackUndoView* m_view;
    UI::SearchPattern m_pattern;
};

} // namespace Kestrel::Workbench
