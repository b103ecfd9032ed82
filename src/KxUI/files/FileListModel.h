#pragma once

#include <KxUI/Export.h>
#include <KxUI/files/FileGatherer.h>

#include <QAbstractTableModel>

#include <memory>

namespace Kestrel::UI {

/** A directory as rows for item views, sorted and searched on other threads.

    The rows follow what the gatherer() reads: they come while a long directory is being read, and
    keep their persistent indices, and with them the selection and the current row, while files come
    and go or a sequence gains frames. There is a reset only when another directory is gathered.

    Tell it by setVisibleRows() what the view shows: sizes and times are asked for there first.
    Sorting by one of them asks for all. Interface thread. */
class KXUI_EXPORT FileListModel : public QAbstractTableModel {
    Q_OBJECT
    Q_PROPERTY(bool foldersFirst READ foldersFirst WRITE setFoldersFirst NOTIFY orderChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY orderChanged)
    Q_PROPERTY(bool holdsOrder READ holdsOrder WRITE setHoldsOrder NOTIFY holdsOrderChanged)

public:
    /** The columns. */
    enum Column {
        Name,       ///< the name; of a sequence with # for the frame
        Frames,     ///< first and last frame of a sequence
        Missing,    ///< how many frames of it are missing
        Size,       ///< bytes, as far as they are known
        Modified,   ///< when it was written
        Type,       ///< what kind of file it is
        ColumnCount ///< how many columns there are
    };

    /** What is told of a row beside its texts, whatever the column. */
    enum Role {
        PathRole = Qt::UserRole + 1, ///< QByteArray: what to open; of a sequence with # in it
        NameRole,                    ///< QByteArray in the system's encoding
        KindRole,                    ///< FileListing::Kind as int
        FirstFrameRole,              ///< int; invalid for what is no sequence, as the next five
        LastFrameRole,               ///< int
        StepRole,                    ///< int
        FrameCountRole,              ///< int: the files
        MissingRole,                 ///< qint64: frames without a file
        RangesRole,                  ///< QString: "1-3 5-10"
        SizeRole,                    ///< qint64; invalid while it is not known
        SizeIsEstimateRole,          ///< bool
        ModifiedRole,                ///< QDateTime; invalid while it is not known
        StatusRole,                  ///< FileListing::Status::Known as int
        FileInfoRole,                ///< FileInfo
        SearchTextRole               ///< QString: the name as it is written
    };

    /** Without rows until gatherer() is told to gather. */
    explicit FileListModel(QObject* parent = nullptr);
    ~FileListModel() override;

    /** What reads the directory; the model owns it. */
    FileGatherer* gatherer() const;

    /** The listing that the rows show, which may be older than that of the gatherer for a moment. */
    std::shared_ptr<const FileListing> listing() const;

    /** The item of a row in listing(). */
    int itemOf(int row) const;

    /** Whether directories come before files whatever the order; at first on. */
    bool foldersFirst() const;
    void setFoldersFirst(bool first);

    /** Words that the names of all rows have to have, in any case; at first empty. A number also
        stands for a frame that a sequence has a file of. */
    QString searchText() const;
    void setSearchText(const QString& text);

    /** Whether rows stay where they are while the sizes and times that they are sorted by arrive; at
        first off. For while somebody edits or drags one of them. */
    bool holdsOrder() const;
    void setHoldsOrder(bool holds);

    /** The rows that a view shows, first and last: whose statuses are asked for. */
    void setVisibleRows(int first, int last);

    /** The row of a name in the system's encoding, in the first column; a file that is part of a
        sequence has the row of the sequence. Invalid for none. */
    QModelIndex indexOf(const QByteArray& name) const;

    /** What views ask for, see QAbstractItemModel. */
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QHash<int, QByteArray> roleNames() const override;

    /** Sorts by a column, at first Name. Returns at once; the rows move when it is done. */
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /** `text/uri-list`, where a sequence is all its files, or its first one from where they would be
        more than 10,000; and `application/x-kxui-paths`: the paths of PathRole, each with a NUL
        behind it. */
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

Q_SIGNALS:
    /** foldersFirst() or searchText() is another; the rows follow. */
    void orderChanged();

    /** holdsOrder() is another. */
    void holdsOrderChanged(bool holds);

    /** The rows show the gatherer's listing in the order that is wanted: nothing is under way. */
    void settled();

protected:
    bool event(QEvent* event) override;

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
