#pragma once

#include <KxUI/browse/BrowserMemory_p.h>
#include <KxUI/browse/BrowserState_p.h>
#include <KxUI/browse/FileBrowser.h>

#include <QPersistentModelIndex>
#include <QPointer>
#include <QStackedWidget>
#include <QTimer>

#include <utility>

class QItemSelectionModel;
class QListView;
class QTreeView;

namespace Kestrel::UI {

class FileItemDelegate;
class ThumbnailLoader;

/** The rows of a browser in one of its views, which share what is selected. What is at the top stays
    there while rows come and go above it. */
class BrowserViews : public QStackedWidget {
    Q_OBJECT

public:
    explicit BrowserViews(FileListModel* model, QWidget* parent = nullptr);
    ~BrowserViews() override;

    QTreeView* details() const { return m_details; }
    QListView* list() const { return m_list; }
    QAbstractItemView* current() const;
    QItemSelectionModel* selection() const { return m_selection; }
    ThumbnailLoader* pictures() const { return m_pictures; }

    FileBrowser::ViewMode mode() const { return m_mode; }
    void setMode(FileBrowser::ViewMode mode);

    /** What is selected, as ranges of rows in their order. */
    std::vector<std::pair<int, int>> selectedRows() const;

    int selectedCount() const;

    /** The folder as it would be left now. */
    BrowserPlace place() const;

    /** Selects and scrolls as far as rows are there. Whether all of them are. */
    bool restore(const BrowserPlace& place);

    /** First and last row that are seen; the last is before the first where none is. */
    std::pair<int, int> visibleRows() const;

    /** The rows as they are drawn. */
    QPixmap picture() const;

    /** The columns of the details, and by which of them rows are in order. */
    void remember(BrowserMemory& memory) const;
    void recall(const BrowserMemory& memory);
    void setColumnShown(int column, bool shown);

    /** Gives the names what the other columns leave. */
    void fitNames();

Q_SIGNALS:
    /** Other rows are seen. */
    void scrolled();
    /** Rows that were selected are gone. */
    void selectionShrunk();
    /** The user gave an item another name. */
    void renamed(const QByteArray& name, const QString& newName);
    /** The user changed columns. */
    void columnsChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /** What stays where it is. */
    struct Anchor {
        QPersistentModelIndex index;
        int offset = 0; // what of it is scrolled away
    };

    void buildDetails(FileListModel* model);
    void buildList();
    void shareSelection(QAbstractItemView* view, FileItemDelegate* delegate);
    void holdOrder();
    void dropAnchor();
    void weigh();
    void tellRows();
    void fitColumns();
    void showColumnMenu(const QPoint& at);

    FileListModel* const m_model;
    ThumbnailLoader* const m_pictures;
    FileBrowser::ViewMode m_mode = FileBrowser::Details;
    // One a view: what edits reports to all views that have it.
    FileItemDelegate* const m_rowDelegate;
    FileItemDelegate* const m_cellDelegate;
    QItemSelectionModel* const m_selection;
    QTreeView* m_details = nullptr;
    QListView* m_list = nullptr;
    QPointer<QWidget> m_editor;
    QTimer m_hold; // since the last key or press
    Anchor m_anchor;
    int m_selectedBefore = 0;
    int m_rowHeight = 0; // that was seen last
    bool m_isWeighing = false;
    bool m_isFitting = false;
    bool m_isUsersWidth = false; // of a column
    int m_nameWidth = 0;         // that the user gave
};

} // namespace Kestrel::UI
