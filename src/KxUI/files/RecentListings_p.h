#pragma once

#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/StatusTable_p.h>

#include <list>
#include <mutex>
#include <optional>

namespace Kestrel::UI {

/** The listings that were read last, for a folder that is entered again to be there at once, while
    its disk is being asked whether it still holds. Any thread. */
class RecentListings {
public:
    /** A listing and when it was right. */
    struct Recent {
        std::shared_ptr<const ListingData> data;
        std::shared_ptr<const StatusTable> status; ///< null when none were told
        ListingSettings settings;
        std::int64_t stamp = 0;  ///< EntryStatus::stamp() of the directory
        bool isReliable = false; ///< A change since then would have changed the stamp.
    };

    /** Of the process. */
    static RecentListings& instance();

    RecentListings(std::size_t most, std::int64_t mostEntries)
        : m_most(most)
        , m_mostEntries(mostEntries) {}

    /** Keeps a complete listing, in place of the one of the same directory, and forgets those that
        were used longest ago. */
    void keep(Recent recent);

    /** Keeps what was told of a directory's items, if its listing is kept. */
    void keepStatus(const std::string& directory, std::shared_ptr<const StatusTable> status);

    /** The listing of a directory. */
    std::optional<Recent> find(const std::string& directory);

    void clear();

private:
    using List = std::list<Recent>; // the newest first

    List::iterator place(const std::string& directory);

    const std::size_t m_most;
    const std::int64_t m_mostEntries;
    std::mutex m_mutex;
    List m_recent;
};

} // namespace Kestrel::UI
