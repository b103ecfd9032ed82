#pragma once

#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/Mailbox_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/files/platform/Directory_p.h>

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
};

/** What a reading tells its gatherer: the newest listing. */
struct GatherNews {
    std::uint64_t request = 0;
    std::shared_ptr<const ListingData> data; ///< null for the rows that are there already
    FileListing::State state = FileListing::State::Reading;
    int error = 0;
    std::int64_t modified = 0; ///< of the directory, from before the reading
    std::int64_t duration = 0; ///< of the reading so far, in nanoseconds
};

/** What a reading works with: copies, and its mailbox. */
struct GatherRequest {
    std::uint64_t id = 0;
    std::string directory; ///< absolute, in the system's encoding
    ListingSettings settings;
    GatherPace pace;
    bool tellsMeanwhile = true; ///< of what has been read so far
    std::shared_ptr<Mailbox<GatherNews>> box;
};

/** Reads a directory on a worker thread and tells of it while it does. */
class GatherJob : private Platform::ReadProgress {
public:
    GatherJob(GatherRequest request, Ticket& ticket);

    void run();

    /** Makes the listing of what was read before by other settings, without asking the system. */
    static void rebuild(const GatherRequest& request, const ListingData& old,
                        FileListing::State state, int error);

private:
    bool block(const Platform::Listing& soFar) override;
    int open(Platform::DirectoryHandle& directory);
    void publish(FileListing::State state, int error);
    void resolve(const Platform::DirectoryHandle& directory);
    std::vector<std::size_t> unresolved() const;
    bool resolveThese(const Platform::DirectoryHandle& directory,
                      const std::vector<std::size_t>& entries);

    GatherRequest m_request;
    Ticket& m_ticket;
    std::shared_ptr<Platform::Listing> m_listing = std::make_shared<Platform::Listing>();
    std::shared_ptr<const ListingData> m_published;
    std::vector<Platform::Entry> m_entries;       // as they are published
    std::unordered_set<std::uint64_t> m_suspects; // frame names that folders of numbers have
    std::int64_t m_started = 0;
    std::int64_t m_nextPublish = 0;
    std::int64_t m_modified = 0;
};

} // namespace Kestrel::UI
