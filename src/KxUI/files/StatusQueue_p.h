#pragma once

#include <KxUI/files/Mailbox_p.h>
#include <KxUI/files/StatusTable_p.h>
#include <KxUI/files/WorkerPool_p.h>

#include <deque>
#include <string>
#include <unordered_set>

namespace Kestrel::UI {

/** The items of a directory whose statuses are wanted, in order. The workers of a gatherer share it;
    it outlives the gatherer when one of them does not come back. */
class StatusQueue : public std::enable_shared_from_this<StatusQueue> {
public:
    struct Ask {
        std::uint64_t key = 0;
        std::string file;      ///< that tells the size, and whether the item is there
        std::string lastFile;  ///< that tells the time; empty for the same
        std::int32_t last = 0; ///< frame
        std::uint32_t turn = 0;
        bool cached = true; ///< a network file system may answer from what it knows
    };

    StatusQueue(std::string directory, std::shared_ptr<Mailbox<std::vector<FileStatus>>> box);

    /** Wants these and no others; those that are being asked go on. Starts workers as they are
        needed. */
    void replace(std::vector<Ask> asks);

    /** Asks for nothing more; what is being asked is not told any more. */
    void close();

    const std::string& directory() const { return m_directory; }

private:
    void work(Ticket& ticket);
    bool take(Ask& ask, std::uint64_t done);

    const std::string m_directory;
    const std::shared_ptr<Mailbox<std::vector<FileStatus>>> m_box;
    std::mutex m_mutex;
    std::deque<Ask> m_asks;
    std::unordered_set<std::uint64_t> m_inFlight;
    int m_workers = 0;
    bool m_isClosed = false;
};

} // namespace Kestrel::UI
