#include "media/HistogramCounter.h"

#include <utility>

namespace Kestrel::Workbench {

HistogramCounter::HistogramCounter(QObject* parent)
    : QObject(parent) {
    m_thread = std::thread([this] { work(); });
}

HistogramCounter::~HistogramCounter() {
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void HistogramCounter::count(const FramePtr& frame) {
    if (frame == m_asked)
        return;
    m_asked = frame;
    const bool hasPicture = frame && frame->state == Frame::State::Ready;
    {
        const std::lock_guard lock(m_mutex);
        m_wanted = hasPicture ? frame : nullptr;
    }
    if (hasPicture)
        m_wake.notify_all();
    else
        deliver(frame, {});
}

void HistogramCounter::work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_quit || m_wanted; });
        if (m_quit)
            return;
        const FramePtr frame = std::exchange(m_wanted, nullptr);
        lock.unlock();
        const Histogram histogram = Histogram::of(frame->image);
        QMetaObject::invokeMethod(
            this, [this, frame, histogram] { deliver(frame, histogram); }, Qt::QueuedConnection);
        lock.lock();
    }
}

void HistogramCounter::deliver(const FramePtr& frame, const Histogram& histogram) {
    // While frames follow each other, that of the one before is better than none.
    const bool hasPicture = m_asked && m_asked->state == Frame::State::Ready;
    if (frame != m_asked && !hasPicture)
        return;
    m_histogram = histogram;
    emit counted();
}

} // namespace Kestrel::Workbench
