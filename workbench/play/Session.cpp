#include "play/Session.h"

#include "media/FrameMemory.h"

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
/** Frames graded before they are shown. */
constexpr std::size_t gradedAhead = 8;

} // namespace

Session::Session(Base::TimeBase timeBase, std::size_t cacheBytes, QObject* parent)
    : QObject(parent)
    , m_profiling(decodeThreads(), double(timeBase.rate()), cacheBytes)
    , m_player(&m_model)
    , m_cache(cacheBytes)
    , m_grader(cacheBytes / 4)
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
    connect(&m_grader, &FrameGrader::frameGraded, this, [this](const FramePtr& source) {
        m_profiling.graded(*source, m_grader.lastSeconds());
        if (source != m_source)
            return;
        present();
        if (m_regradeWaits)
            applyGrade();
    });
    connect(&m_grades, &GradeHistory::gradeChanged, this, &Session::regrade);
    connect(&m_grades, &GradeHistory::bypassChanged, this, &Session::regrade);
    connect(&m_grades, &GradeHistory::sequenceWanted, this, &Session::open);
}

void Session::open(Sequence sequence, Base::Time at) {
    m_player.stop();
    m_player.forgetDropped();
    m_marks.leave();
    m_pool.cancelAll();
    m_cache.clear();
    m_grader.clear();
    FrameMemory::release();
    m_profiling.cleared();
    m_frameBytes = 0;
    m_source = nullptr;
    m_sourceStandsIn = false;
    m_shown = nullptr;
    m_loading = false;
    m_sequence = std::move(sequence);
    m_grades.open(m_sequence, m_model.currentTime());
    emit cacheCleared();

    const Base::Time first = m_sequence.firstTime();
    const Base::Time last = m_sequence.lastTime();
    const bool inside = at >= first && at <= last;
    m_model.setKeyFrames(std::set<Base::Time>());
    m_model.clearInOut();
    setTimeBase(m_grades.timeBase().value_or(m_formatter.timeBase()));
    m_model.setTimes(
        UI::TimeSliderModel::Times().withClip(first, last).withCurrent(inside ? at : first));
    m_model.setFirstVisibleTime(first);
    m_model.setLastVisibleTime(last);
    m_marks.enter();
    emit sequenceChanged();
    // The current time may be what it was in the sequence before.
    showCurrent();
    emit frameChanged();
}

void Session::setCacheBytes(std::size_t bytes) {
    if (bytes == m_cache.capacity())
        return;
    for (const Base::Time evicted : m_cache.setCapacity(bytes, order())) {
        m_profiling.evicted(evicted);
        emit frameUncached(evicted);
    }
    m_grader.setCapacity(bytes / 4);
    FrameMemory::release();
    m_cacheFull = false;
    emit cacheSizeChanged();
    plan();
}

void Session::setTimeBase(Base::TimeBase timeBase) {
    if (!(timeBase.rate() > 0.0F))
        return;
    m_grades.setTimeBase(timeBase);
    if (timeBase == m_formatter.timeBase())
        return;
    m_formatter.setTimeBase(timeBase);
    m_player.setTimeBase(timeBase);
    emit timeBaseChanged();
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
        show(m_source && m_source->state == Frame::State::Ready ? m_source : nullptr, true);
    plan();
}

void Session::show(const FramePtr& source, bool standsIn) {
    m_source = source;
    m_sourceStandsIn = standsIn;
    if (m_regradeWaits)
        return applyGrade();
    planGrades();
    present();
}

/** Shows the source as it is graded, or goes on showing what is shown until it is. */
void Session::present() {
    FramePtr picture = m_grader.find(m_source);
    const bool waits = m_source && !picture;
    if (waits)
        picture = m_shown;
    const bool loading = m_sourceStandsIn || waits;
    // A missing frame is no picture, but nothing better will come for this time.
    if (!loading)
        m_player.pictureShown(m_model.currentTime());
    if (picture == m_shown && loading == m_loading)
        return;
    m_shown = picture;
    m_loading = loading;
    emit frameChanged();
    if (m_pointed != QPoint(-1, -1))
        emit pointedPixelChanged();
}

Base::Time Session::heldTime() const {
    return m_sequence.heldTime(m_model.currentTime()).value_or(m_model.currentTime());
}

void Session::pointAt(const QPoint& pixel) {
    if (pixel == m_pointed)
        return;
    const bool begins = m_pointed == QPoint(-1, -1);
    m_pointed = pixel;
    emit pointedPixelChanged();
    if (begins)
        plan();
}

void Session::readPixels(bool reads) {
    if (reads == m_readsPixels)
        return;
    m_readsPixels = reads;
    plan();
}

void Session::keepForScopes(bool samples, bool signal) {
    m_grader.setKeepsSignal(signal);
    m_scopesNeedSamples = samples;
    m_cacheFull = false;
    if (m_sequence.isEmpty() || !m_source)
        return;
    planGrades();
    present();
    plan();
}

void Session::setFillsCache(bool fills) {
    if (fills == m_fillsCache)
        return;
    m_fillsCache = fills;
    m_cacheFull = false;
    plan();
}

std::optional<PixelValues> Session::pointedPixel() const {
    return pixelAt(m_pointed);
}

std::optional<PixelValues> Session::pixelAt(const QPoint& pixel) const {
    if (!m_source || !m_shown || m_loading)
        return std::nullopt;
    return PixelValues::of(*m_source, *m_shown, pixel);
}

void Session::regrade() {
    // While a drag goes on, each of its pictures is finished before the next is begun: or else none
    // would be seen until the mouse rests.
    m_regradeWaits = m_source && m_grader.isGrading(m_source);
    if (!m_regradeWaits)
        applyGrade();
}

void Session::applyGrade() {
    m_regradeWaits = false;
    m_grader.setGrade(m_grades.isBypassed() ? Grade() : m_grades.grade());
    m_keepSamples = !m_grades.grade().isIdentity();
    m_cacheFull = false;
    if (m_sequence.isEmpty() || !m_source)
        return;
    planGrades();
    present();
    plan();
}

/** Asks for what is to be shown, then for what will be shown next. */
void Session::planGrades() {
    if (!m_grader.isActive())
        return;
    std::vector<FramePtr> sources{m_source};
    for (const Base::Time time : order().next(gradedAhead)) {
        const auto held = m_sequence.heldTime(time);
        const FramePtr source = held ? m_cache.find(*held) : nullptr;
        if (source && source != m_source)
            sources.push_back(source);
    }
    m_grader.setRequests(sources);
}

bool Session::areSamplesWanted(Base::Time held) const {
    const bool isRead = m_readsPixels || m_pointed != QPoint(-1, -1);
    return m_keepSamples || m_scopesNeedSamples ||
           (isRead && !m_player.isPlaying() && held == heldTime());
}

/** Whether there is no need to decode a frame again. */
bool Session::isGoodEnough(const FramePtr& source, Base::Time held) const {
    return source && (source->isComplete || !areSamplesWanted(held));
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
    // It may lie outside of what is filled.
    if (m_fillsCache)
        times.insert(times.begin(), m_model.currentTime());
    std::vector<DecodePool::Request> requests;
    for (const Base::Time time : times) {
        const auto held = m_sequence.heldTime(time);
        if (!held || isGoodEnough(m_cache.find(*held), *held))
            continue;
        // It may be too large for the cache.
        if (!m_sourceStandsIn && isGoodEnough(m_source, *held) && m_source->time == *held)
            continue;
        const bool asked = std::any_of(requests.begin(), requests.end(),
                                       [&](const auto& request) { return request.time == *held; });
        if (asked)
            continue;
        requests.push_back({*held, m_sequence.path(*held), areSamplesWanted(*held)});
        if (requests.size() == requestsAtOnce)
            break;
    }
    m_pool.setRequests(std::move(requests));
}

void Session::takeIn(const FramePtr& frame) {
    m_frameBytes = frame->cost();
    const bool wasCached = m_cache.find(frame->time) != nullptr;
    const FrameCache::Outcome outcome = m_cache.insert(frame, order());
    for (const Base::Time evicted : outcome.evicted) {
        m_profiling.evicted(evicted);
        emit frameUncached(evicted);
    }
    if (outcome.stored)
        m_profiling.filled(*frame, m_cache.bytes(), m_sequence.title());
    else if (wasCached)
        emit frameUncached(frame->time);
    if (!outcome.stored)
        m_cacheFull = true;
    else if (frame->state == Frame::State::Ready)
        emit frameCached(frame->time);

    const auto held = m_sequence.heldTime(m_model.currentTime());
    if (held && *held == frame->time)
        show(frame, false);
    else if (m_sourceStandsIn) {
        if (const FramePtr near = held ? m_cache.nearestPicture(*held) : nullptr)
            show(near, true);
    } else {
        planGrades();
    }
    if (m_pool.pending() < requestsLeftBeforePlanning)
        plan();
    if (isSettled())
        FrameMemory::release();
}

PlayOrder Session::order() const {
    PlayOrder order;
    order.direction = m_player.direction();
    order.stride = order.direction != 0 ? m_player.speed() : 1;
    order.playhead = m_model.currentTime();
    const bool fills = m_fillsCache && order.direction == 0;
    if (fills)
        order.direction = 1;
    order.first = order.direction != 0 ? m_model.playbackStartTime() : m_model.startTime();
    order.last =
        std::max(order.direction != 0 ? m_model.playbackEndTime() : m_model.endTime(), order.first);
    if (fills)
        order.playhead = std::clamp(order.playhead, order.first, order.last);
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
