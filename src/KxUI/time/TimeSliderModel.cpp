#include <KxUI/time/TimeSliderModel.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/time/TimeMetaTypes_p.h>

#include <QMetaType>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

using Base::InvalidTime;
using Base::Time;

struct TimeSliderModel::Private {
    TimeSliderModel* q = nullptr;
    Times times;
    TimeSliderTime firstVisible;
    TimeSliderTime lastVisible;
    std::set<Time> keyFrames;
    bool inOutLock = false;

    Time clipped(Time time) const;
    void store(Time& member, Time time, TimeFlag flag);
    void announceMarks(TimeFlags flags);
};

TimeSliderModel::TimeSliderModel(QObject* parent)
    : QObject(parent)
    , m(std::make_unique<Private>()) {
    m->q = this;
    registerTimeMetaTypes();
    qRegisterMetaType<TimeSliderTime>("Kestrel::UI::TimeSliderTime");
    qRegisterMetaType<TimeFlags>("Kestrel::UI::TimeSliderModel::TimeFlags");
}

TimeSliderModel::~TimeSliderModel() = default;

Time TimeSliderModel::startTime() const {
    return m->times.start;
}

Time TimeSliderModel::endTime() const {
    return m->times.end;
}

Time TimeSliderModel::inTime() const {
    return m->times.in;
}

Time TimeSliderModel::outTime() const {
    return m->times.out;
}

Time TimeSliderModel::currentTime() const {
    return m->times.current;
}

TimeSliderTime TimeSliderModel::firstVisibleTime() const {
    return m->firstVisible;
}

TimeSliderTime TimeSliderModel::lastVisibleTime() const {
    return m->lastVisible;
}

const std::set<Time>& TimeSliderModel::keyFrames() const {
    return m->keyFrames;
}

bool TimeSliderModel::inOutLock() const {
    return m->inOutLock;
}

TimeSliderModel::Times TimeSliderModel::Times::withClip(Time first, Time last) const {
    return {first, in, out, last, current};
}

TimeSliderModel::Times TimeSliderModel::Times::withMarks(Time markIn, Time markOut) const {
    return {start, markIn, markOut, end, current};
}

TimeSliderModel::Times TimeSliderModel::Times::withCurrent(Time time) const {
    return {start, in, out, end, time};
}

TimeSliderModel::Times TimeSliderModel::times() const {
    return m->times;
}

void TimeSliderModel::setTimes(Time start, Time in, Time out, Time end, Time current) {
    KXUI_INTERFACE_THREAD(this);
    setTimes({start, in, out, end, current});
}

void TimeSliderModel::setTimes(const Times& times) {
    KXUI_INTERFACE_THREAD(this);
    const Times before = std::exchange(m->times, times);
    TimeFlags flags;
    flags.setFlag(StartTime, before.start != times.start);
    flags.setFlag(InTime, before.in != times.in);
    flags.setFlag(OutTime, before.out != times.out);
    flags.setFlag(EndTime, before.end != times.end);
    flags.setFlag(CurrentTime, before.current != times.current);
    if (!flags)
        return;
    const bool marked = (flags & InTime && times.in != InvalidTime) ||
                        (flags & OutTime && times.out != InvalidTime);
    const bool lockChanged = marked && !m->inOutLock;
    m->inOutLock = m->inOutLock || marked;
    const QPointer<TimeSliderModel> guard(this);
    Q_EMIT timeChanged(flags);
    if (guard && lockChanged)
        Q_EMIT inOutTimesModified();
}

void TimeSliderModel::Private::store(Time& member, Time time, TimeFlag flag) {
    if (member == time)
        return;
    member = time;
    Q_EMIT q->timeChanged(flag);
}

void TimeSliderModel::Private::announceMarks(TimeFlags flags) {
    const QPointer<TimeSliderModel> guard(q);
    Q_EMIT q->timeChanged(flags);
    if (guard)
        Q_EMIT q->inOutTimesModified();
}

void TimeSliderModel::setStartTime(Time time) {
    KXUI_INTERFACE_THREAD(this);
    m->store(m->times.start, time, StartTime);
}

void TimeSliderModel::setEndTime(Time time) {
    KXUI_INTERFACE_THREAD(this);
    m->store(m->times.end, time, EndTime);
}

void TimeSliderModel::setCurrentTime(Time time) {
    KXUI_INTERFACE_THREAD(this);
    m->store(m->times.current, time, CurrentTime);
}

void TimeSliderModel::setFirstVisibleTime(TimeSliderTime time) {
    KXUI_INTERFACE_THREAD(this);
    if (time == m->firstVisible)
        return;
    TimeFlags flags = FirstVisibleTime;
    m->firstVisible = time;
    if (time > m->lastVisible) {
        m->lastVisible = time;
        flags |= LastVisibleTime;
    }
    const QPointer<TimeSliderModel> guard(this);
    Q_EMIT timeChanged(flags);
    if (guard && time > TimeSliderTime(m->times.in != InvalidTime ? m->times.in : m->times.start))
        Q_EMIT inOutTimesModified();
}

void TimeSliderModel::setLastVisibleTime(TimeSliderTime time) {
    KXUI_INTERFACE_THREAD(this);
    if (time == m->lastVisible)
        return;
    TimeFlags flags = LastVisibleTime;
    m->lastVisible = time;
    if (time < m->firstVisible) {
        m->firstVisible = time;
        flags |= FirstVisibleTime;
    }
    const QPointer<TimeSliderModel> guard(this);
    Q_EMIT timeChanged(flags);
    if (guard && time < TimeSliderTime(m->times.out != InvalidTime ? m->times.out : m->times.end))
        Q_EMIT inOutTimesModified();
}

void TimeSliderModel::setKeyFrames(const std::set<Time>& keyFrames) {
    KXUI_INTERFACE_THREAD(this);
    if (keyFrames == m->keyFrames)
        return;
    m->keyFrames = keyFrames;
    Q_EMIT timeChanged(KeyFrames);
}

void TimeSliderModel::setKeyFrames(const std::set<int>& keyFrames) {
    KXUI_INTERFACE_THREAD(this);
    setKeyFrames(std::set<Time>(keyFrames.begin(), keyFrames.end()));
}

Time TimeSliderModel::Private::clipped(Time time) const {
    if (time == InvalidTime)
        return time;
    if (times.end != InvalidTime)
        time = std::min(time, times.end);
    return std::max(time, times.start); // an unset start is the earliest time and limits nothing
}

// The comparisons with the other mark are plain ones, in which an unset mark is the earliest time.
void TimeSliderModel::setInTime(Time time, bool lock) {
    KXUI_INTERFACE_THREAD(this);
    const Time clipped = m->clipped(time);
    if (m->inOutLock && clipped == m->times.in)
        return;
    TimeFlags flags = InTime;
    m->times.in = clipped;
    if (clipped > m->times.out) {
        m->times.out = InvalidTime;
        flags |= OutTime;
    }
    if (lock && clipped != InvalidTime)
        m->inOutLock = true;
    m->announceMarks(flags);
}

void TimeSliderModel::setOutTime(Time time, bool lock) {
    KXUI_INTERFACE_THREAD(this);
    const Time clipped = m->clipped(time);
    if (m->inOutLock && clipped == m->times.out)
        return;
    TimeFlags flags = OutTime;
    m->times.out = clipped;
    if (clipped < m->times.in) {
        m->times.in = InvalidTime;
        flags |= InTime;
    }
    if (lock && clipped != InvalidTime)
        m->inOutLock = true;
    m->announceMarks(flags);
}

void TimeSliderModel::clearIn() {
    KXUI_INTERFACE_THREAD(this);
    m->times.in = InvalidTime;
    if (m->times.out == InvalidTime)
        m->inOutLock = false;
    m->announceMarks(InTime);
}

void TimeSliderModel::clearOut() {
    KXUI_INTERFACE_THREAD(this);
    m->times.out = InvalidTime;
    if (m->times.in == InvalidTime)
        m->inOutLock = false;
    m->announceMarks(OutTime);
}

void TimeSliderModel::clearInOut() {
    KXUI_INTERFACE_THREAD(this);
    m->times.in = InvalidTime;
    m->times.out = InvalidTime;
    m->inOutLock = false;
    const QPointer<TimeSliderModel> guard(this);
    Q_EMIT timeChanged(InTime);
    if (guard)
        m->announceMarks(OutTime);
}

void TimeSliderModel::markIn() {
    if (m->times.in == m->times.current)
        clearIn();
    else
        setInTime(m->times.current, true);
}

void TimeSliderModel::markOut() {
    if (m->times.out == m->times.current)
        clearOut();
    else
        setOutTime(m->times.current, true);
}

void TimeSliderModel::goToStart() {
    setCurrentTime(m->times.start);
}

void TimeSliderModel::goToEnd() {
    setCurrentTime(m->times.end);
}

void TimeSliderModel::goToInPoint() {
    setCurrentTime(m->times.in != InvalidTime ? m->times.in : m->times.start);
}

void TimeSliderModel::goToOutPoint() {
    setCurrentTime(m->times.out != InvalidTime ? m->times.out : m->times.end);
}

void TimeSliderModel::frameBackwards() {
    if (m->times.current == InvalidTime)
        return;
    m->times.current = (TimeSliderTime(m->times.current) - 1).time();
    Q_EMIT timeChanged(CurrentTime);
}

void TimeSliderModel::frameForwards() {
    if (m->times.current == InvalidTime)
        return;
    m->times.current = (TimeSliderTime(m->times.current) + 1).time();
    Q_EMIT timeChanged(CurrentTime);
}

void TimeSliderModel::skipBackwards(int frames) {
    if (m->times.current != InvalidTime)
        setCurrentTime(std::max((TimeSliderTime(m->times.current) - frames).time(), Time(0)));
}

void TimeSliderModel::skipForwards(int frames) {
    if (m->times.current == InvalidTime)
        return;
    const Time target = (TimeSliderTime(m->times.current) + frames).time();
    setCurrentTime(m->times.end != InvalidTime ? std::min(target, m->times.end) : target);
}

void TimeSliderModel::enableInOutLock(bool on) {
    if (on == m->inOutLock)
        return;
    m->inOutLock = on;
    if (on && m->times.in == InvalidTime && m->times.out == InvalidTime) {
        m->times.in = m->times.start;
        m->times.out = m->times.end;
    }
    m->announceMarks(InTime | OutTime);
}

Time TimeSliderModel::playbackStartTime() const {
    if (m->inOutLock)
        return m->times.in != InvalidTime ? m->times.in : m->times.start;
    const bool inside = m->firstVisible > m->times.start && m->firstVisible <= m->times.end;
    return inside ? m->firstVisible.time() : m->times.start;
}

Time TimeSliderModel::playbackEndTime() const {
    if (m->inOutLock)
        return m->times.out != InvalidTime ? m->times.out : m->times.end;
    const bool inside = m->lastVisible < m->times.end && m->lastVisible >= m->times.start;
    return inside ? m->lastVisible.time() : m->times.end;
}

Time TimeSliderModel::duration() const {
    return (TimeSliderTime(m->times.end) - m->times.start + 1).time();
}

Time TimeSliderModel::inOutDuration() const {
    return (TimeSliderTime(playbackEndTime()) - playbackStartTime() + 1).time();
}

} // namespace Kestrel::UI
