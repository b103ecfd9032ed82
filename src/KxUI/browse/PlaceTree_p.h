#pragma once

#include <KxUI/browse/FavoritesModel.h>

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace Kestrel::UI {

/** A row of the places, with the rows below it. */
struct PlaceNode {
    using List = std::vector<std::unique_ptr<PlaceNode>>;

    FavoritesModel::Section section = FavoritesModel::Favorites;
    QString id; ///< of favourites
    QByteArray path;
    QString title; ///< as it is shown
    QString icon;
    bool isGroup = false;
    bool isSection = false;
    PlaceNode* parent = nullptr;
    List children;

    /** By which it is the same after a change. */
    QByteArray key() const {
        return isSection ? QByteArray::number(section) : id.isEmpty() ? path : id.toUtf8();
    }
    bool saysTheSame(const PlaceNode& other) const {
        return title == other.title && icon == other.icon && path == other.path;
    }
    int row() const;
    PlaceNode* add(std::unique_ptr<PlaceNode> child);
};

/** What the machine and the desktop of the user have. Read by a worker thread. */
struct MachinePlaces {
    struct Place {
        QByteArray path;
        QString title; ///< empty: the last part of the path
        QString icon;
    };
    std::vector<Place> places;
    std::vector<Place> desktop;

    /** May take as long as the disks like. */
    static MachinePlaces read();
};

/** The bookmarks in the files of desktops: lines of an address and a title, and XBEL. */
std::vector<MachinePlaces::Place> desktopBookmarks(const QByteArray& lines, const QByteArray& xbel);

} // namespace Kestrel::UI
