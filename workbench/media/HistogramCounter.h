#pragma once

#include "media/Frame.h"
#include "media/Histogram.h"

#include <QObject>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace Kestrel::Workbench {

/** Counts frames on a thread of its own, always the one asked for last. Called from the thread that
    owns it; the signal is emitted there too. */
class HistogramCounter : public QObject {
    Q_OBJECT

public:
    explicit HistogramCounter(QObject* parent = nullptr);
    /** Waits for the frame that is being counted: some milliseconds. */
    ~HistogramCounter() override;

    /** Asks for a frame's histogram. One that was asked for before, and is not begun, is left
        aside. A null frame and one without a picture have an empty one. */
    void count(const FramePtr& frame);

    /** The one counted last. */
    const Histogram& histogram() const { return m_histogram; }

signals:
    /** Another frame was counted. */
    void counted();

private:
    void work();
    void deliver(const FramePtr& frame, const Histogram& histogram);

    Histogram m_histogram;
    FramePtr m_asked; ///< last

    std::mutex m_mutex;
    std::condition_variable m_wake;
    FramePtr m_wanted; ///< under the lock, as the next one
    bool m_quit = false;
    std::thread m_thread;
};

} // namespace Kestrel::Workbench
