#include <KxUI/files/StatusQueue_p.h>

#include <KxUI/files/FileListing.h>
#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>
#include <optional>

namespace Kestrel::UI {
namespace {

using Known = FileListing::Status::Known;
using Platform::EntryStatus;
using Platform::Failure;

Known knownOf(int error) {
    switch (Platform::failureOf(error)) {
    case Failure::None:
        return FileListing::Status::Told;
    case Failure::NotFound:
    case Failure::NotADirectory:
        return FileListing::Status::Gone;
    case Failure::Denied:
        return FileListing::Status::Denied;
    default:
        return FileListing::Status::Failed;
    }
}

FileStatus answer(const Platform::DirectoryHandle& directory, const StatusQueue::Wants& wants,
                  int item, Ticket& ticket) {
    FileStatus told;
    EntryStatus status;
    const bool cached = wants.turn == 1; // a network file system may answer from what it knows
    told.known = knownOf(
        Platform::queryStatusAt(directory, wants.data->firstFile(item).c_str(), cached, status));
    ticket.tick();
    if (told.known != FileListing::Status::Told)
        return told;
    told.size = status.size;
    told.modified = status.time();
    told.isLink = status.isLink;
    told.isBrokenLink = status.isBrokenLink;
    told.isDirectory = status.isDirectory();
    // Whether a render is still going on is seen by its last frame.
    const FileListing::Item& asked = wants.data->items[static_cast<std::size_t>(item)];
    EntryStatus last;
    if (asked.frames > 1 && !ticket.isCancelled() &&
        Platform::queryStatusAt(directory, wants.data->frameFile(item, asked.last).c_str(), cached,
                                last) == 0)
        told.modified = last.time();
    ticket.tick();
    return told;
}

} // namespace

StatusQueue::StatusQueue(std::string directory,
                         std::shared_ptr<Mailbox<std::vector<FileStatus>>> box)
    : m_directory(std::move(directory))
    , m_box(std::move(box)) {}

bool StatusQueue::Wants::isTold(int item) const {
    const FileListing::Item& wanted = data->items[static_cast<std::size_t>(item)];
    const FileStatus* const known = told->find(wanted.key);
    return known && known->turn == turn && known->last == wanted.last;
}

void StatusQueue::replace(Wants wants) {
    constexpr std::size_t most = 4;
    constexpr std::size_t perWorker = 16; // fewer are not worth another thread and its opening
    auto next = std::make_shared<const Wants>(std::move(wants)); // then what it replaces
    int wanted = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_wants.swap(next);
        m_next = 0;
        const std::size_t needed = std::min((left() + perWorker - 1) / perWorker, most);
        wanted = std::max(static_cast<int>(needed) - m_workers, 0);
        m_workers += wanted;
    }
    for (int i = 0; i < wanted; ++i) {
        const auto job = [self = shared_from_this()](Ticket& ticket) { self->work(ticket); };
        if (WorkerPool::instance().post(WorkerPool::Lane::Status, m_directory, job))
            continue;
        const std::lock_guard<std::mutex> lock(m_mutex);
        --m_workers;
    }
}

bool StatusQueue::isThrough(const ListingData& data, std::uint32_t turn) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_through && m_through->data.get() == &data && m_through->turn == turn;
}

void StatusQueue::close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_wants.reset();
    m_through.reset();
}

// Ends what was asked before.
bool StatusQueue::take(Ask& ask) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_inFlight.erase(ask.key);
    while (left() > 0) {
        ask.wants = m_wants;
        ask.item = m_wants->items[m_next++];
        ask.key = m_wants->data->items[static_cast<std::size_t>(ask.item)].key;
        if (m_inFlight.insert(ask.key).second)
            return true;
    }
    if (m_wants && m_inFlight.empty() && m_wants->items.size() >= m_wants->data->items.size())
        m_through = m_wants;
    --m_workers;
    return false;
}

// The directory is open while there is something to ask and no longer: nobody could unmount it.
void StatusQueue::work(Ticket& ticket) {
    std::optional<Platform::DirectoryHandle> directory;
    int error = 0;
    for (Ask ask; take(ask);) {
        if (ask.wants->isTold(ask.item))
            continue;
        if (!directory) {
            error = directory.emplace().open(Platform::toUtf8(m_directory));
            ticket.tick();
        }
        FileStatus told;
        if (error == 0)
            told = answer(*directory, *ask.wants, ask.item, ticket);
        else
            told.known = knownOf(error);
        told.key = ask.key;
        told.item = ask.item;
        told.last = ask.wants->data->items[static_cast<std::size_t>(ask.item)].last;
        told.turn = ask.wants->turn;
        m_box->put({told}, [](auto& waiting, auto& newest) {
            waiting.insert(waiting.end(), newest.begin(), newest.end());
        });
    }
}

} // namespace Kestrel::UI
