#include <KxUI/eventgraph/EventGraphView_p.h>

#include <KxUI/eventgraph/EventGraphReader.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphTimerQTime.h>
#include <KxUI/eventgraph/EventHitTest_p.h>
#include <KxUI/eventgraph/EventPopup_p.h>
#include <KxUI/eventgraph/EventTraceWriter_p.h>
#include <KxUI/eventgraph/ViewPainting_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QSaveFile>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

// A pipe or a device is written to; anything else is replaced when the new content is complete.
template <class Write>
bool writeFile(const QString& path, Write write) {
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && write(&file);
    }
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    return file.open(QIODevice::WriteOnly) && write(&file) && file.commit();
}

} // namespace

EventGraphViewPrivate::EventGraphViewPrivate(EventGraphView* view, IEventGraphTimer* timer)
    : q(view)
    , ownTimer(timer ? nullptr : std::make_unique<EventGraphTimerQTime>())
    , state(CaptureState::acquire(view, timer ? timer : ownTimer.get()))
    , drag(QApplication::startDragDistance()) {}

EventGraphView::EventGraphView(QWidget* parent, IEventGraphTimer* timer)
    : QWidget(parent)
    , d(std::make_unique<EventGraphViewPrivate>(this, timer)) {
    setFocusPolicy(Qt::WheelFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    {
        const StateWriteGuard guard(d->state.lock);
        d->state.startTime = d->state.endTime = d->state.timer->time();
    }
    d->popup = new EventPopup(this);
    resize(sizeHint());
}

EventGraphView::~EventGraphView() {
    d->state.retire();
}

IEventGraphTimer* EventGraphView::timer() const {
    return d->state.timer;
}

QReadWriteLock* EventGraphView::stateLock() const {
    return &d->state.lock;
}

QMutex* EventGraphView::GetMutex() {
    return &profilerMutex();
}

bool EventGraphView::paused() const {
    return d->state.paused;
}

EventGraphMode EventGraphView::mode() const {
    return d->state.mode;
}

float EventGraphView::durationSeconds() const {
    return d->state.durationSeconds;
}

int EventGraphView::startTime() const {
    return d->state.startTime;
}

int EventGraphView::endTime() const {
    return d->state.endTime;
}

void EventGraphView::start(float durationSeconds, EventGraphMode mode) {
    KXUI_INTERFACE_THREAD(this);
    const bool timed = mode == EventGraphMode::Forwards && durationSeconds != unlimitedDuration;
    const bool wasPaused = paused();
    const QPointer<EventGraphView> alive(this);
    Q_EMIT captureStarting(timed);
    if (!alive)
        return;
    {
        Dropped dropped; // destroyed after the lock
        const StateWriteGuard guard(d->state.lock);
        d->killStopTimer();
        d->state.mode = mode;
        d->state.durationSeconds = durationSeconds;
        d->state.clear(dropped);
        if (timed)
            d->stopTimer = startTimer(std::max(truncated(double(durationSeconds) * 1000.0), 0),
                                      Qt::CoarseTimer);
        d->state.paused = false;
    }
    hidePopup();
    d->found = {};
    setSelection(0, 0);
    if (alive)
        d->relayout();
    if (alive && wasPaused)
        Q_EMIT pausedChanged(false);
}

void EventGraphView::stop() {
    KXUI_INTERFACE_THREAD(this);
    const bool wasPaused = paused();
    {
        Dropped dropped;
        const StateWriteGuard guard(d->state.lock);
        d->killStopTimer();
        d->state.stop(dropped);
    }
    const QPointer<EventGraphView> alive(this);
    d->relayout();
    if (alive)
        Q_EMIT captureStopped();
    if (alive && !wasPaused)
        Q_EMIT pausedChanged(true);
}

void EventGraphView::clear() {
    KXUI_INTERFACE_THREAD(this);
    {
        Dropped dropped;
        const StateWriteGuard guard(d->state.lock);
        d->state.clear(dropped);
    }
    d->relayout();
}

void EventGraphView::addTrack(EventTrack* track) {
    if (!track)
        return;
    Dropped dropped;
    const StateReadGuard stateGuard(d->state.lock);
    const MutexGuard guard(profilerMutex());
    d->state.add(EventTrackPrivate::of(*track), dropped);
}

void EventGraphView::removeTrack(EventTrack* track) {
    if (!track)
        return;
    const MutexGuard guard(profilerMutex());
    d->state.remove(EventTrackPrivate::of(*track));
}

EventGraphSnapshot EventGraphView::snapshot() const {
    EventGraphSnapshot result;
    std::vector<TrackContent> contents;
    {
        const StateReadGuard stateGuard(d->state.lock);
        const MutexGuard guard(profilerMutex());
        result.startTime = d->state.startTime;
        result.endTime = d->state.endTime;
        for (const EventTrack* track : qAsConst(d->state.tracks))
            contents.push_back(CaptureState::contentOf(EventTrackPrivate::of(*track)));
    }
    for (TrackContent& content : contents)
        result.tracks.push_back(snapshotOf(std::move(content)));
    return result;
}

const QMultiMap<int, EventTrack*>& EventGraphView::tracks() const {
    return d->state.tracks;
}

void EventGraphView::setBackgroundStripeSpacing(int pixels) {
    KXUI_INTERFACE_THREAD(this);
    if (d->stripeSpacing == pixels)
        return;
    d->stripeSpacing = pixels;
    update();
    Q_EMIT backgroundStripeSpacingChanged(pixels);
}

int EventGraphView::backgroundStripeSpacing() const {
    return d->stripeSpacing;
}

void EventGraphView::setSyncTrack(EventTrack* track) {
    const MutexGuard guard(profilerMutex());
    d->state.syncTrack = track;
    d->state.rowsChanged();
}

EventTrack* EventGraphView::syncTrack() const {
    const MutexGuard guard(profilerMutex());
    return d->state.syncTrack;
}

void EventGraphView::setHideEmptyTracks(bool hide) {
    KXUI_INTERFACE_THREAD(this);
    if (d->hideEmptyTracks == hide)
        return;
    d->hideEmptyTracks = hide;
    const QPointer<EventGraphView> alive(this);
    d->relayout();
    if (alive)
        Q_EMIT hideEmptyTracksChanged(hide);
}

bool EventGraphView::hideEmptyTracks() const {
    return d->hideEmptyTracks;
}

void EventGraphView::setHitTestMode(EventHitTestMode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (d->hitTestMode == mode)
        return;
    d->hitTestMode = mode;
    Q_EMIT hitTestModeChanged(mode);
}

EventHitTestMode EventGraphView::hitTestMode() const {
    return d->hitTestMode;
}

float EventGraphView::horizontalScale() const {
    return d->scale.pixelsPerMs;
}

bool EventGraphView::save(const QString& path, int flags) const {
    return save(path, SaveFlags(QFlag(flags)));
}

bool EventGraphView::save(const QString& path, SaveFlags flags) const {
    return writeFile(
        path, [&](QIODevice* device) { return EventGraphWriter(*this, flags).write(device); });
}

bool EventGraphView::exportTrace(const QString& path) const {
    return writeFile(path, [&](QIODevice* device) { return writeEventTrace(snapshot(), device); });
}

bool EventGraphView::load(const QString& path) {
    KXUI_INTERFACE_THREAD(this);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    EventGraphReader reader(*this);
    const QPointer<EventGraphView> alive(this);
    const bool complete = reader.read(&file);
    if (!complete)
        QMessageBox::warning(this, tr("Open result"),
                             tr("Error opening '%1':\n\n%2").arg(path, reader.errorString()));
    if (alive)
        d->relayout();
    return complete;
}

QSize EventGraphView::sizeHint() const {
    if (!paused())
        return {200, 100};
    return viewSize(d->span(), d->scale.pixelsPerMs, d->upToDateScene().height());
}

QString EventGraphView::eventTextAt(const QPoint& point, QRect* hitRect) const {
    if (!paused())
        return {};
    const Scene& scene = d->upToDateScene();
    const auto hit = hitRows(scene, {d->scale, point, width(), d->hitTestMode});
    if (!hit)
        return {};
    if (hitRect)
        *hitRect = hit->event.rect;
    QString text;
    if (hit->event.kind != EventHit::Kind::Sample)
        text = userText(scene.index(*hit->row), hit->event.event);
    if (!text.isEmpty())
        text += QLatin1String(", ");
    return text + hitText(hit->event) + CaptureState::localTooltipText(hit->row->track);
}

void EventGraphView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    if (paused())
        paintCapture(painter, d->painting(event->rect(), ViewColors(palette())));
    else
        paintRecording(painter, rect(), palette().color(QPalette::Text));
}

void EventGraphView::wheelEvent(QWheelEvent* event) {
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        event->ignore();
        return;
    }
    event->accept();
    if (paused())
        d->setScale(zoomed(d->scale.pixelsPerMs, delta, d->span()),
                    static_cast<int>(event->position().x()));
}

void EventGraphView::zoomAbout(int x, int steps) {
    KXUI_INTERFACE_THREAD(this);
    if (paused())
        d->setScale(zoomed(d->scale.pixelsPerMs, std::clamp(steps, -1000, 1000) * 120, d->span()),
                    x);
}

void EventGraphView::zoomToFit() {
    KXUI_INTERFACE_THREAD(this);
    d->showTimes(0, d->span());
}

void EventGraphView::zoomToSelection() {
    KXUI_INTERFACE_THREAD(this);
    if (d->selectionStart != d->selectionEnd)
        d->showTimes(d->selectionStart, d->selectionEnd);
}

int EventGraphView::selectionStart() const {
    return d->selectionStart;
}

int EventGraphView::selectionEnd() const {
    return d->selectionEnd;
}

void EventGraphView::setSelection(int start, int end) {
    KXUI_INTERFACE_THREAD(this);
    const int longest = std::max(d->span(), 0);
    start = std::clamp(start, 0, longest);
    end = std::clamp(end, 0, longest);
    if (start > end)
        std::swap(start, end);
    if (d->selectionStart == start && d->selectionEnd == end)
        return;
    d->selectionStart = start;
    d->selectionEnd = end;
    update();
    Q_EMIT selectionChanged();
}

bool EventGraphView::findNext(const QString& text, bool backwards) {
    KXUI_INTERFACE_THREAD(this);
    if (!paused())
        return false;
    const auto place = findText(d->upToDateScene().rows(), text, d->found, backwards);
    if (place)
        d->showFound(*place);
    return place.has_value();
}

void EventGraphView::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    if (d->popup->isVisible()) {
        hidePopup();
        return;
    }
    const bool selects = event->modifiers() & Qt::ShiftModifier;
    const QString text = selects ? QString() : eventTextAt(event->pos());
    if (!text.isEmpty())
        d->popup->showText(text, event->globalPos());
    else if (event->button() == Qt::LeftButton && paused())
        d->drag.press(event->pos().x());
}

void EventGraphView::mouseMoveEvent(QMouseEvent* event) {
    d->execute(d->drag.move(event->pos().x(), event->buttons() & Qt::LeftButton));
}

void EventGraphView::mouseReleaseEvent(QMouseEvent*) {
    d->execute(d->drag.release());
}

void EventGraphView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoomAbout(d->middle(), 1);
    case Qt::Key_Minus:
        return zoomAbout(d->middle(), -1);
    case Qt::Key_F:
        return zoomToFit();
    case Qt::Key_Z:
        return zoomToSelection();
    case Qt::Key_Escape:
        if (d->forgetMarks())
            return;
        break;
    default:
        if (d->scrollByKey(event->key()))
            return;
    }
    QWidget::keyPressEvent(event);
}

void EventGraphView::hideEvent(QHideEvent* event) {
    hidePopup();
    QWidget::hideEvent(event);
}

void EventGraphView::hidePopup() {
    d->popup->hide();
}

void EventGraphView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == d->stopTimer)
        stop();
    else
        QWidget::timerEvent(event);
}

} // namespace Kestrel::UI
