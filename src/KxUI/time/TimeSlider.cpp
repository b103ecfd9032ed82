#include <KxUI/time/TimeSlider.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeMetaTypes_p.h>
#include <KxUI/time/TimeSliderAccessible_p.h>
#include <KxUI/time/TimeSliderPrivate_p.h>

#include <QGestureEvent>
#include <QGuiApplication>
#include <QKeyEvent>

#include <cmath>
#include <cstdlib>

namespace Kestrel::UI {
namespace {

using Base::InvalidTime;
using Base::Time;
using Geometry = TimeSliderGeometry;

} // namespace

TimeSlider::TimeSlider(QWidget* parent)
    : QWidget(parent)
    , m(std::make_unique<Private>(this)) {
    registerTimeMetaTypes();
    qRegisterMetaType<HandleType>("Kestrel::UI::TimeSlider::HandleType");
    installAccessible<TimeSliderAccessible, TimeSlider>();
    m->indicators.setBars(1);
    m->setUpWidget();
}

TimeSlider::TimeSlider(TimeSliderModel* model, TimeFormatter* formatter, int numCacheBars,
                       int options)
    : TimeSlider() {
    m->options = Options(options);
    m->indicators.setBars(numCacheBars);
    setModel(model);
    setFormatter(formatter);
}

TimeSlider::~TimeSlider() = default;

void TimeSlider::setModel(TimeSliderModel* model) {
    KXUI_INTERFACE_THREAD(this);
    if (model == m->model)
        return;
    const QPointer<TimeSlider> guard(this);
    m->run(m->drag.cancel(), nullptr);
    if (!guard)
        return;
    for (const QMetaObject::Connection& connection : m->modelConnections)
        disconnect(connection);
    m->model = model;
    m->followModel();
    Q_EMIT modelChanged();
}

TimeSliderModel* TimeSlider::model() const {
    return m->model;
}

void TimeSlider::setFormatter(TimeFormatter* formatter) {
    KXUI_INTERFACE_THREAD(this);
    if (formatter == m->formatter)
        return;
    disconnect(m->formatterConnection);
    m->formatter = formatter;
    if (formatter)
        m->formatterConnection =
            connect(formatter, &TimeFormatter::timeFormatChanged, this, &TimeSlider::redraw);
    redraw();
    Q_EMIT formatterChanged();
}

TimeFormatter* TimeSlider::formatter() const {
    return m->formatter;
}

void TimeSlider::setOptions(Options options) {
    KXUI_INTERFACE_THREAD(this);
    if (options == m->options)
        return;
    m->options = options;
    redraw();
    Q_EMIT settingsChanged();
}

TimeSlider::Options TimeSlider::options() const {
    return m->options;
}

QSize TimeSlider::sizeHint() const {
    return {512, 37};
}

void TimeSlider::setFirstVisibleTime(Time time) {
    KXUI_INTERFACE_THREAD(this);
    const TimeSliderRange clip = m->geometry().clip;
    TimeSliderRange range = m->visible();
    range.first = time;
    if (range.first > clip.last - 1)
        range.first = clip.last - 1;
    if (range.last < range.first + 1)
        range.last = range.first + 1;
    setTimeRange(range.first, range.last);
}

Time TimeSlider::firstVisibleTime() const {
    return m->visible().first.time();
}

void TimeSlider::setLastVisibleTime(Time time) {
    KXUI_INTERFACE_THREAD(this);
    const TimeSliderRange clip = m->geometry().clip;
    TimeSliderRange range = m->visible();
    range.last = time;
    if (range.last < clip.first + 1)
        range.last = clip.first + 1;
    if (range.first > range.last - 1)
        range.first = range.last - 1;
    setTimeRange(range.first, range.last);
}

Time TimeSlider::lastVisibleTime() const {
    return m->visible().last.time();
}

void TimeSlider::setTimeRange(TimeSliderTime first, TimeSliderTime last) {
    KXUI_INTERFACE_THREAD(this);
    m->storeRange(m->allowed({first, last}));
}

void TimeSlider::scrollToTime(Time time) {
    const TimeSliderRange range = m->visible();
    setTimeRange(time, time + (range.last - range.first));
}

void TimeSlider::zoomAboutTime(Time time, float factor) {
    const TimeSliderRange range = m->visible();
    zoomAboutTime(time, factor, range.first, range.last);
}

void TimeSlider::zoomAboutTime(Time time, float factor, TimeSliderTime first, TimeSliderTime last) {
    if (!(factor > 0) || !std::isfinite(factor))
        return;
    const QPointer<TimeSlider> guard(this);
    const TimeSliderRange range = zoomedRange({first, last}, time, factor);
    setTimeRange(range.first, range.last);
    if (guard)
        Q_EMIT zoomOrPanChanged();
}

void TimeSlider::pan(Time time) {
    if (time == 0 || time == InvalidTime)
        return;
    const QPointer<TimeSlider> guard(this);
    const TimeSliderRange range = m->visible().shifted(-time);
    setTimeRange(range.first, range.last);
    if (guard)
        Q_EMIT zoomOrPanChanged();
}

void TimeSlider::setScrollMode(int mode) {
    KXUI_INTERFACE_THREAD(this);
    if (mode == m->scrollMode)
        return;
    m->scrollMode = mode;
    Q_EMIT settingsChanged();
}

int TimeSlider::scrollMode() const {
    return m->scrollMode;
}

int TimeSlider::clipTimeToX(Time time) const {
    return m->geometry().timeToX(time);
}

Time TimeSlider::XToClipTime(int x) const {
    return m->geometry().xToTime(x);
}

int TimeSlider::clipXToVisible(int x) const {
    return m->geometry().clampX(x);
}

void TimeSlider::setNumCacheBars(int bars) {
    KXUI_INTERFACE_THREAD(this);
    if (std::max(bars, 0) == m->indicators.bars())
        return;
    m->indicators.setBars(bars);
    m->indicators.invalidate();
    update();
    Q_EMIT settingsChanged();
}

int TimeSlider::numCacheBars() const {
    return m->indicators.bars();
}

void TimeSlider::displayFrameAsCached(Time frame, int bar) {
    KXUI_INTERFACE_THREAD(this);
    m->queueIndicatorUpdate(m->indicators.setFrame(m->geometry(), bar, frame, true));
}

void TimeSlider::clearCachedFrame(Time frame, int bar) {
    KXUI_INTERFACE_THREAD(this);
    m->queueIndicatorUpdate(m->indicators.setFrame(m->geometry(), bar, frame, false));
}

void TimeSlider::setCachedFrames(const FrameSet& frames, int bar) {
    KXUI_INTERFACE_THREAD(this);
    if (m->indicators.setFrames(bar, frames))
        m->queueIndicatorUpdate({0, width()});
}

void TimeSlider::setCacheBarColor(const QColor& color, int bar) {
    KXUI_INTERFACE_THREAD(this);
    if (m->indicators.setColor(bar, color))
        m->queueIndicatorUpdate({0, width()});
}

void TimeSlider::setPlayheadColor(const QColor& color) {
    KXUI_INTERFACE_THREAD(this);
    if (m->playheadColor == color)
        return;
    m->playheadColor = color;
    update(m->playheadRegion(m->currentTime) + m->playheadRegion(m->hoverTime));
    Q_EMIT settingsChanged();
}

QColor TimeSlider::playheadColor() const {
    return m->playheadColor;
}

void TimeSlider::setPreviewPlayhead(Time time) {
    KXUI_INTERFACE_THREAD(this);
    m->hover.reset();
    m->setHover(time);
}

void TimeSlider::clearPreviewPlayhead() {
    KXUI_INTERFACE_THREAD(this);
    m->endHover();
}

TimeSlider::HandleType TimeSlider::dragHandle() const {
    return m->drag.handle();
}

void TimeSlider::timeChanged(TimeSliderModel::TimeFlags flags) {
    using Model = TimeSliderModel;
    const TimeSliderModel::TimeFlags range = Model::FirstVisibleTime | Model::LastVisibleTime;
    const TimeSliderModel::TimeFlags clip = Model::StartTime | Model::EndTime;
    if (flags & (range | clip | Model::InTime | Model::OutTime))
        redraw();
    if ((flags & range) && !m->settingRange)
        updateIndicatorBars();
    if ((flags & (range | clip)) && !m->settingRange)
        m->hoverAgain();
    if (flags & Model::KeyFrames) {
        m->indicators.invalidate();
        m->queueIndicatorUpdate({0, width()});
        update(m->playheadRegion(m->currentTime) + m->playheadRegion(m->hoverTime));
    }
    if ((flags & Model::CurrentTime) && m->model)
        m->setCurrentTime(m->model->currentTime());
}

void TimeSlider::zoomToFit() {
    const TimeSliderRange clip = m->geometry().clip;
    setTimeRange(clip.first, clip.last);
}

void TimeSlider::zoomToFitInOut() {
    if (!m->model)
        return;
    const TimeSliderRange range = m->playback();
    setTimeRange(range.first, range.last);
}

void TimeSlider::scrollTimeVisible(Time time) {
    const TimeSliderRange range = m->visible();
    const TimeSliderRange scrolled = scrolledRange(range, time, m->scrollMode, m->geometry().clip);
    if (!(scrolled == range))
        setTimeRange(scrolled.first, scrolled.last);
}

void TimeSlider::scrollTimeToX(Time time, int x) {
    const Geometry ruler = m->geometry();
    const float pixels = static_cast<float>(x) - Geometry::Margin;
    scrollToTime((TimeSliderTime(time) - ruler.pixelsToTime(pixels)).time());
}

void TimeSlider::redraw() {
    m->sliderDirty = true;
    update();
}

void TimeSlider::updateIndicatorBars() {
    m->indicators.invalidate();
    update(m->indicators.area({0, width()}));
}

bool TimeSlider::pressHandle(QMouseEvent*) {
    return false;
}

void TimeSlider::releaseHandle(QMouseEvent*) {}

void TimeSlider::takeBackHandle() {}

void TimeSlider::moveHandle(QMouseEvent*, Time) {}

void TimeSlider::announceTimeDrag(HandleType handle, const Time* times) {
    if (!times)
        return;
    m->drag.setAnnounced();
    Q_EMIT beginTimeDrag(handle, times);
}

bool TimeSlider::event(QEvent* event) {
    if (event->type() != QEvent::Gesture)
        return QWidget::event(event);
    const QPointer<TimeSlider> guard(this);
    auto* gestures = static_cast<QGestureEvent*>(event);
    if (auto* pinch = static_cast<QPinchGesture*>(gestures->gesture(Qt::PinchGesture))) {
        gestures->accept(pinch);
        m->pinch(*pinch);
    }
    if (!guard)
        return true;
    if (auto* pan = static_cast<QPanGesture*>(gestures->gesture(Qt::PanGesture))) {
        gestures->accept(pan);
        m->panBy(*pan);
    }
    return true;
}

void TimeSlider::resizeEvent(QResizeEvent*) {
    m->sliderDirty = true;
    m->hoverAgain();
    updateIndicatorBars();
}

void TimeSlider::changeEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
    case QEvent::EnabledChange:
        m->prepareGlyphs(m->scale);
        redraw();
        break;
    default:
        break;
    }
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        m->run(m->drag.cancel(), nullptr); // no release will come
}

void TimeSlider::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m->run(m->drag.cancel(), nullptr);
}

void TimeSlider::mousePressEvent(QMouseEvent* event) {
    m->mouse = event->pos();
    m->sawButton = QGuiApplication::mouseButtons() & event->button();
    m->run(m->drag.press(m->scene(), {event->x(), event->y(), event->button(), event->modifiers()}),
           event);
}

void TimeSlider::mouseMoveEvent(QMouseEvent* event) {
    const QPointer<TimeSlider> guard(this);
    if (!(event->buttons() & m->drag.button())) // the release went elsewhere, or there is no drag
        m->run(m->drag.cancel(), event);
    if (!guard)
        return;
    if (!m->drag.isActive()) {
        if (m->drag.button() == Qt::NoButton)
            m->hoverAt(event->pos());
        return;
    }
    if (m->drag.isAt(event->x()))
        return;
    m->mouse = event->pos();
    Time time = InvalidTime;
    if (m->drag.isToTime()) {
        time = m->drag.timeAt(m->scene(), event->x());
        if (!(event->modifiers() & Qt::ShiftModifier))
            Q_EMIT snapTime(time);
    }
    if (guard)
        m->run(m->drag.move(m->scene(), event->x(), time), event);
}

void TimeSlider::mouseReleaseEvent(QMouseEvent* event) {
    m->run(m->drag.release(event->button()), event);
}

void TimeSlider::leaveEvent(QEvent* event) {
    m->endHover();
    m->setRangeBarHover(false);
    QWidget::leaveEvent(event);
}

void TimeSlider::wheelEvent(QWheelEvent* event) {
    const QPoint delta = event->angleDelta();
    const QPoint position = event->position().toPoint();
    if (delta.y() == 0 || std::abs(delta.x()) > std::abs(delta.y()) || !rect().contains(position)) {
        event->ignore();
        return;
    }
    const Time time = XToClipTime(position.x());
    event->accept();
    m->zoomByWheel(time, delta.y());
}

void TimeSlider::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!isPlain || !m->model) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        m->model->frameBackwards();
        break;
    case Qt::Key_Right:
        m->model->frameForwards();
        break;
    case Qt::Key_Home:
        m->model->goToStart();
        break;
    case Qt::Key_End:
        m->model->goToEnd();
        break;
    default:
        QWidget::keyPressEvent(event);
        break;
    }
}

void TimeSlider::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m->autoScrollTimer.timerId())
        m->autoScroll();
    else
        QWidget::timerEvent(event);
}

} // namespace Kestrel::UI
