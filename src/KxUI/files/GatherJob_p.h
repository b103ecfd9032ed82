#pragma once

#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/RecentListings_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/files/platform/Directory_p.h>
#include <KxUI/kit/Mailbox_p.h>

#include <optional>
#include <unordered_set>

namespace Kestrel::UI {

/** How long things take, in milliseconds; tests have less time. */
struct GatherPace {
    int firstPublish = 50;
    int publish = 100;    ///< at least, from one listing of what has been read to the next
    int statusBatch = 50; ///< from one adoption of statuses to the next
    int reread = 2000;    ///< at least, from the end of a reading to one because of a change
    int poll = 5000;      ///< at first, where changes are not told
    int pollMost = 60000;
    int pollSlow = 1000; ///< an answer that takes longer is too much to ask for
    int settled = 3000;  ///< since its last change, for a directory to be known by its time
};

/** What a reading tells its gatherer: the newest listing. */
struct GatherNews {
    std::uint64_t request = 0;
    std::shared_ptr<const ListingData> data;   ///< null for the rows that are there already
    std::shared_ptr<const StatusTable> status; ///< where directories tell it; else null
    FileListing::State state = FileListing::State::Reading;
    int error = 0;
    std::int64_t stamp = 0;    ///< of the directory, from before the reading
    std::int64_t duration = 0; ///< of the reading so far, in nanoseconds
};

/** What a reading works with: copies, and its mailbox. */
struct GatherRequest {
    std::uint64_t id = 0;
    std::string directory; ///< absolute, in the system's encoding
    ListingSettings settings;
    GatherPace pace;
    bool tellsMeanwhile = true; ///< of what has been read so far
    std::uint32_t turn = 0;     ///< of asking for statuses
    bool isFresh = false;       ///< what is known from before will not do
    std::shared_ptr<Mailbox<GatherNews>> box;

    /** Puts news into the box, unless what waits there is of a later request. */
    void tell(GatherNews news) const;
};

/** What a directory has told of the items with their names, some systems do. */
std::vector<FileStatus> listedStatuses(const ListingData& data, const Platform::Listing& names,
                                       std::uint32_t turn);

/** The error of a directory that no thread is left for. */
constexpr int nobodyLeftToRead = -1;

class SharedReading;

/** Reads a directory on a worker thread and tells of it while it does. */
class GatherJob : private Platform::ReadProgress {
public:
    /** @param first  whose directory and pace it is */
    GatherJob(std::shared_ptr<SharedReading> reading, GatherRequest first, Ticket& ticket);

    void run();

    /** Makes the listing of what was read before by other settings, without asking the system. */
    static void rebuild(const GatherRequest& request, const ListingData& old,
                        FileListing::State state, int error);

private:
    bool block(const Platform::Listing& soFar) override;
    struct Made {
        ListingSettings settings;
        std::shared_ptr<const ListingData> data;
    };

    int open(Platform::DirectoryHandle& directory);
    bool takeRecent();
    void fail(int error);
    void publish(FileListing::State state, bool isLast = false);
    const std::shared_ptr<const ListingData>& madeFor(const ListingSettings& settings);
    std::shared_ptr<const StatusTable> statusFor(const ListingData& data, std::uint32_t turn) const;
    void keep();
    void resolve(const Platform::DirectoryHandle& directory);
    std::vector<std::size_t> unresolved() const;
    bool resolveThese(const Platform::DirectoryHandle& directory,
                      const std::vector<std::size_t>& entries);

    const std::shared_ptr<SharedReading> m_reading;
    const GatherRequest m_first;
    Ticket& m_ticket;
    std::vector<GatherRequest> m_lastListeners; // whoever waited when all names were read
    std::shared_ptr<const Platform::Listing> m_names;
    std::shared_ptr<const RawEntries> m_raw; // as they are published
    std::vector<Made> m_published;
    std::optional<RecentListings::Recent> m_recent; // that still holds
    std::vector<Platform::Entry> m_entries;
    std::unordered_set<std::uint64_t> m_suspects; // frame names that folders of numbers have
    std::int64_t m_started = 0;
    std::int64_t m_nextPublish = 0;
    std::int64_t m_stamp = 0;
    bool m_isReliable = false; // the stamp changes with the names
};

} // namespace Kestrel::UI
