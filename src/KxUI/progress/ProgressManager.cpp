#include <KxUI/progress/ProgressManager.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/progress/ProgressManager_p.h>
#include <KxUI/progress/ProgressText.h>

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

ProgressManager* theManager = nullptr;

void destroyManager() {
    delete std::exchange(theManager, nullptr);
}

QEvent::Type newTaskEvent() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

std::chrono::seconds secondsOf(double seconds) {
    return std::chrono::seconds(static_cast<std::int64_t>(seconds + 0.5));
}

} // namespace

ProgressManager* ProgressManager::instance() {
    if (!theManager) {
        theManager = new ProgressManager;
        qAddPostRoutine(destroyManager);
    }
    return theManager;
}

ProgressManager::ProgressManager(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this)) {}

ProgressManager::~ProgressManager() {
    {
        const std::lock_guard<std::mutex> lock(d->inbox->mutex);
        d->inbox->receiver = nullptr;
        for (auto& task : d->inbox->tasks)
            d->tasks.push_back(std::make_unique<WatchedTask>()), d->tasks.back()->task = task;
    }
    cancelAll();
    if (theManager == this)
        theManager = nullptr;
}

std::shared_ptr<ProgressTask> ProgressManager::start(const QString& title, std::uint8_t abilities) {
    KXUI_INTERFACE_THREAD(this);
    std::shared_ptr<ProgressTask> task = ProgressTask::create(title, abilities);
    d->list(task->watched());
    return task;
}

void ProgressManager::add(const std::shared_ptr<ProgressTask>& task) {
    if (!task)
        return;
    const std::lock_guard<std::mutex> lock(d->inbox->mutex);
    d->inbox->tasks.push_back(task->watched());
    if (d->inbox->tasks.size() == 1 && d->inbox->receiver)
        QCoreApplication::postEvent(d->inbox->receiver, new QEvent(newTaskEvent()));
}

int ProgressManager::count() const {
    return static_cast<int>(d->tasks.size());
}

std::shared_ptr<ProgressTask> ProgressManager::task(int row) const {
    const WatchedTask* const watched = d->at(row);
    return watched ? watched->task : nullptr;
}

std::vector<std::shared_ptr<ProgressTask>> ProgressManager::tasks() const {
    std::vector<std::shared_ptr<ProgressTask>> all;
    for (const auto& watched : d->tasks)
        all.push_back(watched->task);
    return all;
}

int ProgressManager::rowOf(const ProgressTask* task) const {
    for (std::size_t row = 0; row < d->tasks.size(); ++row) {
        if (d->tasks[row]->task.get() == task)
            return static_cast<int>(row);
    }
    return -1;
}

bool ProgressManager::isIdle() const {
    return d->isIdle;
}

int ProgressManager::runningCount() const {
    return static_cast<int>(std::count_if(d->tasks.begin(), d->tasks.end(),
                                          [](const auto& watched) { return !watched->isOver; }));
}

double ProgressManager::shownFraction(int row) const {
    const WatchedTask* const watched = d->at(row);
    return watched ? watched->fraction : -1;
}

double ProgressManager::fraction() const {
    return d->overall;
}

std::optional<std::chrono::seconds> ProgressManager::timeToGo(int row) const {
    const WatchedTask* const watched = d->at(row);
    if (!watched || !watched->toGo || watched->state != ProgressTask::State::Running)
        return {};
    return secondsOf(*watched->toGo);
}

std::optional<std::chrono::seconds> ProgressManager::stalledFor(int row) const {
    const WatchedTask* const watched = d->at(row);
    if (!watched || !watched->isStalled || watched->state != ProgressTask::State::Running)
        return {};
    return secondsOf(watched->time.silence(d->clock()));
}

QString ProgressManager::statusText(int row) const {
    const WatchedTask* const watched = d->at(row);
    if (!watched)
        return {};
    if (watched->state == ProgressTask::State::Failed) {
        const QString why = watched->task->error();
        return QCoreApplication::translate("ProgressTask", why.toUtf8().constData());
    }
    if (watched->state != ProgressTask::State::Running)
        return ProgressText::state(watched->state);
    if (const auto stalled = stalledFor(row))
        return tr("No progress for %1").arg(ProgressText::duration(double(stalled->count())));
    return watched->toGo ? ProgressText::timeToGo(*watched->toGo) : QString();
}

std::chrono::milliseconds ProgressManager::keptFor() const {
    return d->keptFor;
}

void ProgressManager::setKeptFor(std::chrono::milliseconds time) {
    KXUI_INTERFACE_THREAD(this);
    d->keptFor = std::max(time, std::chrono::milliseconds(0));
    d->schedule();
}

void ProgressManager::acknowledge(const ProgressTask* task) {
    KXUI_INTERFACE_THREAD(this);
    const int row = rowOf(task);
    if (row >= 0 && d->tasks[std::size_t(row)]->isOver)
        d->remove(std::size_t(row));
}

void ProgressManager::cancelAll() {
    // Handlers of the hosts may do what they like to the list.
    for (const auto& task : tasks())
        task->cancel();
}

void ProgressManager::look() {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<ProgressManager> alive(this);
    d->takeNew();
    if (!alive)
        return;
    const double now = d->clock();
    // Neighbours that have changed are told of by one signal.
    std::vector<std::pair<int, int>> ranges;
    for (std::size_t i = 0; i < d->tasks.size(); ++i) {
        if (d->tasks[i]->isOver || !d->look(*d->tasks[i], now))
            continue;
        const int row = static_cast<int>(i);
        if (!ranges.empty() && ranges.back().second == row - 1)
            ranges.back().second = row;
        else
            ranges.emplace_back(row, row);
    }
    const int count = this->count();
    for (const auto& [first, last] : ranges) {
        // Who is told may change the list.
        if (alive && count == this->count())
            Q_EMIT taskChanged(first, last);
    }
    if (alive)
        d->tellAll();
    if (alive)
        d->removeOld(now);
    if (alive)
        d->schedule();
}

bool ProgressManager::event(QEvent* event) {
    if (event->type() != newTaskEvent())
        return QObject::event(event);
    look();
    return true;
}

} // namespace Kestrel::UI
