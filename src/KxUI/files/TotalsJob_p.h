#pragma once

#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/kit/Mailbox_p.h>

namespace Kestrel::UI {

/** How far the counting of an item's files is. */
struct TotalsNews {
    std::uint64_t request = 0;
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    bool isFinal = false;
    bool isExact = true; ///< all of them could be asked
};

/** Whose files are counted, and where that is told. */
struct TotalsRequest {
    std::uint64_t id = 0;
    std::shared_ptr<const ListingData> data;
    int item = 0;
    std::shared_ptr<Mailbox<TotalsNews>> box;
};

/** Counts the files of a sequence, or below a directory; links are not followed. For a worker
    thread. */
void countTotals(const TotalsRequest& request, Ticket& ticket);

} // namespace Kestrel::UI
