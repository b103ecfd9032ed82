#include <KxUI/progress/ProgressManager_p.h>

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

using State = ProgressTask::State;

constexpr int pace = 100;          // milliseconds
constexpr double saidFor = 1;      // seconds that a time stands
constexpr double smallStep = 0.01; // of a bar, that is not worth going back
constexpr double lowerFor = 1;     // seconds after which it does
constexpr double visibleStep = 1e-3;

bool hasEnded(State state) {
    return state >= State::Finished;
}

} // namespace

ProgressManager::Private::Private(ProgressManager* manager)
    : q(manager)
    , inbox(std::make_shared<TaskInbox>())
    , clock([] {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration<double>(now).count();
    }) {
    inbox->receiver = manager;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, q, &ProgressManager::look);
}

const WatchedTask* ProgressManager::Private::at(int row) const {
    return row < 0 || row >= static_cast<int>(tasks.size()) ? nullptr
                                                            : tasks[std::size_t(row)].get();
}

void ProgressManager::Private::takeNew() {
    std::vector<std::shared_ptr<ProgressTask>> added;
    {
        const std::lock_guard<std::mutex> lock(inbox->mutex);
        added.swap(inbox->tasks);
    }
    const QPointer<ProgressManager> alive(q);
    for (auto& task : added) {
        if (alive)
            list(std::move(task));
    }
}

void ProgressManager::Private::list(std::shared_ptr<ProgressTask> task) {
    if (q->rowOf(task.get()) >= 0)
        return;
    auto watched = std::make_unique<WatchedTask>();
    watched->task = std::move(task);
    tasks.push_back(std::move(watched));
    look(*tasks.back(), clock());
    const QPointer<ProgressManager> alive(q);
    Q_EMIT q->taskAdded(static_cast<int>(tasks.size()) - 1);
    if (alive)
        tellAll();
    if (alive)
        schedule();
}

// Whether something of it is worth showing anew.
bool ProgressManager::Private::look(WatchedTask& watched, double now) {
    const std::uint32_t version = watched.task->version();
    const std::int64_t done = watched.task->done();
    const bool isSame = version == watched.version && done == watched.done && !watched.hasParts &&
                        watched.lowerSince < 0;
    const bool saysTime = watched.state == State::Running && now - watched.saidAt >= saidFor;
    if (isSame && !saysTime && watched.saidAt >= 0)
        return false;
    const bool isOther = version != watched.version;
    watched.version = version;
    watched.done = done;
    const double fraction = watched.fraction;
    const State state = watched.task->state();
    if (state != watched.state || watched.saidAt < 0)
        takeState(watched, state, now);
    follow(watched, now);
    showFraction(watched, now);
    if (saysTime || watched.saidAt < 0) {
        watched.saidAt = now;
        watched.toGo = watched.time.shown(now);
        watched.isStalled = state == State::Running && watched.time.isStalled(now);
    }
    return isOther || saysTime || state != watched.state ||
           std::fabs(fraction - watched.fraction) >= visibleStep;
}

void ProgressManager::Private::takeState(WatchedTask& watched, State state, double now) {
    const State old = std::exchange(watched.state, state);
    if (state == State::Running && (old == State::Queued || watched.saidAt < 0))
        watched.time.start(now, std::max(0.0, watched.total));
    if (state == State::Paused)
        watched.time.pause(now);
    else if (old == State::Paused)
        watched.time.resume(now);
    if (!hasEnded(state))
        return;
    watched.isOver = true;
    watched.endedAt = now;
    if (state == State::Failed)
        failed.push_back(watched.task);
}

// Tasks with parts count thousandths of the whole.
void ProgressManager::Private::follow(WatchedTask& watched, double now) {
    watched.hasParts = watched.hasParts || !watched.task->children().empty();
    constexpr double thousandths = 1000;
    double total = double(watched.task->total());
    double done = double(watched.done);
    if (watched.hasParts) {
        const double fraction = watched.task->fraction();
        total = fraction < 0 ? 0 : thousandths;
        done = std::max(0.0, fraction) * thousandths;
    }
    if (total != watched.total) {
        watched.total = total;
        watched.time.setTotal(now, total);
    }
    if (watched.state == State::Running)
        watched.time.report(now, done);
}

void ProgressManager::Private::showFraction(WatchedTask& watched, double now) {
    const double fraction = watched.task->fraction();
    const bool isLower = fraction >= 0 && fraction < watched.fraction;
    if (!isLower) {
        watched.lowerSince = -1;
        watched.fraction = fraction;
        return;
    }
    if (watched.lowerSince < 0)
        watched.lowerSince = now;
    if (watched.fraction - fraction > smallStep && now - watched.lowerSince >= lowerFor) {
        watched.fraction = fraction;
        watched.lowerSince = -1;
    }
}

void ProgressManager::Private::tellAll() {
    const QPointer<ProgressManager> alive(q);
    double sum = 0;
    int running = 0;
    int known = 0;
    for (const auto& watched : tasks) {
        running += watched->isOver ? 0 : 1;
        known += !watched->isOver && watched->fraction >= 0 ? 1 : 0;
        sum += watched->isOver ? 0 : std::max(0.0, watched->fraction);
    }
    const double all = known == 0 ? -1 : sum / running;
    if (std::fabs(std::exchange(overall, all) - all) >= visibleStep)
        Q_EMIT q->fractionChanged(all);
    if (!alive)
        return;
    if (std::exchange(isIdle, running == 0) != (running == 0))
        Q_EMIT q->idleChanged(running == 0);
    while (alive && !failed.empty()) {
        const auto task = failed.front();
        failed.erase(failed.begin());
        const QString why = q->statusText(q->rowOf(task.get()));
        Q_EMIT q->taskFailed(task->title(), why);
    }
}

void ProgressManager::Private::removeOld(double now) {
    const double kept = double(keptFor.count()) / 1000;
    const QPointer<ProgressManager> alive(q);
    for (std::size_t row = tasks.size(); alive && row-- > 0;) {
        if (row >= tasks.size())
            continue; // who was told of another removed some
        const WatchedTask& watched = *tasks[row];
        if (watched.isOver && watched.state != State::Failed && now - watched.endedAt >= kept)
            remove(row);
    }
}

void ProgressManager::Private::remove(std::size_t row) {
    const QPointer<ProgressManager> alive(q);
    const ProgressTask* const task = tasks[row]->task.get();
    Q_EMIT q->taskAboutToBeRemoved(static_cast<int>(row));
    if (!alive || row >= tasks.size() || tasks[row]->task.get() != task)
        return;
    const std::unique_ptr<WatchedTask> removed = std::move(tasks[row]);
    tasks.erase(tasks.begin() + static_cast<std::ptrdiff_t>(row));
    Q_EMIT q->taskRemoved(static_cast<int>(row));
}

// Nothing ticks while nothing goes on.
void ProgressManager::Private::schedule() {
    bool isRunning = false;
    bool isLeaving = false;
    for (const auto& watched : tasks) {
        isRunning = isRunning || !watched->isOver;
        isLeaving = isLeaving || (watched->isOver && watched->state != State::Failed);
    }
    if (isRunning)
        timer.start(pace);
    else if (isLeaving)
        timer.start(static_cast<int>(std::min<std::int64_t>(keptFor.count() + 1, 60000)));
    else
        timer.stop();
}

} // namespace Kestrel::UI
