#include <KxUI/files/StatusQueue_p.h>

#include <KxUI/files/FileListing.h>
#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>

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

FileStatus answer(const Platform::DirectoryHandle& directory, const StatusQueue::Ask& ask,
                  Ticket& ticket) {
    FileStatus told;
    EntryStatus status;
    told.known = knownOf(Platform::queryStatusAt(directory, ask.file.c_str(), ask.cached, status));
    ticket.tick();
    if (told.known != FileListing::Status::Told)
        return told;
    told.size = status.size;
    told.modified = status.time();
    told.isLink = status.isLink;
    told.isBrokenLink = status.isBrokenLink;
    told.isDirectory = status.isDirectory();
    // Whether a render is still going on is seen by its last frame.
    EntryStatus last;
    if (!ask.lastFile.empty() && !ticket.isCancelled() &&
        Platform::queryStatusAt(directory, ask.lastFile.c_str(), ask.cached, last) == 0)
        told.modified = last.time();
    ticket.tick();
    return told;
}

} // namespace

StatusQueue::StatusQueue(std::string directory,
                         std::shared_ptr<Mailbox<std::vector<FileStatus>>> box)
    : m_directory(std::move(directory))
    , m_box(std::move(box)) {}

void StatusQueue::replace(std::vector<Ask> asks) {
    constexpr int most = 4;
    constexpr int perWorker = 16; // fewer are not worth another thread and its opening
    int wanted = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_asks.clear();
        for (Ask& ask : asks) {
            if (m_inFlight.count(ask.key) == 0)
                m_asks.push_back(std::move(ask));
        }
        const int needed = (static_cast<int>(m_asks.size()) + perWorker - 1) / perWorker;
        wanted = std::max(std::min(needed, most) - m_workers, 0);
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

void StatusQueue::close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isClosed = true;
    m_asks.clear();
}

bool StatusQueue::take(Ask& ask, std::uint64_t done) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_inFlight.erase(done);
    if (m_asks.empty()) {
        --m_workers;
        return false;
    }
    ask = std::move(m_asks.front());
    m_asks.pop_front();
    m_inFlight.insert(ask.key);
    return true;
}

// The directory is open while there is something to ask and no longer: nobody could unmount it.
void StatusQueue::work(Ticket& ticket) {
    Platform::DirectoryHandle directory;
    const int error = directory.open(Platform::toUtf8(m_directory));
    ticket.tick();
    Ask ask;
    for (std::uint64_t done = 0; take(ask, done); done = ask.key) {
        FileStatus told;
        if (error == 0)
            told = answer(directory, ask, ticket);
        else
            told.known = knownOf(error);
        told.key = ask.key;
        told.last = ask.last;
        told.turn = ask.turn;
        m_box->put({told}, [](auto& waiting, auto& newest) {
            waiting.insert(waiting.end(), newest.begin(), newest.end());
        });
    }
}

} // namespace Kestrel::UI
