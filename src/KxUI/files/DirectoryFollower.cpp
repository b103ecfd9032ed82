#include <KxUI/files/DirectoryFollower_p.h>

#include <KxUI/files/platform/Watch_p.h>

#include <algorithm>

namespace Kestrel::UI {

// The watch may begin long after its follower has gone elsewhere.
struct DirectoryFollower::Link {
    std::mutex mutex;
    std::int64_t watch = 0;
    bool isEnded = false;

    void begin(std::int64_t number) {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            if (!isEnded) {
                watch = number;
                return;
            }
        }
        Platform::unwatchDirectory(number);
    }

    void end() {
        std::int64_t number = 0;
        {
            const std::lock_guard<std::mutex> lock(mutex);
            isEnded = true;
            number = std::exchange(watch, 0);
        }
        if (number != 0)
            Platform::unwatchDirectory(number);
    }
};

DirectoryFollower::DirectoryFollower(const GatherPace& pace, std::function<void()> changed)
    : m_pace(pace)
    , m_changed(std::move(changed)) {}

DirectoryFollower::~DirectoryFollower() {
    stop();
}

void DirectoryFollower::tell(const std::shared_ptr<Box>& box, const News& news) {
    box->put(news, [](News& waiting, const News& newest) {
        waiting.hasChanged = waiting.hasChanged || newest.hasChanged;
        waiting.wantsPolls = waiting.wantsPolls || newest.wantsPolls;
        waiting.isWatched = waiting.isWatched || newest.isWatched;
        waiting.isPolled = waiting.isPolled || newest.isPolled;
        if (newest.isPolled || newest.isWatched) {
            waiting.stamp = newest.stamp;
            waiting.duration = newest.duration;
        }
    });
}

void DirectoryFollower::watch(const std::string& directory, bool remoteToo,
                              const std::shared_ptr<Link>& link, const std::shared_ptr<Box>& box,
                              Ticket& ticket) {
    const std::string path = Platform::toUtf8(directory);
    News news;
    if (Platform::mountOf(Platform::mounts(), path).remote) {
        // The system would tell of this machine's changes only, and keep silent on all others.
        news.wantsPolls = remoteToo;
    } else {
        std::int64_t number = 0;
        News change;
        change.hasChanged = true;
        const int error = Platform::watchDirectory(
            path, [box, change] { tell(box, change); }, number);
        ticket.tick();
        if (error == 0) {
            link->begin(number);
            news = stampNow(path, ticket); // for what happened since the reading
            news.isWatched = true;
        } else {
            news.wantsPolls = true; // as where the system's watches are used up
        }
    }
    if (news.wantsPolls || news.isWatched)
        tell(box, news);
}

void DirectoryFollower::poll(const std::string& directory, const std::shared_ptr<Box>& box,
                             Ticket& ticket) {
    News news = stampNow(Platform::toUtf8(directory), ticket);
    news.isPolled = true;
    tell(box, news);
}

DirectoryFollower::News DirectoryFollower::stampNow(const std::string& path, Ticket& ticket) {
    const std::int64_t start = Ticket::now();
    Platform::DirectoryHandle handle;
    Platform::EntryStatus status;
    News news;
    if (handle.open(path) == 0 && handle.status(status) == 0)
        news.stamp = status.stamp();
    ticket.tick();
    news.duration = Ticket::now() - start;
    return news;
}

void DirectoryFollower::follow(const std::string& directory, bool remoteToo) {
    stop();
    m_directory = directory;
    m_box = std::make_shared<Box>(this);
    m_link = std::make_shared<Link>();
    m_ticket = WorkerPool::instance().post(
        WorkerPool::Lane::Status, directory,
        [directory, remoteToo, link = m_link, box = m_box](Ticket& ticket) {
            watch(directory, remoteToo, link, box, ticket);
        });
}

void DirectoryFollower::stop() {
    m_timer.stop();
    if (m_box)
        m_box->close();
    if (m_link)
        m_link->end();
    if (m_ticket)
        m_ticket->cancelled = true;
    m_box.reset();
    m_link.reset();
    m_ticket.reset();
    m_interval = m_pace.poll;
    m_slowAnswers = 0;
}

bool DirectoryFollower::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QObject::event(event);
    const auto news = m_box ? m_box->take() : std::nullopt;
    if (!news)
        return true;
    if (news->wantsPolls)
        m_timer.start(m_interval, this);
    const bool hasMoved = news->isWatched && news->stamp != m_stamp;
    if (hasMoved)
        m_stamp = news->stamp;
    const bool hasChanged = news->isPolled && takePoll(*news);
    if (hasMoved || hasChanged || news->hasChanged) {
        const auto changed = m_changed; // it may be the end of this object
        changed();
    }
    return true;
}

bool DirectoryFollower::takePoll(const News& news) {
    constexpr int patience = 3;
    constexpr std::int64_t millisecond = 1000000;
    m_slowAnswers = news.duration > m_pace.pollSlow * millisecond ? m_slowAnswers + 1 : 0;
    if (m_slowAnswers >= patience) {
        m_timer.stop();
        return false;
    }
    const bool hasChanged = news.stamp != m_stamp;
    m_stamp = news.stamp;
    m_interval = hasChanged ? m_pace.poll : std::min(2 * m_interval, m_pace.pollMost);
    m_timer.start(m_interval, this);
    return hasChanged;
}

void DirectoryFollower::timerEvent(QTimerEvent*) {
    // The next one comes with the answer.
    m_timer.stop();
    m_ticket = WorkerPool::instance().post(
        WorkerPool::Lane::Status, m_directory,
        [directory = m_directory, box = m_box](Ticket& ticket) { poll(directory, box, ticket); });
}

} // namespace Kestrel::UI
