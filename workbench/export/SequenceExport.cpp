#include "export/SequenceExport.h"

#include <KxUI/progress/ProgressManager.h>

#include <QThread>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

/** For a frame that is being written when the program ends. */
constexpr std::chrono::seconds lastMoment(2);

/** One core is left to the interface, and to playback. */
int exportThreads(std::size_t frames) {
    const int most = std::clamp(QThread::idealThreadCount() - 1, 1, 4);
    return int(std::min(std::size_t(most), std::max<std::size_t>(frames, 1)));
}

} // namespace

/** Where the threads leave what they have to tell, while there is somebody to hear it. */
struct SequenceExport::Mailbox {
    std::mutex mutex;
    SequenceExport* receiver = nullptr;

    template <typename Tell>
    void post(Tell tell) {
        const std::lock_guard lock(mutex);
        if (receiver)
            QMetaObject::invokeMethod(
                receiver, [to = receiver, tell] { tell(to); }, Qt::QueuedConnection);
    }
};

SequenceExport::SequenceExport(const ExportPlan& plan, UI::ProgressManager* tasks,
                               const QString& title, QObject* parent, WriteFile write)
    : QObject(parent)
    , m_plan(plan)
    , m_mailbox(std::make_shared<Mailbox>()) {
    qRegisterMetaType<ExportResult>();
    qRegisterMetaType<Base::Time>("Kestrel::Base::Time");
    m_mailbox->receiver = this;
    ExportRun::Listener listener;
    listener.asked = [mailbox = m_mailbox](Base::Time frame, const QString& why) {
        mailbox->post([frame, why](SequenceExport* to) { emit to->failed(frame, why); });
    };
    listener.ended = [mailbox = m_mailbox](const ExportResult& result) {
        mailbox->post([result](SequenceExport* to) { emit to->finished(result); });
    };
    auto work = tasks->start(title, UI::ProgressTask::Cancellable | UI::ProgressTask::Pausable);
    m_task = work->watched();
    m_run =
        std::make_shared<ExportRun>(plan, std::move(work), std::move(listener), std::move(write));
    ExportRun::start(m_run, exportThreads(plan.frames().size()));
}

SequenceExport::~SequenceExport() {
    {
        const std::lock_guard lock(m_mailbox->mutex);
        m_mailbox->receiver = nullptr;
    }
    m_task->cancel();
    m_run->waitForEnd(lastMoment);
}

void SequenceExport::answer(ExportAnswer answer) {
    m_run->answer(answer);
}

} // namespace Kestrel::Workbench
