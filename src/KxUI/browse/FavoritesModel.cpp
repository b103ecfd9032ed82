#include <KxUI/browse/FavoritesModel.h>

#include <KxUI/browse/FavoritesModel_p.h>
#include <KxUI/browse/Xbel_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/files/platform/Directory_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QMimeData>
#include <QUrl>

#include <cerrno>

namespace Kestrel::UI {
namespace {

constexpr int recentCount = 12;

// A file is reached as well as a folder.
int errorOfPlace(const QByteArray& path) {
    Platform::DirectoryHandle folder;
    const int error = folder.open(path.toStdString());
    return Platform::failureOf(error) == Platform::Failure::NotADirectory ? 0 : error;
}

} // namespace

const char* const FavoritesModel::MimeType = "application/x-kxui-favorites";

FavoritesModel::FavoritesModel(QObject* parent)
    : QAbstractItemModel(parent)
    , d(std::make_unique<Private>(this)) {
    d->rebuild();
    reloadPlaces();
}

FavoritesModel::FavoritesModel(FavoritesFile* file, QObject* parent)
    : FavoritesModel(parent) {
    setFile(file);
}

FavoritesModel::~FavoritesModel() {
    d->machineBox->close();
    d->answerBox->close();
    if (d->file)
        disconnect(d->file, nullptr, this, nullptr);
}

FavoritesFile* FavoritesModel::file() const {
    return d->file;
}

void FavoritesModel::setFile(FavoritesFile* file) {
    KXUI_INTERFACE_THREAD(this);
    if (file == d->file)
        return;
    if (d->file)
        disconnect(d->file, nullptr, this, nullptr);
    d->file = file;
    if (file) {
        connect(file, &FavoritesFile::changed, this, [this] { d->rebuild(); });
        connect(file, &QObject::destroyed, this, [this] { d->rebuild(); });
    }
    d->rebuild();
}

void FavoritesModel::setProjectPlaces(const std::vector<FavoritesFile::Favorite>& places) {
    KXUI_INTERFACE_THREAD(this);
    d->project = places;
    d->rebuild();
}

bool FavoritesModel::showsDesktop() const {
    return d->showsDesktop;
}

void FavoritesModel::setShowsDesktop(bool shows) {
    KXUI_INTERFACE_THREAD(this);
    if (shows == d->showsDesktop)
        return;
    d->showsDesktop = shows;
    const QPointer<FavoritesModel> alive(this);
    d->rebuild();
    if (alive)
        Q_EMIT showsDesktopChanged(shows);
}

QStringList FavoritesModel::schemes() const {
    return d->schemes;
}

void FavoritesModel::setSchemes(const QStringList& schemes) {
    KXUI_INTERFACE_THREAD(this);
    d->schemes = schemes;
    d->rebuild();
}

QList<QByteArray> FavoritesModel::recentPlaces() const {
    return d->recent;
}

void FavoritesModel::noteUsed(const QByteArray& path) {
    KXUI_INTERFACE_THREAD(this);
    if (path.isEmpty() || (!d->recent.isEmpty() && d->recent.front() == path))
        return;
    d->recent.removeAll(path);
    d->recent.prepend(path);
    while (d->recent.size() > recentCount)
        d->recent.removeLast();
    d->storeRecent();
    d->rebuild();
}

void FavoritesModel::clearRecent() {
    KXUI_INTERFACE_THREAD(this);
    d->recent.clear();
    d->storeRecent();
    d->rebuild();
}

void FavoritesModel::askReach(const QModelIndex& index) {
    KXUI_INTERFACE_THREAD(this);
    const QByteArray path = index.data(PathRole).toByteArray();
    if (path.isEmpty() || Xbel::isAddress(viewOf(path)))
        return;
    const auto known = d->answers.find(path);
    constexpr std::int64_t minute = 60LL * 1000 * 1000 * 1000;
    if (known != d->answers.end() && Ticket::now() - known->second.at < minute)
        return;
    const auto job = [path, box = d->answerBox](Ticket&) {
        box->put({{path, errorOfPlace(path)}}, [](auto& waiting, auto& newest) {
            waiting.insert(waiting.end(), newest.begin(), newest.end());
        });
    };
    if (WorkerPool::instance().post(WorkerPool::Lane::Status, path.toStdString(), job))
        d->setAnswer(path, Asking, 0);
}

void FavoritesModel::setReach(const QByteArray& path, int error) {
    KXUI_INTERFACE_THREAD(this);
    d->setAnswer(path, error == 0 ? Reachable : Unreachable, error);
}

QModelIndex FavoritesModel::indexOf(const QString& id) const {
    return d->indexOf(d->find(d->root, id));
}

QModelIndex FavoritesModel::indexOfPath(const QByteArray& path) const {
    if (d->file) {
        const QModelIndex favorite = indexOf(d->file->idOf(path));
        if (favorite.isValid())
            return favorite;
    }
    for (const auto& section : d->root.children) {
        for (const auto& place : section->children) {
            if (place->path == path && !path.isEmpty())
                return d->indexOf(place.get());
        }
    }
    return {};
}

QModelIndex FavoritesModel::favoriteAt(int number) const {
    if (!d->file || number < 0 || number > 8)
        return {};
    for (const FavoritesFile::Favorite& each : d->file->favorites()) {
        const QModelIndex index = each.isGroup ? QModelIndex() : indexOf(each.id);
        if (index.isValid() && number-- == 0)
            return index;
    }
    return {};
}

bool FavoritesModel::moveBy(const QModelIndex& index, int rows) {
    KXUI_INTERFACE_THREAD(this);
    if (!index.isValid() || !d->file || Private::nodeOf(index)->id.isEmpty())
        return false;
    return rows < 0 ? d->moveUp(*Private::nodeOf(index)) : d->moveDown(*Private::nodeOf(index));
}

int FavoritesModel::importDesktop() {
    KXUI_INTERFACE_THREAD(this);
    int count = 0;
    const QPointer<FavoritesModel> alive(this);
    const std::vector<MachinePlaces::Place> places = d->machine.desktop;
    for (const MachinePlaces::Place& place : places) {
        if (!alive || !d->file)
            break;
        if (!d->file->contains(place.path) && !d->file->add(place.path, place.title).isEmpty())
            ++count;
    }
    return count;
}

void FavoritesModel::reloadPlaces() {
    KXUI_INTERFACE_THREAD(this);
    WorkerPool::instance().post(WorkerPool::Lane::Files, {}, [box = d->machineBox](Ticket&) {
        box->put(MachinePlaces::read());
    });
}

bool FavoritesModel::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QAbstractItemModel::event(event);
    const QPointer<FavoritesModel> alive(this);
    if (auto machine = d->machineBox->take()) {
        d->machine = std::move(*machine);
        d->rebuild();
    }
    const auto answers = alive ? d->answerBox->take() : std::nullopt;
    if (answers) {
        for (const auto& [path, error] : *answers) {
            if (alive)
                d->setAnswer(path, error == 0 ? Reachable : Unreachable, error);
        }
    }
    return true;
}

QModelIndex FavoritesModel::index(int row, int column, const QModelIndex& parent) const {
    const PlaceNode* const list = d->listOf(parent);
    if (column != 0 || parent.column() > 0 || row < 0 ||
        row >= static_cast<int>(list->children.size()))
        return {};
    return createIndex(row, column, list->children[static_cast<std::size_t>(row)].get());
}

QModelIndex FavoritesModel::parent(const QModelIndex& index) const {
    return index.isValid() ? d->indexOf(Private::nodeOf(index)->parent) : QModelIndex();
}

int FavoritesModel::rowCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : static_cast<int>(d->listOf(parent)->children.size());
}

int FavoritesModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant FavoritesModel::data(const QModelIndex& index, int role) const {
    return index.isValid() ? d->dataOf(*Private::nodeOf(index), role) : QVariant();
}

bool FavoritesModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    KXUI_INTERFACE_THREAD(this);
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    const QString title = value.toString().trimmed();
    // What is shown without a title is none.
    if (title != Private::nodeOf(index)->title)
        d->file->rename(Private::nodeOf(index)->id, title);
    return true;
}

Qt::ItemFlags FavoritesModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    const PlaceNode& node = *Private::nodeOf(index);
    Qt::ItemFlags flags = Qt::ItemIsEnabled;
    if (!node.isSection)
        flags |= Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
    if (!node.id.isEmpty() && d->file)
        flags |= Qt::ItemIsEditable;
    if (node.section == Favorites && (node.isSection || node.isGroup) && d->file)
        flags |= Qt::ItemIsDropEnabled;
    return flags;
}

bool FavoritesModel::removeRows(int row, int count, const QModelIndex& parent) {
    KXUI_INTERFACE_THREAD(this);
    QStringList ids;
    for (int i = row; i < row + count; ++i) {
        const QString id = index(i, 0, parent).data(IdRole).toString();
        if (id.isEmpty() || !d->file)
            return false;
        ids << id;
    }
    const QPointer<FavoritesFile> file(d->file);
    for (const QString& id : ids) {
        if (file)
            file->remove(id);
    }
    return !ids.isEmpty();
}

QStringList FavoritesModel::mimeTypes() const {
    return {QLatin1String(MimeType), QStringLiteral("text/uri-list")};
}

QMimeData* FavoritesModel::mimeData(const QModelIndexList& indexes) const {
    QByteArray ids;
    QByteArray hrefs;
    for (const QModelIndex& index : indexes) {
        const PlaceNode& node = *Private::nodeOf(index);
        if (!node.id.isEmpty())
            ids += node.id.toUtf8() + '\n';
        if (!node.path.isEmpty())
            hrefs += QByteArray::fromStdString(Xbel::hrefOf(viewOf(node.path))) + "\r\n";
    }
    auto* const data = new QMimeData;
    if (!ids.isEmpty())
        data->setData(QLatin1String(MimeType), ids);
    if (!hrefs.isEmpty())
        data->setData(QStringLiteral("text/uri-list"), hrefs);
    return data;
}

Qt::DropActions FavoritesModel::supportedDropActions() const {
    // Never a move: others would move the folder.
    return Qt::CopyAction | Qt::LinkAction;
}

bool FavoritesModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int row, int,
                                     const QModelIndex& parent) const {
    return d->target(row, parent).isValid &&
           (data->hasFormat(QLatin1String(MimeType)) || data->hasUrls());
}

bool FavoritesModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                  const QModelIndex& parent) {
    KXUI_INTERFACE_THREAD(this);
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const Private::Target target = d->target(row, parent);
    const QPointer<FavoritesFile> file(d->file);
    const QPointer<FavoritesModel> alive(this);
    QString anchor; // what they come before, wherever it is by then
    if (target.before >= 0)
        anchor = file->favorites()[static_cast<std::size_t>(target.before)].id;
    const QStringList ids =
        data->hasFormat(QLatin1String(MimeType))
            ? QString::fromUtf8(data->data(QLatin1String(MimeType))).split(QLatin1Char('\n'))
            : d->added(data->urls());
    for (const QString& id : ids) {
        if (!alive || !file || id.isEmpty() || id == anchor)
            continue;
        Private::Target place = target;
        place.before = anchor.isEmpty() ? -1 : d->fileIndex(anchor);
        d->drop(id, place);
    }
    return true;
}

} // namespace Kestrel::UI
