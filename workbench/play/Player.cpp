#include "play/Player.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::TimeSliderModel;

Player::Player(TimeSliderModel* model, QObject* parent)
    : QObject(parent)
    , m_model(model) {
    m_monotonic.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Player::tick);
    connect(model, &TimeSliderModel::timeChanged, this, &Player::followModel);
    connect(model, &TimeSliderModel::inOutTimesModified, this, [this] {
        if (isPlaying())
            anchor();
    });
}

void Player::setTimeBase(Base::TimeBase base) {
    if (!(base.rate() > 0.0F))
        return;
    m_clock.numerator = base.numerator();
    m_clock.denominator = base.denominator();
    if (isPlaying())
        anchor();
}

double Player::achievedRate() {
    return m_meter.rate(m_monotonic.nsecsElapsed());
}

void Player::pictureShown(Base::Time time) {
    m_shownTime = time;
    if (isPlaying() && !m_moving && time == m_model->currentTime() &&
        m_meter.shownLate(m_monotonic.nsecsElapsed()))
        emit frameShown(time);
}

void Player::play(int direction) {
    start(direction, 1);
}

void Player::shuttle(int direction) {
    const bool isFaster = isPlaying() && m_direction == (direction < 0 ? -1 : 1);
    start(direction, isFaster ? std::min(speed() * 2, FastestSpeed) : 1);
}

void Player::forgetDropped() {
    m_meter.reset();
    m_reportedDrops = 0;
}

void Player::start(int direction, std::uint32_t speed) {
    if (m_model->duration() == Base::InvalidTime)
        return;
    const bool wasPlaying = isPlaying();
    m_direction = direction < 0 ? -1 : 1;
    const Base::Time start = m_model->playbackStartTime();
    const Base::Time end = m_model->playbackEndTime();
    const bool atEnd = m_model->currentTime() == (m_direction > 0 ? end : start);
    if (!wasPlaying && atEnd && repeat() != PlaybackClock::Repeat::Bounce) {
        const QScopedValueRollback<bool> moving(m_moving, true);
        m_model->setCurrentTime(m_direction > 0 ? start : end);
    }
    m_clock.stride = speed;
    forgetDropped();
    anchor();
    if (!wasPlaying)
        emit playingChanged(true);
    emit statusChanged();
}

void Player::stop() {
    if (!isPlaying())
        return;
    m_timer.stop();
    emit playingChanged(false);
    emit statusChanged();
}

void Player::toggle() {
    if (isPlaying())
        stop();
    else
        play();
}

void Player::setRepeat(PlaybackClock::Repeat repeat) {
    if (repeat == m_clock.repeat)
        return;
    m_clock.repeat = repeat;
    if (isPlaying())
        anchor();
    emit statusChanged();
}

/** Reckons from the current time and moment on. */
void Player::anchor() {
    const Base::Time first = m_model->playbackStartTime();
    m_clock.direction = m_direction;
    m_clock.first = first;
    m_clock.last = std::max(m_model->playbackEndTime(), first);
    const Base::Time current = m_model->currentTime();
    const bool inside = current >= m_clock.first && current <= m_clock.last;
    m_clock.origin = inside ? current : m_clock.direction > 0 ? m_clock.first : m_clock.last;
    m_clock.startNs = m_monotonic.nsecsElapsed();
    m_ticks = 0;
    m_meter.restart();
    if (!inside) {
        const QScopedValueRollback<bool> moving(m_moving, true);
        m_model->setCurrentTime(m_clock.origin);
    }
    scheduleTick();
}

void Player::tick() {
    const std::int64_t now = m_monotonic.nsecsElapsed();
    const PlaybackClock::Position position = m_clock.at(now);
    const bool moved = position.ticks > m_ticks;
    const bool turned = position.direction != m_direction;
    m_ticks = std::max(m_ticks, position.ticks);
    m_direction = position.direction;
    // First of all: who hears of the new time asks whether it plays, and may stop it.
    if (!position.ended)
        scheduleTick();
    if (moved) {
        const QScopedValueRollback<bool> moving(m_moving, true);
        m_model->setCurrentTime(position.time);
    }
    if (moved && !position.ended) {
        const bool shown = m_shownTime == position.time;
        m_meter.reached(m_ticks, shown, now);
        reportDrops();
        if (shown)
            emit frameShown(position.time);
    }
    if (position.ended)
        emit playingChanged(false);
    if (position.ended || turned)
        emit statusChanged();
}

void Player::reportDrops() {
    const std::uint64_t drops = m_meter.droppedForGood();
    if (drops == m_reportedDrops)
        return;
    const quint64 more = drops - m_reportedDrops;
    m_reportedDrops = drops;
    emit framesDropped(more);
}

void Player::scheduleTick() {
    const std::int64_t wait = m_clock.momentOf(m_ticks + 1) - m_monotonic.nsecsElapsed();
    constexpr std::int64_t millisecond = 1000000;
    m_timer.start(int(std::clamp<std::int64_t>((wait + millisecond - 1) / millisecond, 0, 60000)));
}

void Player::followModel(TimeSliderModel::TimeFlags flags) {
    const bool movedByOthers = flags.testFlag(TimeSliderModel::CurrentTime) && !m_moving;
    const bool clipChanged = (flags & (TimeSliderModel::StartTime | TimeSliderModel::EndTime)) != 0;
    if (isPlaying() && (movedByOthers || clipChanged))
        anchor();
}

} // namespace Kestrel::Workbench
