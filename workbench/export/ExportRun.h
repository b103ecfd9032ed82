#pragma once

#include "export/ExportTables.h"
#include "export/ImageFile.h"

#include <KxUI/progress/ProgressTask.h>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace Kestrel::Workbench {

struct Frame;

/** What an export does about a frame that could not be written. */
enum class ExportAnswer {
    Retry,   ///< tries it once more
    Skip,    ///< goes on without it
    SkipAll, ///< goes on without it and all others that cannot be written
    Stop,    ///< ends; what is written stays
};

/** What became of an export. */
struct ExportResult {
    struct Skipped {
        Base::Time frame = 0;
        QString why;
    };

    enum class End {
        Complete,  ///< all frames were tried
        Cancelled, ///< somebody asked the task to end
        Stopped,   ///< the answer to an error was to stop
    };

    std::size_t asked = 0; ///< frames that have files
    std::size_t written = 0;
    std::vector<Skipped> skipped;
    std::vector<Base::Time> missing;
    End end = End::Complete;
};

/** The work of an export, shared by the threads that do it. They hold it, so that one which hangs in
    a call of a dead disk keeps nobody else waiting. */
class ExportRun {
public:
    /** Both are called on a worker's thread, without a lock. */
    struct Listener {
        /** A frame could not be written; the run waits for answer(). */
        std::function<void(Base::Time frame, const QString& why)> asked;
        std::function<void(const ExportResult& result)> ended;
    };

    ExportRun(ExportPlan plan, std::shared_ptr<UI::ProgressTask> task, Listener listener,
              WriteFile write);

    /** Begins on threads of its own, which go when all is done. */
    static void start(const std::shared_ptr<ExportRun>& run, int threads);

    /** What to do about the frame that was asked for last. */
    void answer(ExportAnswer answer);

    /** Looks again whether the task is to end. */
    void wake();

    /** Waits until no thread is at work, but not for ever. */
    bool waitForEnd(std::chrono::milliseconds time);

private:
    void work();
    std::optional<Base::Time> next();
    QString exportFrame(Base::Time time, std::optional<ExportTables>& tables) const;
    ExportImage graded(const Frame& frame, std::optional<ExportTables>& tables) const;
    ExportAnswer ask(Base::Time frame, const QString& why);
    void leave();
    void endTask();

    const ExportPlan m_plan;
    const std::vector<Base::Time> m_frames;
    std::shared_ptr<UI::ProgressTask> m_task;
    const Listener m_listener;
    const WriteFile m_write;

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::size_t m_next = 0;
    int m_workers = 0;
    bool m_isAsked = false; ///< a frame waits for its answer
    bool m_skipsAll = false;
    bool m_isStopped = false;
    std::optional<ExportAnswer> m_answer;
    ExportResult m_result;
};

} // namespace Kestrel::Workbench
