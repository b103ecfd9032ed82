#include <KxUI/browse/FavoritesFile_p.h>
#include <KxUI/files/WorkerPool_p.h>

#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace Kestrel::UI {
namespace {

using FavoritesStore::Failure;
using FavoritesStore::Result;

constexpr int savePause = 300;   // milliseconds after the last change
constexpr int lockWait = 500;    // for another process that writes
constexpr int lastWait = 200;    // for a saving when the object goes
constexpr int firstRetry = 1000; // after a failure; longer each time
constexpr int lastRetry = 60000;

std::string folderOf(const QString& fileName) {
    return QFile::encodeName(QFileInfo(fileName).absolutePath()).toStdString();
}

} // namespace

FavoritesFile::Private::Private(FavoritesFile* file, const QString& name)
    : q(file)
    , fileName(name)
    , box(std::make_shared<Mailbox<Result>>(file))
    , document(Xbel::read({}))
    , base(document) {
    saveTimer.setSingleShot(true);
    QObject::connect(&saveTimer, &QTimer::timeout, q, [this] { save(); });
}

// One question at a time, so that answers come in the order of what was asked.
void FavoritesFile::Private::load() {
    wantsLoad = isBusy;
    if (isBusy)
        return;
    const auto job = [name = fileName, known = stamp, answer = box](Ticket&) {
        answer->put(FavoritesStore::load(name, known));
    };
    isBusy =
        WorkerPool::instance().post(WorkerPool::Lane::Files, folderOf(fileName), job) != nullptr;
}

void FavoritesFile::Private::save() {
    saveTimer.stop();
    wantsSave = isBusy;
    if (isBusy || pending.empty())
        return;
    const auto job = [name = fileName, changes = pending, answer = box](Ticket&) {
        answer->put(FavoritesStore::save(name, changes, lockWait));
    };
    isBusy =
        WorkerPool::instance().post(WorkerPool::Lane::Files, folderOf(fileName), job) != nullptr;
    if (!isBusy)
        saveTimer.start(lastRetry);
}

void FavoritesFile::Private::saveBeforeEnd() {
    if (pending.empty())
        return;
    struct End {
        std::mutex mutex;
        std::condition_variable wake;
        bool isDone = false;
    };
    const auto end = std::make_shared<End>();
    const auto job = [name = fileName, changes = pending, end](Ticket&) {
        FavoritesStore::save(name, changes, lockWait);
        const std::lock_guard<std::mutex> lock(end->mutex);
        end->isDone = true;
        end->wake.notify_all();
    };
    if (!WorkerPool::instance().post(WorkerPool::Lane::Names, folderOf(fileName), job))
        return;
    std::unique_lock<std::mutex> lock(end->mutex);
    end->wake.wait_for(lock, std::chrono::milliseconds(lastWait), [&] { return end->isDone; });
}

void FavoritesFile::Private::take(Result result) {
    const QPointer<FavoritesFile> alive(q);
    isBusy = false;
    const bool isFirst = !isLoaded;
    isLoaded = isLoaded || result.failure == Failure::None;
    if (result.isNew && result.failure == Failure::None) {
        base = std::move(result.document);
        stamp = result.stamp;
        const auto applied = std::min(result.applied, pending.size());
        pending.erase(pending.begin(), pending.begin() + std::ptrdiff_t(applied));
        document = base;
        for (const Change& change : pending)
            FavoritesStore::apply(document, change);
        result.document.problem = base.problem;
        result.document.line = base.line;
    }
    const bool failed = result.failure != Failure::None;
    retries = failed ? retries + 1 : 0;
    if (!pending.empty() && !saveTimer.isActive())
        saveTimer.start(failed ? std::min(firstRetry << std::min(retries - 1, 6), lastRetry)
                               : savePause);
    if (std::exchange(wantsSave, false) && !failed)
        save();
    else if (std::exchange(wantsLoad, false))
        load();

    if (failed || result.isNew)
        setError(textOf(result));
    if (alive && failed && result.failure != Failure::CannotRead && !error.isEmpty())
        Q_EMIT q->saveFailed(QString(error));
    else if (alive && failed && !pending.empty())
        Q_EMIT q->saveFailed(QString(error));
    if (alive && (result.isNew || isFirst))
        rebuild();
    if (alive)
        setSaved(pending.empty());
}

void FavoritesFile::Private::change(Change change) {
    FavoritesStore::apply(document, change);
    pending.push_back(std::move(change));
    saveTimer.start(savePause);
    const QPointer<FavoritesFile> alive(q);
    setSaved(false);
    if (alive)
        rebuild();
}

void FavoritesFile::Private::rebuild() {
    favorites.clear();
    list(document.nodes, QString());
    Q_EMIT q->changed();
}

void FavoritesFile::Private::list(const std::vector<Xbel::Node>& nodes, const QString& group) {
    for (const Xbel::Node& node : nodes) {
        if (!node.isEntry())
            continue;
        Favorite favorite;
        favorite.id = QString::fromStdString(node.id);
        favorite.title = QString::fromStdString(node.title)
                             .simplified()
                             .left(static_cast<int>(Xbel::Limits::Title));
        favorite.group = group;
        favorite.isGroup = node.kind == Xbel::Node::Kind::Folder;
        if (!favorite.isGroup) {
            const auto path = Xbel::pathOf(node.href);
            if (!path)
                continue; // kept in the file all the same
            favorite.path = QByteArray::fromStdString(*path);
        }
        favorites.push_back(favorite);
        if (favorite.isGroup)
            list(node.children, favorite.id);
    }
}

void FavoritesFile::Private::setError(const QString& text) {
    if (text == error)
        return;
    error = text;
    Q_EMIT q->errorChanged(text);
}

void FavoritesFile::Private::setSaved(bool saved) {
    if (saved == isSaved)
        return;
    isSaved = saved;
    Q_EMIT q->savedChanged(saved);
}

QString FavoritesFile::Private::textOf(const Result& result) const {
    switch (result.failure) {
    case Failure::None:
        if (result.document.problem == Xbel::Problem::None || result.copy.isEmpty())
            break;
        return tr("The favourites could not be read past line %1; a copy was kept as %2.")
            .arg(result.document.line)
            .arg(result.copy);
    case Failure::CannotRead:
        return tr("The favourites cannot be read: %1").arg(result.detail);
    case Failure::CannotWrite:
        return tr("The favourites cannot be saved: %1").arg(result.detail);
    case Failure::Locked:
        return tr("The favourites are not saved yet: another program is saving them.");
    case Failure::CannotKeep:
        return tr("The favourites are damaged and cannot be copied, so they are not replaced.");
    }
    if (result.document.problem != Xbel::Problem::None)
        return tr("The favourites could not be read past line %1.").arg(result.document.line);
    return {};
}

FavoritesFile::Private::Change FavoritesFile::Private::placed(Change::Kind kind, int before) const {
    Change change;
    change.kind = kind;
    if (before >= 0 && before < static_cast<int>(favorites.size())) {
        const Favorite& next = favorites[static_cast<std::size_t>(before)];
        change.before = next.id.toStdString();
        change.group = next.group.toStdString();
    }
    return change;
}

QString FavoritesFile::Private::insert(Xbel::Node entry, int before) {
    if (favorites.size() >= static_cast<std::size_t>(Xbel::Limits::Entries))
        return {};
    Change change = placed(Change::Kind::Insert, before);
    change.id = entry.id;
    change.entry = std::move(entry);
    const QString id = QString::fromStdString(change.id);
    this->change(std::move(change));
    return id;
}

} // namespace Kestrel::UI
