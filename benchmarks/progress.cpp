#include <KxUI/progress/ProgressManager.h>
#include <KxUI/progress/ProgressTask.h>
#include <KxUI/progress/TimeToGo.h>

#include <support/Bench.h>

#include <QFutureInterface>
#include <QProgressDialog>

#include <memory>
#include <vector>

namespace {

using namespace Kestrel;
using Kestrel::UI::ProgressManager;
using Kestrel::UI::ProgressTask;
using Kestrel::UI::TimeToGo;

constexpr int Steps = 10000;
constexpr int Tasks = 1000;

template <class Report>
void report(benchmark::State& state, Report tell) {
    for (auto _ : state) {
        for (int step = 0; step < Steps; ++step)
            tell(step);
    }
    state.SetItemsProcessed(state.iterations() * Steps);
}

void reportOurs(benchmark::State& state) {
    const auto task = ProgressTask::create(QStringLiteral("Task"));
    task->setTotal(Steps);
    report(state, [&](int step) { task->setDone(step); });
}

void advanceOurs(benchmark::State& state) {
    const auto task = ProgressTask::create(QStringLiteral("Task"));
    task->setTotal(Steps);
    report(state, [&](int) { task->advance(); });
}

void reportFuture(benchmark::State& state) {
    QFutureInterface<void> future;
    future.reportStarted();
    future.setProgressRange(0, Steps);
    report(state, [&](int step) { future.setProgressValue(step); });
    future.reportFinished();
}

void reportDialog(benchmark::State& state) {
    QProgressDialog dialog(QStringLiteral("Task"), QString(), 0, Steps);
    dialog.setMinimumDuration(0);
    dialog.show();
    report(state, [&](int step) { dialog.setValue(step); });
}

// A look at a thousand tasks that all go on: what the interface thread pays ten times a second.
void lookAtTasks(benchmark::State& state) {
    ProgressManager manager;
    std::vector<std::shared_ptr<ProgressTask>> tasks;
    for (int i = 0; i < Tasks; ++i) {
        tasks.push_back(manager.start(QStringLiteral("Task")));
        tasks.back()->setTotal(1 << 30);
    }
    for (auto _ : state) {
        state.PauseTiming();
        for (const auto& task : tasks)
            task->advance();
        state.ResumeTiming();
        manager.look();
    }
}

void estimate(benchmark::State& state) {
    TimeToGo time;
    time.start(0, 1e12);
    double now = 0;
    double done = 0;
    report(state, [&](int) {
        now += 0.1;
        done += 1;
        time.report(now, done);
    });
    benchmark::DoNotOptimize(time.estimate(now));
}

} // namespace

void registerBenchmarks() {
    Bench::add("progress: one report", "ours", reportOurs);
    Bench::add("progress: one report", "QFutureInterface", reportFuture);
    Bench::add("progress: one report", "QProgressDialog", reportDialog);
    Bench::targetRatio("progress: one report", "QFutureInterface", 5);
    Bench::targetRatio("progress: one report", "QProgressDialog", 100);
    // 20 ns, 100 us (a millisecond in a second) and 30 ns.
    Bench::target("progress: one report", 0.02);
    Bench::add("progress: one step more, of many threads'", "ours", advanceOurs);
    Bench::target("progress: one step more, of many threads'", 0.02);
    Bench::add("progress: a look at 1,000 tasks", "ours", lookAtTasks);
    Bench::target("progress: a look at 1,000 tasks", 100);
    Bench::add("progress: the time left, a report", "ours", estimate);
    Bench::target("progress: the time left, a report", 0.03);
}
