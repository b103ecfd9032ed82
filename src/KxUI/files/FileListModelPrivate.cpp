#include <KxUI/files/FileListModel_p.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/WorkerPool_p.h>

#include <QDateTime>
#include <QPointer>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int resortAfter = 500; // milliseconds from a status to the rows in its order

std::vector<std::uint64_t> keysOf(const FileListing& listing,
                                  const std::vector<std::int32_t>& rows) {
    std::vector<std::uint64_t> keys;
    keys.reserve(rows.size());
    for (const std::int32_t item : rows)
        keys.push_back(listing.item(item).key);
    return keys;
}

bool isSame(const FileListing::Item& a, const FileListing::Item& b) {
    return a.kind == b.kind && a.frames == b.frames && a.first == b.first && a.last == b.last &&
           a.step == b.step && a.missing == b.missing && a.name == b.name;
}

} // namespace

FileListModel::Private::Private(FileListModel* model)
    : q(model)
    , gatherer(new FileGatherer(model))
    , box(std::make_shared<Mailbox<News>>(model)) {
    resort.setSingleShot(true);
    resort.setInterval(resortAfter);
    QObject::connect(&resort, &QTimer::timeout, q, [this] { sortAgain(); });
    QObject::connect(gatherer, &FileGatherer::listingChanged, q, [this] { listingChanged(); });
    QObject::connect(gatherer, &FileGatherer::statusArrived, q,
                     [this](int first, int last) { statusArrived(first, last); });
}

bool FileListModel::Private::isSameData(const FileListing& other) const {
    return ListingData::of(*listing) == ListingData::of(other);
}

void FileListModel::Private::listingChanged() {
    const auto next = gatherer->listing();
    if (next->directory() != listing->directory()) {
        const QPointer<FileListModel> self(q);
        q->beginResetModel();
        listing = next;
        rows.clear();
        rowOf.clear();
        ++changes; // what is being computed is of the other one
        q->endResetModel();
        if (!self)
            return;
    }
    change();
}

// Statuses do not change the rows, unless they are sorted by them.
void FileListModel::Private::statusArrived(int first, int last) {
    const auto next = gatherer->listing();
    if (!isSameData(*next)) {
        change();
        return;
    }
    listing = next;
    if (order.usesStatus() && !resort.isActive())
        resort.start();
    int firstRow = static_cast<int>(rows.size());
    int lastRow = -1;
    for (int item = first; item <= last; ++item) {
        const int row = rowFor(item);
        if (row < 0)
            continue;
        firstRow = std::min(firstRow, row);
        lastRow = std::max(lastRow, row);
    }
    if (lastRow >= 0)
        tellChanged(firstRow, lastRow, Size, Type);
}

void FileListModel::Private::sortAgain() {
    isResortDue = holdsOrder;
    if (!holdsOrder)
        change();
}

void FileListModel::Private::change() {
    ++changes;
    if (!isComputing)
        compute();
}

FileListModel::Private::News FileListModel::Private::made(const FileListing& shownListing,
                                                          const Rows& shownRows,
                                                          std::shared_ptr<const FileListing> next,
                                                          const ListingOrder& order) {
    News news;
    news.rows = orderedRows(*next, order);
    news.diff = diffOf(
        keysOf(shownListing, shownRows), keysOf(*next, news.rows), [&](int before, int after) {
            return !isSame(shownListing.item(shownRows[static_cast<std::size_t>(before)]),
                           next->item(news.rows[static_cast<std::size_t>(after)]));
        });
    news.listing = std::move(next);
    return news;
}

// One at a time: its result is told in rows that nothing else changes meanwhile.
void FileListModel::Private::compute() {
    isComputing = true;
    const auto job = [state = changes, shown = listing, shownRows = rows,
                      next = gatherer->listing(), wanted = order, to = box](Ticket&) {
        News news = made(*shown, shownRows, next, wanted);
        news.order = state;
        to->put(std::move(news));
    };
    if (WorkerPool::instance().post(WorkerPool::Lane::Names, {}, job))
        return;
    // Every thread is stuck; this asks no file system, so it may be done here.
    Ticket here;
    job(here);
}

void FileListModel::Private::takeNews() {
    auto news = box->take();
    if (!news)
        return;
    isComputing = false;
    const QPointer<FileListModel> self(q);
    const std::uint64_t state = news->order;
    if (news->listing->directory() == listing->directory() && !adopt(std::move(*news)))
        return;
    if (isComputing)
        return;
    if (state != changes) {
        compute();
        return;
    }
    askForStatuses();
    Q_EMIT q->settled();
}

// False when that was the end of the model.
bool FileListModel::Private::adopt(News news) {
    const QPointer<FileListModel> self(q);
    const std::vector<ListingDiff::Rows> changed = std::move(news.diff.changed);
    // Statuses may have come since it was begun.
    if (const auto newest = gatherer->listing();
        ListingData::of(*newest) == ListingData::of(*news.listing))
        news.listing = newest;
    if (!(news.diff.isRearranged ? rearrange(news) : follow(news)))
        return false;
    for (const auto& range : changed) {
        if (!tellChanged(range.first, range.first + range.count - 1, Name, Type))
            return false;
    }
    return !self.isNull();
}

int FileListModel::Private::rowFor(int item) {
    if (rowOf.empty()) {
        rowOf.assign(static_cast<std::size_t>(listing->size()), -1);
        for (std::size_t row = 0; row < rows.size(); ++row)
            rowOf[static_cast<std::size_t>(rows[row])] = static_cast<std::int32_t>(row);
    }
    return rowOf[static_cast<std::size_t>(item)];
}

bool FileListModel::Private::rearrange(News& news) {
    const QPointer<FileListModel> self(q);
    Q_EMIT q->layoutAboutToBeChanged();
    if (!self)
        return false;
    const QModelIndexList before = q->persistentIndexList();
    listing = std::move(news.listing);
    rows = std::move(news.rows);
    rowOf.clear();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex& index : before) {
        const int row = news.diff.newRows[static_cast<std::size_t>(index.row())];
        after << (row < 0 ? QModelIndex() : q->createIndex(row, index.column()));
    }
    q->changePersistentIndexList(before, after);
    Q_EMIT q->layoutChanged();
    return !self.isNull();
}

bool FileListModel::Private::follow(News& news) {
    const QPointer<FileListModel> self(q);
    for (const auto& range : news.diff.removed) {
        q->beginRemoveRows({}, range.first, range.first + range.count - 1);
        const auto first = rows.begin() + range.first;
        rows.erase(first, first + range.count);
        rowOf.clear();
        q->endRemoveRows();
        if (!self)
            return false;
    }
    // The rows that stay are those of the other listing from now on.
    Rows kept;
    kept.reserve(news.rows.size());
    auto next = news.diff.inserted.begin();
    for (int row = 0; row < static_cast<int>(news.rows.size());) {
        if (next != news.diff.inserted.end() && next->first == row)
            row += (next++)->count;
        else
            kept.push_back(news.rows[static_cast<std::size_t>(row++)]);
    }
    listing = std::move(news.listing);
    rows = std::move(kept);
    rowOf.clear();
    for (const auto& range : news.diff.inserted) {
        q->beginInsertRows({}, range.first, range.first + range.count - 1);
        const auto from = news.rows.begin() + range.first;
        rows.insert(rows.begin() + range.first, from, from + range.count);
        rowOf.clear();
        q->endInsertRows();
        if (!self)
            return false;
    }
    return true;
}

bool FileListModel::Private::tellChanged(int firstRow, int lastRow, int firstColumn,
                                         int lastColumn) {
    const QPointer<FileListModel> self(q);
    // A slot may have gone to another directory.
    if (lastRow < static_cast<int>(rows.size()))
        Q_EMIT q->dataChanged(q->index(firstRow, firstColumn), q->index(lastRow, lastColumn));
    return !self.isNull();
}

void FileListModel::Private::askForStatuses() {
    const auto newest = gatherer->listing();
    const bool isSame = isSameData(*newest);
    std::vector<int> wanted;
    const auto add = [&](int row) {
        const int item = rows[static_cast<std::size_t>(row)];
        wanted.push_back(isSame ? item : newest->findKey(listing->item(item).key));
    };
    const int count = static_cast<int>(rows.size());
    const int first = std::max(firstVisible, 0);
    const int last = std::min(lastVisible, count - 1);
    for (int row = first; row <= last; ++row)
        add(row);
    // Of another listing when the rows follow it, which is soon.
    if (order.usesStatus() && isSame) {
        wanted.reserve(wanted.size() + static_cast<std::size_t>(count));
        for (int row = 0; row < count; ++row) {
            if (row < first || row > last)
                add(row);
        }
    }
    gatherer->requestStatus(wanted);
}

QVariant FileListModel::Private::text(int item, int column) const {
    const FileListing::Item& each = listing->item(item);
    switch (column) {
    case Name:
        return FileTexts::name(each.name);
    case Frames:
        return FileTexts::frames(each);
    case Missing:
        return each.missing > 0 ? QString::number(each.missing) : QString();
    case Type:
        return FileTexts::type(each);
    default:
        break;
    }
    const FileListing::Status status = listing->status(item);
    if (status.known == FileListing::Status::NotAsked)
        return {};
    if (status.known != FileListing::Status::Told)
        return QString(QChar(0x2013));
    if (column == Size)
        return each.kind == FileListing::Kind::Directory
                   ? QString()
                   : FileTexts::size(status.size, status.isEstimate);
    return FileTexts::time(QDateTime::fromSecsSinceEpoch(status.modified),
                           QDateTime::currentDateTime());
}

QVariant FileListModel::Private::statusText(int item, int column) const {
    const FileListing::Status status = listing->status(item);
    switch (status.known) {
    case FileListing::Status::Gone:
        return FileListModel::tr("This file does not exist any more.");
    case FileListing::Status::Denied:
        return FileListModel::tr("You have no permission to ask about this file.");
    case FileListing::Status::Failed:
        return FileListModel::tr("This file cannot be asked about.");
    default:
        break;
    }
    if (status.isBrokenLink)
        return FileListModel::tr("This link leads nowhere.");
    if (column == Missing && listing->item(item).missing > 0)
        return FileListModel::tr("There are %1.")
            .arg(FileTexts::ranges(listing->frameRanges(item)));
    return {};
}

QVariant FileListModel::Private::value(int item, int role) const {
    const FileListing::Item& each = listing->item(item);
    const bool isSequence = each.kind == FileListing::Kind::Sequence;
    const FileListing::Status status = listing->status(item);
    const bool isTold = status.known == FileListing::Status::Told;
    switch (role) {
    case PathRole:
        return listing->path(item);
    case NameRole:
        return bytesOf(each.name);
    case SearchTextRole:
        return decodedName(bytesOf(each.name));
    case KindRole:
        return static_cast<int>(each.kind);
    case StatusRole:
        return static_cast<int>(status.known);
    case FileInfoRole:
        return QVariant::fromValue(listing->fileInfo(item));
    case SizeRole:
        return isTold ? QVariant(static_cast<qint64>(status.size)) : QVariant();
    case SizeIsEstimateRole:
        return status.isEstimate;
    case ModifiedRole:
        return isTold ? QVariant(QDateTime::fromSecsSinceEpoch(status.modified)) : QVariant();
    default:
        break;
    }
    if (!isSequence)
        return {};
    switch (role) {
    case FirstFrameRole:
        return each.first;
    case LastFrameRole:
        return each.last;
    case StepRole:
        return each.step;
    case FrameCountRole:
        return each.frames;
    case MissingRole:
        return static_cast<qint64>(each.missing);
    case RangesRole:
        return FileTexts::ranges(listing->frameRanges(item));
    default:
        return {};
    }
}

} // namespace Kestrel::UI
