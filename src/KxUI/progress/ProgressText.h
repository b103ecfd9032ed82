#pragma once

#include <KxUI/Export.h>
#include <KxUI/progress/ProgressTask.h>

#include <QString>

#include <chrono>

namespace Kestrel::UI {

/** What people read of tasks. Interface thread. */
class KXUI_EXPORT ProgressText {
public:
    ProgressText() = delete;

    /** "A few seconds left", "About 3 minutes left": in steps that grow with the time. Empty below 0. */
    static QString timeToGo(double seconds);
    /** "1 h 5 min", "3 min 20 s", "12 s". */
    static QString duration(double seconds);
    /** "Waiting to start", "Running". */
    static QString state(ProgressTask::State state);
    /** "1,012 of 1,100 frames"; empty where nothing is counted. */
    static QString amount(const ProgressTask& task);
    /** What stands where a task stops others: "3 tasks are still running." */
    static QString stillRunning(int tasks);
};

} // namespace Kestrel::UI
