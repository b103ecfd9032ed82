#include <KxUI/dock/FileQueue_p.h>

#include <QMetaObject>

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace Kestrel::UI {

struct FileQueue::Shared {
    std::mutex mutex;
    std::deque<Work> work;
    std::deque<Outcome> outcomes; // not told yet
    bool running = false;         // a thread is at it
    FileQueue* queue = nullptr;   // who wants to know; null when it is gone
};

FileQueue::FileQueue()
    : m_shared(std::make_shared<Shared>()) {
    m_shared->queue = this;
}

FileQueue::~FileQueue() {
    const std::lock_guard<std::mutex> guard(m_shared->mutex);
    m_shared->queue = nullptr;
}

void FileQueue::add(Work work, Answer answer) {
    m_answers.push_back(std::move(answer));
    {
        const std::lock_guard<std::mutex> guard(m_shared->mutex);
        m_shared->work.push_back(std::move(work));
        if (std::exchange(m_shared->running, true))
            return;
    }
    try {
        std::thread([shared = m_shared] { run(shared); }).detach();
    } catch (const std::system_error&) {
        run(m_shared); // a machine without a thread to spare is slow anyway
    }
}

void FileQueue::run(const std::shared_ptr<Shared>& shared) {
    for (;;) {
        Work work;
        {
            const std::lock_guard<std::mutex> guard(shared->mutex);
            if (shared->work.empty()) {
                shared->running = false;
                return;
            }
            work = std::move(shared->work.front());
            shared->work.pop_front();
        }
        Outcome outcome = work();
        const std::lock_guard<std::mutex> guard(shared->mutex);
        if (FileQueue* queue = shared->queue) {
            shared->outcomes.push_back(std::move(outcome));
            QMetaObject::invokeMethod(
                &queue->m_mailbox, [queue] { queue->deliver(); }, Qt::QueuedConnection);
        }
    }
}

void FileQueue::deliver() {
    Outcome outcome;
    {
        const std::lock_guard<std::mutex> guard(m_shared->mutex);
        outcome = std::move(m_shared->outcomes.front());
        m_shared->outcomes.pop_front();
    }
    const Answer answer = std::move(m_answers.front());
    m_answers.pop_front();
    answer(outcome);
}

} // namespace Kestrel::UI
