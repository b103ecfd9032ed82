#include "play/Session.h"

#include <QThread>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

using UI::TimeSliderModel;

namespace {

/** One core is left to the interface where there are enough of them. */
int decodeThreads() {
    return std::max(QThread::idealThreadCount() - 1, 2);
}

/** Frames looked at ahead of the playhead at most, and requests handed out at a time. */
constexpr std::size_t farthestAhead = 2000;
constexpr std::size_t requestsAtOnce = 32;
constexpr std::size_t requestsLeftBeforePlanning = 8;

} // namespace

Session::Session(Base::TimeBase timeBase, std::size_t cacheBytes, QObject* parent)
    : QObject(parent)
    , m_profiling(decodeThreads(), double(timeBase.rate()), cacheBytes)
    , m_player(&m_model)
    , m_cache(cacheBytes)
    , m_pool(m_profiling.decodeTracks()) {
    m_formatter.setTimeBase(timeBase);
    m_player.setTimeBase(timeBase);
    connect(&m_model, &TimeSliderModel::timeChanged, this,
            [this](TimeSliderModel::TimeFlags flags) {
                if (flags.testFlag(TimeSliderModel::CurrentTime))
                    showCurrent();
            });
    connect(&m_player, &Player::playingChanged, this, [this] { plan(); });
    connect(&m_player, &Player::frameShown, this,
            [this](Base::Time time) { m_profiling.shown(time, m_player.achievedRate()); });
    connect(&m_player, &Player::framesDropped, this,
            [this](quint64 frames) { m_profiling.dropped(frames, m_model.currentTime()); });
    connect(&m_pool, &DecodePool::frameDecoded, this, &Session::takeIn);
}

void Session::open(Sequence sequence, Base::Time at) {
    m_player.stop();
    m_pool.cancelAll();
    m_cache.clear();
    m_profiling.cleared();
    m_frameBytes = 0;
    m_sequence = std::move(sequence);
    m_shown = nullptr;
    m_loading = false;
    emit cacheCleared();

    const Base::Time first = m_sequence.firstTime();
    const Base::Time last = m_sequence.lastTime();
    const bool inside = at >= first && at <= last;
    m_model.setKeyFrames(std::set<Base::Time>());
    m_model.clearInOut();
    m_model.setTimes(first, Base::InvalidTime, Base::InvalidTime, last, inside ? at : first);
    m_model.setFirstVisibleTime(first);
    m_model.setLastVisibleTime(last);
    emit sequenceChanged();
    // The current time may be what it was in the sequence before.
    showCurrent();
    emit frameChanged();
}

void Session::toggleKeyFrame() {
    if (m_model.currentTime() == Base::InvalidTime)
        return;
    std::set<Base::Time> keys = m_model.keyFrames();
    if (keys.erase(m_model.currentTime()) == 0)
        keys.insert(m_model.currentTime());
    m_model.setKeyFrames(keys);
}

void Session::showCurrent() {
    if (m_sequence.isEmpty())
        return;
    m_cacheFull = false;
    const Base::Time time = m_model.currentTime();
    const auto held = m_sequence.heldTime(time);
    if (!held)
        show(missingFrame(time), false);
    else if (const FramePtr exact = m_cache.find(*held))
        show(exact, false);
    else if (const FramePtr near = m_cache.nearestPicture(*held))
        show(near, true);
    else
        show(m_shown && m_shown->state == Frame::State::Ready ? m_shown : nullptr, true);
    plan();
}

void Session::show(const FramePtr& frame, bool loading) {
    // A missing frame is no picture, but nothing better will come for this time.
    if (!loading)
        m_player.pictureShown(m_model.currentTime());
    if (frame == m_shown && loading == m_loading)
        return;
    m_shown = frame;
    m_loading = loading;
    emit frameChanged();
}

void Session::plan() {
    if (m_sequence.isEmpty())
        return;
    const std::size_t fitting =
        m_frameBytes == 0 ? requestsAtOnce : m_cache.capacity() / m_frameBytes;
    const std::size_t ahead = m_cacheFull ? 1 : std::clamp<std::size_t>(fitting, 1, farthestAhead);
    // While playing, frames that would come too late wait until the others are done.
    const double rate = double(m_formatter.timeBase().rate());
    const auto late = m_player.isPlaying() ? std::size_t(std::ceil(m_pool.averageSeconds() * rate))
                                           : std::size_t(0);
    auto times = order().next(std::max(ahead, late + 1));
    std::rotate(times.begin(), times.begin() + std::ptrdiff_t(late % times.size()), times.end());
    std::vector<DecodePool::Request> requests;
    for (const Base::Time time : times) {
        const auto held = m_sequence.heldTime(time);
        if (!held || m_cache.find(*held) || (m_shown && !m_loading && m_shown->time == *held))
            continue;
        const bool asked = std::any_of(requests.begin(), requests.end(),
                                       [&](const auto& request) { return request.time == *held; });
        if (asked)
            continue;
        requests.push_back({*held, m_sequence.path(*held)});
        if (requests.size() == requestsAtOnce)
            break;
    }
    m_pool.setRequests(std::move(requests));
}

void Session::takeIn(const FramePtr& frame) {
    m_frameBytes = frame->cost();
    const FrameCache::Outcome outcome = m_cache.insert(frame, order());
    for (const Base::Time evicted : outcome.evicted) {
        m_profiling.evicted(evicted);
        emit frameUncached(evicted);
    }
    if (outcome.stored)
        m_profiling.filled(*frame, m_cache.bytes());
    if (!outcome.stored)
        m_cacheFull = true;
    else if (frame->state == Frame::State::Ready)
        emit frameCached(frame->time);

    if (m_loading) {
        const auto held = m_sequence.heldTime(m_model.currentTime());
        if (held && *held == frame->time)
            show(frame, false);
        else if (const FramePtr near = held ? m_cache.nearestPicture(*held) : nullptr)
            show(near, true);
    }
    if (m_pool.pending() < requestsLeftBeforePlanning)
        plan();
}

PlayOrder Session::order() const {
    PlayOrder order;
    order.direction = m_player.direction();
    order.playhead = m_model.currentTime();
    order.first = order.direction != 0 ? m_model.playbackStartTime() : m_model.startTime();
    order.last =
        std::max(order.direction != 0 ? m_model.playbackEndTime() : m_model.endTime(), order.first);
    return order;
}

FramePtr Session::missingFrame(Base::Time time) const {
    auto frame = std::make_shared<Frame>();
    frame->time = time;
    frame->state = Frame::State::Missing;
    const bool outside = time < m_sequence.firstTime() || time > m_sequence.lastTime();
    frame->message = outside ? tr("The sequence goes from %1 to %2.")
                                   .arg(m_sequence.firstTime())
                                   .arg(m_sequence.lastTime())
                             : tr("%1 has no file for it.").arg(m_sequence.title());
    return frame;
}

} // namespace Kestrel::Workbench
