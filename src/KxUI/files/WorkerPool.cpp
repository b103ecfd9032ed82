#include <KxUI/files/WorkerPool_p.h>

#include <KxUI/files/platform/DetachedThread_p.h>

#include <algorithm>
#include <thread>

namespace Kestrel::UI {
namespace {

constexpr std::int64_t second = 1000000000;

} // namespace

WorkerPool& WorkerPool::instance() {
    // Never destroyed: threads may come back while the process ends.
    static WorkerPool* const pool = [] {
        Platform::pinLibrary();
        return new WorkerPool(Limits());
    }();
    return *pool;
}

WorkerPool::WorkerPool(const Limits& limits)
    : m_limits(limits) {}

std::shared_ptr<Ticket> WorkerPool::post(Lane lane, const std::string& directory, Job job) {
    auto ticket = std::make_shared<Ticket>();
    Queue dropped; // what others have cancelled dies outside the lock
    Lock lock(m_mutex);
    const std::int64_t now = Ticket::now();
    if (isExhausted(now))
        return nullptr;
    Task task{directory, {}, std::move(job), ticket};
    if (!directory.empty())
        task.mount = mountFor(directory);
    m_queues[static_cast<std::size_t>(lane)].push_back(std::move(task));
    wakeOrStart();
    if (m_threads > 0)
        return ticket;
    // The system gives no threads at all.
    auto& queue = m_queues[static_cast<std::size_t>(lane)];
    dropped.push_back(std::move(queue.back()));
    queue.pop_back();
    lock.unlock();
    return nullptr;
}

const Platform::Mount* WorkerPool::mountOfDevice(std::uint64_t device) const {
    const auto found = std::find_if(m_mounts.begin(), m_mounts.end(), [&](const auto& each) {
        return device != 0 && each.device == device;
    });
    return found == m_mounts.end() ? nullptr : &*found;
}

// By the nearest directory whose device is known, unless another file system begins below it.
Platform::Mount WorkerPool::mountFor(const std::string& directory) const {
    Platform::Mount mount = Platform::mountOf(m_mounts, directory);
    for (std::string_view path = directory; m_devices.size() != 0 && path.size() > 1;
         path = path.substr(0, path.rfind('/'))) {
        if (path.size() < mount.point.size() || path.find('/') == std::string_view::npos)
            break;
        const auto known = m_devices.find(std::string(path));
        if (known == m_devices.end())
            continue;
        const Platform::Mount* const other = mountOfDevice(known->second);
        return other ? *other : mount;
    }
    return mount;
}

void WorkerPool::setDevice(const Ticket& ticket, const std::string& directory,
                           std::uint64_t device) {
    constexpr std::size_t most = 1024;
    const Lock lock(m_mutex);
    const Platform::Mount* const mount = mountOfDevice(device);
    // Unknown where one file system shows several devices: then the text is as good.
    if (!mount || mountFor(directory).device == device)
        return;
    if (m_devices.size() >= most)
        m_devices.clear();
    m_devices[directory] = device;
    for (Task& task : m_running) {
        if (task.ticket.get() == &ticket)
            task.mount = *mount;
    }
}

void WorkerPool::setThreadLimit(int running) {
    const Lock lock(m_mutex);
    m_limits.running = std::clamp(running, 1, m_limits.threads);
    if (hasEligible())
        wakeOrStart();
}

std::vector<std::string> WorkerPool::stuckDirectories() const {
    std::vector<std::string> directories;
    const Lock lock(m_mutex);
    const std::int64_t now = Ticket::now();
    for (const Task& task : m_running) {
        if (isStuck(task, now) && !task.directory.empty())
            directories.push_back(task.directory);
    }
    std::sort(directories.begin(), directories.end());
    directories.erase(std::unique(directories.begin(), directories.end()), directories.end());
    return directories;
}

int WorkerPool::threadCount() const {
    const Lock lock(m_mutex);
    return m_threads;
}

bool WorkerPool::isStuck(const Task& task, std::int64_t now) const {
    const auto silence = std::chrono::nanoseconds(now - task.ticket->beat.load());
    return silence > m_limits.stuckAfter;
}

int WorkerPool::runningCount(std::int64_t now) const {
    return static_cast<int>(std::count_if(m_running.begin(), m_running.end(),
                                          [&](const Task& each) { return !isStuck(each, now); }));
}

bool WorkerPool::isExhausted(std::int64_t now) const {
    return m_threads >= m_limits.threads && m_idle == 0 && runningCount(now) == 0;
}

bool WorkerPool::isQueueEmpty() const {
    return std::all_of(m_queues.begin(), m_queues.end(),
                       [](const Queue& queue) { return queue.empty(); });
}

bool WorkerPool::isEligible(const Task& task, std::int64_t now) const {
    if (task.directory.empty())
        return true;
    int running = 0;
    int stuck = 0;
    for (const Task& other : m_running) {
        const bool isOtherStuck = isStuck(other, now);
        // It would only be stuck, too.
        if (isOtherStuck && !other.directory.empty() &&
            Platform::liesUnder(task.directory, other.directory))
            return false;
        if (!other.directory.empty() && other.mount.point == task.mount.point)
            ++(isOtherStuck ? stuck : running);
    }
    return running < m_limits.perMount && (!task.mount.remote || stuck < m_limits.perMount);
}

bool WorkerPool::hasEligible() const {
    const std::int64_t now = Ticket::now();
    if (runningCount(now) >= m_limits.running)
        return false;
    for (const Queue& queue : m_queues) {
        for (const Task& task : queue) {
            if (task.ticket->isCancelled() || isEligible(task, now))
                return true;
        }
    }
    return false;
}

bool WorkerPool::takeTask(Task& taken, Queue& dropped) {
    const std::int64_t now = Ticket::now();
    const bool isFull = runningCount(now) >= m_limits.running;
    for (Queue& queue : m_queues) {
        for (auto task = queue.begin(); task != queue.end();) {
            if (task->ticket->isCancelled()) {
                dropped.push_back(std::move(*task));
                task = queue.erase(task);
            } else if (!isFull && isEligible(*task, now)) {
                taken = std::move(*task);
                queue.erase(task);
                return true;
            } else {
                ++task;
            }
        }
    }
    return false;
}

bool WorkerPool::startThread() {
    if (m_threads >= m_limits.threads)
        return false;
    ++m_threads;
    if (Platform::startDetached([this] { work(); }))
        return true;
    --m_threads;
    return false;
}

// After a change that may let a task run. Where none can, somebody must see when what runs gets
// stuck.
void WorkerPool::wakeOrStart() {
    if (hasEligible()) {
        if (m_idle > 0)
            m_wake.notify_one();
        else
            startThread();
    }
    if (!m_supervised && !isQueueEmpty() && m_idle == 0)
        m_supervised = Platform::startDetached([this] { supervise(); });
}

void WorkerPool::supervise() {
    constexpr std::chrono::milliseconds longest(250);
    Lock lock(m_mutex);
    while (!isQueueEmpty()) {
        lock.unlock();
        std::this_thread::sleep_for(std::min(longest, m_limits.stuckAfter / 2));
        lock.lock();
        if (!hasEligible())
            continue;
        if (m_idle > 0)
            m_wake.notify_one();
        else
            startThread();
    }
    m_supervised = false;
}

void WorkerPool::work() {
    Lock lock(m_mutex);
    for (;;) {
        Task task;
        Queue dropped;
        const bool hasTask = takeTask(task, dropped);
        if (!dropped.empty()) {
            lock.unlock();
            dropped.clear();
            lock.lock();
        }
        if (hasTask) {
            run(std::move(task), lock);
            continue;
        }
        ++m_idle;
        const auto woken = m_wake.wait_for(lock, m_limits.idle);
        --m_idle;
        if (woken == std::cv_status::timeout && !hasEligible())
            break;
    }
    --m_threads;
}

void WorkerPool::run(Task task, Lock& lock) {
    Job job = std::move(task.job);
    task.job = nullptr;
    task.ticket->tick();
    task.ticket->running = true;
    const auto place = m_running.insert(m_running.end(), std::move(task));
    // The next one need not wait for this thread.
    wakeOrStart();
    refreshMounts(lock);
    const std::shared_ptr<Ticket> ticket = place->ticket;
    lock.unlock();
    try {
        job(*ticket);
    } catch (...) {
        // Jobs tell of their failures themselves; one that could not must not end the process.
    }
    ticket->running = false;
    job = nullptr;
    lock.lock();
    m_running.erase(place);
}

// Reading the table may wait for whoever is mounting something, so it is a worker's work, and what
// is known meanwhile is good enough.
void WorkerPool::refreshMounts(Lock& lock) {
    const std::int64_t now = Ticket::now();
    if (m_mountsRead != 0 && now - m_mountsRead < 5 * second)
        return;
    m_mountsRead = now;
    lock.unlock();
    std::vector<Platform::Mount> mounts = Platform::mounts();
    lock.lock();
    m_mounts = std::move(mounts);
}

} // namespace Kestrel::UI
