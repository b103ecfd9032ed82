#pragma once

#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/browse/FavoritesStore_p.h>
#include <KxUI/kit/Mailbox_p.h>

#include <QTimer>

#include <map>
#include <memory>

namespace Kestrel::UI {

/** The interface thread's side of the file: what was changed here and is not in it yet, and what it
    would be then. */
struct FavoritesFile::Private {
    using Change = FavoritesStore::Change;

    Private(FavoritesFile* file, const QString& name);

    void load();
    void save();
    void saveBeforeEnd();
    void take(FavoritesStore::Result result);
    void change(Change change);
    void rebuild();
    void list(const std::vector<Xbel::Node>& nodes, const QString& group);
    void setError(const QString& error);
    void setSaved(bool saved);
    QString textOf(const FavoritesStore::Result& result) const;
    Change placed(Change::Kind kind, int before) const;
    QString insert(Xbel::Node entry, int before);

    FavoritesFile* const q;
    const QString fileName;
    const std::shared_ptr<Mailbox<FavoritesStore::Result>> box;

    FavoritesStore::Stamp stamp;
    Xbel::Document document; ///< of the file, with the pending changes
    Xbel::Document base;     ///< of the file
    std::vector<Change> pending;
    std::map<QString, Change> removed; ///< as they would be inserted again
    std::vector<Favorite> favorites;
    QString error;
    bool isLoaded = false;
    bool isSaved = true;
    bool isBusy = false;
    bool wantsLoad = false;
    bool wantsSave = false;
    int retries = 0;
    QTimer saveTimer;
};

} // namespace Kestrel::UI
