#pragma once

#include "media/Sequence.h"
#include "media/StatusReader.h"

#include <KxUI/files/FileInfoList.h>

#include <QAbstractTableModel>
#include <QByteArray>
#include <QTimer>

#include <optional>
#include <vector>

namespace Kestrel::Workbench {

/** The contents of a folder, its numbered files folded into sequences: folders first, each part in
    natural order. Sizes and missing frames come in one by one after the rest. */
class FolderModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { NameColumn, RangeColumn, MissingColumn, SizeColumn, ColumnCount };

    explicit FolderModel(QObject* parent = nullptr);

    /** Lists a folder, given in the bytes of the file system. */
    void setFolder(const QByteArray& folder);
    QByteArray folder() const { return m_folder; }

    /** Why there is nothing to see: the folder cannot be read, or is empty. Empty otherwise. */
    QString problem() const { return m_problem; }

    bool isFolder(int row) const;
    bool isSequence(int row) const;
    /** The path of a row's item in the bytes of the file system; for folders and plain files. */
    QByteArray path(int row) const;
    /** The files of a sequence, or the one file of another row. */
    Sequence sequence(int row) const;
    /** The row that a file name is listed under, by itself or as a member of a sequence; -1. */
    int rowOfFile(const std::string& name) const;
    /** What is known of a row; nothing before it was asked for. */
    const std::optional<ItemStatus>& status(int row) const;
    /** Whether every item's status is known. */
    bool isComplete() const { return m_complete; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    /** Every status is known. */
    void completed();

private:
    struct Row {
        int item = 0;
        std::optional<ItemStatus> status;
    };

    const UI::FileInfo& item(int row) const;
    std::string hashedName(int row) const;
    void fetchNext();
    void takeStatus(int index, const ItemStatus& status);
    void announceChanges();
    QString text(int row, int column) const;

    UI::FileInfoList m_list;
    StatusReader m_reader;
    QByteArray m_folder;
    QString m_problem;
    std::vector<Row> m_rows;
    /** Row of a list item; -1 for what is not shown. */
    std::vector<int> m_rowOfItem;
    bool m_complete = false;
    /** Views are told of new statuses some times a second, not for each. */
    QTimer m_announce;
    int m_firstChanged = -1;
    int m_lastChanged = -1;
};

} // namespace Kestrel::Workbench
