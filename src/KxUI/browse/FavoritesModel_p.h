#pragma once

#include <KxUI/browse/PlaceTree_p.h>
#include <KxUI/kit/Mailbox_p.h>

#include <QPointer>

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace Kestrel::UI {

struct FavoritesModel::Private {
    struct Answer {
        Reach reach = Unknown;
        int error = 0;
        std::int64_t at = 0; ///< by Ticket::now()
    };
    /** Where something is dropped, in the words of the file. */
    struct Target {
        QString group;
        int before = -1;
        bool isValid = false;
    };
    using Answers = std::vector<std::pair<QByteArray, int>>;

    explicit Private(FavoritesModel* model);

    static const PlaceNode* nodeOf(const QModelIndex& index) {
        return static_cast<const PlaceNode*>(index.internalPointer());
    }
    const PlaceNode* listOf(const QModelIndex& parent) const {
        return parent.isValid() ? nodeOf(parent) : &root;
    }
    QModelIndex indexOf(const PlaceNode* node) const;
    const PlaceNode* find(const PlaceNode& in, const QString& id) const;

    void rebuild();
    PlaceNode wanted() const;
    void addFavorites(PlaceNode& section) const;
    void addPlaces(PlaceNode& top, Section section,
                   const std::vector<MachinePlaces::Place>& places) const;
    bool isShown(std::string_view path) const;
    void merge(PlaceNode& have, PlaceNode& want);
    void removeMissing(PlaceNode& have, const PlaceNode& want);
    void adopt(PlaceNode& have, std::unique_ptr<PlaceNode> child, int row);

    Reach reachOf(const QByteArray& path) const;
    void setAnswer(const QByteArray& path, Reach reach, int error);
    void tell(const PlaceNode& in, const QByteArray& path);
    QVariant dataOf(const PlaceNode& node, int role) const;
    QString tipOf(const PlaceNode& node) const;

    int fileIndex(const QString& id) const;
    bool moveUp(const PlaceNode& node);
    bool moveDown(const PlaceNode& node);
    Target target(int row, const QModelIndex& parent) const;
    void drop(const QString& id, const Target& target);
    QStringList added(const QList<QUrl>& urls);
    void storeRecent();

    FavoritesModel* const q;
    QPointer<FavoritesFile> file;
    PlaceNode root;
    std::vector<FavoritesFile::Favorite> project;
    MachinePlaces machine;
    QList<QByteArray> recent;
    QStringList schemes;
    bool showsDesktop = true;
    std::map<QByteArray, Answer> answers;
    const std::shared_ptr<Mailbox<MachinePlaces>> machineBox;
    const std::shared_ptr<Mailbox<Answers>> answerBox;
};

} // namespace Kestrel::UI
