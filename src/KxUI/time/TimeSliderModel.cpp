#include <KxUI/time/TimeSliderModel.h>

#include <KxUI/kit/InterfaceThread_p.h>

#include <QMetaType>

#include <algorithm>

namespace Kestrel::UI {

using Base::InvalidTime;
using Base::Time;

TimeSliderModel::TimeSliderModel(QObject* parent)
    : QObject(parent) {
    qRegisterMetaType<TimeFlags>("Kestrel::UI::TimeSliderModel::TimeFlags");
}

TimeSliderModel::~TimeSliderModel() = default;

void TimeSliderModel::setTimes(Time start, Time in, Time out, Time end, Time current) {
    const bool wasLocked = m_inOutLock;
    TimeFlags flags;
    const auto assign = [&flags](Time& member, Time time, TimeFlag flag) {
        if (member == time)
            return false;
        member = time;
        flags |= flag;
        return true;
    };
    assign(m_startTime, start, StartTime);
    if (assign(m_inTime, in, InTime) && in != InvalidTime)
        m_inOutLock = true;
    if (assign(m_outTime, out, OutTime) && out != InvalidTime)
        m_inOutLock = true;
    assign(m_endTime, end, EndTime);
    assign(m_currentTime, current, CurrentTime);

    if (!flags)
        return;
    const bool lockChanged = m_inOutLock != wasLocked;
    emit timeChanged(flags);
    if (lockChanged)
        emit inOutTimesModified();
}

void TimeSliderModel::store(Time& member, Time time, TimeFlag flag) {
    if (member == time)
        return;
    member = time;
    emit timeChanged(flag);
}

void TimeSliderModel::setStartTime(Time time) {
    store(m_startTime, time, StartTime);
}

void TimeSliderModel::setEndTime(Time time) {
    store(m_endTime, time, EndTime);
}

void TimeSliderModel::setCurrentTime(Time time) {
    KXUI_INTERFACE_THREAD(this);
    store(m_currentTime, time, CurrentTime);
}

void TimeSliderModel::setFirstVisibleTime(TimeSliderTime time) {
    if (time == m_firstVisibleTime)
        return;
    TimeFlags flags = FirstVisibleTime;
    m_firstVisibleTime = time;
    if (time > m_lastVisibleTime) {
        m_lastVisibleTime = time;
        flags |= LastVisibleTime;
    }
    emit timeChanged(flags);
    if (time > TimeSliderTime(m_inTime != InvalidTime ? m_inTime : m_startTime))
        emit inOutTimesModified();
}

void TimeSliderModel::setLastVisibleTime(TimeSliderTime time) {
    if (time == m_lastVisibleTime)
        return;
    TimeFlags flags = LastVisibleTime;
    m_lastVisibleTime = time;
    if (time < m_firstVisibleTime) {
        m_firstVisibleTime = time;
        flags |= FirstVisibleTime;
    }
    emit timeChanged(flags);
    if (time < TimeSliderTime(m_outTime != InvalidTime ? m_outTime : m_endTime))
        emit inOutTimesModified();
}

void TimeSliderModel::setKeyFrames(const std::set<Time>& keyFrames) {
    if (keyFrames == m_keyFrames)
        return;
    m_keyFrames = keyFrames;
    emit timeChanged(KeyFrames);
}

void TimeSliderModel::setKeyFrames(const std::set<int>& keyFrames) {
    setKeyFrames(std::set<Time>(keyFrames.begin(), keyFrames.end()));
}

Time TimeSliderModel::getClippedTime(Time time) const {
    if (time == InvalidTime)
        return time;
    if (m_endTime != InvalidTime)
        time = std::min(time, m_endTime);
    return std::max(time, m_startTime); // an unset start is the earliest time and limits nothing
}

// The comparisons with the other mark are plain ones, in which an unset mark is the earliest time.
void TimeSliderModel::setInTime(Time time, bool lock) {
    const Time clipped = getClippedTime(time);
    if (m_inOutLock && clipped == m_inTime)
        return;
    TimeFlags flags = InTime;
    m_inTime = clipped;
    if (clipped > m_outTime) {
        m_outTime = InvalidTime;
        flags |= OutTime;
    }
    if (lock && clipped != InvalidTime)
        m_inOutLock = true;
    emit timeChanged(flags);
    emit inOutTimesModified();
}

void TimeSliderModel::setOutTime(Time time, bool lock) {
    const Time clipped = getClippedTime(time);
    if (m_inOutLock && clipped == m_outTime)
        return;
    TimeFlags flags = OutTime;
    m_outTime = clipped;
    if (clipped < m_inTime) {
        m_inTime = InvalidTime;
        flags |= InTime;
    }
    if (lock && clipped != InvalidTime)
        m_inOutLock = true;
    emit timeChanged(flags);
    emit inOutTimesModified();
}

void TimeSliderModel::clearIn() {
    m_inTime = InvalidTime;
    if (m_outTime == InvalidTime)
        m_inOutLock = false;
    emit timeChanged(InTime);
    emit inOutTimesModified();
}

void TimeSliderModel::clearOut() {
    m_outTime = InvalidTime;
    if (m_inTime == InvalidTime)
        m_inOutLock = false;
    emit timeChanged(OutTime);
    emit inOutTimesModified();
}

void TimeSliderModel::clearInOut() {
    m_inTime = InvalidTime;
    m_outTime = InvalidTime;
    m_inOutLock = false;
    emit timeChanged(InTime);
    emit timeChanged(OutTime);
    emit inOutTimesModified();
}

void TimeSliderModel::markIn() {
    if (m_inTime == m_currentTime)
        clearIn();
    else
        setInTime(m_currentTime, true);
}

void TimeSliderModel::markOut() {
    if (m_outTime == m_currentTime)
        clearOut();
    else
        setOutTime(m_currentTime, true);
}

void TimeSliderModel::goToStart() {
    setCurrentTime(m_startTime);
}

void TimeSliderModel::goToEnd() {
    setCurrentTime(m_endTime);
}

void TimeSliderModel::goToInPoint() {
    setCurrentTime(m_inTime != InvalidTime ? m_inTime : m_startTime);
}

void TimeSliderModel::goToOutPoint() {
    setCurrentTime(m_outTime != InvalidTime ? m_outTime : m_endTime);
}

void TimeSliderModel::frameBackwards() {
    if (m_currentTime == InvalidTime)
        return;
    m_currentTime = (TimeSliderTime(m_currentTime) - 1).time();
    emit timeChanged(CurrentTime);
}

void TimeSliderModel::frameForwards() {
    if (m_currentTime == InvalidTime)
        return;
    m_currentTime = (TimeSliderTime(m_currentTime) + 1).time();
    emit timeChanged(CurrentTime);
}

void TimeSliderModel::skipBackwards(int frames) {
    if (m_currentTime != InvalidTime)
        setCurrentTime(std::max((TimeSliderTime(m_currentTime) - frames).time(), Time(0)));
}

void TimeSliderModel::skipForwards(int frames) {
    if (m_currentTime == InvalidTime)
        return;
    const Time target = (TimeSliderTime(m_currentTime) + frames).time();
    setCurrentTime(m_endTime != InvalidTime ? std::min(target, m_endTime) : target);
}

void TimeSliderModel::enableInOutLock(bool on) {
    if (on == m_inOutLock)
        return;
    m_inOutLock = on;
    if (on && m_inTime == InvalidTime && m_outTime == InvalidTime) {
        m_inTime = m_startTime;
        m_outTime = m_endTime;
    }
    emit timeChanged(InTime | OutTime);
    emit inOutTimesModified();
}

Time TimeSliderModel::playbackStartTime() const {
    if (m_inOutLock)
        return m_inTime != InvalidTime ? m_inTime : m_startTime;
    const bool inside = m_firstVisibleTime > m_startTime && m_firstVisibleTime <= m_endTime;
    return inside ? m_firstVisibleTime.time() : m_startTime;
}

Time TimeSliderModel::playbackEndTime() const {
    if (m_inOutLock)
        return m_outTime != InvalidTime ? m_outTime : m_endTime;
    const bool inside = m_lastVisibleTime < m_endTime && m_lastVisibleTime >= m_startTime;
    return inside ? m_lastVisibleTime.time() : m_endTime;
}

Time TimeSliderModel::duration() const {
    return (TimeSliderTime(m_endTime) - m_startTime + 1).time();
}

Time TimeSliderModel::inOutDuration() const {
    return (TimeSliderTime(playbackEndTime()) - playbackStartTime() + 1).time();
}

} // namespace Kestrel::UI
