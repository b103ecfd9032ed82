#include <KxUI/progress/ProgressTask.h>

#include <support/Plain.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace Kestrel::UI;
using State = ProgressTask::State;

namespace {

std::shared_ptr<ProgressTask> taskOf(int abilities = ProgressTask::Cancellable) {
    return ProgressTask::create(QStringLiteral("t"), static_cast<std::uint8_t>(abilities));
}

} // namespace

// Eight threads work, and others watch, pause and cancel meanwhile.
KXUI_PLAIN_TEST(ProgressTaskTest, eightThreads) {
    auto task = taskOf(ProgressTask::Cancellable | ProgressTask::Pausable);
    constexpr int steps = 20000;
    task->setTotal(8 * steps);
    std::atomic<bool> isOver{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&, part = task->addChild(QStringLiteral("part"))] {
            part->setTotal(steps);
            for (int step = 0; step < steps; ++step) {
                if (!task->waitWhilePaused())
                    break;
                task->advance();
                part->setDone(step + 1);
                if (step % 512 == 0)
                    part->setDetail(QString::number(step));
            }
            part->finish();
        });
    std::thread watcher([&, watched = task->watched()] {
        while (!isOver) {
            if (watched->fraction() > 1 || watched->children().size() > 9)
                std::abort();
            for (const auto& child : watched->children())
                child->detail();
            watched->workingTime();
            watched->version();
        }
    });
    for (int i = 0; i < 200; ++i) {
        task->pause();
        task->resume();
    }
    task->setCancelHandler([] {});
    for (std::thread& thread : threads)
        thread.join();
    COMPARE(task->done(), 8 * steps);
    COMPARE(task->fraction(), 1.0);
    std::vector<std::thread> ends;
    for (int i = 0; i < 8; ++i)
        ends.emplace_back([&, i] {
            if (i == 0)
                task->cancel();
            else if (i % 2 == 0)
                task->finish();
            else
                task->fail(QStringLiteral("no"));
        });
    for (std::thread& thread : ends)
        thread.join();
    isOver = true;
    watcher.join();
    CHECK(task->isEnded() && task->state() != State::Cancelled);
    CHECK((task->state() == State::Failed) == !task->error().isEmpty());
}

KXUI_PLAIN_TEST(ProgressTaskTest, states) {
    auto task = taskOf(ProgressTask::Cancellable | ProgressTask::Pausable);
    CHECK(task->state() == State::Queued && task->fraction() < 0);
    task->pause();
    CHECK(task->state() == State::Queued);
    task->setDone(5);
    CHECK(task->state() == State::Paused);
    CHECK(task->addChild(QStringLiteral("late"))->state() == State::Queued);
    auto part = task->addChild(QStringLiteral("part"));
    part->start();
    CHECK(part->state() == State::Paused);
    task->resume();
    CHECK(part->state() == State::Running && part->waitWhilePaused());
    task = taskOf(ProgressTask::Cancellable | ProgressTask::Pausable);
    task->setDone(5);
    task->setTotal(10);
    CHECK(task->state() == State::Running && task->fraction() == 0.5);
    task->setDone(20);
    CHECK(task->fraction() == 1);
    task->pause();
    const auto worked = task->workingTime();
    CHECK(task->state() == State::Paused && task->workingTime() == worked);
    int handled = 0;
    task->setCancelHandler([&] { ++handled; });
    task->cancel();
    task->cancel();
    CHECK(task->state() == State::Cancelling && task->isCancelled() && handled == 1);
    task->resume();
    CHECK(task->state() == State::Cancelling && !task->waitWhilePaused());
    task->setCancelHandler([&] { ++handled; });
    COMPARE(handled, 2);
    // It was quicker than who cancelled it.
    task->finish();
    task->fail(QStringLiteral("late"));
    CHECK(task->state() == State::Finished && task->error().isEmpty());

    auto stubborn = taskOf(ProgressTask::NoAbility);
    stubborn->start();
    stubborn->cancel();
    stubborn->pause();
    CHECK(stubborn->state() == State::Running && !stubborn->isCancelled());
}

KXUI_PLAIN_TEST(ProgressTaskTest, partsCountByWeight) {
    auto task = taskOf();
    auto small = task->addChild(QStringLiteral("a"), 1);
    auto large = task->addChild(QStringLiteral("b"), 3);
    CHECK(task->fraction() == 0);
    small->finish();
    COMPARE(task->fraction(), 0.25);
    large->start();
    CHECK(task->fraction() < 0); // nobody knows how much that is
    large->setTotal(2);
    large->setDone(1);
    COMPARE(task->fraction(), 0.625);
    task->cancel();
    CHECK(large->isCancelled());
    CHECK(task->addChild(QStringLiteral("late"))->isCancelled());
}

// Work that goes without a word has ended, too; who watches does not keep it alive.
KXUI_PLAIN_TEST(ProgressTaskTest, workThatIsGone) {
    std::shared_ptr<ProgressTask> watched;
    for (const bool isCancelled : {false, true}) {
        {
            auto task = taskOf();
            watched = task->watched();
            std::thread([work = task] { work->advance(); }).join();
            CHECK(!watched->isEnded());
            if (isCancelled)
                watched->cancel();
        }
        CHECK(watched->state() == (isCancelled ? State::Cancelled : State::Failed));
        CHECK(watched->error().isEmpty() == isCancelled);
    }
    auto task = taskOf();
    try {
        ProgressScope scope(task);
        throw 1;
    } catch (int) {
    }
    CHECK(task->state() == State::Failed);
    auto done = taskOf();
    {
        ProgressScope scope(done);
        scope.dismiss();
    }
    CHECK(done->state() == State::Finished);
}
