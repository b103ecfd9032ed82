#pragma once

#include <KxUI/files/FileListModel.h>
#include <KxUI/files/ListingDiff_p.h>
#include <KxUI/files/ListingOrder_p.h>
#include <KxUI/kit/Mailbox_p.h>

#include <QTimer>

namespace Kestrel::UI {

/** The rows of a model, and how they become others. */
struct FileListModel::Private {
    using Rows = std::vector<std::int32_t>;

    /** What a worker has made of a listing. */
    struct News {
        std::uint64_t order = 0; // of which it is the result
        std::shared_ptr<const FileListing> listing;
        Rows rows;
        ListingDiff diff;
    };

    explicit Private(FileListModel* model);

    void listingChanged();
    void statusArrived(int first, int last);
    void change();
    void sortAgain();
    void compute();
    static News made(const FileListing& shownListing, const Rows& shownRows,
                     std::shared_ptr<const FileListing> next, const ListingOrder& order);
    void takeNews();
    bool adopt(News news);
    bool rearrange(News& news);
    bool follow(News& news);
    int rowFor(int item);
    bool tellChanged(int firstRow, int lastRow, int firstColumn, int lastColumn);
    void askForStatuses();
    bool isSameData(const FileListing& other) const;
    QVariant text(int item, int column) const;
    QVariant statusText(int item, int column) const;
    QVariant value(int item, int role) const;

    FileListModel* const q;
    FileGatherer* const gatherer;
    const std::shared_ptr<Mailbox<News>> box;
    std::shared_ptr<const FileListing> listing = std::make_shared<const FileListing>();
    Rows rows;  // items of listing
    Rows rowOf; // by items; -1 for those that are not shown; empty until asked for
    ListingOrder order;
    QString searchText;
    std::uint64_t changes = 0;    // of what is wanted
    std::uint64_t shownState = 0; // the changes that the rows follow
    bool isComputing = false;
    int firstVisible = 0;
    int lastVisible = -1;
    QTimer resort;
    bool holdsOrder = false;
    bool isResortDue = false; // when the order is held no more
};

} // namespace Kestrel::UI
