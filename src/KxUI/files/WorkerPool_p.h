#pragma once

#include <KxUI/files/platform/Mounts_p.h>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

/** \file
    Threads for calls that may never return.

    A call to a network file system whose server is gone can neither be cancelled nor waited for. So
    these threads are never joined and nobody owns them; whatever they touch outlives them: their
    own copies, tickets, mailboxes (Mailbox_p.h), functions of the platform. Never a QObject, a text to be
    translated, a setting or an icon. Other rooms of the library start no threads but where their
    classes promise it. */
namespace Kestrel::UI {

/** What a job and those who wait for it share. */
struct Ticket {
    std::atomic<bool> cancelled{false}; ///< the job is to end as soon as it can
    std::atomic<bool> running{false};
    std::atomic<std::int64_t> beat{0}; ///< when the system answered last, by now()

    /** A steady clock, in nanoseconds. */
    static std::int64_t now() {
        return std::chrono::steady_clock::now().time_since_epoch().count();
    }

    /** The job says that the system has answered. */
    void tick() { beat.store(now(), std::memory_order_relaxed); }

    bool isCancelled() const { return cancelled.load(std::memory_order_relaxed); }
};

/** Runs jobs by their urgency, few at a time for each file system. A job that had no answer from
    the system for a while is stuck: it counts no longer, so that other folders go on. */
class WorkerPool {
public:
    /** What is asked for first comes first; within it, by age. */
    enum class Lane { Names, Status, Files };
    using Job = std::function<void(Ticket&)>;

    struct Limits {
        int running = 12; ///< jobs at a time, without those that are stuck
        int perMount =
            4; ///< of them on one file system; also how many may be stuck on a remote one
        int threads = 48; ///< with those that are stuck
        std::chrono::milliseconds stuckAfter{2000};
        std::chrono::milliseconds idle{10000}; ///< how long a thread without work stays
    };

    /** The pool of the process. */
    static WorkerPool& instance();

    explicit WorkerPool(const Limits& limits);
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /** Queues a job that works in `directory` (absolute; empty for one that asks no file system). It
        waits while that directory, or one above it, is stuck. Null when every thread that may be
        is stuck. The job is destroyed on a thread of the pool, or here. Any thread. */
    std::shared_ptr<Ticket> post(Lane lane, const std::string& directory, Job job);

    /** A job has found out which device its directory lies on: a link within a path may lead to
        another file system than its text says. What is in that directory counts for it from now on.
        Any thread. */
    void setDevice(const Ticket& ticket, const std::string& directory, std::uint64_t device);

    /** 1 to 48; at first 12. */
    void setThreadLimit(int running);

    /** The directories that jobs are stuck in, each once. */
    std::vector<std::string> stuckDirectories() const;

    /** Threads that there are now. */
    int threadCount() const;

private:
    // Detached threads use it until the process ends.
    ~WorkerPool() = default;

    using Lock = std::unique_lock<std::mutex>;

    struct Task {
        std::string directory;
        Platform::Mount mount;
        Job job;
        std::shared_ptr<Ticket> ticket;
    };
    using Queue = std::deque<Task>;

    void work();
    void run(Task task, Lock& lock);
    void supervise();
    bool takeTask(Task& task, Queue& dropped);
    bool isEligible(const Task& task, std::int64_t now) const;
    bool isStuck(const Task& task, std::int64_t now) const;
    int runningCount(std::int64_t now) const;
    bool hasEligible() const;
    bool isExhausted(std::int64_t now) const;
    void wakeOrStart();
    bool startThread();
    bool isQueueEmpty() const;
    void refreshMounts(Lock& lock);
    Platform::Mount mountFor(const std::string& directory) const;
    const Platform::Mount* mountOfDevice(std::uint64_t device) const;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    Limits m_limits;
    std::array<Queue, 3> m_queues;
    std::list<Task> m_running; // without their jobs
    std::vector<Platform::Mount> m_mounts;
    std::int64_t m_mountsRead = 0;
    std::unordered_map<std::string, std::uint64_t>
        m_devices; // of directories, where links lead away
    int m_threads = 0;
    int m_idle = 0;
    bool m_supervised = false;
};

} // namespace Kestrel::UI
