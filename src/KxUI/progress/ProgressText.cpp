#include <KxUI/progress/ProgressText.h>

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

int rounded(double value, int step) {
    return static_cast<int>(std::lround(value / step)) * step;
}

// One thing has words of its own: what stands in the source is good English, also where there is no
// catalog that knows how plurals are counted.
QString minutes(int count) {
    return count == 1 ? QCoreApplication::translate("ProgressText", "1 minute")
                      : QCoreApplication::translate("ProgressText", "%n minutes", nullptr, count);
}

QString wholeHours(int count) {
    return count == 1 ? QCoreApplication::translate("ProgressText", "1 hour")
                      : QCoreApplication::translate("ProgressText", "%n hours", nullptr, count);
}

QString hoursText(int all) {
    const QString hours = wholeHours(all / 60);
    const QString text =
        all % 60 == 0
            ? hours
            : QCoreApplication::translate("ProgressText", "%1 %2").arg(hours, minutes(all % 60));
    return QCoreApplication::translate("ProgressText", "About %1 left").arg(text);
}

// The number is in it already, grouped as it should be.
QString amountText(ProgressTask::Unit unit) {
    switch (unit) {
    case ProgressTask::Unit::Frames:
        return QCoreApplication::translate("ProgressText", "%1 frames");
    case ProgressTask::Unit::Files:
        return QCoreApplication::translate("ProgressText", "%1 files");
    case ProgressTask::Unit::Bytes:
        return QStringLiteral("%1");
    case ProgressTask::Unit::Steps:
        break;
    }
    return QCoreApplication::translate("ProgressText", "%1 steps");
}

} // namespace

QString ProgressText::timeToGo(double seconds) {
    if (!(seconds >= 0))
        return {};
    if (seconds < 10)
        return QCoreApplication::translate("ProgressText", "A few seconds left");
    if (seconds < 57.5) {
        const int all = rounded(seconds, 5);
        return QCoreApplication::translate("ProgressText", "%n seconds left", nullptr, all);
    }
    if (seconds < 112.5) {
        const int rest = rounded(seconds, 15) - 60;
        return rest == 0 ? QCoreApplication::translate("ProgressText", "1 minute left")
                         : QCoreApplication::translate("ProgressText", "1 minute %n seconds left",
                                                       nullptr, rest);
    }
    if (seconds < 570)
        return QCoreApplication::translate("ProgressText", "About %1 left")
            .arg(minutes(rounded(seconds / 60, 1)));
    if (seconds < 2 * 3600)
        return rounded(seconds / 60, 5) < 60
                   ? QCoreApplication::translate("ProgressText", "About %1 left")
                         .arg(minutes(rounded(seconds / 60, 5)))
                   : hoursText(rounded(seconds / 60, 5));
    if (seconds < 24 * 3600)
        return hoursText(rounded(seconds / 60, 10));
    return QCoreApplication::translate("ProgressText", "More than a day left");
}

QString ProgressText::duration(double seconds) {
    const auto all = static_cast<qint64>(std::max(0.0, std::min(seconds, 1e9)));
    if (all < 60)
        return QCoreApplication::translate("ProgressText", "%1 s").arg(all);
    if (all < 3600)
        return QCoreApplication::translate("ProgressText", "%1 min %2 s")
            .arg(all / 60)
            .arg(all % 60);
    return QCoreApplication::translate("ProgressText", "%1 h %2 min")
        .arg(all / 3600)
        .arg(all / 60 % 60);
}

QString ProgressText::state(ProgressTask::State state) {
    switch (state) {
    case ProgressTask::State::Queued:
        return QCoreApplication::translate("ProgressText", "Waiting to start");
    case ProgressTask::State::Running:
        return QCoreApplication::translate("ProgressText", "Running");
    case ProgressTask::State::Paused:
        return QCoreApplication::translate("ProgressText", "Paused");
    case ProgressTask::State::Cancelling:
        return QCoreApplication::translate("ProgressText", "Cancelling\u2026");
    case ProgressTask::State::Finished:
        return QCoreApplication::translate("ProgressText", "Finished");
    case ProgressTask::State::Failed:
        return QCoreApplication::translate("ProgressText", "Failed");
    case ProgressTask::State::Cancelled:
        break;
    }
    return QCoreApplication::translate("ProgressText", "Cancelled");
}

QString ProgressText::amount(const ProgressTask& task) {
    const QLocale locale;
    const qint64 done = std::max<qint64>(0, task.done());
    const qint64 total = task.total();
    const bool isBytes = task.unit() == ProgressTask::Unit::Bytes;
    if (done == 0 && total <= 0)
        return {};
    const auto number = [&](qint64 value) {
        return isBytes ? locale.formattedDataSize(value) : locale.toString(value);
    };
    const QString text = total > 0 ? QCoreApplication::translate("ProgressText", "%1 of %2")
                                         .arg(number(std::min(done, total)), number(total))
                                   : number(done);
    return amountText(task.unit()).arg(text);
}

QString ProgressText::stillRunning(int tasks) {
    return tasks == 1 ? QCoreApplication::translate("ProgressText", "1 task is still running.")
                      : QCoreApplication::translate("ProgressText", "%n tasks are still running.",
                                                    nullptr, tasks);
}

} // namespace Kestrel::UI
