#include "play/Navigator.h"

#include "play/Session.h"

#include <algorithm>
#include <iterator>

namespace Kestrel::Workbench {

std::optional<Base::Time> nextTime(const std::set<Base::Time>& times, Base::Time from,
                                   int direction) {
    if (direction > 0) {
        const auto next = times.upper_bound(from);
        return next == times.end() ? std::nullopt : std::make_optional(*next);
    }
    const auto here = times.lower_bound(from);
    return here == times.begin() ? std::nullopt : std::make_optional(*std::prev(here));
}

Base::Time halfWay(Base::Time from, Base::Time to) {
    const Base::Time half = (to - from) / 2;
    return half == 0 ? to : from + half;
}

Navigator::Navigator(Session* session)
    : m_session(session) {}

void Navigator::goTo(Base::Time time) {
    UI::TimeSliderModel& model = *m_session->model();
    if (model.duration() == Base::InvalidTime || time == Base::InvalidTime)
        return;
    m_session->player()->stop();
    model.setCurrentTime(std::clamp(time, model.startTime(), model.endTime()));
}

// Without a sequence there is no time to count from.
void Navigator::goBy(Base::Time frames) {
    if (const Base::Time current = m_session->model()->currentTime(); current != Base::InvalidTime)
        goTo(current + frames);
}

void Navigator::goToStart() {
    goTo(m_session->model()->playbackStartTime());
}

void Navigator::goToEnd() {
    goTo(m_session->model()->playbackEndTime());
}

void Navigator::step(int direction) {
    goBy(direction);
}

void Navigator::skip(int direction) {
    goBy(Base::Time(direction) * m_skipLength);
}

void Navigator::jump(int direction) {
    std::set<Base::Time> times = m_session->model()->keyFrames();
    if (m_jumpMode == UI::KeyframesOrEdits)
        times.merge(m_session->sequence().edits());
    if (const auto target = nextTime(times, m_session->model()->currentTime(), direction))
        goTo(*target);
}

void Navigator::goHalfWay(int direction) {
    const Base::Time current = m_session->model()->currentTime();
    if (const auto target = nextTime(m_session->model()->keyFrames(), current, direction))
        goTo(halfWay(current, *target));
}

void Navigator::setSkipLength(int frames) {
    if (frames < 1 || frames == m_skipLength)
        return;
    m_skipLength = frames;
    emit skipLengthChanged(frames);
}

void Navigator::setJumpMode(UI::TransportControlsMode mode) {
    if (mode == m_jumpMode)
        return;
    m_jumpMode = mode;
    emit jumpModeChanged(mode);
}

void Navigator::markRange(Base::Time first, Base::Time last) {
    UI::TimeSliderModel& model = *m_session->model();
    if (model.duration() == Base::InvalidTime)
        return;
    if (first != Base::InvalidTime && last != Base::InvalidTime && last < first)
        std::swap(first, last);
    if (first != Base::InvalidTime)
        model.setInTime(first, true);
    if (last != Base::InvalidTime)
        model.setOutTime(last, true);
}

} // namespace Kestrel::Workbench
