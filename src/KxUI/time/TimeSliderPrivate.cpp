#include <KxUI/time/TimeSliderPrivate_p.h>

#include <KxUI/kit/ValueAccessible_p.h>
#include <KxUI/time/TimeFormatter.h>

#include <QApplication>
#include <QGesture>
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
constexpr float WheelStep = 1.1F;
constexpr float WheelStepBack = 0.9090909F;
constexpr int WheelNotch = 120;

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
    QRegion region(
        TimeSliderPainter::playheadTextRect(ruler, markSpans, glyphs, scale, time, text(time)) |
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
    tellAccessibleValue(q, qlonglong{time});
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
