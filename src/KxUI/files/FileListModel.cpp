#include <KxUI/files/FileListModel.h>

#include <KxUI/files/FileListModel_p.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>

#include <QDateTime>
#include <QMimeData>

#include <algorithm>

namespace Kestrel::UI {
namespace {

const QString& uriList() {
    static const QString type = QStringLiteral("text/uri-list");
    return type;
}

const QString& pathList() {
    static const QString type = QStringLiteral("application/x-kxui-paths");
    return type;
}

// More than this and other programs, who look at each of them, take long.
constexpr std::int64_t MostDragged = 10000;

// By its bytes: a name need not be UTF-8.
QByteArray addressOf(const QByteArray& path) {
    return "file://" + path.toPercentEncoding("/") + "\r\n";
}

QByteArray addressesOf(const FileListing& listing, int item, std::int64_t& left) {
    if (listing.item(item).kind != FileListing::Kind::Sequence) {
        --left;
        return addressOf(listing.path(item));
    }
    const std::int64_t frames = listing.item(item).frames;
    if (frames > left) {
        --left;
        return addressOf(listing.framePath(item, listing.item(item).first));
    }
    left -= frames;
    QByteArray addresses;
    for (const Base::FrameRange& range : listing.frameRanges(item)) {
        for (std::int64_t frame = range.first; frame <= range.last;
             frame += std::max(range.step, 1))
            addresses += addressOf(listing.framePath(item, static_cast<std::int32_t>(frame)));
    }
    return addresses;
}

} // namespace

FileListModel::FileListModel(QObject* parent)
    : QAbstractTableModel(parent)
    , d(std::make_unique<Private>(this)) {
    qRegisterMetaType<FileInfo>();
}

FileListModel::~FileListModel() {
    d->box->close();
}

FileGatherer* FileListModel::gatherer() const {
    return d->gatherer;
}

std::shared_ptr<const FileListing> FileListModel::listing() const {
    return d->listing;
}

int FileListModel::itemOf(int row) const {
    return d->rows.at(static_cast<std::size_t>(row));
}

bool FileListModel::foldersFirst() const {
    return d->order.foldersFirst;
}

void FileListModel::setFoldersFirst(bool first) {
    if (first == d->order.foldersFirst)
        return;
    d->order.foldersFirst = first;
    d->change();
    Q_EMIT orderChanged();
}

QString FileListModel::searchText() const {
    return d->searchText;
}

void FileListModel::setSearchText(const QString& text) {
    if (text == d->searchText)
        return;
    d->searchText = text;
    const QStringList words = text.simplified().split(QLatin1Char(' '));
    d->order.words = words.first().isEmpty() ? QStringList() : words;
    d->change();
    Q_EMIT orderChanged();
}

void FileListModel::sort(int column, Qt::SortOrder order) {
    const bool isDescending = order == Qt::DescendingOrder;
    const auto wanted = static_cast<ListingColumn>(column);
    if (column < Name || column >= ColumnCount ||
        (wanted == d->order.column && isDescending == d->order.isDescending))
        return;
    d->order.column = wanted;
    d->order.isDescending = isDescending;
    d->change();
    d->askForStatuses();
}

bool FileListModel::holdsOrder() const {
    return d->holdsOrder;
}

void FileListModel::setHoldsOrder(bool holds) {
    if (holds == d->holdsOrder)
        return;
    d->holdsOrder = holds;
    if (!holds && d->isResortDue)
        d->sortAgain();
    Q_EMIT holdsOrderChanged(holds);
}

void FileListModel::setVisibleRows(int first, int last) {
    d->firstVisible = first;
    d->lastVisible = last;
    d->askForStatuses();
}

QModelIndex FileListModel::indexOf(const QByteArray& name) const {
    const int item = d->listing->findFile(viewOf(name));
    const int row = item < 0 ? -1 : d->rowFor(item);
    return row < 0 ? QModelIndex() : index(row, Name);
}

int FileListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(d->rows.size());
}

int FileListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FileListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const int item = itemOf(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return d->text(item, index.column());
    case Qt::AccessibleTextRole:
        if (index.column() == Name)
            return FileTexts::spoken(*d->listing, item, QDateTime::currentDateTime());
        return d->text(item, index.column());
    case Qt::TextAlignmentRole:
        if (index.column() == Missing || index.column() == Size)
            return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    case Qt::ToolTipRole:
        return d->statusText(item, index.column());
    default:
        return d->value(item, role);
    }
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return FileTexts::column(section);
}

Qt::ItemFlags FileListModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled |
           Qt::ItemNeverHasChildren;
}

QHash<int, QByteArray> FileListModel::roleNames() const {
    auto names = QAbstractTableModel::roleNames();
    const std::pair<int, const char*> own[] = {{PathRole, "path"},
                                               {NameRole, "rawName"},
                                               {KindRole, "kind"},
                                               {FirstFrameRole, "firstFrame"},
                                               {LastFrameRole, "lastFrame"},
                                               {StepRole, "step"},
                                               {FrameCountRole, "frameCount"},
                                               {MissingRole, "missing"},
                                               {RangesRole, "ranges"},
                                               {SizeRole, "size"},
                                               {SizeIsEstimateRole, "sizeIsEstimate"},
                                               {ModifiedRole, "modified"},
                                               {StatusRole, "status"},
                                               {FileInfoRole, "fileInfo"},
                                               {SearchTextRole, "searchText"}};
    for (const auto& [role, name] : own)
        names.insert(role, name);
    return names;
}

QStringList FileListModel::mimeTypes() const {
    return {uriList(), pathList()};
}

QMimeData* FileListModel::mimeData(const QModelIndexList& indexes) const {
    QByteArray addresses;
    QByteArray paths;
    std::int64_t left = MostDragged;
    for (const QModelIndex& index : indexes) {
        if (index.column() != Name)
            continue;
        const int item = itemOf(index.row());
        addresses += addressesOf(*d->listing, item, left);
        paths += d->listing->path(item) + '\0';
    }
    if (paths.isEmpty())
        return nullptr;
    auto* const data = new QMimeData;
    data->setData(uriList(), addresses);
    data->setData(pathList(), paths);
    return data;
}

bool FileListModel::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QAbstractTableModel::event(event);
    d->takeNews();
    return true;
}

} // namespace Kestrel::UI
