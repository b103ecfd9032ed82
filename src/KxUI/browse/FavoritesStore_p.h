#pragma once

#include <KxUI/browse/Xbel_p.h>

#include <QByteArray>
#include <QString>

#include <vector>

/** The file of the favourites on its disk. Every function may take as long as the file system
    likes: for worker threads. */
namespace Kestrel::UI::FavoritesStore {

/** Something that was done to the favourites here, to be done to the file as others have left it.
    Doing it twice is doing it once. */
struct Change {
    enum class Kind { Insert, Remove, Rename, Move };

    Kind kind = Kind::Insert;
    std::string id;
    Xbel::Node entry; ///< to insert
    std::string title;
    std::string group, before, behind; ///< as Xbel::insert()
};

/** What is about an entry that is not there is left out: who removed it wins. */
void apply(Xbel::Document& document, const Change& change);

/** By which it is seen that a file is another one. */
struct Stamp {
    qint64 modified = -1; ///< milliseconds since 1970
    qint64 size = -1;     ///< -1 where there is none

    bool operator==(const Stamp& other) const {
        return modified == other.modified && size == other.size;
    }
};

enum class Failure {
    None,
    CannotRead,
    CannotWrite,
    Locked,    ///< another process is writing
    CannotKeep ///< a damaged file could not be copied, so it was not replaced
};

struct Result {
    bool isNew = false; ///< the document is another one than that of the stamp asked with
    Xbel::Document document;
    Stamp stamp;
    Failure failure = Failure::None;
    QString detail;          ///< what the system says of it
    QString copy;            ///< of a damaged file
    std::size_t applied = 0; ///< changes that the file now has
    bool hasSaved = false;
};

/** Reads the file unless it is the one of the stamp. */
Result load(const QString& fileName, const Stamp& known);

/** Reads the file, makes the changes and writes it, while no other process does. */
Result save(const QString& fileName, const std::vector<Change>& changes, int lockWait);

} // namespace Kestrel::UI::FavoritesStore
