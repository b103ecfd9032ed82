#include <KxUI/time/TimeFormatter.h>

#include <KxUI/time/TimeMetaTypes_p.h>

#include <algorithm>

namespace Kestrel::UI {

using Base::Time;
using Base::TimeBase;

TimeFormatter::TimeFormatter(QObject* parent)
    : QObject(parent) {
    registerTimeMetaTypes();
}

TimeFormatter::~TimeFormatter() = default;

void TimeFormatter::setTimeBase(TimeBase timeBase) {
    setTimeDisplay(timeBase, m_displayTimecode, m_displayDropFrames, m_timecodeStart);
}

void TimeFormatter::setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames) {
    setTimeDisplay(m_timeBase, displayTimecode, displayDropFrames, m_timecodeStart);
}

Base::Timecode::DisplayType TimeFormatter::timeDisplayFormat() const {
    if (!m_displayTimecode)
        return Base::Timecode::Frames;
    return m_displayDropFrames ? Base::Timecode::DropFrameTimecode : Base::Timecode::Timecode;
}

void TimeFormatter::setTimecodeStart(Time timecodeStart) {
    setTimeDisplay(m_timeBase, m_displayTimecode, m_displayDropFrames, timecodeStart);
}

void TimeFormatter::setTimeDisplay(TimeBase timeBase, bool displayTimecode, bool displayDropFrames,
                                   Time timecodeStart) {
    if (timeBase == m_timeBase && displayTimecode == m_displayTimecode &&
        displayDropFrames == m_displayDropFrames && timecodeStart == m_timecodeStart)
        return;
    m_timeBase = timeBase;
    m_displayTimecode = displayTimecode;
    m_displayDropFrames = displayDropFrames;
    m_timecodeStart = timecodeStart;
    Q_EMIT timeFormatChanged(m_timeBase, m_displayTimecode, m_displayDropFrames, m_timecodeStart);
}

QString TimeFormatter::formatTime(Time time) const {
    char text[Base::Timecode::MaximumLength];
    const std::size_t length = Base::Timecode::format(text, time, m_timeBase, timeDisplayFormat(),
                                                      false, std::max<Time>(m_timecodeStart, 0));
    return QString::fromLatin1(text, static_cast<int>(length));
}

} // namespace Kestrel::UI
