#pragma once

#include <KxUI/kit/Mailbox_p.h>
#include <KxUI/scopes/ScopePass_p.h>
#include <KxUI/scopes/ScopeResult.h>
#include <KxUI/scopes/ScopeSelection.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace Kestrel::UI {

/** What is to be counted, or read. */
struct ScopeJob {
    std::uint64_t serial = 0;
    ScopeImage image;
    ScopeRequest request;
    /** Where a sample is to be read by the encoding of `request`, in place of counting. */
    std::optional<ScopeSample> sample;
    /** What is to be looked for, in place of both. */
    std::optional<ScopeSelection> find;
};

/** What came of it: one of both. A sample that the transform refused has no pixels, as outside. */
struct ScopeDelivery {
    std::uint64_t serial = 0;
    std::shared_ptr<const ScopeResult> result;
    std::optional<ScopeSample> sample;
};

using ScopeResults = Mailbox<ScopeDelivery>;

/** Threads that count one image after the other, all of them the same one. Nobody joins them: a pass
    may hang in a host's transform for as long as it likes. They share this object with its owner and
    touch nothing else but the mailbox. Nothing of a host's is called or destroyed while the lock is
    held. */
class ScopeWorker : public std::enable_shared_from_this<ScopeWorker> {
public:
    /** At most `threads` threads, which begin when there is something to do. */
    ScopeWorker(std::shared_ptr<ScopeResults> results, int threads);
    ~ScopeWorker();

    /** Counts this after what is counted now, in place of what still waits. Any thread. */
    void submit(ScopeJob job);
    /** Gives up what waits and what is counted now: no result of either is put into the mailbox. */
    void cancel();
    /** The same for good; threads end as soon as they can. */
    void close();
    /** Whether nothing waits and nothing is counted. */
    bool isIdle() const;
    /** Grows while something is counted; the same twice: its threads wait for something. */
    std::uint64_t progress() const;

private:
    using Lock = std::unique_lock<std::mutex>;
    struct Running;

    static void run(std::shared_ptr<ScopeWorker> self);
    void startThreads();
    void begin(Lock& lock);
    std::shared_ptr<Running> makePass(const ScopeJob& job);
    void readSample(const ScopeJob& job);
    void findPixel(const ScopeJob& job);
    void fail(std::uint64_t serial, const std::string& error);
    void help(Lock& lock);
    void finish(Running& pass, Lock& lock);
    void deliver(Running& pass);
    bool hasWork() const;

    const std::shared_ptr<ScopeResults> m_results;
    const int m_mostThreads;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::optional<ScopeJob> m_waiting;
    std::shared_ptr<Running> m_running;
    // Of earlier passes, so that their memory is used again.
    std::vector<std::unique_ptr<ScopePass::Scratch>> m_scratches;
    std::atomic<std::uint64_t> m_progress{0};
    int m_threads = 0;
    bool m_isBeginning = false;
    bool m_isClosed = false;
};

} // namespace Kestrel::UI
