#pragma once

#include <KxUI/Export.h>
#include <KxUI/browse/FavoritesFile.h>

#include <QAbstractItemModel>
#include <QByteArray>
#include <QList>
#include <QStringList>

#include <memory>
#include <vector>

namespace Kestrel::UI {

/** Places to go to, in sections: those of the host's project, the favourites with their groups,
    places of this machine, folders used last, and the bookmarks of the desktop.

    Whether a place can be reached is never asked but by askReach(), so that one server that is away
    holds nothing up; all disks are asked by threads of the library. Favourites are renamed, removed
    and reordered through the model, by its item functions and by drag and drop; the file does the
    rest. Interface thread. */
class KXUI_EXPORT FavoritesModel : public QAbstractItemModel {
    Q_OBJECT
    Q_PROPERTY(bool showsDesktop READ showsDesktop WRITE setShowsDesktop NOTIFY showsDesktopChanged)

public:
    /** Of what a row is one. */
    enum Section {
        Project,   ///< Places of the host's project.
        Favorites, ///< The file's.
        Places,    ///< Of this machine.
        Recent,    ///< Folders used last.
        Desktop    ///< Bookmarks of the desktop.
    };
    Q_ENUM(Section)

    /** Whether a place can be gone to. */
    enum Reach {
        Unknown,    ///< Nobody has asked, or a minute ago.
        Asking,     ///< The answer is awaited.
        Reachable,  ///< It can.
        Unreachable ///< It could not when somebody asked last.
    };
    Q_ENUM(Reach)

    /** What rows tell beside Qt's roles. */
    enum Role {
        PathRole = Qt::UserRole, ///< QByteArray, empty for sections and groups
        SectionRole,             ///< Section, also of the sections themselves
        IdRole,                  ///< QString: of favourites and their groups
        ReachRole,               ///< Reach
        IsGroupRole              ///< bool
    };

    /** The type of data that carries favourites which are dragged: their ids, a line each. */
    static const char* const MimeType;

    /** Without favourites until setFile(); `parent` owns it when it is given. */
    explicit FavoritesModel(QObject* parent = nullptr);
    /** Of a file, which is borrowed. */
    explicit FavoritesModel(FavoritesFile* file, QObject* parent = nullptr);
    ~FavoritesModel() override;

    /** The favourites; null when there are none or the file is gone. Borrowed. */
    FavoritesFile* file() const;
    void setFile(FavoritesFile* file);

    /** The places of the host's project, which the user cannot change. Titles and paths count. */
    void setProjectPlaces(const std::vector<FavoritesFile::Favorite>& places);

    /** Whether the bookmarks of the desktop are a section; at first they are. */
    bool showsDesktop() const;
    void setShowsDesktop(bool shows);

    /** Schemes of addresses that the host can go to; at first none. Favourites that are addresses of
        others are not shown, and kept. */
    QStringList schemes() const;
    void setSchemes(const QStringList& schemes);

    /** The folders used last, newest first: 12 at most, remembered in AppSettings. */
    QList<QByteArray> recentPlaces() const;
    /** Tells that a folder was used: it comes first. */
    void noteUsed(const QByteArray& path);
    /** Forgets them. */
    void clearRecent();

    /** Asks whether a place can be reached, unless that was answered within a minute; returns at
        once. The answer is ReachRole, and dataChanged(). */
    void askReach(const QModelIndex& index);
    /** A visit has shown whether a place can be reached.
        @param path   the place
        @param error  the error number of the system; 0 for one that can be reached */
    void setReach(const QByteArray& path, int error);

    /** The row of a favourite or a group; invalid if there is none. */
    QModelIndex indexOf(const QString& id) const;
    /** The first row of a place, favourites before others. */
    QModelIndex indexOfPath(const QByteArray& path) const;
    /** The favourite number 0 to 8 that is no group; invalid beyond. */
    QModelIndex favoriteAt(int number) const;

    /** Moves a favourite one row up (-1) or down (1), also into and out of groups. False at the
        ends, and for other rows. */
    bool moveBy(const QModelIndex& index, int rows);

    /** Adds what the desktop's bookmarks have and the favourites lack. Returns how many. */
    int importDesktop();

    /** Reads anew what the machine and the desktop have; returns at once. */
    void reloadPlaces();

    /** Reimplemented from Qt. */
    QModelIndex index(int row, int column,
                      const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDropActions() const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

Q_SIGNALS:
    /** showsDesktop() is another. */
    void showsDesktopChanged(bool shows);

protected:
    bool event(QEvent* event) override;

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
