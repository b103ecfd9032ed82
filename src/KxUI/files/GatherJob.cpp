#include <KxUI/files/GatherJob_p.h>

#include <KxUI/files/RecentListings_p.h>
#include <KxUI/files/SharedReading_p.h>

#include <algorithm>
#include <chrono>
#include <new>
#include <unordered_map>

namespace Kestrel::UI {
namespace {

constexpr std::int64_t millisecond = 1000000;

std::uint64_t frameNameHash(std::string_view name) {
    const auto frame = FrameNameRules().frameOf(name);
    return frame ? hashOf(frame->back(), hashOf(frame->front())) : hashOf(name, 1);
}

// Each entry's status by its name.
class ListedNames {
public:
    explicit ListedNames(const Platform::Listing& names)
        : m_names(names) {
        const std::size_t count = std::min(names.entries.size(), names.statuses.size());
        m_indices.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
            m_indices.emplace(names.entries[i].view(), i);
    }

    // Null also for a link: only its target's status tells anything.
    const Platform::ListedStatus* find(std::string_view name) const {
        const auto found = m_indices.find(name);
        if (found == m_indices.end() ||
            m_names.entries[found->second].type == Platform::EntryType::Unknown)
            return nullptr;
        return &m_names.statuses[found->second];
    }

private:
    const Platform::Listing& m_names;
    std::unordered_map<std::string_view, std::size_t> m_indices;
};

} // namespace

std::vector<FileStatus> listedStatuses(const ListingData& data, const Platform::Listing& names,
                                       std::uint32_t turn) {
    const ListedNames listed(names);
    std::vector<FileStatus> statuses;
    for (int i = 0; i < static_cast<int>(data.items.size()); ++i) {
        const FileListing::Item& item = data.items[static_cast<std::size_t>(i)];
        const Platform::ListedStatus* const first = listed.find(data.firstFile(i));
        if (!first)
            continue;
        FileStatus status;
        status.key = item.key;
        status.size = first->size;
        status.modified = first->modified;
        status.last = item.last;
        status.turn = turn;
        status.known = FileListing::Status::Told;
        status.isDirectory = item.kind == FileListing::Kind::Directory;
        if (item.frames > 1) {
            if (const auto* const last = listed.find(data.frameFile(i, item.last)))
                status.modified = last->modified;
        }
        statuses.push_back(status);
    }
    return statuses;
}

void GatherRequest::tell(GatherNews news) const {
    box->put(std::move(news), [](GatherNews& waiting, GatherNews& newest) {
        // A reading that was given up may tell a last time after the next one has begun.
        if (newest.request >= waiting.request)
            std::swap(waiting, newest);
    });
}

GatherJob::GatherJob(std::shared_ptr<SharedReading> reading, GatherRequest first, Ticket& ticket)
    : m_reading(std::move(reading))
    , m_first(std::move(first))
    , m_ticket(ticket) {}

void GatherJob::run() {
    m_started = Ticket::now();
    m_nextPublish = m_started + m_first.pace.firstPublish * millisecond;
    try {
        Platform::DirectoryHandle directory;
        int error = open(directory);
        if (error == 0 && !takeRecent()) {
            const auto listing = std::make_shared<Platform::Listing>();
            m_names = listing;
            error = Platform::readDirectory(directory, *listing, *this);
            m_entries = listing->entries;
        }
        m_ticket.tick();
        if (m_ticket.isCancelled())
            return;
        if (error != 0) {
            fail(error);
            return;
        }
        publish(FileListing::State::Complete, true);
        resolve(directory);
        keep();
    } catch (const std::bad_alloc&) {
        fail(Platform::errorOf(Platform::Failure::OutOfMemory));
    }
}

int GatherJob::open(Platform::DirectoryHandle& directory) {
    const std::string path = Platform::toUtf8(m_first.directory);
    int error = directory.open(path);
    // The server was restarted meanwhile: the second time it is asked by the name again.
    if (Platform::failureOf(error) == Platform::Failure::Stale)
        error = directory.open(path);
    m_ticket.tick();
    if (error != 0)
        return error;
    // From before the reading: what changes during it must look newer.
    Platform::EntryStatus status;
    if (directory.status(status) == 0) {
        m_stamp = status.stamp();
        WorkerPool::instance().setDevice(m_ticket, path, status.device);
    }
    m_ticket.tick();
    // Times are coarse on some disks: what changed a moment ago may change again unseen.
    using Clock = std::chrono::system_clock;
    const auto now = std::chrono::nanoseconds(Clock::now().time_since_epoch()).count();
    m_isReliable = now - m_stamp > m_first.pace.settled * millisecond &&
                   Platform::keepsDirectoryTimes(Platform::mountOf(Platform::mounts(), path).type);
    return 0;
}

// Whether the directory has not changed since it was read last.
bool GatherJob::takeRecent() {
    const auto listeners = m_reading->listeners();
    if (std::any_of(listeners.begin(), listeners.end(),
                    [](const auto& each) { return each.isFresh; }))
        return false;
    m_recent = RecentListings::instance().find(m_first.directory);
    if (!m_recent || !m_recent->isReliable || m_recent->stamp != m_stamp) {
        m_recent.reset();
        return false;
    }
    m_names = m_recent->data->raw->names;
    m_entries = m_recent->data->raw->entries;
    return true;
}

bool GatherJob::block(const Platform::Listing& soFar) {
    m_ticket.tick();
    if (m_ticket.isCancelled())
        return false;
    // A listing that would cost a good part of the reading is no news worth it.
    constexpr std::int64_t costOfEntry = 300; // nanoseconds, more or less
    const auto cost = static_cast<std::int64_t>(soFar.entries.size()) * costOfEntry;
    const std::int64_t now = Ticket::now();
    if (now >= m_nextPublish && now - m_started >= 4 * cost) {
        m_entries = soFar.entries;
        publish(FileListing::State::Reading);
    }
    return true;
}

// Whoever has rows keeps them; the others get what was read before the error.
void GatherJob::fail(int error) {
    const std::int64_t duration = Ticket::now() - m_started;
    for (const GatherRequest& each : m_reading->listeners(true)) {
        GatherNews news;
        news.request = each.id;
        news.state = FileListing::State::Failed;
        news.error = error;
        news.stamp = m_stamp;
        news.duration = duration;
        try {
            if (each.tellsMeanwhile && !m_entries.empty())
                news.data = makeListing(std::make_shared<const RawEntries>(
                                            RawEntries{m_first.directory, m_names, m_entries}),
                                        each.settings);
        } catch (const std::bad_alloc&) {
            news.data = nullptr;
        }
        each.tell(std::move(news));
    }
}

const std::shared_ptr<const ListingData>& GatherJob::madeFor(const ListingSettings& settings) {
    const auto same = std::find_if(m_published.begin(), m_published.end(),
                                   [&](const Made& each) { return each.settings == settings; });
    if (same != m_published.end())
        return same->data;
    if (m_recent && m_recent->settings == settings)
        return m_published.emplace_back(Made{settings, m_recent->data}).data;
    if (!m_raw)
        m_raw =
            std::make_shared<const RawEntries>(RawEntries{m_first.directory, m_names, m_entries});
    return m_published.emplace_back(Made{settings, makeListing(m_raw, settings)}).data;
}

void GatherJob::publish(FileListing::State state, bool isLast) {
    const bool isMeanwhile = state == FileListing::State::Reading;
    const std::int64_t start = Ticket::now();
    if (m_lastListeners.empty())
        m_lastListeners = m_reading->listeners(isLast);
    m_published.clear();
    m_raw.reset();
    for (const GatherRequest& each : m_lastListeners) {
        if (isMeanwhile && !each.tellsMeanwhile)
            continue;
        const auto data = madeFor(each.settings);
        m_ticket.tick();
        GatherNews news;
        news.request = each.id;
        news.data = data;
        news.status = statusFor(*data, each.turn);
        news.state = state;
        news.stamp = m_stamp;
        news.duration = Ticket::now() - m_started;
        each.tell(std::move(news));
    }
    if (isMeanwhile)
        m_lastListeners.clear();
    // At most a fifth of the time goes into listings that nobody sees for long.
    const std::int64_t now = Ticket::now();
    m_nextPublish = now + std::max(m_first.pace.publish * millisecond, 4 * (now - start));
}

std::shared_ptr<const StatusTable> GatherJob::statusFor(const ListingData& data,
                                                        std::uint32_t turn) const {
    if (!m_names || m_names->statuses.empty() || m_recent)
        return nullptr;
    auto table = std::make_shared<StatusTable>();
    table->add(listedStatuses(data, *m_names, turn));
    return table;
}

void GatherJob::keep() {
    if (m_published.empty())
        return;
    const Made& made = m_published.front();
    RecentListings::instance().keep({made.data, nullptr, made.settings, m_stamp, m_isReliable});
}

// Links, and everything on file systems that do not tell: single items, the heads of sequences, and
// all members of what turns out to be numbered folders.
std::vector<std::size_t> GatherJob::unresolved() const {
    std::vector<std::string> wanted;
    for (const Made& made : m_published) {
        const ListingData& data = *made.data;
        for (int i = 0; i < static_cast<int>(data.items.size()); ++i) {
            const FileListing::Item& item = data.items[static_cast<std::size_t>(i)];
            if (item.kind == FileListing::Kind::Unknown)
                wanted.emplace_back(item.name);
            else if (item.kind == FileListing::Kind::Sequence)
                wanted.push_back(data.firstFile(i));
        }
    }
    std::sort(wanted.begin(), wanted.end());
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const Platform::Entry& entry = m_entries[i];
        if (entry.type == Platform::EntryType::Unknown &&
            (std::binary_search(wanted.begin(), wanted.end(), entry.view()) ||
             m_suspects.count(frameNameHash(entry.view())) != 0))
            found.push_back(i);
    }
    return found;
}

bool GatherJob::resolveThese(const Platform::DirectoryHandle& directory,
                             const std::vector<std::size_t>& entries) {
    for (const std::size_t index : entries) {
        Platform::Entry& entry = m_entries[index];
        Platform::EntryStatus status;
        const int error = Platform::queryStatusAt(directory, entry.name, true, status);
        m_ticket.tick();
        if (m_ticket.isCancelled())
            return false;
        m_recent.reset(); // its types are not these any more
        const bool isDirectory = error == 0 && status.isDirectory();
        entry.type = isDirectory ? Platform::EntryType::Directory : Platform::EntryType::Other;
        if (isDirectory)
            m_suspects.insert(frameNameHash(entry.view()));
    }
    return true;
}

void GatherJob::resolve(const Platform::DirectoryHandle& directory) {
    constexpr std::size_t helping = 2000;
    for (auto entries = unresolved(); !entries.empty(); entries = unresolved()) {
        for (std::size_t at = 0; at < entries.size(); at += helping) {
            const auto begin = entries.begin() + static_cast<std::ptrdiff_t>(at);
            const auto end = entries.size() - at > helping ? begin + helping : entries.end();
            if (!resolveThese(directory, {begin, end}))
                return;
            if (end != entries.end() && Ticket::now() < m_nextPublish)
                continue;
            publish(FileListing::State::Complete);
        }
    }
}

void GatherJob::rebuild(const GatherRequest& request, const ListingData& old,
                        FileListing::State state, int error) {
    GatherNews news;
    news.request = request.id;
    news.data = makeListing(old.raw, request.settings);
    news.state = state;
    news.error = error;
    request.tell(std::move(news));
}

} // namespace Kestrel::UI
