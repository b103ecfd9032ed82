#include <KxUI/time/TimeFormatter.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/time/TimeFieldNotation.h>
#include <KxUI/time/TimeMetaTypes_p.h>

#include <algorithm>

namespace Kestrel::UI {

using Base::Time;
using Base::TimeBase;

struct TimeFormatter::Private {
    TimeBase timeBase{25, false};
    Time timecodeStart = 0;
    bool displayTimecode = true;
    bool displayDropFrames = false;
};

TimeFormatter::TimeFormatter(QObject* parent)
    : QObject(parent)
    , m(std::make_unique<Private>()) {
    registerTimeMetaTypes();
}

TimeFormatter::~TimeFormatter() = default;

void TimeFormatter::setTimeBase(TimeBase timeBase) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplay(timeBase, m->displayTimecode, m->displayDropFrames, m->timecodeStart);
}

TimeBase TimeFormatter::timeBase() const {
    return m->timeBase;
}

void TimeFormatter::setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplay(m->timeBase, displayTimecode, displayDropFrames, m->timecodeStart);
}

void TimeFormatter::setDisplayTimecode(bool displayTimecode) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplayFormat(displayTimecode, m->displayDropFrames);
}

bool TimeFormatter::displayTimecode() const {
    return m->displayTimecode;
}

void TimeFormatter::setDisplayDropFrames(bool displayDropFrames) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplayFormat(m->displayTimecode, displayDropFrames);
}

bool TimeFormatter::displayDropFrames() const {
    return m->displayDropFrames;
}

Base::Timecode::DisplayType TimeFormatter::timeDisplayFormat() const {
    return TimeFieldNotation::displayType(m->displayTimecode, m->displayDropFrames);
}

void TimeFormatter::setTimecodeStart(Time timecodeStart) {
    KXUI_INTERFACE_THREAD(this);
    setTimeDisplay(m->timeBase, m->displayTimecode, m->displayDropFrames, timecodeStart);
}

Time TimeFormatter::timecodeStart() const {
    return m->timecodeStart;
}

void TimeFormatter::setTimeDisplay(TimeBase timeBase, bool displayTimecode, bool displayDropFrames,
                                   Time timecodeStart) {
    KXUI_INTERFACE_THREAD(this);
    if (timeBase == m->timeBase && displayTimecode == m->displayTimecode &&
        displayDropFrames == m->displayDropFrames && timecodeStart == m->timecodeStart)
        return;
    m->timeBase = timeBase;
    m->displayTimecode = displayTimecode;
    m->displayDropFrames = displayDropFrames;
    m->timecodeStart = timecodeStart;
    Q_EMIT timeFormatChanged(timeBase, displayTimecode, displayDropFrames, timecodeStart);
}

QString TimeFormatter::formatTime(Time time) const {
    char text[Base::Timecode::MaximumLength];
    const std::size_t length = Base::Timecode::format(text, time, m->timeBase, timeDisplayFormat(),
                                                      false, std::max<Time>(m->timecodeStart, 0));
    return QString::fromLatin1(text, static_cast<int>(length));
}

} // namespace Kestrel::UI
