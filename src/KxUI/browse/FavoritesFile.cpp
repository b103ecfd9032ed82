#include <KxUI/browse/FavoritesFile.h>

#include <KxUI/browse/FavoritesFile_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/Xml_p.h>
#include <KxUI/settings/AppSettings.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUuid>

#include <algorithm>

namespace Kestrel::UI {
namespace {

using FavoritesStore::Change;

FavoritesFile* standardFile = nullptr;

void endStandardFile() {
    delete std::exchange(standardFile, nullptr);
}

std::string newId() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
}

std::string titleOf(const QString& text) {
    return Xml::writable(text).trimmed().left(static_cast<int>(Xbel::Limits::Title)).toStdString();
}

} // namespace

FavoritesFile::FavoritesFile(QObject* parent)
    : FavoritesFile(standardFileName(), parent) {}

FavoritesFile::FavoritesFile(const QString& fileName, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, fileName)) {
    if (auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        connect(application, &QGuiApplication::applicationStateChanged, this,
                [this](Qt::ApplicationState state) {
                    if (state == Qt::ApplicationActive)
                        reload();
                });
    d->load();
}

FavoritesFile::~FavoritesFile() {
    d->box->close();
    d->saveBeforeEnd();
    if (standardFile == this)
        standardFile = nullptr;
}

FavoritesFile* FavoritesFile::standard() {
    if (!standardFile) {
        standardFile = new FavoritesFile;
        qAddPostRoutine(endStandardFile);
    }
    return standardFile;
}

QString FavoritesFile::standardFileName() {
    const AppSettings settings;
    return QFileInfo(settings.fileName()).absolutePath() + QLatin1String("/favourites.xbel");
}

QString FavoritesFile::fileName() const {
    return d->fileName;
}

bool FavoritesFile::isLoaded() const {
    return d->isLoaded;
}

bool FavoritesFile::isSaved() const {
    return d->isSaved;
}

const std::vector<FavoritesFile::Favorite>& FavoritesFile::favorites() const {
    return d->favorites;
}

const FavoritesFile::Favorite* FavoritesFile::favorite(const QString& id) const {
    const auto found = std::find_if(d->favorites.begin(), d->favorites.end(),
                                    [&](const Favorite& each) { return each.id == id; });
    return found == d->favorites.end() ? nullptr : &*found;
}

bool FavoritesFile::contains(const QByteArray& path) const {
    return !idOf(path).isEmpty();
}

QString FavoritesFile::idOf(const QByteArray& path) const {
    for (const Favorite& each : d->favorites) {
        if (!each.isGroup && each.path == path)
            return each.id;
    }
    return {};
}

QString FavoritesFile::errorString() const {
    return d->error;
}

QString FavoritesFile::add(const QByteArray& path, const QString& title, int before) {
    KXUI_INTERFACE_THREAD(this);
    const std::string bytes = path.toStdString();
    const std::string href = Xbel::hrefOf(bytes);
    if (path.isEmpty() || path.contains('\0') || href.size() > Xbel::Limits::Href ||
        Xbel::pathOf(href) != bytes)
        return {};
    const QString now = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    return d->insert(Xbel::bookmark(href, titleOf(title), newId(), now.toStdString()), before);
}

QString FavoritesFile::addGroup(const QString& title, int before) {
    KXUI_INTERFACE_THREAD(this);
    // A group lies at the top, before the group that `before` lies in.
    const int count = static_cast<int>(d->favorites.size());
    while (before > 0 && before < count && !d->favorites[std::size_t(before)].group.isEmpty())
        --before;
    return d->insert(Xbel::folder(titleOf(title), newId()), before);
}

void FavoritesFile::remove(const QString& id) {
    KXUI_INTERFACE_THREAD(this);
    const std::string key = id.toStdString();
    const auto place = Xbel::find(d->document, key);
    if (!place)
        return;
    Change back;
    back.kind = Change::Kind::Insert;
    back.id = key;
    back.entry = place->node();
    back.group = place->group ? place->group->id : std::string();
    for (std::size_t i = 0; i < place->list->size(); ++i) {
        const Xbel::Node& sibling = (*place->list)[i];
        if (!sibling.isEntry() || i == place->index)
            continue;
        if (i < place->index)
            back.behind = sibling.id;
        else if (back.before.empty())
            back.before = sibling.id;
    }
    d->removed[id] = std::move(back);
    Change change;
    change.kind = Change::Kind::Remove;
    change.id = key;
    d->change(std::move(change));
}

bool FavoritesFile::restore(const QString& id) {
    KXUI_INTERFACE_THREAD(this);
    const auto found = d->removed.find(id);
    if (found == d->removed.end() || favorite(id))
        return false;
    Change change = std::move(found->second);
    d->removed.erase(found);
    d->change(std::move(change));
    return true;
}

void FavoritesFile::rename(const QString& id, const QString& title) {
    KXUI_INTERFACE_THREAD(this);
    const Favorite* const old = favorite(id);
    const std::string text = titleOf(title);
    if (!old || old->title.toStdString() == text)
        return;
    Change change;
    change.kind = Change::Kind::Rename;
    change.id = id.toStdString();
    change.title = text;
    d->change(std::move(change));
}

void FavoritesFile::move(const QString& id, int before) {
    KXUI_INTERFACE_THREAD(this);
    const Favorite* const moved = favorite(id);
    if (!moved)
        return;
    Change change = d->placed(Change::Kind::Move, before);
    change.id = id.toStdString();
    if (change.id == change.before || (moved->isGroup && !change.group.empty()))
        return;
    d->change(std::move(change));
}

void FavoritesFile::moveInto(const QString& id, const QString& group) {
    KXUI_INTERFACE_THREAD(this);
    const Favorite* const moved = favorite(id);
    if (!moved || moved->isGroup)
        return;
    Change change;
    change.kind = Change::Kind::Move;
    change.id = id.toStdString();
    change.group = group.toStdString();
    d->change(std::move(change));
}

void FavoritesFile::reload() {
    KXUI_INTERFACE_THREAD(this);
    d->load();
}

void FavoritesFile::save() {
    KXUI_INTERFACE_THREAD(this);
    d->save();
}

bool FavoritesFile::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QObject::event(event);
    if (auto result = d->box->take())
        d->take(std::move(*result));
    return true;
}

} // namespace Kestrel::UI
