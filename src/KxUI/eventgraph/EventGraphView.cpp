#include <KxUI/eventgraph/EventGraphView.h>

#include <KxUI/eventgraph/CaptureState_p.h>
#include <KxUI/eventgraph/EventGraphReader.h>
#include <KxUI/eventgraph/EventGraphTimerQTime.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventTrack.h>

#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QSaveFile>
#include <QTimerEvent>

namespace Kestrel::UI {

EventGraphView::EventGraphView(QWidget* parent, IEventGraphTimer* timer)
    : QWidget(parent)
    , m_ownTimer(timer ? nullptr : std::make_unique<EventGraphTimerQTime>())
    , m_state(CaptureState::acquire(this, timer ? timer : m_ownTimer.get())) {
    const StateWriteGuard guard(m_state.lock);
    m_state.startTime = m_state.endTime = m_state.timer->time();
}

EventGraphView::~EventGraphView() {
    m_state.retire();
}

IEventGraphTimer* EventGraphView::timer() const {
    return m_state.timer;
}

QReadWriteLock* EventGraphView::stateLock() const {
    return &m_state.lock;
}

QMutex* EventGraphView::GetMutex() {
    return &profilerMutex();
}

bool EventGraphView::paused() const {
    return m_state.paused;
}

EventGraphMode EventGraphView::mode() const {
    return m_state.mode;
}

float EventGraphView::durationSeconds() const {
    return m_state.durationSeconds;
}

int EventGraphView::startTime() const {
    return m_state.startTime;
}

int EventGraphView::endTime() const {
    return m_state.endTime;
}

void EventGraphView::start(float durationSeconds, EventGraphMode mode) {
    const bool timed = mode == EventGraphMode::Forwards && durationSeconds != unlimitedDuration;
    emit captureStarting(timed);
    {
        std::vector<EventTrack::EventList> dropped; // freed after the locks
        const StateWriteGuard guard(m_state.lock);
        killStopTimer();
        m_state.mode = mode;
        m_state.durationSeconds = durationSeconds;
        m_state.clear(dropped);
        if (timed)
            m_stopTimer = startTimer(std::max(truncated(double(durationSeconds) * 1000.0), 0),
                                     Qt::CoarseTimer);
        m_state.paused = false;
    }
    update();
}

void EventGraphView::stop() {
    {
        std::vector<EventTrack::EventList> dropped;
        const StateWriteGuard guard(m_state.lock);
        killStopTimer();
        m_state.stop(dropped);
    }
    update();
    emit captureStopped();
}

void EventGraphView::clear() {
    {
        std::vector<EventTrack::EventList> dropped;
        const StateWriteGuard guard(m_state.lock);
        m_state.clear(dropped);
    }
    update();
}

void EventGraphView::addTrack(EventTrack* track) {
    if (!track)
        return;
    EventTrack::EventList dropped;
    const StateReadGuard stateGuard(m_state.lock);
    const MutexGuard guard(profilerMutex());
    m_state.add(*track, dropped);
}

void EventGraphView::removeTrack(EventTrack* track) {
    if (!track)
        return;
    const MutexGuard guard(profilerMutex());
    m_state.remove(*track);
}

const QMultiMap<int, EventTrack*>& EventGraphView::tracks() const {
    return m_state.tracks;
}

bool EventGraphView::save(const QString& path, int flags) const {
    const EventGraphWriter writer(*this, flags);
    // A pipe or a device is written to; anything else is replaced when it is complete.
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && writer.write(&file) && file.flush();
    }
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    return file.open(QIODevice::WriteOnly) && writer.write(&file) && file.commit();
}

void EventGraphView::load(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    EventGraphReader reader(*this);
    const bool complete = reader.read(&file);
    const QPointer<EventGraphView> alive(this);
    if (!complete)
        QMessageBox::warning(this, tr("Open result"),
                             tr("Error opening '%1':\n\n%2").arg(path, reader.errorString()));
    if (alive)
        update();
}

void EventGraphView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_stopTimer)
        stop();
    else
        QWidget::timerEvent(event);
}

void EventGraphView::killStopTimer() {
    if (m_stopTimer != 0)
        killTimer(m_stopTimer);
    m_stopTimer = 0;
}

EventGraphView* EventTrack::graph() const {
    const MutexGuard guard(profilerMutex());
    const CaptureState* const capture = m_capture.load(std::memory_order_relaxed);
    return capture ? capture->view : nullptr;
}

void EventTrack::setGraph(EventGraphView* graph) {
    const MutexGuard guard(profilerMutex());
    m_capture.store(graph ? &graph->m_state : nullptr, std::memory_order_release);
}

} // namespace Kestrel::UI
