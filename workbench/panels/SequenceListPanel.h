#pragma once

#include "media/Sequence.h"

#include <KxUI/kit/SearchPattern.h>

#include <QByteArray>
#include <QWidget>

#include <vector>

class QComboBox;
class QLabel;
class QModelIndex;
class QStackedWidget;
class QTreeView;

namespace Kestrel::UI {
class SearchField;
}

namespace Kestrel::Workbench {

class FolderModel;

/** Lists a folder and lets the user walk through folders and choose a sequence. Paths are the bytes
    of the file system. */
class SequenceListPanel : public QWidget {
    Q_OBJECT

public:
    explicit SequenceListPanel(QWidget* parent = nullptr);

    FolderModel* model() const { return m_model; }
    QTreeView* view() const { return m_view; }

    /** Lists a folder. */
    void openFolder(const QByteArray& folder);

    /** Offers a folder in the path field without listing it. */
    void offerFolder(const QByteArray& folder);

    /** Lists the folder of a file and chooses the sequence that it belongs to. */
    void openFile(const QByteArray& file);

    /** Chooses the first sequence of the listed folder, or its first file; false without either. */
    bool chooseFirst();

    /** Reads the listed folder again. */
    void reload();

signals:
    /** The user chose a sequence; `at` is the frame to go to, or InvalidTime. */
    void sequenceChosen(const Kestrel::Workbench::Sequence& sequence, Kestrel::Base::Time at);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void activate(const QModelIndex& index);
    void choose(int row, Base::Time at);
    void goUp();
    void showSummary();
    void search(const QString& words);
    /** Goes to the match that many rows on, around the end. */
    void goToMatch(int step);
    void showPlaceOfMatch();

    FolderModel* m_model;
    QComboBox* m_path;
    QStackedWidget* m_pages;
    UI::SearchField* m_search;
    QTreeView* m_view;
    QLabel* m_message;
    QLabel* m_summary;
    UI::SearchPattern m_pattern;
    std::vector<int> m_matches; ///< rows; empty without a search
};

} // namespace Kestrel::Workbench
