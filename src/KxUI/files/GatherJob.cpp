#include <KxUI/files/GatherJob_p.h>

#include <algorithm>
#include <new>

namespace Kestrel::UI {
namespace {

constexpr std::int64_t millisecond = 1000000;

std::uint64_t frameNameHash(std::string_view name) {
    const auto frame = FrameNameRules().frameOf(name);
    return frame ? hashOf(frame->back(), hashOf(frame->front())) : hashOf(name, 1);
}

} // namespace

GatherJob::GatherJob(GatherRequest request, Ticket& ticket)
    : m_request(std::move(request))
    , m_ticket(ticket) {}

void GatherJob::run() {
    m_started = Ticket::now();
    m_nextPublish = m_started + m_request.pace.firstPublish * millisecond;
    try {
        Platform::DirectoryHandle directory;
        int error = open(directory);
        if (error == 0)
            error = Platform::readDirectory(directory, *m_listing, *this);
        m_ticket.tick();
        if (m_ticket.isCancelled())
            return;
        m_entries = m_listing->entries;
        publish(error == 0 ? FileListing::State::Complete : FileListing::State::Failed, error);
        if (error == 0)
            resolve(directory);
    } catch (const std::bad_alloc&) {
        // The gatherer keeps the rows that it has.
        m_request.box->put({m_request.id, nullptr, FileListing::State::Failed,
                            Platform::errorOf(Platform::Failure::OutOfMemory), m_modified, 0});
    }
}

int GatherJob::open(Platform::DirectoryHandle& directory) {
    const std::string path = Platform::toUtf8(m_request.directory);
    int error = directory.open(path);
    // The server was restarted meanwhile: the second time it is asked by the name again.
    if (Platform::failureOf(error) == Platform::Failure::Stale)
        error = directory.open(path);
    m_ticket.tick();
    if (error != 0)
        return error;
    // From before the reading: what changes during it must look newer.
    Platform::EntryStatus status;
    if (directory.status(status) == 0)
        m_modified = status.modified;
    m_ticket.tick();
    return 0;
}

bool GatherJob::block(const Platform::Listing& soFar) {
    m_ticket.tick();
    if (m_ticket.isCancelled())
        return false;
    // A listing that would cost a good part of the reading is no news worth it.
    constexpr std::int64_t costOfEntry = 300; // nanoseconds, more or less
    const auto cost = static_cast<std::int64_t>(soFar.entries.size()) * costOfEntry;
    const std::int64_t now = Ticket::now();
    if (m_request.tellsMeanwhile && now >= m_nextPublish && now - m_started >= 4 * cost) {
        m_entries = soFar.entries;
        publish(FileListing::State::Reading, 0);
    }
    return true;
}

void GatherJob::publish(FileListing::State state, int error) {
    const std::int64_t start = Ticket::now();
    auto raw =
        std::make_shared<const RawEntries>(RawEntries{m_request.directory, m_listing, m_entries});
    auto data = makeListing(std::move(raw), m_request.settings);
    m_published = data;
    m_ticket.tick();
    // At most a fifth of the time goes into listings that nobody sees for long.
    const std::int64_t now = Ticket::now();
    m_nextPublish = now + std::max(m_request.pace.publish * millisecond, 4 * (now - start));
    m_request.box->put({m_request.id, std::move(data), state, error, m_modified, now - m_started});
}

// Links, and everything on file systems that do not tell: single items, the heads of sequences, and
// all members of what turns out to be numbered folders.
std::vector<std::size_t> GatherJob::unresolved() const {
    std::vector<std::string> wanted;
    const ListingData& data = *m_published;
    for (int i = 0; i < static_cast<int>(data.items.size()); ++i) {
        const FileListing::Item& item = data.items[static_cast<std::size_t>(i)];
        if (item.kind == FileListing::Kind::Unknown)
            wanted.emplace_back(item.name);
        else if (item.kind == FileListing::Kind::Sequence)
            wanted.push_back(data.firstFile(i));
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
            publish(FileListing::State::Complete, 0);
        }
    }
}

void GatherJob::rebuild(const GatherRequest& request, const ListingData& old,
                        FileListing::State state, int error) {
    auto data = makeListing(old.raw, request.settings);
    request.box->put({request.id, std::move(data), state, error, 0, 0});
}

} // namespace Kestrel::UI
