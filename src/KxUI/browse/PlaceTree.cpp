#include <KxUI/browse/PlaceTree_p.h>

#include <KxUI/browse/Xbel_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Mounts_p.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>

namespace Kestrel::UI {
namespace {

using Place = MachinePlaces::Place;

QByteArray contentsOf(const QString& name) {
    QFile file(name);
    return file.open(QFile::ReadOnly) ? file.read(qint64(Xbel::Limits::Bytes)) : QByteArray();
}

void addOnce(std::vector<Place>& places, const Place& place) {
    const auto isSame = [&](const Place& other) { return other.path == place.path; };
    if (!place.path.isEmpty() && std::none_of(places.begin(), places.end(), isSame))
        places.push_back(place);
}

void addBookmarks(std::vector<Place>& places, const std::vector<Xbel::Node>& nodes) {
    for (const Xbel::Node& node : nodes) {
        if (!node.isEntry())
            continue;
        addBookmarks(places, node.children);
        const auto path = Xbel::pathOf(node.href);
        if (path && !Xbel::isAddress(*path))
            addOnce(places, {bytesOf(*path), QString::fromStdString(node.title), {}});
    }
}

// Those that people know: shares, and what was put in.
bool isShown(const Platform::Mount& mount) {
    for (const char* place : {"/media", "/run/media", "/mnt", "/Volumes"}) {
        if (mount.point != place && Platform::liesUnder(mount.point, place))
            return true;
    }
    return mount.remote && mount.type.compare(0, 4, "fuse") != 0 && mount.type != "autofs";
}

} // namespace

int PlaceNode::row() const {
    if (!parent)
        return 0;
    const auto self = std::find_if(parent->children.begin(), parent->children.end(),
                                   [this](const auto& child) { return child.get() == this; });
    return static_cast<int>(self - parent->children.begin());
}

PlaceNode* PlaceNode::add(std::unique_ptr<PlaceNode> child) {
    child->parent = this;
    children.push_back(std::move(child));
    return children.back().get();
}

std::vector<Place> desktopBookmarks(const QByteArray& lines, const QByteArray& xbel) {
    std::vector<Place> places;
    for (const QByteArray& line : lines.split('\n')) {
        const auto blank = line.indexOf(' ');
        const auto path = Xbel::pathOf(viewOf((blank < 0 ? line : line.left(blank)).trimmed()));
        if (path && !Xbel::isAddress(*path))
            addOnce(places,
                    {bytesOf(*path),
                     blank < 0 ? QString() : QString::fromUtf8(line.mid(blank + 1)).trimmed(),
                     {}});
    }
    addBookmarks(places, Xbel::read(viewOf(xbel)).nodes);
    return places;
}

MachinePlaces MachinePlaces::read() {
    MachinePlaces found;
    const auto standard = [&](QStandardPaths::StandardLocation location, const char* icon) {
        const QString path = QStandardPaths::writableLocation(location);
        addOnce(found.places, {QFile::encodeName(path), {}, QLatin1String(icon)});
    };
    standard(QStandardPaths::HomeLocation, "BrowseHome");
    standard(QStandardPaths::DesktopLocation, "PlaceDesktop");
    const auto drives = QDir::drives(); // one root where there are no drives
    for (const QFileInfo& drive : drives)
        addOnce(found.places,
                {QFile::encodeName(drive.absoluteFilePath()), {}, QStringLiteral("PlaceDrive")});
    for (const Platform::Mount& mount : Platform::mounts()) {
        if (isShown(mount))
            addOnce(found.places, {bytesOf(mount.point), {}, QStringLiteral("PlaceDrive")});
    }
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    found.desktop = desktopBookmarks(contentsOf(config + QLatin1String("/gtk-3.0/bookmarks")),
                                     contentsOf(data + QLatin1String("/user-places.xbel")));
    return found;
}

} // namespace Kestrel::UI
