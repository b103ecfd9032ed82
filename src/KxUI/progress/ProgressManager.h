#pragma once

#include <KxUI/Export.h>
#include <KxUI/progress/ProgressTask.h>

#include <QObject>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace Kestrel::UI {

/** Collects tasks for the interface: looks at them ten times a second, while any goes on, and tells
    what has changed. Several may exist, as one a window. Holds the tasks, not their work: one that
    goes without a word is seen to have failed. add() may be called on any thread, all else on the
    interface thread; signals come from it. */
class KXUI_EXPORT ProgressManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool idle READ isIdle NOTIFY idleChanged)
    Q_PROPERTY(double fraction READ fraction NOTIFY fractionChanged)

public:
    /** The one of the process; made on demand and gone with the application. */
    static ProgressManager* instance();

    /** Without tasks; `parent` owns it when it is given. */
    explicit ProgressManager(QObject* parent = nullptr);
    /** Asks all tasks to end and does not wait for them. */
    ~ProgressManager() override;

    /** A new task in the list; the pointer is the work's, see ProgressTask.
        @param title      what is done
        @param abilities  ProgressTask::Ability values */
    std::shared_ptr<Kestrel::UI::ProgressTask>
    start(const QString& title, std::uint8_t abilities = ProgressTask::Cancellable);

    /** Takes a task into the list. Any thread. Null does nothing. */
    void add(const std::shared_ptr<Kestrel::UI::ProgressTask>& task);

    /** How many are listed: those that go on, and what has ended and is still shown. */
    int count() const;
    /** The task of a row, from 0, in the order of adding; null beyond. */
    std::shared_ptr<Kestrel::UI::ProgressTask> task(int row) const;
    /** All of them. */
    std::vector<std::shared_ptr<Kestrel::UI::ProgressTask>> tasks() const;
    /** The row of a task; -1 for none. */
    int rowOf(const Kestrel::UI::ProgressTask* task) const;

    /** Whether none goes on. */
    bool isIdle() const;
    /** How many go on. */
    int runningCount() const;

    /** How much of a task is done, for a bar: from 0 to 1, below 0 where nobody knows. Goes back only
        where that is more than a hundredth and stays so for a second. */
    double shownFraction(int row) const;
    /** The same of all that go on, each counting alike. */
    double fraction() const;
    /** How long a task will still take; nothing where it is not known, or nothing moves. */
    std::optional<std::chrono::seconds> timeToGo(int row) const;
    /** For how long nothing has moved in a task that stands still; nothing for others. */
    std::optional<std::chrono::seconds> stalledFor(int row) const;
    /** The same for people: "About 3 minutes left", "No progress for 12 s", "Paused", what went
        wrong. */
    QString statusText(int row) const;

    /** How long what has ended stays listed; at first 10 s. Failed ones stay until acknowledge(). */
    std::chrono::milliseconds keptFor() const;
    void setKeptFor(std::chrono::milliseconds time);

    /** The user has seen a task that has ended: it leaves the list. */
    void acknowledge(const Kestrel::UI::ProgressTask* task);

public Q_SLOTS:
    /** Asks all tasks to end. */
    void cancelAll();
    /** Looks at the tasks now. */
    void look();

Q_SIGNALS:
    /** A task was listed. */
    void taskAdded(int row);
    /** Something of these tasks is another. */
    void taskChanged(int first, int last);
    /** A task is about to leave the list. */
    void taskAboutToBeRemoved(int row);
    /** It has left. */
    void taskRemoved(int row);
    /** A task has failed; `why` is for people. */
    void taskFailed(const QString& title, const QString& why);
    /** isIdle() is another. */
    void idleChanged(bool idle);
    /** fraction() is another. */
    void fractionChanged(double fraction);

protected:
    bool event(QEvent* event) override;

private:
    struct Private;
    friend class ProgressManagerClock;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
