#include <KxUI/time/TimeSlider.h>

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeGlyphs_p.h>
#include <KxUI/time/TimeMetaTypes_p.h>
#include <KxUI/time/TimeSliderAccessible_p.h>
#include <KxUI/time/TimeSliderColors_p.h>
#include <KxUI/time/TimeSliderDrag_p.h>
#include <KxUI/time/TimeSliderGeometry_p.h>
#include <KxUI/time/TimeSliderStrip_p.h>

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
constexpr int PlayheadTextY = 12; // baseline of the labels of the playhead and the marks
constexpr int PlayheadTop = 13;
constexpr int PlayheadTip = 20;
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

qreal scaleOf(const QPainter& painter) {
    const QTransform transform = painter.deviceTransform();
    return qBound(0.1, std::hypot(transform.m11(), transform.m12()), 16.0);
}

// While it lives, the painter's coordinates are device pixels, so that edges fall between pixels
// and images are copied rather than resampled at any scale.
class DeviceSpace {
public:
    explicit DeviceSpace(QPainter& painter)
        : m_painter(painter)
        , m_scale(scaleOf(painter)) {
        m_painter.save();
        if (m_scale != 1)
            m_painter.scale(1 / m_scale, 1 / m_scale);
    }
    ~DeviceSpace() { m_painter.restore(); }
    Q_DISABLE_COPY(DeviceSpace)

    int operator()(int pixels) const { return qRound(pixels * m_scale); }
    QRect operator()(const QRect& rect) const {
        const int left = (*this)(rect.x());
        const int top = (*this)(rect.y());
        return {left, top, (*this)(rect.x() + rect.width()) - left,
                (*this)(rect.y() + rect.height()) - top};
    }
    int lineWidth() const { return std::max(qRound(m_scale), 1); }

private:
    QPainter& m_painter;
    qreal m_scale;
};

struct CacheBar {
    TimeSlider::FrameSet frames;
    QColor color = QColor(74, 158, 92);
    TimeSliderStrip strip;
};

bool isFrame(Time time) {
    return time != InvalidTime && time != TimeSliderTime::Max; // the end of the last does not exist
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

    std::vector<CacheBar> cacheBars;
    TimeSliderStrip keyFrames;
    bool stripsStale = true;
    bool stripUpdateQueued = false;
    int dirtyColumn = 0;
    int dirtyColumnEnd = 0;

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

    // In pixels of the widget, rounded up.
    int textWidth(const QString& label) const { return qCeil(glyphs.width(label) / scale); }

    int cacheBarY(std::size_t bar) const {
        return Geometry::cacheBarY(static_cast<int>(bar), static_cast<int>(cacheBars.size()));
    }

    QRect stripsRect(int x, int end) const {
        const int bottom =
            cacheBars.empty() ? Geometry::KeyFrameY : cacheBarY(cacheBars.size() - 1);
        return {x, Geometry::KeyFrameY, end - x,
                bottom + Geometry::StripHeight - Geometry::KeyFrameY};
    }

    bool isShown(Time time) const {
        const TimeSliderRange range = visible();
        return range.first <= time && range.last + 1 >= time;
    }

    QColor colorAt(Time time) const {
        if (model && model->keyFrames().count(time) != 0)
            return settings().keyFrame;
        return playheadColor.isValid() ? playheadColor : settings().standardPlayhead;
    }

    // A playhead's label in the widget, generously: for what to repaint.
    QRect playheadTextRect(int x, Time time) const {
        const int labelWidth = textWidth(text(time));
        const int left = qBound(0, x - labelWidth / 2, std::max(q->width() - labelWidth, 0));
        const int top = PlayheadTextY + qFloor(glyphs.top() / scale) - 1;
        return {left - 1, top, labelWidth + 3, PlayheadTop - top};
    }

    QRegion playheadRegion(Time time) const {
        if (!isShown(time))
            return {};
        const Geometry ruler = geometry();
        const int x = ruler.timeToX(time);
        const int bottom = isMain() ? q->height() : PlayheadTip + 1;
        QRegion region(playheadTextRect(x, time) |
                       QRect(x - 7, PlayheadTop - 1, 15, bottom - PlayheadTop + 1));
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
        if (QAccessible::isActive()) {
            QAccessibleValueChangeEvent change(q, qlonglong{time});
            QAccessible::updateAccessibility(&change);
        }
        if (settings().followPlayhead && isMain() && !drag.isActive())
            q->scrollTimeVisible(time);
    }

    // Moves a range that starts before frame 0, where the transport must not go.
    TimeSliderRange allowed(const TimeSliderRange& range) const {
        return isMain() && range.first < 0 ? range.shifted(TimeSliderTime(0) - range.first) : range;
    }

    void queueStripUpdate(int x, int end) {
        x = std::max(x, 0);
        end = std::min(end, q->width());
        if (x >= end)
            return;
        if (stripUpdateQueued) {
            dirtyColumn = std::min(dirtyColumn, x);
            dirtyColumnEnd = std::max(dirtyColumnEnd, end);
            return;
        }
        stripUpdateQueued = true;
        dirtyColumn = x;
        dirtyColumnEnd = end;
        QMetaObject::invokeMethod(
            q,
            [this] {
                stripUpdateQueued = false;
                q->update(stripsRect(dirtyColumn, dirtyColumnEnd));
            },
            Qt::QueuedConnection);
    }

    CacheBar* bar(int index) {
        const auto place = static_cast<std::size_t>(index);
        return index >= 0 && place < cacheBars.size() ? &cacheBars[place] : nullptr;
    }

    void fillFrame(CacheBar& target, Time frame, const QColor& color) {
        if (stripsStale)
            return; // all of it is about to be filled anyway
        const Geometry ruler = geometry();
        const int x = ruler.timeToX(frame);
        const int end = ruler.timeToX(frame + 1);
        target.strip.fill(x, end, color);
        queueStripUpdate(x, end);
    }

    void fillStrips() {
        stripsStale = false;
        const Geometry ruler = geometry();
        for (CacheBar& each : cacheBars) {
            each.strip.reset(ruler.width, scale);
            for (const auto& interval : each.frames) {
                const TimeSliderTime end = TimeSliderTime(boost::icl::last(interval)) + 1;
                each.strip.fill(ruler.timeToX(boost::icl::first(interval)),
                                ruler.timeToX(end.time()), each.color);
            }
        }
        keyFrames.reset(ruler.width, scale);
        if (!model || !ruler.visible.isValid())
            return;
        const std::set<Time>& times = model->keyFrames();
        const auto end = times.upper_bound(ruler.visible.last.time());
        for (auto time = times.lower_bound(ruler.visible.first.time()); time != end; ++time) {
            const int x = ruler.timeToX(*time);
            const int next = ruler.timeToX((TimeSliderTime(*time) + 1).time());
            // A keyframe shows even where many frames share a column.
            keyFrames.fill(x, std::max(next, x + 1), settings().keyFrame);
        }
    }

    // Zooms by a part of a step. What rounds to no change is kept for the next time, since a range
    // of few frames would otherwise jump by a frame at every touch of a trackpad.
    void zoomGradually(Time about, float factor) {
        pendingZoom *= factor;
        const bool isSmall = pendingZoom < WheelStep && pendingZoom > WheelStepBack;
        if (isSmall && zoomedRangeByRounding(visible(), about, pendingZoom) == visible())
            return;
        const float zoom = pendingZoom;
        pendingZoom = 1;
        q->zoomAboutTime(about, zoom);
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

    void prepareGlyphs(qreal deviceScale) {
        scale = deviceScale;
        glyphs.prepare(q->font(), FontPixels, deviceScale);
    }

    // Brings the image up to date with everything it depends on.
    void ensureSliderImage(qreal deviceScale) {
        const QPalette& palette = q->palette();
        const bool paletteChanged =
            palette.cacheKey() != paletteKey || palette.currentColorGroup() != colorGroup;
        const QSize size(qCeil(q->width() * deviceScale), qCeil(q->height() * deviceScale));
        if (paletteChanged) {
            paletteKey = palette.cacheKey();
            colorGroup = palette.currentColorGroup();
            colors = TimeSliderColors::of(palette);
        }
        if (deviceScale != scale)
            stripsStale = true;
        if (!sliderDirty && !paletteChanged && size == sliderImage.size() && deviceScale == scale &&
            imageMarkerColor == settings().inOutMarker)
            return;
        sliderDirty = false;
        imageMarkerColor = settings().inOutMarker;
        prepareGlyphs(deviceScale);
        if (size != sliderImage.size())
            sliderImage = QImage(size, QImage::Format_RGB32);
        sliderImage.fill(colors.window);
        QPainter painter(&sliderImage);
        painter.scale(deviceScale, deviceScale);
        QFont font = q->font();
        font.setStyleStrategy(QFont::PreferDefault);
        font.setPixelSize(FontPixels);
        painter.setFont(font);
        q->paintSlider(painter);
    }

    // A time's text centred on x, but kept inside the widget.
    void drawTextPinned(QPainter& painter, const DeviceSpace& device, int x, int baseline,
                        const QString& label, const QColor& color) {
        const int labelWidth = glyphs.width(label);
        const int right = std::max(device(q->width()) - labelWidth, 0);
        glyphs.draw(painter, qBound(0, device(x) - labelWidth / 2, right), device(baseline), label,
                    color);
    }

    void paintBands(QPainter& painter, const Geometry& ruler) {
        const DeviceSpace device(painter);
        for (const TimeSliderBand& band : planBands(ruler, playback())) {
            const QColor& color = band.kind == TimeSliderBand::Clip       ? colors.clip
                                  : band.kind == TimeSliderBand::Playback ? colors.playback
                                                                          : colors.outside;
            painter.fillRect(device(QRect(band.x, Geometry::Margin, band.end - band.x,
                                          ruler.height - Geometry::Margin)),
                             color);
        }
    }

    void paintTicks(QPainter& painter, const Geometry& ruler) {
        const DeviceSpace device(painter);
        const int labelY = ruler.height - 1;
        const QString firstText = text(ruler.visible.first);
        const QString lastText = text(ruler.visible.last);
        TimeSliderLabels labels(ruler, textWidth(firstText), textWidth(lastText));

        std::vector<QRect> lines;
        lines.reserve(1024);
        const auto addLine = [&](int x, int above, int below) {
            const int top = device(Geometry::Baseline - above);
            lines.emplace_back(device(x), top, device.lineWidth(),
                               device(Geometry::Baseline + below + 1) - top);
        };

        const int firstX = ruler.timeToX(ruler.visible.first.time());
        addLine(firstX, 6, 3);
        drawTextPinned(painter, device, firstX, labelY, firstText, colors.text);

        const TimeSliderTicks ticks = TimeSliderTicks::plan(ruler);
        ticks.forEach(ruler.visible, [&](Time time, TimeSliderTicks::Kind kind) {
            const int x = ruler.timeToX(time);
            if (x < Geometry::Margin || x >= ruler.width - Geometry::Margin)
                return;
            addLine(x, TimeSliderTicks::rows(kind), 0);
            if (kind != TimeSliderTicks::Major)
                return;
            const QString label = text(time);
            if (labels.take(x, textWidth(label)))
                drawTextPinned(painter, device, x, labelY, label, colors.text);
        });

        const int lastX = ruler.timeToX(ruler.visible.last.time());
        addLine(lastX, 6, 6);
        if (labels.lastFits())
            drawTextPinned(painter, device, lastX, labelY, lastText, colors.text);

        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.text);
        painter.drawRects(lines.data(), static_cast<int>(lines.size()));
    }

    void paintRangeBar(QPainter& painter, const Geometry& ruler) {
        const DeviceSpace device(painter);
        const int x = qBound(0, ruler.timeToRangeBarX(ruler.visible.first), ruler.width);
        const int end = qBound(0, ruler.timeToRangeBarX(ruler.visible.last + 1), ruler.width);
        const QRect bar(x, 0, std::max(end - x, 1), Geometry::RangeBarHeight);
        painter.fillRect(device(bar), rangeBarHover ? colors.rangeBarHover : colors.rangeBar);
    }

    // Tints a frame over the height of the ruler.
    void drawHighlightFrame(QPainter& painter, const DeviceSpace& device, const Geometry& ruler,
                            TimeSliderTime frame, const QColor& color) {
        const int x = ruler.clampX(ruler.timeToX(frame.time()));
        const int end = ruler.clampX(ruler.timeToX((frame + 1).time()));
        QColor tint = color;
        tint.setAlpha(70);
        painter.fillRect(
            device(QRect(x, Geometry::Margin, end - x, ruler.height - Geometry::Margin)), tint);
    }

    void paintMarks(QPainter& painter, const Geometry& ruler) {
        const DeviceSpace device(painter);
        const QColor color = settings().inOutMarker;
        const auto paintMark = [&](Time time) {
            const int x = ruler.clampX(ruler.timeToX(time));
            drawHighlightFrame(painter, device, ruler, time, color);
            painter.fillRect(
                device(QRect(x - 1, Geometry::Margin, 2, ruler.height - Geometry::Margin)), color);
            const int barX = qBound(0, ruler.timeToRangeBarX(time), ruler.width);
            painter.fillRect(device(QRect(barX, 0, 2, Geometry::RangeBarHeight)), color);
            return x;
        };
        const Time in = model->inTime();
        const Time out = model->outTime();
        const int inX = in != InvalidTime ? paintMark(in) : -1;
        const int outX = out != InvalidTime ? paintMark(out) : ruler.width;

        // A label that had to change sides is left out where it would run into the other mark.
        int inEnd = inX;
        if (in != InvalidTime) {
            const QString label = text(in);
            const int labelWidth = textWidth(label);
            const bool hasRoom = inX - labelWidth - 4 >= 0;
            const int x = hasRoom ? inX - labelWidth - 4 : inX + 4;
            if (hasRoom || x + labelWidth < outX) {
                glyphs.draw(painter, device(x), device(PlayheadTextY), label, color);
                inEnd = std::max(inEnd, x + labelWidth);
            }
        }
        if (out != InvalidTime) {
            const QString label = text(out);
            const int labelWidth = textWidth(label);
            const bool hasRoom = outX + 4 + labelWidth <= ruler.width;
            const int x = hasRoom ? outX + 4 : outX - labelWidth - 4;
            if (hasRoom || x > inEnd + 1)
                glyphs.draw(painter, device(x), device(PlayheadTextY), label, color);
        }
    }

    void paintZoomRectangle(QPainter& painter, const Geometry& ruler) {
        const TimeSliderRange swept = drag.zoomRectangle();
        if (!swept.isValid() || swept.first == swept.last)
            return;
        const DeviceSpace device(painter);
        const int x = qBound(-1, ruler.timeToX(swept.first.time()), ruler.width);
        const int end = qBound(-1, ruler.timeToX(swept.last.time()), ruler.width);
        QColor veil = colors.sweep;
        veil.setAlpha(25);
        painter.fillRect(device(QRect(x, -1, end - x, ruler.height + 2)), veil);
        for (const int edge : {x, end})
            painter.fillRect(device(edge), 0, device.lineWidth(), device(ruler.height),
                             colors.sweep);
    }

    void paintStatic(QPainter& painter, const QRegion& region) const {
        const DeviceSpace device(painter);
        for (const QRect& rect : region) {
            const QRect part = device(rect);
            painter.drawImage(part.topLeft(), sliderImage, part);
            const auto drawStrip = [&](const TimeSliderStrip& strip, int y) {
                if (rect.bottom() >= y && rect.top() < y + Geometry::StripHeight)
                    strip.draw(painter, part.left(), part.left() + part.width(), device(y),
                               device(y + Geometry::StripHeight));
            };
            for (std::size_t i = 0; i < cacheBars.size(); ++i)
                drawStrip(cacheBars[i].strip, cacheBarY(i));
            drawStrip(keyFrames, Geometry::KeyFrameY);
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
    m->cacheBars.resize(static_cast<std::size_t>(std::max(numCacheBars, 0)));
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
    return static_cast<int>(m->cacheBars.size());
}

void TimeSlider::displayFrameAsCached(Time frame, int bar) {
    CacheBar* target = m->bar(bar);
    if (!target || !isFrame(frame))
        return;
    target->frames.add(FrameSet::interval_type::right_open(frame, frame + 1));
    m->fillFrame(*target, frame, target->color);
}

void TimeSlider::clearCachedFrame(Time frame, int bar) {
    CacheBar* target = m->bar(bar);
    if (!target || !isFrame(frame))
        return;
    target->frames.subtract(FrameSet::interval_type::right_open(frame, frame + 1));
    m->fillFrame(*target, frame, Qt::transparent);
}

void TimeSlider::setCachedFrames(const FrameSet& frames, int bar) {
    CacheBar* target = m->bar(bar);
    if (!target || target->frames == frames)
        return;
    target->frames = frames;
    m->stripsStale = true;
    m->queueStripUpdate(0, width());
}

void TimeSlider::setCacheBarColor(const QColor& color, int bar) {
    CacheBar* target = m->bar(bar);
    if (!target || target->color == color)
        return;
    target->color = color;
    m->stripsStale = true;
    m->queueStripUpdate(0, width());
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
        m->stripsStale = true;
        m->queueStripUpdate(0, width());
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
    m->paintBands(painter, ruler);
    if (hasRange)
        m->paintTicks(painter, ruler);
    paintExtra(painter);
    if (hasRange)
        m->paintRangeBar(painter, ruler);
    if (hasRange && m->model->inOutLock())
        m->paintMarks(painter, ruler);
    m->paintZoomRectangle(painter, ruler);
}

void TimeSlider::paintPlayHead(QPainter& painter) {
    if (m->isShown(m->hoverTime) && !m->rangeBarHover) {
        QColor faint = m->colorAt(m->hoverTime);
        faint.setAlpha(140);
        paintPlayheadAtTime(painter, m->hoverTime, faint);
    }
    if (!m->isShown(m->currentTime))
        return;
    const QColor color = m->colorAt(m->currentTime);
    if (m->isMain() && settings().doublePlayhead) {
        const Geometry ruler = m->geometry();
        const int end = ruler.timeToX((TimeSliderTime(m->currentTime) + 1).time());
        const QRect label = m->playheadTextRect(ruler.timeToX(m->currentTime), m->currentTime);
        const bool isCovered = end >= label.left() && end <= label.right();
        const int top = isCovered ? PlayheadTop : Geometry::Margin;
        QColor faint = color;
        faint.setAlpha(100);
        const DeviceSpace device(painter);
        painter.fillRect(device(end), device(top), device.lineWidth(),
                         device(height()) - device(top), faint);
    }
    paintPlayheadAtTime(painter, m->currentTime, color);
}

void TimeSlider::paintPlayheadAtTime(QPainter& painter, Time time, const QColor& color) {
    const int x = m->geometry().timeToX(time);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const QPointF triangle[] = {{x - 6.0, 13.0}, {x + 7.0, 13.0}, {x + 0.5, 20.0}};
    painter.drawConvexPolygon(triangle, 3);
    painter.restore();

    const DeviceSpace device(painter);
    if (m->isMain())
        painter.fillRect(device(x), device(PlayheadTip), device.lineWidth(),
                         device(height()) - device(PlayheadTip), color);
    m->drawTextPinned(painter, device, x, PlayheadTextY, m->text(time), color);
}

void TimeSlider::updateIndicatorBars() {
    m->stripsStale = true;
    update(m->stripsRect(0, width()));
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
    m->ensureSliderImage(scaleOf(painter));
    if (m->stripsStale)
        m->fillStrips();
    m->paintStatic(painter, event->region());
    paintPlayHead(painter);
    if (hasFocus()) {
        painter.setPen(m->colors.focus);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
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
