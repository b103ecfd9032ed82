#include <KxUI/scopes/ScopeWorker_p.h>

#include <KxUI/scopes/ScopeScratch_p.h>

#include <exception>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace Kestrel::UI {
namespace {

std::string textOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& known) {
        if (const std::string text = known.what(); !text.empty())
            return text;
    } catch (...) {
        // Has no text.
    }
    return "unknown exception";
}

} // namespace

struct ScopeWorker::Running {
    explicit Running(const ScopeJob& job)
        : pass(job.image, job.request)
        , serial(job.serial)
        , units(pass.units()) {}

    ScopePass pass;
    const std::uint64_t serial;
    const int units;
    std::atomic<int> next{0};
    std::atomic<bool> abandoned{false};
    std::atomic<bool> cancelled{false};

    // With the worker locked.
    std::vector<std::unique_ptr<ScopePass::Scratch>> scratches;
    int helpers = 0;
    std::string error;

    // A pass over nothing has to be finished as well.
    bool hasUnits() const { return !abandoned && (next < units || next == 0); }
};

ScopeWorker::ScopeWorker(std::shared_ptr<ScopeResults> results, int threads)
    : m_results(std::move(results))
    , m_mostThreads(std::max(threads, 1)) {}

ScopeWorker::~ScopeWorker() = default;

void ScopeWorker::submit(ScopeJob job) {
    std::optional<ScopeJob> replaced(std::move(job));
    {
        const Lock lock(m_mutex);
        if (m_isClosed)
            return;
        // What waited dies after the lock.
        std::swap(m_waiting, replaced);
        startThreads();
    }
    m_wake.notify_all();
}

void ScopeWorker::startThreads() {
    while (m_threads < m_mostThreads) {
        try {
            std::thread(&ScopeWorker::run, shared_from_this()).detach();
            ++m_threads;
        } catch (const std::system_error&) {
            // Those that are there do the work. Without any, the job waits for the next request.
            return;
        }
    }
}

void ScopeWorker::cancel() {
    std::optional<ScopeJob> dropped;
    const Lock lock(m_mutex);
    std::swap(m_waiting, dropped);
    if (m_running) {
        m_running->abandoned = true;
        m_running->cancelled = true;
    }
    // `dropped` was made before the lock, so it dies after it.
}

void ScopeWorker::close() {
    cancel();
    {
        const Lock lock(m_mutex);
        m_isClosed = true;
    }
    m_wake.notify_all();
}

bool ScopeWorker::isIdle() const {
    const Lock lock(m_mutex);
    return !m_waiting && !m_running && !m_isBeginning;
}

std::uint64_t ScopeWorker::progress() const {
    return m_progress.load(std::memory_order_relaxed);
}

void ScopeWorker::run(std::shared_ptr<ScopeWorker> self) {
    Lock lock(self->m_mutex);
    for (;;) {
        self->m_wake.wait(lock, [&self] { return self->m_isClosed || self->hasWork(); });
        if (self->m_isClosed)
            break;
        if (self->m_running)
            self->help(lock);
        else
            self->begin(lock);
    }
    --self->m_threads;
    // The last one destroys the worker, which must not be locked then.
    lock.unlock();
}

bool ScopeWorker::hasWork() const {
    return m_running ? m_running->hasUnits() : m_waiting && !m_isBeginning;
}

void ScopeWorker::begin(Lock& lock) {
    m_isBeginning = true;
    std::optional<ScopeJob> job;
    std::swap(job, m_waiting);
    lock.unlock();
    std::shared_ptr<Running> pass;
    if (job->find)
        findPixel(*job);
    else if (job->sample)
        readSample(*job);
    else
        pass = makePass(*job);
    job.reset();
    ++m_progress;
    lock.lock();
    m_isBeginning = false;
    m_running = std::move(pass);
    m_wake.notify_all();
}

std::shared_ptr<ScopeWorker::Running> ScopeWorker::makePass(const ScopeJob& job) {
    try {
        return std::make_shared<Running>(job);
    } catch (...) {
        fail(job.serial, textOf(std::current_exception()));
    }
    return nullptr;
}

void ScopeWorker::readSample(const ScopeJob& job) {
    ScopeDelivery delivery;
    delivery.serial = job.serial;
    delivery.sample = job.sample;
    try {
        delivery.sample = scopeSample(job.image, job.request.encoding, job.sample->x, job.sample->y,
                                      job.sample->radius);
    } catch (...) {
        delivery.sample->pixels = -1;
    }
    m_results->put(std::move(delivery));
}

// The answer is a sample without values.
void ScopeWorker::findPixel(const ScopeJob& job) {
    ScopeDelivery delivery;
    delivery.serial = job.serial;
    try {
        delivery.sample =
            findScopePixel(job.image, job.request.encoding, *job.find, job.request.region);
    } catch (...) {
        // A transform that refuses finds nothing.
    }
    m_results->put(std::move(delivery));
}

void ScopeWorker::fail(std::uint64_t serial, const std::string& error) {
    auto result = std::make_shared<ScopeResult>();
    result->serial = serial;
    result->error = error;
    m_results->put({serial, std::move(result), {}});
}

void ScopeWorker::help(Lock& lock) {
    std::shared_ptr<Running> pass = m_running;
    ++pass->helpers;
    std::unique_ptr<ScopePass::Scratch> scratch;
    if (!m_scratches.empty()) {
        scratch = std::move(m_scratches.back());
        m_scratches.pop_back();
    }
    lock.unlock();
    std::string error;
    try {
        pass->pass.prepare(scratch);
        for (int unit = pass->next++; unit < pass->units && !pass->abandoned; unit = pass->next++) {
            pass->pass.count(unit, *scratch);
            ++m_progress;
        }
    } catch (...) {
        error = textOf(std::current_exception());
        pass->abandoned = true;
    }
    lock.lock();
    if (!error.empty() && pass->error.empty())
        pass->error = error;
    if (scratch)
        pass->scratches.push_back(std::move(scratch));
    if (--pass->helpers == 0 && m_running == pass)
        finish(*pass, lock);
    // Image and transform may be a host's to destroy.
    lock.unlock();
    pass.reset();
    lock.lock();
}

// Called by the last of those who help.
void ScopeWorker::finish(Running& pass, Lock& lock) {
    // Nobody helps from now on; and the next one does not begin before this one is told.
    pass.abandoned = true;
    lock.unlock();
    if (!pass.cancelled)
        deliver(pass);
    lock.lock();
    for (auto& each : pass.scratches)
        m_scratches.push_back(std::move(each));
    pass.scratches.clear();
    m_running.reset();
    m_wake.notify_all();
}

void ScopeWorker::deliver(Running& pass) {
    if (!pass.error.empty()) {
        fail(pass.serial, pass.error);
        return;
    }
    std::vector<ScopePass::Scratch*> all;
    for (const auto& each : pass.scratches)
        all.push_back(each.get());
    try {
        auto result = std::make_shared<ScopeResult>(pass.pass.finish(all));
        result->serial = pass.serial;
        m_results->put({pass.serial, std::move(result), {}});
    } catch (...) {
        fail(pass.serial, textOf(std::current_exception()));
    }
}

} // namespace Kestrel::UI
