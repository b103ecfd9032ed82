#include <KxUI/browse/FavoritesModel_p.h>

#include <KxUI/browse/Xbel_p.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/settings/AppSettings.h>

#include <QUrl>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr std::int64_t answerHolds = 60LL * 1000 * 1000 * 1000; // nanoseconds

QString titleOf(const QByteArray& path, const QString& title, const QString& icon) {
    if (!title.isEmpty())
        return title;
    if (icon == QLatin1String("BrowseHome"))
        return FavoritesModel::tr("Home");
    QByteArray name = path;
    while (name.size() > 1 && name.endsWith('/'))
        name.chop(1);
    if (name == "/")
        return FavoritesModel::tr("File System");
    return FileTexts::name(viewOf(name.mid(name.lastIndexOf('/') + 1)));
}

QString sectionTitle(FavoritesModel::Section section) {
    switch (section) {
    case FavoritesModel::Project:
        return FavoritesModel::tr("Project");
    case FavoritesModel::Favorites:
        return FavoritesModel::tr("Favourites");
    case FavoritesModel::Places:
        return FavoritesModel::tr("Places");
    case FavoritesModel::Recent:
        return FavoritesModel::tr("Recent");
    case FavoritesModel::Desktop:
        break;
    }
    return FavoritesModel::tr("Bookmarks of the Desktop");
}

PlaceNode* addSection(PlaceNode& top, FavoritesModel::Section section) {
    auto node = std::make_unique<PlaceNode>();
    node->section = section;
    node->isSection = true;
    node->title = sectionTitle(section);
    return top.add(std::move(node));
}

std::unique_ptr<PlaceNode> placeNode(FavoritesModel::Section section, const QByteArray& path,
                                     const QString& title, const QString& icon) {
    auto node = std::make_unique<PlaceNode>();
    node->section = section;
    node->path = path;
    node->icon = icon.isEmpty() ? QStringLiteral("BrowseFolder") : icon;
    node->title = titleOf(path, title, icon);
    return node;
}

bool hasKey(const PlaceNode& node, const QByteArray& key) {
    return std::any_of(node.children.begin(), node.children.end(),
                       [&](const auto& child) { return child->key() == key; });
}

} // namespace

FavoritesModel::Private::Private(FavoritesModel* model)
    : q(model)
    , machineBox(std::make_shared<Mailbox<MachinePlaces>>(model))
    , answerBox(std::make_shared<Mailbox<Answers>>(model)) {
    const AppSettings settings;
    const QStringList stored = settings.value(QStringLiteral("Browse/Recent")).toStringList();
    for (const QString& href : stored) {
        if (const auto path = Xbel::pathOf(href.toStdString()))
            recent.append(bytesOf(*path));
    }
}

QModelIndex FavoritesModel::Private::indexOf(const PlaceNode* node) const {
    return !node || node == &root ? QModelIndex()
                                  : q->createIndex(node->row(), 0, const_cast<PlaceNode*>(node));
}

const PlaceNode* FavoritesModel::Private::find(const PlaceNode& in, const QString& id) const {
    for (const auto& child : in.children) {
        if (child->id == id && !id.isEmpty())
            return child.get();
        if (const PlaceNode* found = find(*child, id))
            return found;
    }
    return nullptr;
}

void FavoritesModel::Private::rebuild() {
    PlaceNode want = wanted();
    merge(root, want);
}

PlaceNode FavoritesModel::Private::wanted() const {
    PlaceNode top;
    std::vector<MachinePlaces::Place> ofProject;
    for (const FavoritesFile::Favorite& each : project)
        ofProject.push_back({each.path, each.title, {}});
    addPlaces(top, Project, ofProject);
    addFavorites(*addSection(top, Favorites));
    addPlaces(top, Places, machine.places);
    std::vector<MachinePlaces::Place> used;
    for (const QByteArray& path : recent)
        used.push_back({path, {}, QStringLiteral("PlaceRecent")});
    addPlaces(top, Recent, used);
    if (showsDesktop)
        addPlaces(top, Desktop, machine.desktop);
    return top;
}

void FavoritesModel::Private::addPlaces(PlaceNode& top, Section section,
                                        const std::vector<MachinePlaces::Place>& places) const {
    if (places.empty())
        return;
    PlaceNode* const node = addSection(top, section);
    for (const MachinePlaces::Place& place : places)
        node->add(placeNode(section, place.path, place.title, place.icon));
}

// Paths, and addresses that the host can go to.
bool FavoritesModel::Private::isShown(std::string_view path) const {
    const QString scheme = decodedName(bytesOf(path.substr(0, path.find(':'))));
    return !Xbel::isAddress(path) || schemes.contains(scheme, Qt::CaseInsensitive);
}

void FavoritesModel::Private::addFavorites(PlaceNode& section) const {
    if (!file)
        return;
    std::map<QString, PlaceNode*> groups{{QString(), &section}};
    for (const FavoritesFile::Favorite& each : file->favorites()) {
        if (!isShown(viewOf(each.path)))
            continue;
        auto node = placeNode(Favorites, each.path, each.title, {});
        node->id = each.id;
        node->isGroup = each.isGroup;
        if (each.isGroup) {
            node->icon = QStringLiteral("PlaceGroup");
            if (each.title.isEmpty())
                node->title = FavoritesModel::tr("Group");
        }
        PlaceNode* const added = groups[each.group]->add(std::move(node));
        if (each.isGroup)
            groups[each.id] = added;
    }
}

// Rows that stay are the same rows, so that views keep what is selected and open.
void FavoritesModel::Private::merge(PlaceNode& have, PlaceNode& want) {
    removeMissing(have, want);
    for (std::size_t i = 0; i < want.children.size(); ++i) {
        PlaceNode& next = *want.children[i];
        const QByteArray key = next.key();
        const auto first = have.children.begin() + std::ptrdiff_t(i);
        const auto found = std::find_if(first, have.children.end(),
                                        [&](const auto& child) { return child->key() == key; });
        const int row = static_cast<int>(i);
        if (found == have.children.end()) {
            adopt(have, std::move(want.children[i]), row);
            continue;
        }
        const int from = static_cast<int>(found - have.children.begin());
        if (from != row) {
            q->beginMoveRows(indexOf(&have), from, from, indexOf(&have), row);
            std::rotate(first, found, found + 1);
            q->endMoveRows();
        }
        PlaceNode& kept = *have.children[i];
        if (!kept.saysTheSame(next)) {
            kept.title = next.title;
            kept.icon = next.icon;
            kept.path = next.path;
            Q_EMIT q->dataChanged(indexOf(&kept), indexOf(&kept));
        }
        merge(kept, next);
    }
    const int count = static_cast<int>(want.children.size());
    const int last = static_cast<int>(have.children.size()) - 1;
    if (last < count)
        return;
    q->beginRemoveRows(indexOf(&have), count, last);
    have.children.resize(want.children.size());
    q->endRemoveRows();
}

void FavoritesModel::Private::removeMissing(PlaceNode& have, const PlaceNode& want) {
    for (std::size_t i = have.children.size(); i-- > 0;) {
        if (hasKey(want, have.children[i]->key()))
            continue;
        const int row = static_cast<int>(i);
        q->beginRemoveRows(indexOf(&have), row, row);
        have.children.erase(have.children.begin() + row);
        q->endRemoveRows();
    }
}

void FavoritesModel::Private::adopt(PlaceNode& have, std::unique_ptr<PlaceNode> child, int row) {
    q->beginInsertRows(indexOf(&have), row, row);
    child->parent = &have;
    have.children.insert(have.children.begin() + row, std::move(child));
    q->endInsertRows();
}

FavoritesModel::Reach FavoritesModel::Private::reachOf(const QByteArray& path) const {
    const auto found = answers.find(path);
    if (found == answers.end())
        return Unknown;
    const Answer& answer = found->second;
    // What could not be reached is shown so until somebody asks again.
    if (answer.reach == Reachable && Ticket::now() - answer.at > answerHolds)
        return Unknown;
    return answer.reach;
}

void FavoritesModel::Private::setAnswer(const QByteArray& path, Reach reach, int error) {
    answers[path] = {reach, error, Ticket::now()};
    tell(root, path);
}

void FavoritesModel::Private::tell(const PlaceNode& in, const QByteArray& path) {
    std::vector<QPersistentModelIndex> rows;
    const std::function<void(const PlaceNode&)> look = [&](const PlaceNode& node) {
        if (!node.path.isEmpty() && node.path == path)
            rows.emplace_back(indexOf(&node));
        for (const auto& child : node.children)
            look(*child);
    };
    look(in);
    const QPointer<FavoritesModel> alive(q);
    for (const QPersistentModelIndex& row : rows) {
        if (alive && row.isValid())
            Q_EMIT q->dataChanged(row, row);
    }
}

QString FavoritesModel::Private::tipOf(const PlaceNode& node) const {
    const QString path = FileTexts::name(viewOf(node.path));
    const auto found = answers.find(node.path);
    if (path.isEmpty() || found == answers.end() || reachOf(node.path) != Unreachable)
        return path;
    return path + QLatin1Char('\n') + FileManager::errorText(found->second.error);
}

QVariant FavoritesModel::Private::dataOf(const PlaceNode& node, int role) const {
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return node.title;
    case Qt::DecorationRole:
        return node.icon.isEmpty() ? QVariant() : QVariant(IconFactory::icon(node.icon));
    case Qt::ToolTipRole:
        return tipOf(node);
    case Qt::AccessibleTextRole:
        return reachOf(node.path) == Unreachable ? tr("%1, cannot be reached").arg(node.title)
                                                 : node.title;
    case PathRole:
        return node.path;
    case SectionRole:
        return QVariant::fromValue(node.section);
    case IdRole:
        return node.id;
    case ReachRole:
        return QVariant::fromValue(reachOf(node.path));
    case IsGroupRole:
        return node.isGroup;
    default:
        return {};
    }
}

int FavoritesModel::Private::fileIndex(const QString& id) const {
    const auto& favorites = file->favorites();
    const auto found = std::find_if(favorites.begin(), favorites.end(),
                                    [&](const auto& each) { return each.id == id; });
    return found == favorites.end() ? -1 : static_cast<int>(found - favorites.begin());
}

bool FavoritesModel::Private::moveUp(const PlaceNode& node) {
    const int row = node.row();
    const PlaceNode& parent = *node.parent;
    if (row == 0 && !parent.isGroup)
        return false;
    if (row == 0) {
        file->move(node.id, fileIndex(parent.id));
        return true;
    }
    const PlaceNode& previous = *parent.children[std::size_t(row) - 1];
    if (previous.isGroup && !node.isGroup)
        file->moveInto(node.id, previous.id);
    else
        file->move(node.id, fileIndex(previous.id));
    return true;
}

bool FavoritesModel::Private::moveDown(const PlaceNode& node) {
    const PlaceNode& parent = *node.parent;
    const auto row = static_cast<std::size_t>(node.row());
    const auto moveBehind = [&](const PlaceNode& list, std::size_t last) {
        if (last + 1 < list.children.size())
            file->move(node.id, fileIndex(list.children[last + 1]->id));
        else if (list.isGroup)
            file->moveInto(node.id, list.id);
        else
            file->move(node.id, -1);
    };
    if (row + 1 == parent.children.size()) {
        if (!parent.isGroup)
            return false;
        moveBehind(*parent.parent, static_cast<std::size_t>(parent.row()));
        return true;
    }
    const PlaceNode& next = *parent.children[row + 1];
    if (!next.isGroup || node.isGroup)
        moveBehind(parent, row + 1);
    else if (next.children.empty())
        file->moveInto(node.id, next.id);
    else
        file->move(node.id, fileIndex(next.children.front()->id));
    return true;
}

FavoritesModel::Private::Target FavoritesModel::Private::target(int row,
                                                                const QModelIndex& parent) const {
    Target target;
    const PlaceNode* const node = parent.isValid() ? nodeOf(parent) : nullptr;
    if (!file || !node || node->section != Favorites || !(node->isSection || node->isGroup))
        return target;
    target.isValid = true;
    target.group = node->isGroup ? node->id : QString();
    if (row >= 0 && row < static_cast<int>(node->children.size()))
        target.before = fileIndex(node->children[static_cast<std::size_t>(row)]->id);
    return target;
}

void FavoritesModel::Private::drop(const QString& id, const Target& target) {
    if (target.before >= 0 || target.group.isEmpty())
        file->move(id, target.before);
    else
        file->moveInto(id, target.group);
}

// The ids of the places that they mean, which are favourites then.
QStringList FavoritesModel::Private::added(const QList<QUrl>& urls) {
    QStringList ids;
    const QPointer<FavoritesModel> alive(q);
    for (const QUrl& url : urls) {
        const QByteArray href = url.toEncoded();
        const auto path = Xbel::pathOf(viewOf(href));
        if (!alive || !file)
            break;
        if (!path || !isShown(*path))
            continue;
        const QString known = file->idOf(bytesOf(*path));
        ids << (known.isEmpty() ? file->add(bytesOf(*path)) : known);
    }
    return ids;
}

void FavoritesModel::Private::storeRecent() {
    QStringList stored;
    for (const QByteArray& path : recent)
        stored << QString::fromStdString(Xbel::hrefOf(viewOf(path)));
    AppSettings settings;
    settings.setValue(QStringLiteral("Browse/Recent"), stored);
}

} // namespace Kestrel::UI
