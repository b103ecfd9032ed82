// Work on other threads, shown in a status bar and a dialog, with the time it still takes.

#include <KxUI/progress/ProgressDialog.h>
#include <KxUI/progress/ProgressManager.h>
#include <KxUI/progress/ProgressStrip.h>

#include <QApplication>
#include <QMainWindow>
#include <QStatusBar>

#include <chrono>
#include <thread>

using namespace Kestrel::UI;

namespace {

// The work knows its task and nothing of the interface.
void render(const std::shared_ptr<ProgressTask>& task, int frames) {
    ProgressScope scope(task); // ends the task, however this function is left
    task->setUnit(ProgressTask::Unit::Frames);
    task->setTotal(frames);
    for (int frame = 0; frame < frames; ++frame) {
        if (!task->waitWhilePaused())
            break; // cancelled
        task->setDetail(QStringLiteral("frame %1").arg(1001 + frame));
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        task->advance();
    }
    scope.dismiss();
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    ProgressManager* manager = ProgressManager::instance();

    const auto task = manager->start(QStringLiteral("Rendering comp"),
                                     ProgressTask::Cancellable | ProgressTask::Pausable);
    const auto upload = manager->start(QStringLiteral("Sending to review"));
    const auto lut = manager->start(QStringLiteral("Writing look.cube"));
    lut->fail(QStringLiteral("There is no room left on the disk."));

    QMainWindow window; // behind: where the strip lies
    auto* strip = new ProgressStrip;
    strip->setManager(manager);
    window.statusBar()->addPermanentWidget(strip, 1);

    ProgressDialog dialog; // opens by itself for what takes longer
    dialog.setManager(manager);
    dialog.resize(480, 300);
    dialog.show();
    strip->setOpened(&dialog);

    std::thread work(render, task, 240);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    manager->look();
    const int result = QApplication::exec();
    manager->cancelAll();
    work.join();
    upload->finishCancelled();
    return result;
}
