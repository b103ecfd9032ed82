#pragma once

#include <KxUI/Export.h>

#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace Kestrel::UI {

/** One piece of work that others may watch and stop. The work runs where its owner likes; the task
    carries numbers and a few texts. All functions may be called on any thread; setDone(), advance()
    and isCancelled() cost a few nanoseconds, and nothing is emitted from any: who shows tasks looks
    at them some ten times a second (see ProgressManager).

    The pointer that create() and addChild() return is the work's: when its last copy goes before the
    task has ended, the task ends as cancelled where it was asked to, else as failed. Who only
    watches keeps what ProgressManager::tasks() or watched() give. */
class KXUI_EXPORT ProgressTask : public std::enable_shared_from_this<ProgressTask> {
public:
    /** What a task is about. The last three never change. */
    enum class State : std::uint8_t {
        Queued,     ///< It waits to begin.
        Running,    ///< It does something.
        Paused,     ///< It waits for resume().
        Cancelling, ///< It was asked to end and has not yet.
        Finished,   ///< It has done all.
        Failed,     ///< It could not; error() says why.
        Cancelled   ///< It ended because it was asked to.
    };

    /** What can be asked of a task, to be combined. */
    enum Ability : std::uint8_t {
        NoAbility = 0,   ///< It goes on to its end.
        Cancellable = 1, ///< It looks at isCancelled().
        Pausable = 2     ///< It calls waitWhilePaused().
    };

    /** What is counted. */
    enum class Unit : std::uint8_t {
        Steps,  ///< Nothing that has a name.
        Frames, ///< Pictures.
        Files,  ///< Files.
        Bytes   ///< Bytes.
    };

    /** A task that waits to begin.
        @param title      what is done, for people
        @param abilities  Ability values */
    static std::shared_ptr<ProgressTask> create(const QString& title,
                                                std::uint8_t abilities = Cancellable);
    ~ProgressTask();
    ProgressTask(const ProgressTask&) = delete;
    ProgressTask& operator=(const ProgressTask&) = delete;

    /** A part of the task, which counts as much as its weight among all parts. What the task itself
        has done does not count then. Add them all before the work begins, or the bar goes back.
        @param title   as create()
        @param weight  above 0
        @return the work's pointer of the part, which has the abilities of this */
    std::shared_ptr<ProgressTask> addChild(const QString& title, double weight = 1.0);

    /** It begins, before anything is done; setDone() and advance() say so, too. */
    void start();

    /** How much there is to do; 0 or less: nobody knows. */
    void setTotal(std::int64_t total);
    /** How much is done; may be less than before. */
    void setDone(std::int64_t done);
    /** So much more is done. Several threads may tell at once. */
    void advance(std::int64_t steps = 1);
    /** What is counted; at first steps. */
    void setUnit(Unit unit);
    /** What is done just now, as "frame 1012". For each frame, not for each pixel: it takes a lock
        for a moment. */
    void setDetail(const QString& detail);

    /** Whether it is to end. */
    bool isCancelled() const noexcept;
    /** Blocks the work while it is paused. False where it is to end. */
    bool waitWhilePaused();

    /** It has done all. These three do nothing once it has ended. */
    void finish();
    /** It could not: why, as a sentence for people. */
    void fail(const QString& why);
    /** It has ended because it was asked to. */
    void finishCancelled();

    /** What is done. */
    QString title() const;
    /** What is done just now. */
    QString detail() const;
    /** Why it has failed; empty for others. */
    QString error() const;
    /** What it is about. */
    State state() const noexcept;
    /** Whether it has ended, in whatever way. */
    bool isEnded() const noexcept;
    /** What can be asked of it. */
    std::uint8_t abilities() const noexcept;
    /** What is counted. */
    Unit unit() const noexcept;
    /** How much is done, by itself. */
    std::int64_t done() const noexcept;
    /** How much there is to do by itself; 0 or less where nobody knows. */
    std::int64_t total() const noexcept;
    /** How much of it is done, from 0 to 1, with its parts; below 0 where nobody knows. */
    double fraction() const;
    /** How long it has run, without pauses and the time before it began. */
    std::chrono::nanoseconds workingTime() const;

    /** Its parts, for who watches. */
    std::vector<std::shared_ptr<ProgressTask>> children() const;
    /** The task for who watches: this pointer does not keep the work going. */
    std::shared_ptr<ProgressTask> watched();

    /** Asks it, and its parts, to end: isCancelled() is true from now on. Nothing without the ability,
        or once it has ended. */
    void cancel();
    /** Asks it, and its parts, to wait; nothing without the ability. */
    void pause();
    /** It goes on. */
    void resume();

    /** Called once by cancel(), on its caller's thread, for work that waits in a call of the system;
        at once where it is cancelled already. */
    void setCancelHandler(std::function<void()> handler);

    /** Counts what may have changed but done(): for who watches. */
    std::uint32_t version() const noexcept;

private:
    struct Private;

    ProgressTask();

    const std::unique_ptr<Private> d;
};

/** Ends a task when the scope does: as failed where it is left by an exception or without
    dismiss(). */
class KXUI_EXPORT ProgressScope {
public:
    /** Starts the task. Null does nothing. */
    explicit ProgressScope(std::shared_ptr<ProgressTask> task);
    ~ProgressScope();
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    /** The work is done: the task is finished, or cancelled where it was asked to. */
    void dismiss();

private:
    std::shared_ptr<ProgressTask> m_task;
};

} // namespace Kestrel::UI
