#include "panels/FolderModel.h"

#include "media/FolderNames.h"
#include "media/Paths.h"

#include <QApplication>
#include <QLocale>
#include <QStyle>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::FileInfo;
using UI::FileInfoList;

namespace {

/** The number that a lone file carries, so that it stands at its own frame; 1 when it has none. */
Base::Time frameOfLoneFile(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    const std::size_t stem = dot == std::string::npos || dot == 0 ? name.size() : dot;
    std::size_t begin = stem;
    while (begin > 0 && name[begin - 1] >= '0' && name[begin - 1] <= '9')
        --begin;
    const std::string hashed =
        name.substr(0, begin) + std::string(stem - begin, '#') + name.substr(stem);
    const auto members = FolderNames({name}).members(hashed);
    return members.empty() ? 1 : members.front().first;
}

} // namespace

FolderModel::FolderModel(QObject* parent)
    : QAbstractTableModel(parent) {
    m_list.setShouldFilterSequences(true);
    connect(&m_list, &FileInfoList::lazyStatFetchNext, this, &FolderModel::fetchNext,
            Qt::QueuedConnection);
    connect(&m_list, &FileInfoList::fileInfoAvailable, this, [this] {
        m_complete = true;
        announceChanges();
        emit completed();
    });
    connect(&m_reader, &StatusReader::statusRead, this, &FolderModel::takeStatus);
    m_announce.setSingleShot(true);
    m_announce.setInterval(50);
    connect(&m_announce, &QTimer::timeout, this, &FolderModel::announceChanges);
}

void FolderModel::setFolder(const QByteArray& folder) {
    beginResetModel();
    m_folder = folder;
    m_rows.clear();
    m_complete = false;
    m_announce.stop();
    m_firstChanged = -1;
    m_reader.setFolder(folder.toStdString());
    m_problem = folderProblem(folder.toStdString());
    m_list.fillRaw(folder);
    m_rowOfItem.assign(std::size_t(m_list.size()), -1);
    for (const bool folders : {true, false}) {
        for (int i = 0; i < m_list.size(); ++i) {
            // Hidden names, and the folder itself and its parent.
            if (m_list[i].rawFileName()[0] == '.' || m_list[i].isDir() != folders)
                continue;
            m_rowOfItem[std::size_t(i)] = int(m_rows.size());
            m_rows.push_back({i, std::nullopt});
        }
    }
    if (m_problem.isEmpty() && m_rows.empty())
        m_problem = tr("This folder is empty.");
    if (m_list.size() == 0)
        m_complete = true;
    endResetModel();
}

bool FolderModel::isFolder(int row) const {
    return item(row).isDir();
}

bool FolderModel::isSequence(int row) const {
    return item(row).isSequence();
}

QByteArray FolderModel::path(int row) const {
    return QByteArray::fromStdString(joinPath(m_folder.toStdString(), item(row).rawFileName()));
}

Sequence FolderModel::sequence(int row) const {
    const std::string folder = m_folder.toStdString();
    const std::string hashed = hashedName(row);
    if (!hashed.empty())
        return Sequence(QString::fromUtf8(hashed.c_str()), folder,
                        FolderNames::read(folder).members(hashed));
    const std::string name = item(row).rawFileName();
    return Sequence(item(row).fileName(), folder, {{frameOfLoneFile(name), name}});
}

int FolderModel::rowOfFile(const std::string& name) const {
    for (int row = 0; row < rowCount(); ++row) {
        const std::string hashed = hashedName(row);
        if (hashed.empty() ? name == item(row).rawFileName()
                           : !FolderNames({name}).members(hashed).empty())
            return row;
    }
    return -1;
}

const std::optional<ItemStatus>& FolderModel::status(int row) const {
    return m_rows[std::size_t(row)].status;
}

int FolderModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

int FolderModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FolderModel::data(const QModelIndex& index, int role) const {
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::ToolTipRole:
        return item(row).fileName();
    case Qt::DecorationRole:
        if (index.column() == NameColumn)
            return QApplication::style()->standardIcon(isFolder(row) ? QStyle::SP_DirIcon
                                                                     : QStyle::SP_FileIcon);
        break;
    case Qt::TextAlignmentRole:
        if (index.column() != NameColumn)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        break;
    }
    return {};
}

QVariant FolderModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int((section == NameColumn ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Name");
    case RangeColumn:
        return tr("Range");
    case MissingColumn:
        return tr("Missing");
    default:
        return tr("Size");
    }
}

const FileInfo& FolderModel::item(int row) const {
    return m_list[m_rows[std::size_t(row)].item];
}

std::string FolderModel::hashedName(int row) const {
    return isSequence(row) ? hashedNameOf(item(row).rawFileName()) : std::string();
}

/** Has the status of the item at the list's cursor read; one at a time, in the order of the list.
 */
void FolderModel::fetchNext() {
    const int index = m_list.lazyStatIndex();
    const FileInfo* const info = m_list.lazyStatItem();
    if (!info)
        return;
    m_reader.request(index, info->rawFileName(),
                     info->isSequence() ? hashedNameOf(info->rawFileName()) : std::string());
}

void FolderModel::takeStatus(int index, const ItemStatus& status) {
    if (index != m_list.lazyStatIndex())
        return;
    m_list[index].setAdditionalInfo(status.size, status.modified,
                                    status.files > 0 ? status.isDirectory : m_list[index].isDir(),
                                    status.isWritable);
    if (const int row = m_rowOfItem[std::size_t(index)]; row >= 0) {
        m_rows[std::size_t(row)].status = status;
        m_firstChanged = m_firstChanged < 0 ? row : std::min(m_firstChanged, row);
        m_lastChanged = std::max(m_lastChanged, row);
        if (!m_announce.isActive())
            m_announce.start();
    }
    m_list.onLazyStatFetchNext();
}

void FolderModel::announceChanges() {
    if (m_firstChanged < 0)
        return;
    emit dataChanged(index(m_firstChanged, NameColumn), index(m_lastChanged, SizeColumn));
    m_firstChanged = -1;
    m_lastChanged = -1;
}

QString FolderModel::text(int row, int column) const {
    const FileInfo& info = item(row);
    const auto& known = m_rows[std::size_t(row)].status;
    switch (column) {
    case NameColumn: {
        const std::string hashed = hashedName(row);
        return hashed.empty() ? info.fileName() : QString::fromUtf8(hashed.c_str());
    }
    case RangeColumn: {
        if (!info.isSequence())
            return {};
        const QString range = tr("%1\u2013%2").arg(info.startFrame()).arg(info.endFrame());
        return info.frameStep() > 1 ? tr("%1 by %2").arg(range).arg(info.frameStep()) : range;
    }
    case MissingColumn:
        return known && known->missing > 0 ? QString::number(known->missing) : QString();
    default:
        return known && !info.isDir() ? QLocale().formattedDataSize(qint64(known->size), 1)
                                      : QString();
    }
}

} // namespace Kestrel::Workbench
