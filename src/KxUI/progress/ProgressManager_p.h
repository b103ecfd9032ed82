#pragma once

#include <KxUI/progress/ProgressManager.h>
#include <KxUI/progress/TimeToGo.h>

#include <QTimer>

#include <functional>
#include <mutex>

namespace Kestrel::UI {

/** What is known of a task when it was looked at last. */
struct WatchedTask {
    std::shared_ptr<ProgressTask> task;
    TimeToGo time;
    std::uint32_t version = 0;
    std::int64_t done = 0;
    ProgressTask::State state = ProgressTask::State::Queued;
    double total = -1; ///< that `time` has
    double fraction = -1;
    double lowerSince = -1; ///< when the true fraction fell below the shown one; -1 where not
    std::optional<double> toGo;
    double saidAt = -1; ///< when `toGo` was asked for
    bool isStalled = false;
    double endedAt = 0;
    bool hasParts = false;
    bool isOver = false;
};

/** Where other threads leave tasks for a manager. */
struct TaskInbox {
    std::mutex mutex;
    QObject* receiver = nullptr;
    std::vector<std::shared_ptr<ProgressTask>> tasks;
};

struct ProgressManager::Private {
    explicit Private(ProgressManager* manager);

    void takeNew();
    void list(std::shared_ptr<ProgressTask> task);
    bool look(WatchedTask& watched, double now);
    void follow(WatchedTask& watched, double now);
    void showFraction(WatchedTask& watched, double now);
    void takeState(WatchedTask& watched, ProgressTask::State state, double now);
    void removeOld(double now);
    void remove(std::size_t row);
    void schedule();
    void tellAll();
    const WatchedTask* at(int row) const;

    ProgressManager* const q;
    const std::shared_ptr<TaskInbox> inbox;
    std::function<double()> clock; ///< seconds
    std::vector<std::unique_ptr<WatchedTask>> tasks;
    std::vector<std::shared_ptr<ProgressTask>> failed; ///< to tell of
    QTimer timer;
    std::chrono::milliseconds keptFor{10000};
    bool isIdle = true;
    double overall = -1; ///< fraction() of the manager
};

/** Lets tests say what the time is. */
class ProgressManagerClock {
public:
    static std::function<double()>& of(ProgressManager& manager) { return manager.d->clock; }
};

} // namespace Kestrel::UI
