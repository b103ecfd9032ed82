#include <KxUI/time/TimeSliderPrivate_p.h>

#include <KxUI/time/TimeFormatter.h>

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QGesture>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Base::InvalidTime;
using Base::Time;
using Geometry = TimeSliderGeometry;
using Settings = TimeSliderSettings;

constexpr int FontPixels = 9;
constexpr int AutoScrollMilliseconds = 100;
constexpr float WheelStep = 1.1F;
constexpr float WheelStepBack = 0.9090909F;
constexpr int WheelNotch = 120;

// The pop-up of the one slider whose derived handle is being dragged.
QPointer<QLabel>& timePopup() {
    static QPointer<QLabel> popup;
    return popup;
}

} // namespace

TimeSlider::Private::Private(TimeSlider* slider)
    : q(slider)
    , escape([this] { run(drag.takeBack(scene()), nullptr); }) {}

void TimeSlider::Private::setUpWidget() {
    prepareGlyphs(q->devicePixelRatioF());
    q->setAttribute(Qt::WA_OpaquePaintEvent);
    q->setAttribute(Qt::WA_MouseTracking);
    q->setAutoFillBackground(true);
    q->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    q->setContextMenuPolicy(Qt::PreventContextMenu);
    q->setFocusPolicy(Qt::TabFocus); // a click must not take the keyboard from the viewer
    q->grabGesture(Qt::PanGesture);
    q->grabGesture(Qt::PinchGesture);
}

// -- What is where

TimeSliderRange TimeSlider::Private::visible() const {
    return model ? TimeSliderRange{model->firstVisibleTime(), model->lastVisibleTime()}
                 : TimeSliderRange{};
}

Geometry TimeSlider::Private::geometry() const {
    Geometry geometry;
    geometry.width = q->width();
    geometry.height = q->height();
    geometry.visible = visible();
    if (model)
        geometry.clip = {model->startTime(), model->endTime()};
    return geometry;
}

TimeSliderScene TimeSlider::Private::scene() const {
    TimeSliderScene scene;
    scene.geometry = geometry();
    scene.currentTime = currentTime;
    if (model) {
        scene.inTime = model->inTime();
        scene.outTime = model->outTime();
        scene.inOutLock = model->inOutLock();
    }
    scene.mainTransport = isMain();
    scene.startDragDistance = QApplication::startDragDistance();
    return scene;
}

TimeSliderRange TimeSlider::Private::playback() const {
    if (!model)
        return {};
    TimeSliderRange range{model->startTime(), model->endTime()};
    if (model->inOutLock() && model->inTime() != InvalidTime)
        range.first = model->inTime();
    if (model->inOutLock() && model->outTime() != InvalidTime)
        range.last = model->outTime();
    return range;
}

QString TimeSlider::Private::text(TimeSliderTime time) const {
    return formatter ? formatter->formatTime(time.time()) : QString();
}

// Whether there is a place for a playhead at this time.
bool TimeSlider::Private::isShown(Time time) const {
    const Geometry ruler = geometry();
    return ruler.hasClip() && ruler.visible.first <= time && ruler.visible.last + 1 >= time;
}

QColor TimeSlider::Private::colorAt(Time time) const {
    if (model && model->keyFrames().count(time) != 0)
        return Settings::all().keyFrame;
    return playheadColor.isValid() ? playheadColor : Settings::all().standardPlayhead;
}

QRegion TimeSlider::Private::playheadRegion(Time time) const {
    if (!isShown(time))
        return {};
    const Geometry ruler = geometry();
    const int x = ruler.timeToX(time);
    constexpr int top = TimeSliderPainter::PlayheadTop - 1;
    const int bottom = isMain() ? q->height() : TimeSliderPainter::PlayheadTip + 1;
    QRegion region(TimeSliderPainter::playheadTextRect(ruler, glyphs, scale, time, text(time)) |
                   QRect(x - 7, top, 15, bottom - top));
    if (isMain() && Settings::all().doublePlayhead) {
        const int end = ruler.timeToX((TimeSliderTime(time) + 1).time());
        region += QRect(end - 1, Geometry::Margin, 3, q->height() - Geometry::Margin);
    }
    return region;
}

// -- Changes

void TimeSlider::Private::followModel() {
    currentTime = model ? model->currentTime() : InvalidTime;
    if (model) {
        modelConnections = {
            connect(model, &TimeSliderModel::timeChanged, q, &TimeSlider::timeChanged),
            connect(model, &TimeSliderModel::inOutTimesModified, q, &TimeSlider::redraw),
            connect(model, &QObject::destroyed, q, &TimeSlider::redraw)};
    }
    indicators.invalidate();
    hoverAgain();
    q->redraw();
}

void TimeSlider::Private::setHover(Time time) {
    if (time == hoverTime)
        return;
    q->update(playheadRegion(hoverTime) + playheadRegion(time));
    hoverTime = time;
}

void TimeSlider::Private::setRangeBarHover(bool on) {
    if (on == rangeBarHover)
        return;
    rangeBarHover = on;
    sliderDirty = true;
    q->update(QRegion(0, 0, q->width(), Geometry::Margin) + playheadRegion(hoverTime));
}

void TimeSlider::Private::hoverAt(const QPoint& position) {
    const Geometry ruler = geometry();
    hover = position;
    setHover(ruler.hasClip() ? ruler.xToTime(position.x()) : InvalidTime);
    setRangeBarHover(ruler.hasClip() && position.y() < Geometry::Margin);
}

// The ruler moved under the mouse.
void TimeSlider::Private::hoverAgain() {
    if (hover)
        hoverAt(*hover);
}

void TimeSlider::Private::endHover() {
    hover.reset();
    setHover(InvalidTime);
}

void TimeSlider::Private::setCurrentTime(Time time) {
    q->update(playheadRegion(currentTime) + playheadRegion(time));
    currentTime = time;
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent change(q, qlonglong{time});
        QAccessible::updateAccessibility(&change);
    }
    if (Settings::all().followPlayhead && isMain() && !drag.isActive())
        q->scrollTimeVisible(time);
}

// Moves a range that starts before frame 0, where the transport must not go.
TimeSliderRange TimeSlider::Private::allowed(const TimeSliderRange& range) const {
    return isMain() && range.first < 0 ? range.shifted(TimeSliderTime(0) - range.first) : range;
}

void TimeSlider::Private::storeRange(const TimeSliderRange& range) {
    if (!model)
        return;
    const QPointer<TimeSlider> guard(q);
    const QPointer<TimeSliderModel> stored = model;
    pendingZoom = 1;
    settingRange = true;
    // In the order in which neither end pushes the other.
    const bool lastFirst = range.first > stored->lastVisibleTime();
    for (const bool last : {lastFirst, !lastFirst}) {
        if (!guard || !stored)
            break;
        if (last)
            stored->setLastVisibleTime(range.last);
        else
            stored->setFirstVisibleTime(range.first);
    }
    if (!guard)
        return;
    settingRange = false;
    hoverAgain();
    Q_EMIT q->rangeChanged(q->firstVisibleTime(), q->lastVisibleTime());
    if (guard)
        q->updateIndicatorBars();
}

// At most one update a turn of the event loop, however many frames are reported one by one.
void TimeSlider::Private::queueIndicatorUpdate(const TimeSliderColumns& columns) {
    const int x = std::max(columns.x, 0);
    const int end = std::min(columns.end, q->width());
    if (x >= end)
        return;
    if (indicatorUpdateQueued) {
        dirtyColumns = {std::min(dirtyColumns.x, x), std::max(dirtyColumns.end, end)};
        return;
    }
    indicatorUpdateQueued = true;
    dirtyColumns = {x, end};
    const auto update = [this] {
        indicatorUpdateQueued = false;
        q->update(indicators.area(dirtyColumns));
    };
    QMetaObject::invokeMethod(q, update, Qt::QueuedConnection);
}

// Zooms by a part of a step. What rounds to no change is kept for the next time, since a range
// of few frames would otherwise jump by a frame at every touch of a trackpad.
void TimeSlider::Private::zoomGradually(Time about, float factor) {
    pendingZoom *= factor;
    const bool isSmall = pendingZoom < WheelStep && pendingZoom > WheelStepBack;
    if (isSmall && zoomedRangeByRounding(visible(), about, pendingZoom) == visible())
        return;
    q->zoomAboutTime(about, pendingZoom);
}

void TimeSlider::Private::zoomByWheel(Time about, int delta) {
    if (std::abs(delta) >= WheelNotch)
        q->zoomAboutTime(about, delta > 0 ? WheelStep : WheelStepBack);
    else
        zoomGradually(about, std::pow(WheelStep, static_cast<float>(delta) / WheelNotch));
}

void TimeSlider::Private::pinch(const QPinchGesture& pinch) {
    const auto factor = static_cast<float>(pinch.scaleFactor());
    if (!(factor > 0) || factor == 1 || !std::isfinite(factor))
        return;
    const QPoint centre = q->mapFromGlobal(pinch.centerPoint().toPoint());
    zoomGradually(geometry().xToTime(centre.x()), factor);
}

void TimeSlider::Private::panBy(const QPanGesture& pan) {
    const Geometry ruler = geometry();
    pendingPan += static_cast<float>(pan.delta().x());
    const TimeSliderTime time = ruler.pixelsToTime(pendingPan);
    if (!time.isValid() || time == 0)
        return;
    pendingPan -=
        time.toFloat() / ruler.visible.length().toFloat() * static_cast<float>(ruler.innerWidth());
    q->pan(time.time());
}

// -- Drags

void TimeSlider::Private::run(const TimeSliderCommands& commands, QMouseEvent* event) {
    const QPointer<TimeSlider> guard(q);
    escape.setActive(drag.isActive());
    for (const TimeSliderCommand& command : commands) {
        run(command, event);
        if (!guard)
            return;
    }
}

void TimeSlider::Private::run(const TimeSliderCommand& command, QMouseEvent* event) {
    if (!tell(command) && !changeModel(command) && !changeView(command))
        askDerived(command, event);
}

bool TimeSlider::Private::tell(const TimeSliderCommand& command) {
    switch (command.kind) {
    case TimeSliderCommand::AllowTimeUpdates:
        Q_EMIT q->setDoUpdateTime(true);
        return true;
    case TimeSliderCommand::HoldTimeUpdates:
        Q_EMIT q->setDoUpdateTime(false);
        return true;
    case TimeSliderCommand::BeginTimeDrag: {
        const Time times[] = {command.first.time(), command.second.time()};
        Q_EMIT q->beginTimeDrag(command.handle, times);
        return true;
    }
    case TimeSliderCommand::UpdateTimeDrag:
        updateTimeDrag(command.handle);
        return true;
    case TimeSliderCommand::EndTimeDrag:
        Q_EMIT q->endTimeDrag();
        return true;
    case TimeSliderCommand::InOutTimesModified:
        Q_EMIT q->inOutTimesModified();
        return true;
    case TimeSliderCommand::ZoomOrPanChanged:
        Q_EMIT q->zoomOrPanChanged();
        return true;
    case TimeSliderCommand::RightOrMidClicked:
        Q_EMIT q->rightOrMidClicked();
        return true;
    default:
        return false;
    }
}

void TimeSlider::Private::updateTimeDrag(HandleType handle) {
    if (!model)
        return;
    Time times[] = {model->inTime(), model->outTime()};
    if (handle == OutHandle)
        times[0] = model->outTime();
    else if (handle == PlayheadHandle)
        times[0] = model->currentTime();
    Q_EMIT q->updateTimeDrag(times);
}

bool TimeSlider::Private::changeModel(const TimeSliderCommand& command) {
    const Time first = command.first.time();
    TimeSliderModel* to = model;
    switch (command.kind) {
    case TimeSliderCommand::SetInTime:
        if (to)
            to->setInTime(first, true);
        return true;
    case TimeSliderCommand::SetOutTime:
        if (to)
            to->setOutTime(first, true);
        return true;
    case TimeSliderCommand::SetInAndOutTime:
        if (to)
            to->setTimes(to->startTime(), first, command.second.time(), to->endTime(),
                         to->currentTime());
        return true;
    case TimeSliderCommand::PutBackMarks:
        putBackMarks(command);
        return true;
    case TimeSliderCommand::SetCurrentTime:
        if (to)
            to->setCurrentTime(first);
        return true;
    default:
        return false;
    }
}

// Neither limited to the clip nor by each other, as a mark that is set would be.
void TimeSlider::Private::putBackMarks(const TimeSliderCommand& command) {
    const QPointer<TimeSliderModel> to = model;
    if (to && command.on)
        to->enableInOutLock(true);
    if (to)
        to->setTimes(to->startTime(), command.first.time(), command.second.time(), to->endTime(),
                     to->currentTime());
    if (to)
        to->enableInOutLock(command.on);
}

bool TimeSlider::Private::changeView(const TimeSliderCommand& command) {
    switch (command.kind) {
    case TimeSliderCommand::SetFirstVisible:
        q->setFirstVisibleTime(command.first.time());
        return true;
    case TimeSliderCommand::SetLastVisible:
        q->setLastVisibleTime(command.first.time());
        return true;
    case TimeSliderCommand::SetVisibleRange:
        q->setTimeRange(command.first, command.second);
        return true;
    case TimeSliderCommand::PutBackVisible:
        storeRange({command.first, command.second});
        return true;
    case TimeSliderCommand::RedrawRectangle:
        q->redraw();
        return true;
    case TimeSliderCommand::StartAutoScroll:
        autoScrollTimer.start(AutoScrollMilliseconds, q);
        return true;
    case TimeSliderCommand::StopAutoScroll:
        autoScrollTimer.stop();
        return true;
    case TimeSliderCommand::ClearHover:
        endHover();
        return true;
    default:
        return false;
    }
}

void TimeSlider::Private::askDerived(const TimeSliderCommand& command, QMouseEvent* event) {
    const QPointer<TimeSlider> guard(q);
    switch (command.kind) {
    case TimeSliderCommand::AskDerivedClass: {
        const bool taken = q->pressHandle(event);
        if (!guard)
            return;
        if (taken)
            drag.beginDerived();
        run(taken ? TimeSliderCommands() : drag.beginPlayhead(scene()), event);
        break;
    }
    case TimeSliderCommand::MoveDerived:
        showTimePopup(command.first.time());
        q->moveHandle(event, command.first.time());
        break;
    case TimeSliderCommand::TakeBackDerived:
        q->takeBackHandle();
        break;
    case TimeSliderCommand::ReleaseDerived:
        releaseDerived(event);
        break;
    default:
        break;
    }
}

// However the drag ends, the derived class gets a release: its own, or one at the last place.
void TimeSlider::Private::releaseDerived(QMouseEvent* event) {
    hideTimePopup();
    if (event && event->type() == QEvent::MouseButtonRelease) {
        q->releaseHandle(event);
        return;
    }
    QMouseEvent release(QEvent::MouseButtonRelease, mouse, q->mapToGlobal(mouse), Qt::LeftButton,
                        Qt::NoButton, QApplication::keyboardModifiers());
    q->releaseHandle(&release);
}

// A release that went elsewhere is not told; input that was made up is not known to the
// application.
bool TimeSlider::Private::isButtonLost() const {
    return sawButton && !(QGuiApplication::mouseButtons() & drag.button());
}

void TimeSlider::Private::autoScroll() {
    if (isButtonLost()) {
        run(drag.cancel(), nullptr);
        return;
    }
    const QPoint cursor = q->mapFromGlobal(QCursor::pos());
    const TimeSliderTime by = geometry().autoScroll(cursor.x());
    if (!drag.isActive() || !by.isValid() || by == 0)
        return;
    const QPointer<TimeSlider> guard(q);
    const TimeSliderRange range = visible().shifted(by);
    q->setTimeRange(range.first, range.last);
    if (!guard || !drag.isActive())
        return;
    drag.forgetLastMove();
    QMouseEvent move(QEvent::MouseMove, cursor, q->mapToGlobal(cursor), Qt::NoButton, drag.button(),
                     QApplication::keyboardModifiers());
    q->mouseMoveEvent(&move);
}

void TimeSlider::Private::showTimePopup(Time time) {
    QPointer<QLabel>& popup = timePopup();
    if (!popup) {
        popup = new QLabel(q, Qt::ToolTip);
        popup->setAttribute(Qt::WA_ShowWithoutActivating);
        popup->setAttribute(Qt::WA_TransparentForMouseEvents);
        popup->setMargin(3);
    }
    popup->setText(text(time));
    popup->adjustSize();
    int x = std::min(geometry().timeToX(time) - 50, q->width());
    x = std::max(x, -popup->width() / 2);
    popup->move(q->mapToGlobal(QPoint(x, -26)));
    popup->show();
}

void TimeSlider::Private::hideTimePopup() {
    delete timePopup();
}

// -- Painting

void TimeSlider::Private::prepareGlyphs(qreal paintScale) {
    scale = paintScale;
    glyphs.prepare(q->font(), FontPixels, paintScale);
}

// Brings the image up to date with everything it depends on.
void TimeSlider::Private::ensureSliderImage(qreal paintScale) {
    const QPalette& palette = q->palette();
    const bool paletteChanged =
        palette.cacheKey() != paletteKey || palette.currentColorGroup() != colorGroup;
    const QSize size(qCeil(q->width() * paintScale), qCeil(q->height() * paintScale));
    if (paletteChanged) {
        paletteKey = palette.cacheKey();
        colorGroup = palette.currentColorGroup();
        colors = TimeSliderColors::of(palette);
    }
    if (!sliderDirty && !paletteChanged && size == sliderImage.size() && paintScale == scale &&
        imageMarkerColor == Settings::all().inOutMarker)
        return;
    sliderDirty = false;
    imageMarkerColor = Settings::all().inOutMarker;
    prepareGlyphs(paintScale);
    if (size != sliderImage.size())
        sliderImage = QImage(size, QImage::Format_RGB32);
    sliderImage.fill(colors.window);
    QPainter painter(&sliderImage);
    painter.scale(paintScale, paintScale);
    QFont font = q->font();
    font.setStyleStrategy(QFont::PreferDefault);
    font.setPixelSize(FontPixels);
    painter.setFont(font);
    q->paintSlider(painter);
}

TimeSliderPainter TimeSlider::Private::painterFor(QPainter& painter, const Geometry& ruler) {
    return {painter, ruler, playback(), colors, glyphs, formatter};
}

void TimeSlider::Private::paintBelowPlayhead(QPainter& painter, const QRegion& region) const {
    const DeviceSpace device(painter);
    const bool hasClip = geometry().hasClip();
    for (const QRect& rect : region) {
        const QRect part = device(rect);
        painter.drawImage(part.topLeft(), sliderImage, part);
        if (hasClip)
            indicators.draw(painter, device, rect);
    }
}

} // namespace Kestrel::UI
