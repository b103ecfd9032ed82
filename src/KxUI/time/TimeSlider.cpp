#include <KxUI/time/TimeSlider.h>

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeGlyphs_p.h>
#include <KxUI/time/TimeMetaTypes_p.h>
#include <KxUI/time/TimeSliderAccessible_p.h>
#include <KxUI/time/TimeSliderColors_p.h>
#include <KxUI/time/TimeSliderDrag_p.h>
#include <KxUI/time/TimeSliderGeometry_p.h>
#include <KxUI/time/TimeSliderIndicators_p.h>
#include <KxUI/time/TimeSliderPainter_p.h>

#include <QAccessible>
#include <QApplication>
#include <QBasicTimer>
#include <QCursor>
#include <QGestureEvent>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Base::InvalidTime;
using Base::Time;
using Geometry = TimeSliderGeometry;

constexpr int FontPixels = 9;
constexpr int HoverAlpha = 140;
constexpr int DoublePlayheadAlpha = 100;
constexpr int AutoScrollMilliseconds = 100;
constexpr float WheelStep = 1.1F;
constexpr float WheelStepBack = 0.9090909F;
constexpr int WheelNotch = 120;

struct Settings {
    QColor inOutMarker = Qt::magenta;
    QColor keyFrame = Qt::magenta;
    QColor standardPlayhead = Qt::magenta;
    bool doublePlayhead = false;
    bool followPlayhead = true;
};

Settings& settings() {
    static Settings all;
    return all;
}

// The pop-up of the one slider whose derived handle is being dragged.
QPointer<QLabel>& timePopup() {
    static QPointer<QLabel> popup;
    return popup;
}

} // namespace

struct TimeSlider::Private {
    TimeSlider* q = nullptr;
    QPointer<TimeSliderModel> model;
    QPointer<TimeFormatter> formatter;
    int options = 0;
    int scrollMode = 2;

    TimeSliderDrag drag;
    Time currentTime = InvalidTime;
    Time hoverTime = InvalidTime;
    bool rangeBarHover = false;
    QColor playheadColor;
    QBasicTimer autoScrollTimer;
    float pendingZoom = 1; // of gestures too small to show
    float pendingPan = 0;  // likewise, in pixels
    bool settingRange = false;

    // What the off-screen image was rendered for.
    bool sliderDirty = true;
    QImage sliderImage;
    qreal scale = 1;
    qint64 paletteKey = -1;
    QPalette::ColorGroup colorGroup = QPalette::Active;
    QColor imageMarkerColor;
    TimeSliderColors colors;
    TimeGlyphs glyphs;

    TimeSliderIndicators indicators;
    bool indicatorUpdateQueued = false;
    TimeSliderColumns dirtyColumns;

    bool isMain() const { return (options & MainTransport) != 0; }

    // -- What is where

    TimeSliderRange visible() const {
        return model ? TimeSliderRange{model->firstVisibleTime(), model->lastVisibleTime()}
                     : TimeSliderRange{};
    }

    Geometry geometry() const {
        Geometry geometry;
        geometry.width = q->width();
        geometry.height = q->height();
        geometry.visible = visible();
        if (model)
            geometry.clip = {model->startTime(), model->endTime()};
        return geometry;
    }

    TimeSliderScene scene() const {
        TimeSliderScene scene;
        scene.geometry = geometry();
        scene.currentTime = currentTime;
        if (model && model->inOutLock()) {
            scene.inTime = model->inTime();
            scene.outTime = model->outTime();
        }
        scene.mainTransport = isMain();
        scene.startDragDistance = QApplication::startDragDistance();
        return scene;
    }

    TimeSliderRange playback() const {
        if (!model)
            return {};
        TimeSliderRange range{model->startTime(), model->endTime()};
        if (model->inOutLock() && model->inTime() != InvalidTime)
            range.first = model->inTime();
        if (model->inOutLock() && model->outTime() != InvalidTime)
            range.last = model->outTime();
        return range;
    }

    QString text(TimeSliderTime time) const {
        return formatter ? formatter->formatTime(time.time()) : QString();
    }

    // Whether there is a place for a playhead at this time.
    bool isShown(Time time) const {
        const Geometry ruler = geometry();
        return ruler.hasClip() && ruler.visible.first <= time && ruler.visible.last + 1 >= time;
    }

    QColor colorAt(Time time) const {
        if (model && model->keyFrames().count(time) != 0)
            return settings().keyFrame;
        return playheadColor.isValid() ? playheadColor : settings().standardPlayhead;
    }

    QRegion playheadRegion(Time time) const {
        if (!isShown(time))
            return {};
        const Geometry ruler = geometry();
        const int x = ruler.timeToX(time);
        constexpr int top = TimeSliderPainter::PlayheadTop - 1;
        const int bottom = isMain() ? q->height() : TimeSliderPainter::PlayheadTip + 1;
        QRegion region(TimeSliderPainter::playheadTextRect(ruler, glyphs, scale, time, text(time)) |
                       QRect(x - 7, top, 15, bottom - top));
        if (isMain() && settings().doublePlayhead) {
            const int end = ruler.timeToX((TimeSliderTime(time) + 1).time());
            region += QRect(end - 1, Geometry::Margin, 3, q->height() - Geometry::Margin);
        }
        return region;
    }

    // -- Changes

    void setHover(Time time) {
        if (time == hoverTime)
            return;
        q->update(playheadRegion(hoverTime) + playheadRegion(time));
        hoverTime = time;
    }

    void setRangeBarHover(bool on) {
        if (on == rangeBarHover)
            return;
        rangeBarHover = on;
        sliderDirty = true;
        q->update(QRegion(0, 0, q->width(), Geometry::Margin) + playheadRegion(hoverTime));
    }

    void hoverAt(const QPoint& position) {
        const Geometry ruler = geometry();
        setHover(ruler.hasClip() ? ruler.xToTime(position.x()) : InvalidTime);
        setRangeBarHover(ruler.hasClip() && position.y() < Geometry::Margin);
    }

    void setCurrentTime(Time time) {
        q->update(playheadRegion(currentTime) + playheadRegion(time));
        currentTime = time;
        QAccessibleValueChangeEvent change(q, qlonglong{time});
        QAccessible::updateAccessibility(&change);
        if (settings().followPlayhead && isMain() && !drag.isActive())
            q->scrollTimeVisible(time);
    }

    // Moves a range that starts before frame 0, where the transport must not go.
    TimeSliderRange allowed(const TimeSliderRange& range) const {
        return isMain() && range.first < 0 ? range.shifted(TimeSliderTime(0) - range.first) : range;
    }

    // At most one update a turn of the event loop, however many frames are reported one by one.
    void queueIndicatorUpdate(const TimeSliderColumns& columns) {
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
    void zoomGradually(Time about, float factor) {
        pendingZoom *= factor;
        const bool isSmall = pendingZoom < WheelStep && pendingZoom > WheelStepBack;
        if (isSmall && zoomedRangeByRounding(visible(), about, pendingZoom) == visible())
            return;
        q->zoomAboutTime(about, pendingZoom);
    }

    void gesture(QGestureEvent* event) {
        if (auto* pinch = static_cast<QPinchGesture*>(event->gesture(Qt::PinchGesture))) {
            const auto factor = static_cast<float>(pinch->scaleFactor());
            if (factor > 0 && factor != 1 && std::isfinite(factor)) {
                const QPoint centre = q->mapFromGlobal(pinch->centerPoint().toPoint());
                zoomGradually(geometry().xToTime(centre.x()), factor);
            }
            event->accept(pinch);
        }
        if (auto* pan = static_cast<QPanGesture*>(event->gesture(Qt::PanGesture))) {
            const Geometry ruler = geometry();
            pendingPan += static_cast<float>(pan->delta().x());
            const TimeSliderTime time = ruler.pixelsToTime(pendingPan);
            if (time.isValid() && time != 0) {
                pendingPan -= time.toFloat() / ruler.visible.length().toFloat() *
                              static_cast<float>(ruler.innerWidth());
                q->pan(time.time());
            }
            event->accept(pan);
        }
    }

    // -- Drags

    void run(const TimeSliderCommands& commands, QMouseEvent* event) {
        for (const TimeSliderCommand& command : commands)
            run(command, event);
    }

    void run(const TimeSliderCommand& command, QMouseEvent* event) {
        const Time first = command.first.time();
        switch (command.kind) {
        case TimeSliderCommand::AllowTimeUpdates:
            emit q->setDoUpdateTime(true);
            break;
        case TimeSliderCommand::HoldTimeUpdates:
            emit q->setDoUpdateTime(false);
            break;
        case TimeSliderCommand::BeginTimeDrag: {
            const Time times[] = {first, command.second.time()};
            emit q->beginTimeDrag(drag.handle(), times);
            break;
        }
        case TimeSliderCommand::UpdateTimeDrag:
            if (model) {
                Time times[] = {model->inTime(), model->outTime()};
                if (drag.handle() == OutHandle)
                    times[0] = model->outTime();
                else if (drag.handle() == PlayheadHandle)
                    times[0] = model->currentTime();
                emit q->updateTimeDrag(times);
            }
            break;
        case TimeSliderCommand::EndTimeDrag:
            emit q->endTimeDrag();
            break;
        case TimeSliderCommand::SetInTime:
            if (model)
                model->setInTime(first, true);
            break;
        case TimeSliderCommand::SetOutTime:
            if (model)
                model->setOutTime(first, true);
            break;
        case TimeSliderCommand::SetInAndOutTime:
            if (model)
                model->setTimes(model->startTime(), first, command.second.time(), model->endTime(),
                                model->currentTime());
            break;
        case TimeSliderCommand::SetCurrentTime:
            if (model)
                model->setCurrentTime(first);
            break;
        case TimeSliderCommand::SetFirstVisible:
            q->setFirstVisibleTime(first);
            break;
        case TimeSliderCommand::SetLastVisible:
            q->setLastVisibleTime(first);
            break;
        case TimeSliderCommand::SetVisibleRange:
            q->setTimeRange(command.first, command.second);
            break;
        case TimeSliderCommand::RedrawRectangle:
            q->redraw();
            break;
        case TimeSliderCommand::InOutTimesModified:
            emit q->inOutTimesModified();
            break;
        case TimeSliderCommand::ZoomOrPanChanged:
            emit q->zoomOrPanChanged();
            break;
        case TimeSliderCommand::RightOrMidClicked:
            emit q->rightOrMidClicked();
            break;
        case TimeSliderCommand::StartAutoScroll:
            autoScrollTimer.start(AutoScrollMilliseconds, q);
            break;
        case TimeSliderCommand::StopAutoScroll:
            autoScrollTimer.stop();
            break;
        case TimeSliderCommand::ClearHover:
            setHover(InvalidTime);
            break;
        case TimeSliderCommand::AskDerivedClass:
            if (q->pressHandle(event))
                drag.beginDerived();
            else
                run(drag.beginPlayhead(scene()), event);
            break;
        }
    }

    void autoScroll() {
        const QPoint cursor = q->mapFromGlobal(QCursor::pos());
        const TimeSliderTime by = geometry().autoScroll(cursor.x());
        if (!drag.isActive() || !by.isValid() || by == 0)
            return;
        const TimeSliderRange range = visible().shifted(by);
        q->setTimeRange(range.first, range.last);
        drag.forgetLastMove();
        QMouseEvent move(QEvent::MouseMove, cursor, q->mapToGlobal(cursor), Qt::NoButton,
                         Qt::LeftButton, QApplication::keyboardModifiers());
        q->mouseMoveEvent(&move);
    }

    void showTimePopup(Time time) {
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

    void hideTimePopup() { delete timePopup(); }

    // -- Painting

    void prepareGlyphs(qreal paintScale) {
        scale = paintScale;
        glyphs.prepare(q->font(), FontPixels, paintScale);
    }

    // Brings the image up to date with everything it depends on.
    void ensureSliderImage(qreal paintScale) {
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
            imageMarkerColor == settings().inOutMarker)
            return;
        sliderDirty = false;
        imageMarkerColor = settings().inOutMarker;
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

    TimeSliderPainter painterFor(QPainter& painter, const Geometry& ruler) {
        return {painter, ruler, playback(), colors, glyphs, formatter};
    }

    void paintBelowPlayhead(QPainter& painter, const QRegion& region) const {
        const DeviceSpace device(painter);
        const bool hasClip = geometry().hasClip();
        for (const QRect& rect : region) {
            const QRect part = device(rect);
            painter.drawImage(part.topLeft(), sliderImage, part);
            if (hasClip)
                indicators.draw(painter, device, rect);
        }
    }
};

TimeSlider::TimeSlider(TimeSliderModel* model, TimeFormatter* formatter, int numCacheBars,
                       int options)
    : m(std::make_unique<Private>()) {
    registerTimeMetaTypes();
    qRegisterMetaType<HandleType>("Kestrel::UI::TimeSlider::HandleType");
    TimeSliderAccessible::install();

    m->q = this;
    m->model = model;
    m->formatter = formatter;
    m->options = options;
    m->indicators.setBars(numCacheBars);
    m->prepareGlyphs(devicePixelRatioF());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_MouseTracking);
    setAutoFillBackground(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setFocusPolicy(Qt::TabFocus); // a click must not take the keyboard from the viewer
    grabGesture(Qt::PanGesture);
    grabGesture(Qt::PinchGesture);

    if (model) {
        m->currentTime = model->currentTime();
        connect(model, &TimeSliderModel::timeChanged, this, &TimeSlider::timeChanged);
        connect(model, &TimeSliderModel::inOutTimesModified, this, &TimeSlider::redraw);
        connect(model, &QObject::destroyed, this, &TimeSlider::redraw);
    }
    if (formatter)
        connect(formatter, &TimeFormatter::timeFormatChanged, this, &TimeSlider::redraw);
}

TimeSlider::~TimeSlider() = default;

TimeSliderModel* TimeSlider::model() const {
    return m->model;
}

TimeFormatter* TimeSlider::formatter() const {
    return m->formatter;
}

QSize TimeSlider::sizeHint() const {
    return {512, 37};
}

void TimeSlider::setFirstVisibleTime(Time time) {
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
    if (!m->model)
        return;
    const TimeSliderRange range = m->allowed({first, last});
    m->pendingZoom = 1;
    m->settingRange = true;
    // In the order in which neither end pushes the other.
    if (range.first > m->model->lastVisibleTime()) {
        m->model->setLastVisibleTime(range.last);
        m->model->setFirstVisibleTime(range.first);
    } else {
        m->model->setFirstVisibleTime(range.first);
        m->model->setLastVisibleTime(range.last);
    }
    m->settingRange = false;
    emit rangeChanged(firstVisibleTime(), lastVisibleTime());
    updateIndicatorBars();
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
    const TimeSliderRange range = zoomedRange({first, last}, time, factor);
    setTimeRange(range.first, range.last);
    emit zoomOrPanChanged();
}

void TimeSlider::pan(Time time) {
    if (time == 0 || time == InvalidTime)
        return;
    const TimeSliderRange range = m->visible().shifted(-time);
    setTimeRange(range.first, range.last);
    emit zoomOrPanChanged();
}

void TimeSlider::setScrollMode(int mode) {
    m->scrollMode = mode;
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

int TimeSlider::numCacheBars() const {
    return m->indicators.bars();
}

void TimeSlider::displayFrameAsCached(Time frame, int bar) {
    m->queueIndicatorUpdate(m->indicators.setFrame(m->geometry(), bar, frame, true));
}

void TimeSlider::clearCachedFrame(Time frame, int bar) {
    m->queueIndicatorUpdate(m->indicators.setFrame(m->geometry(), bar, frame, false));
}

void TimeSlider::setCachedFrames(const FrameSet& frames, int bar) {
    if (m->indicators.setFrames(bar, frames))
        m->queueIndicatorUpdate({0, width()});
}

void TimeSlider::setCacheBarColor(const QColor& color, int bar) {
    if (m->indicators.setColor(bar, color))
        m->queueIndicatorUpdate({0, width()});
}

void TimeSlider::setPlayheadColor(const QColor& color) {
    if (m->playheadColor == color)
        return;
    m->playheadColor = color;
    update(m->playheadRegion(m->currentTime) + m->playheadRegion(m->hoverTime));
}

void TimeSlider::setPreviewPlayhead(Time time) {
    m->setHover(time);
}

void TimeSlider::clearPreviewPlayhead() {
    m->setHover(InvalidTime);
}

TimeSlider::HandleType TimeSlider::dragHandle() const {
    return m->drag.handle();
}

void TimeSlider::SetInOutMarkerColor(const QColor& color) {
    settings().inOutMarker = color;
}

QColor TimeSlider::InOutMarkerColor() {
    return settings().inOutMarker;
}

void TimeSlider::SetKeyFrameColor(const QColor& color) {
    settings().keyFrame = color;
}

void TimeSlider::SetStandardPlayheadColor(const QColor& color) {
    settings().standardPlayhead = color;
}

QColor TimeSlider::StandardPlayheadColor() {
    return settings().standardPlayhead;
}

void TimeSlider::SetUseDoublePlayhead(bool on) {
    settings().doublePlayhead = on;
}

void TimeSlider::SetVisibleRangeFollowsPlayhead(bool on) {
    settings().followPlayhead = on;
}

void TimeSlider::timeChanged(TimeSliderModel::TimeFlags flags) {
    using Model = TimeSliderModel;
    const TimeSliderModel::TimeFlags range = Model::FirstVisibleTime | Model::LastVisibleTime;
    if (flags & (range | Model::StartTime | Model::EndTime | Model::InTime | Model::OutTime))
        redraw();
    if ((flags & range) && !m->settingRange)
        updateIndicatorBars();
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

void TimeSlider::paintSlider(QPainter& painter) {
    const Geometry ruler = m->geometry();
    if (!ruler.hasClip()) {
        constexpr int margin = Geometry::Margin;
        painter.fillRect(rect().adjusted(margin, margin, -margin, 0), m->colors.empty);
        return;
    }
    const bool hasRange = ruler.visible.length() >= 1;
    {
        TimeSliderPainter background = m->painterFor(painter, ruler);
        background.paintBands();
        if (hasRange)
            background.paintTicks();
    }
    paintExtra(painter);
    if (!hasRange)
        return;
    TimeSliderPainter foreground = m->painterFor(painter, ruler);
    foreground.paintRangeBar(m->rangeBarHover);
    if (m->model->inOutLock())
        foreground.paintMarks(m->model->inTime(), m->model->outTime(), settings().inOutMarker);
    foreground.paintZoomRectangle(m->drag.zoomRectangle());
}

void TimeSlider::paintPlayHead(QPainter& painter) {
    if (m->isShown(m->hoverTime) && !m->rangeBarHover) {
        QColor faint = m->colorAt(m->hoverTime);
        faint.setAlpha(HoverAlpha);
        paintPlayheadAtTime(painter, m->hoverTime, faint);
    }
    if (!m->isShown(m->currentTime))
        return;
    const QColor color = m->colorAt(m->currentTime);
    if (m->isMain() && settings().doublePlayhead) {
        QColor faint = color;
        faint.setAlpha(DoublePlayheadAlpha);
        const Geometry ruler = m->geometry();
        m->painterFor(painter, ruler).paintPlayheadEnd(m->currentTime, faint);
    }
    paintPlayheadAtTime(painter, m->currentTime, color);
}

void TimeSlider::paintPlayheadAtTime(QPainter& painter, Time time, const QColor& color) {
    const Geometry ruler = m->geometry();
    // The label may come to stand on one of a mark or of the other playhead.
    const bool plate = m->hoverTime != InvalidTime || (m->model && m->model->inOutLock());
    m->painterFor(painter, ruler).paintPlayhead(time, color, m->isMain(), plate);
}

void TimeSlider::updateIndicatorBars() {
    m->indicators.invalidate();
    update(m->indicators.area({0, width()}));
}

bool TimeSlider::pressHandle(QMouseEvent*) {
    return false;
}

void TimeSlider::releaseHandle(QMouseEvent*) {}

void TimeSlider::moveHandle(QMouseEvent*, Time) {}

void TimeSlider::paintExtra(QPainter&) {}

void TimeSlider::announceTimeDrag(HandleType handle, const Time* times) {
    m->drag.setAnnounced();
    emit beginTimeDrag(handle, times);
}

bool TimeSlider::event(QEvent* event) {
    if (event->type() == QEvent::Gesture) {
        m->gesture(static_cast<QGestureEvent*>(event));
        return true;
    }
    return QWidget::event(event);
}

void TimeSlider::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    m->ensureSliderImage(deviceScale(painter));
    static const std::set<Time> none;
    m->indicators.update(m->geometry(), m->scale, m->model ? m->model->keyFrames() : none,
                         settings().keyFrame);
    m->paintBelowPlayhead(painter, event->region());
    paintPlayHead(painter);
    if (hasFocus()) {
        constexpr int top = Geometry::RangeBarHeight;
        painter.fillRect(0, top, width(), Geometry::Margin - top, m->colors.focus);
    }
}

void TimeSlider::resizeEvent(QResizeEvent*) {
    m->sliderDirty = true;
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
}

void TimeSlider::hideEvent(QHideEvent* event) {
    if (m->drag.isActive()) {
        m->hideTimePopup();
        m->run(m->drag.cancel(), nullptr);
    }
    QWidget::hideEvent(event);
}

void TimeSlider::mousePressEvent(QMouseEvent* event) {
    m->run(m->drag.press(m->scene(), {event->x(), event->y(), event->button(), event->modifiers()}),
           event);
}

void TimeSlider::mouseMoveEvent(QMouseEvent* event) {
    if (!m->drag.isActive()) {
        m->hoverAt(event->pos());
        return;
    }
    if (m->drag.isAt(event->x()))
        return;
    Time time = InvalidTime;
    if (m->drag.isToTime()) {
        time = m->drag.timeAt(m->scene(), event->x());
        if (!(event->modifiers() & Qt::ShiftModifier))
            emit snapTime(time);
    }
    m->run(m->drag.move(m->scene(), event->x(), time), event);
    if (m->drag.handle() == DerivedHandle) {
        m->showTimePopup(time);
        moveHandle(event, time);
    }
}

void TimeSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (!m->drag.endsWith(event->button()))
        return;
    m->hideTimePopup();
    if (m->drag.handle() == DerivedHandle)
        releaseHandle(event);
    m->run(m->drag.release(), event);
}

void TimeSlider::leaveEvent(QEvent* event) {
    m->setHover(InvalidTime);
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
    if (std::abs(delta.y()) >= WheelNotch)
        zoomAboutTime(time, delta.y() > 0 ? WheelStep : WheelStepBack);
    else
        m->zoomGradually(time, std::pow(WheelStep, static_cast<float>(delta.y()) / WheelNotch));
    event->accept();
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
