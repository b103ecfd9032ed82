#include <KxUI/progress/ProgressTask.h>

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace Kestrel::UI {
namespace {

using Clock = std::chrono::steady_clock;
using State = ProgressTask::State;

// A line of the processor's memory, so that two threads do not wait for each other's.
constexpr std::size_t cacheLine = 64;

bool hasEnded(State state) {
    return state >= State::Finished;
}

// The same in every language until it is shown: workers do not translate.
const char* const noResult = QT_TRANSLATE_NOOP("ProgressTask", "The work ended without a result.");

} // namespace

struct ProgressTask::Private {
    struct Part {
        std::shared_ptr<ProgressTask> task;
        double weight;
    };

    // Written by the work all the time.
    alignas(cacheLine) std::atomic<std::int64_t> done{0};
    // Written rarely, read all the time.
    alignas(cacheLine) std::atomic<State> state{State::Queued};
    std::atomic<bool> isCancelled{false};
    std::atomic<bool> isPaused{false};
    std::atomic<bool> hasParts{false};
    std::atomic<Unit> unit{Unit::Steps};
    std::atomic<std::int64_t> total{0};
    std::atomic<std::uint32_t> version{0};
    std::uint8_t abilities = NoAbility;
    QString title;

    mutable std::mutex mutex; ///< of all below
    std::condition_variable wake;
    QString detail;
    QString error;
    std::vector<Part> parts;
    std::function<void()> handler;
    Clock::time_point since;
    std::chrono::nanoseconds worked{0};

    void changed() { version.fetch_add(1, std::memory_order_release); }
    void enter(State next);
    bool end(State next, const QString& why);
    void start();
    void abandon();
    std::vector<Part> copyOfParts() const {
        const std::lock_guard<std::mutex> lock(mutex);
        return parts;
    }
};

// With the mutex locked. Time counts while something is done.
void ProgressTask::Private::enter(State next) {
    const auto counts = [](State each) {
        return each == State::Running || each == State::Cancelling;
    };
    const State old = state.load(std::memory_order_relaxed);
    const Clock::time_point now = Clock::now();
    if (counts(old) && since != Clock::time_point())
        worked += now - since;
    since = counts(next) && (old != State::Queued || next == State::Running) ? now
                                                                             : Clock::time_point();
    state.store(next, std::memory_order_release);
    changed();
}

bool ProgressTask::Private::end(State next, const QString& why) {
    std::function<void()> dropped; // dies after the lock
    const std::lock_guard<std::mutex> lock(mutex);
    if (hasEnded(state.load(std::memory_order_relaxed)))
        return false;
    error = why;
    dropped.swap(handler);
    isPaused = false;
    enter(next);
    wake.notify_all();
    return true;
}

void ProgressTask::Private::start() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (state.load(std::memory_order_relaxed) == State::Queued)
        enter(isPaused ? State::Paused : State::Running);
}

void ProgressTask::Private::abandon() {
    if (isCancelled.load())
        end(State::Cancelled, QString());
    else
        end(State::Failed, QString::fromLatin1(noResult));
}

ProgressTask::ProgressTask()
    : d(std::make_unique<Private>()) {}

ProgressTask::~ProgressTask() = default;

std::shared_ptr<ProgressTask> ProgressTask::create(const QString& title, std::uint8_t abilities) {
    const std::shared_ptr<ProgressTask> task(new ProgressTask);
    task->d->title = title;
    task->d->abilities = abilities;
    // A count of its own, by which it is seen that nobody works any more.
    return {task.get(), [task](ProgressTask*) { task->d->abandon(); }};
}

std::shared_ptr<ProgressTask> ProgressTask::addChild(const QString& title, double weight) {
    const std::shared_ptr<ProgressTask> child = create(title, d->abilities);
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        d->parts.push_back({child->watched(), weight > 0 ? weight : 1.0});
        d->hasParts = true;
        d->changed();
    }
    if (isCancelled())
        child->cancel();
    else if (d->isPaused)
        child->pause();
    return child;
}

void ProgressTask::start() {
    d->start();
}

void ProgressTask::setTotal(std::int64_t total) {
    if (d->total.exchange(total, std::memory_order_relaxed) != total)
        d->changed();
}

void ProgressTask::setDone(std::int64_t done) {
    d->done.store(done, std::memory_order_relaxed);
    if (d->state.load(std::memory_order_relaxed) == State::Queued)
        d->start();
}

void ProgressTask::advance(std::int64_t steps) {
    d->done.fetch_add(steps, std::memory_order_relaxed);
    if (d->state.load(std::memory_order_relaxed) == State::Queued)
        d->start();
}

void ProgressTask::setUnit(Unit unit) {
    d->unit.store(unit, std::memory_order_relaxed);
    d->changed();
}

void ProgressTask::setDetail(const QString& detail) {
    QString old = detail; // dies after the lock
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->detail.swap(old);
    d->changed();
}

bool ProgressTask::isCancelled() const noexcept {
    return d->isCancelled.load(std::memory_order_relaxed);
}

bool ProgressTask::waitWhilePaused() {
    if (d->isPaused.load(std::memory_order_relaxed)) {
        std::unique_lock<std::mutex> lock(d->mutex);
        d->wake.wait(lock, [this] { return !d->isPaused || d->isCancelled; });
    }
    return !isCancelled();
}

void ProgressTask::finish() {
    d->end(State::Finished, QString());
}

void ProgressTask::fail(const QString& why) {
    d->end(State::Failed, why);
}

void ProgressTask::finishCancelled() {
    d->end(State::Cancelled, QString());
}

QString ProgressTask::title() const {
    return d->title;
}

QString ProgressTask::detail() const {
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->detail;
}

QString ProgressTask::error() const {
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->error;
}

ProgressTask::State ProgressTask::state() const noexcept {
    return d->state.load(std::memory_order_acquire);
}

bool ProgressTask::isEnded() const noexcept {
    return hasEnded(state());
}

std::uint8_t ProgressTask::abilities() const noexcept {
    return d->abilities;
}

ProgressTask::Unit ProgressTask::unit() const noexcept {
    return d->unit.load(std::memory_order_relaxed);
}

std::int64_t ProgressTask::done() const noexcept {
    return d->done.load(std::memory_order_relaxed);
}

std::int64_t ProgressTask::total() const noexcept {
    return d->total.load(std::memory_order_relaxed);
}

double ProgressTask::fraction() const {
    if (state() == State::Finished)
        return 1;
    if (!d->hasParts.load(std::memory_order_acquire)) {
        const std::int64_t all = total();
        return all <= 0 ? -1 : std::clamp(double(done()) / double(all), 0.0, 1.0);
    }
    double sum = 0;
    double weights = 0;
    for (const Private::Part& part : d->copyOfParts()) {
        const double fraction = part.task->fraction();
        // What waits has done nothing, however much it will be.
        if (fraction < 0 && part.task->state() != State::Queued)
            return -1;
        sum += part.weight * std::max(0.0, fraction);
        weights += part.weight;
    }
    return std::clamp(sum / weights, 0.0, 1.0);
}

std::chrono::nanoseconds ProgressTask::workingTime() const {
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (d->since == Clock::time_point())
        return d->worked;
    return d->worked + (Clock::now() - d->since);
}

std::vector<std::shared_ptr<ProgressTask>> ProgressTask::children() const {
    std::vector<std::shared_ptr<ProgressTask>> tasks;
    if (!d->hasParts.load(std::memory_order_acquire))
        return tasks;
    for (const Private::Part& part : d->copyOfParts())
        tasks.push_back(part.task);
    return tasks;
}

std::shared_ptr<ProgressTask> ProgressTask::watched() {
    return shared_from_this();
}

void ProgressTask::cancel() {
    std::function<void()> handler;
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        const State state = d->state.load(std::memory_order_relaxed);
        if (!(d->abilities & Cancellable) || hasEnded(state) || state == State::Cancelling)
            return;
        d->isCancelled = true;
        d->isPaused = false;
        handler.swap(d->handler);
        d->enter(State::Cancelling);
        d->wake.notify_all();
    }
    for (const Private::Part& part : d->copyOfParts())
        part.task->cancel();
    if (handler)
        handler();
}

void ProgressTask::pause() {
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        const State state = d->state.load();
        if (!(d->abilities & Pausable) || (state != State::Running && state != State::Queued))
            return;
        // What has not begun waits when it begins.
        d->isPaused = true;
        if (state == State::Running)
            d->enter(State::Paused);
    }
    for (const Private::Part& part : d->copyOfParts())
        part.task->pause();
}

void ProgressTask::resume() {
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        if (!d->isPaused)
            return;
        d->isPaused = false;
        if (d->state.load() == State::Paused)
            d->enter(State::Running);
        d->wake.notify_all();
    }
    for (const Private::Part& part : d->copyOfParts())
        part.task->resume();
}

void ProgressTask::setCancelHandler(std::function<void()> handler) {
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        const State state = d->state.load(std::memory_order_relaxed);
        if (state != State::Cancelling) {
            if (!hasEnded(state))
                d->handler.swap(handler);
            return; // what was there before dies after the lock
        }
    }
    if (handler)
        handler();
}

std::uint32_t ProgressTask::version() const noexcept {
    return d->version.load(std::memory_order_acquire);
}

ProgressScope::ProgressScope(std::shared_ptr<ProgressTask> task)
    : m_task(std::move(task)) {
    if (m_task)
        m_task->start();
}

ProgressScope::~ProgressScope() {
    if (!m_task || m_task->isEnded())
        return;
    if (m_task->isCancelled())
        m_task->finishCancelled();
    else
        m_task->fail(QString::fromLatin1(noResult));
}

void ProgressScope::dismiss() {
    if (!m_task)
        return;
    if (m_task->isCancelled())
        m_task->finishCancelled();
    else
        m_task->finish();
}

} // namespace Kestrel::UI
