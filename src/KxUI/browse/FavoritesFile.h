#pragma once

#include <KxUI/Export.h>

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace Kestrel::UI {

/** The favourites of a user: folders and files by name, in the user's order, kept as a file of
    bookmarks (XBEL 1.0). Nothing is dropped because it cannot be reached: a place leaves the list
    only by remove().

    The disk is only asked by threads of the library, so nothing here waits; the destructor, and the
    end of the application for standard(), give a last saving 200 ms. Changes are saved 300 ms after
    the last one: the file is read again under a lock, what changed here is done to what others have
    made of it meanwhile, and it is replaced as a whole. What it holds besides favourites comes back
    byte for byte. A file that cannot be read is never replaced; of one that is damaged a copy is
    kept beside it first.

    All functions are for the thread that made the object, and all signals come from it. */
class KXUI_EXPORT FavoritesFile : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString fileName READ fileName CONSTANT)
    Q_PROPERTY(bool loaded READ isLoaded NOTIFY changed)
    Q_PROPERTY(bool saved READ isSaved NOTIFY savedChanged)
    Q_PROPERTY(QString errorString READ errorString NOTIFY errorChanged)

public:
    /** One of them. */
    struct Favorite {
        QByteArray
            path; ///< In the system's encoding; an address with `://` as it is. Empty for groups.
        QString title;        ///< Empty: shown by the last part of the path.
        QString id;           ///< Of this entry, unique in the file.
        QString group;        ///< Id of the group it lies in; empty: at the top.
        bool isGroup = false; ///< Whether others can lie in it.
    };

    /** Of the standard place; `parent` owns it when it is given. */
    explicit FavoritesFile(QObject* parent = nullptr);
    /** Of a file, which need not exist. Begins to read it; changed() tells when that is done. */
    explicit FavoritesFile(const QString& fileName, QObject* parent = nullptr);
    ~FavoritesFile() override;

    /** The one of the process, at the standard place; made on demand and gone with the
        application. */
    static FavoritesFile* standard();

    /** `favourites.xbel` beside the settings of AppSettings. */
    static QString standardFileName();

    /** The file, which need not exist. */
    QString fileName() const;

    /** Whether the file has been read, or is known not to exist. What is changed before is done to
        what is read then. */
    bool isLoaded() const;

    /** Whether all that was changed here is in the file. */
    bool isSaved() const;

    /** All of them in their order, each group right before what lies in it. Valid until the next
        change or return to the event loop. */
    const std::vector<Favorite>& favorites() const;

    /** The one of that id; null if there is none. Valid as long as favorites(). */
    const Favorite* favorite(const QString& id) const;

    /** Whether a place is one. Paths are compared by their text. */
    bool contains(const QByteArray& path) const;

    /** The id of a place that is one; empty for others. */
    QString idOf(const QByteArray& path) const;

    /** What is wrong with the file, as a sentence for the user; empty when all is well. */
    QString errorString() const;

    /** Adds a place and returns its id, which is empty where it was not added: for an empty path,
        and beyond 4,096 entries.
        @param path    of a folder or a file: absolute; or an address
        @param title   empty: shown by the last part of its path
        @param before  index into favorites() of the one that it comes before, in the group of that;
                       else at the end */
    QString add(const QByteArray& path, const QString& title = QString(), int before = -1);

    /** Adds an empty group at the top level; as add(). */
    QString addGroup(const QString& title, int before = -1);

    /** Removes one; a group with all that lies in it. */
    void remove(const QString& id);

    /** Brings back what this object has removed, with all that the file said of it, to where it
        was. False for another id, or one that is there. */
    bool restore(const QString& id);

    /** An empty title: shown by the last part of its path. */
    void rename(const QString& id, const QString& title);

    /** Moves one before another, into the group of that; `before` is an index into favorites(), or
        -1 for the end of the top level. */
    void move(const QString& id, int before);

    /** Moves one to the end of a group, or of the top level for an empty id. Groups lie at the top:
        they stay where they are. */
    void moveInto(const QString& id, const QString& group);

public Q_SLOTS:
    /** Looks whether the file has changed, and reads it then; returns at once. Also when the
        application becomes the active one. */
    void reload();

    /** Saves at once what would be saved later; returns at once. */
    void save();

Q_SIGNALS:
    /** favorites() or isLoaded() are others. */
    void changed();

    /** isSaved() is another. */
    void savedChanged(bool saved);

    /** errorString() is another. */
    void errorChanged(const QString& error);

    /** A saving has failed; it is tried again with the next change and after a while. */
    void saveFailed(const QString& error);

protected:
    bool event(QEvent* event) override;

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
