#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/files/platform/Directory_p.h>

#include <support/Plain.h>

#include <thread>

using namespace Kestrel::UI;
using namespace std::chrono_literals;
using Lane = WorkerPool::Lane;

namespace {

// Pools and gates stay: threads of theirs may still be about when a test has ended.
WorkerPool& poolOf(const WorkerPool::Limits& limits) {
    static auto* const all = new std::vector<WorkerPool*>;
    all->push_back(new WorkerPool(limits));
    return *all->back();
}

// What jobs stop at until it is opened, as at a server that is gone.
class Gate {
public:
    static Gate& make() {
        static auto* const all = new std::vector<Gate*>;
        all->push_back(new Gate);
        return *all->back();
    }

    void wait() {
        std::unique_lock<std::mutex> lock(m_mutex);
        ++m_waiting;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_isOpen; });
        --m_waiting;
        ++m_passed;
        m_changed.notify_all();
    }

    void open() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isOpen = true;
        m_changed.notify_all();
    }

    bool isReached(int waiting) {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, 20s, [&] { return m_waiting >= waiting; });
    }

    bool isPassed(int passed, std::chrono::milliseconds limit = 20s) {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, limit, [&] { return m_passed >= passed; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_waiting = 0;
    int m_passed = 0;
    bool m_isOpen = false;
};

bool eventually(const std::function<bool()>& condition) {
    for (int i = 0; i < 4000; ++i) {
        if (condition())
            return true;
        std::this_thread::sleep_for(5ms);
    }
    return false;
}

WorkerPool::Job waitAt(Gate& gate) {
    return [&gate](Ticket&) { gate.wait(); };
}

} // namespace

KXUI_PLAIN_TEST(WorkerPoolTest, stuckFoldersLeaveRoom) {
    WorkerPool::Limits limits;
    limits.running = 4;
    limits.stuckAfter = 30ms;
    WorkerPool& pool = poolOf(limits);
    Gate& gate = Gate::make();
    for (int i = 0; i < 8; ++i)
        CHECK(pool.post(Lane::Names, "/dead/" + std::to_string(i), waitAt(gate)));
    CHECK(gate.isReached(8));
    CHECK(eventually([&] { return pool.stuckDirectories().size() == 8; }));
    Gate& good = Gate::make();
    good.open();
    pool.post(Lane::Names, "/good", waitAt(good));
    CHECK(good.isPassed(1));
    // What lies in a stuck folder waits for it, and takes no thread.
    Gate& behind = Gate::make();
    behind.open();
    pool.post(Lane::Names, "/dead/3", waitAt(behind));
    const auto left = pool.post(Lane::Names, "/dead/3/below", waitAt(behind));
    pool.post(Lane::Names, "/dead/30", waitAt(good));
    CHECK(good.isPassed(2));
    CHECK(!behind.isPassed(1, 30ms));
    left->cancelled = true;
    gate.open();
    CHECK(behind.isPassed(1) && gate.isPassed(8));
    CHECK(eventually([&] { return pool.stuckDirectories().empty(); }));
}

#if !defined(_WIN32)
// A folder counts for the file system that it was found to lie on.
KXUI_PLAIN_TEST(WorkerPoolTest, linksLeadElsewhere) {
    WorkerPool::Limits limits;
    limits.perMount = 1;
    limits.stuckAfter = std::chrono::hours(1);
    WorkerPool& pool = poolOf(limits);
    Gate& passing = Gate::make();
    passing.open();
    pool.post(Lane::Names, "/link", [&](Ticket& ticket) {
        Platform::DirectoryHandle directory;
        Platform::EntryStatus status;
        CHECK(directory.open("/proc") == 0 && directory.status(status) == 0);
        pool.setDevice(ticket, "/link", status.device);
        passing.wait();
    });
    CHECK(passing.isPassed(1));
    Gate& gate = Gate::make();
    pool.post(Lane::Names, "/proc/a", waitAt(gate));
    CHECK(gate.isReached(1));
    pool.post(Lane::Names, "/link/below", waitAt(passing));
    pool.post(Lane::Names, "/other", waitAt(passing));
    CHECK(passing.isPassed(2));
    CHECK(!passing.isPassed(3, 30ms));
    gate.open();
    CHECK(passing.isPassed(3));
}
#endif

KXUI_PLAIN_TEST(WorkerPoolTest, limitsAndOrder) {
    WorkerPool::Limits limits;
    limits.running = 2;
    limits.threads = 3;
    limits.stuckAfter = std::chrono::hours(1);
    WorkerPool& pool = poolOf(limits);
    Gate& gate = Gate::make();
    for (int i = 0; i < 2; ++i)
        pool.post(Lane::Files, "/x", waitAt(gate));
    CHECK(gate.isReached(2));
    std::mutex mutex;
    std::string order;
    const auto note = [&](char each) {
        return [&, each](Ticket&) {
            const std::lock_guard<std::mutex> lock(mutex);
            order += each;
        };
    };
    pool.setThreadLimit(1);
    pool.post(Lane::Files, "/x", note('f'));
    pool.post(Lane::Status, "/x", note('s'));
    const auto given = pool.post(Lane::Names, "/x", note('!'));
    pool.post(Lane::Names, "/x", note('n'));
    pool.post(Lane::Names, "", note('m'));
    given->cancelled = true;
    std::this_thread::sleep_for(20ms);
    COMPARE(order, "");
    gate.open();
    CHECK(eventually([&] {
        const std::lock_guard<std::mutex> lock(mutex);
        return order.size() == 4;
    }));
    COMPARE(order, "nmsf");
}

KXUI_PLAIN_TEST(WorkerPoolTest, endOfThreads) {
    WorkerPool::Limits limits;
    limits.threads = 3;
    limits.stuckAfter = 20ms;
    limits.idle = 20ms;
    WorkerPool& pool = poolOf(limits);
    Gate& gate = Gate::make();
    for (int i = 0; i < 3; ++i)
        pool.post(Lane::Names, "/" + std::to_string(i), waitAt(gate));
    CHECK(gate.isReached(3));
    // Refused at once when all that may be are stuck.
    CHECK(eventually([&] { return pool.stuckDirectories().size() == 3; }));
    CHECK(!pool.post(Lane::Names, "/y", [](Ticket&) {}));
    gate.open();
    CHECK(eventually([&] { return pool.threadCount() == 0; }));
    Gate& again = Gate::make();
    again.open();
    CHECK(pool.post(Lane::Names, "/y", waitAt(again)));
    CHECK(again.isPassed(1));
    // A job that throws ends alone.
    pool.post(Lane::Names, "/y", [](Ticket&) { throw std::bad_alloc(); });
    pool.post(Lane::Names, "/y", waitAt(again));
    CHECK(again.isPassed(2));
    CHECK(eventually([&] { return pool.threadCount() == 0; }));
}
