#pragma once

#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/StatusTable_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/kit/Mailbox_p.h>

#include <string>
#include <unordered_set>

namespace Kestrel::UI {

/** The items of a directory whose statuses are wanted, in order. The workers of a gatherer share it;
    it outlives the gatherer when one of them does not come back. */
class StatusQueue : public std::enable_shared_from_this<StatusQueue> {
public:
    /** What somebody wants to know. What of it is known already is found out by the workers: among
        all the files of a long directory that takes a while. */
    struct Wants {
        std::shared_ptr<const ListingData> data;
        std::shared_ptr<const StatusTable> told;
        std::vector<int> items; ///< of the data
        std::uint32_t turn = 0;

        bool isTold(int item) const;
    };

    StatusQueue(std::string directory, std::shared_ptr<Mailbox<std::vector<FileStatus>>> box);

    /** Wants these and no others; those that are being asked go on. Starts workers as they are
        needed. */
    void replace(Wants wants);

    /** Whether all items of this data were asked about in this turn, and have answered. */
    bool isThrough(const ListingData& data, std::uint32_t turn);

    /** Asks for nothing more; what is being asked is not told any more. */
    void close();

    const std::string& directory() const { return m_directory; }

private:
    struct Ask {
        std::shared_ptr<const Wants> wants;
        int item = -1;
        std::uint64_t key = 0;
    };

    void work(Ticket& ticket);
    bool take(Ask& ask);
    std::size_t left() const { return m_wants ? m_wants->items.size() - m_next : 0; }

    const std::string m_directory;
    const std::shared_ptr<Mailbox<std::vector<FileStatus>>> m_box;
    std::mutex m_mutex;
    std::shared_ptr<const Wants> m_wants; // null for nothing
    std::size_t m_next = 0;               // of its items
    std::shared_ptr<const Wants> m_through;
    std::unordered_set<std::uint64_t> m_inFlight; // keys
    int m_workers = 0;
};

} // namespace Kestrel::UI
