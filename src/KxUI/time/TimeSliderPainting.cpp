#include <KxUI/time/TimeSliderPrivate_p.h>

#include <QPaintEvent>
#include <QPainter>

#include <set>

// What of a time slider is painted when. How it is painted is TimeSliderPainter's.

namespace Kestrel::UI {
namespace {

using Base::InvalidTime;
using Base::Time;
using Geometry = TimeSliderGeometry;
using Settings = TimeSliderSettings;

constexpr int HoverAlpha = 140;
constexpr int DoublePlayheadAlpha = 100;

} // namespace

void TimeSlider::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    m->ensureSliderImage(deviceScale(painter));
    static const std::set<Time> none;
    m->indicators.update(m->geometry(), m->scale, m->model ? m->model->keyFrames() : none,
                         Settings::all().keyFrame);
    m->paintBelowPlayhead(painter, event->region());
    paintPlayHead(painter);
    if (hasFocus()) {
        constexpr int top = Geometry::RangeBarHeight;
        painter.fillRect(0, top, width(), Geometry::Margin - top, m->colors.focus);
    }
}

void TimeSlider::paintSlider(QPainter& painter) {
    const Geometry ruler = m->geometry();
    m->markSpans = {};
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
            background.paintTicks(m->options.testFlag(TimecodeTicks));
    }
    paintExtra(painter);
    if (!hasRange)
        return;
    TimeSliderPainter foreground = m->painterFor(painter, ruler);
    foreground.paintRangeBar(m->rangeBarHover);
    if (m->model->inOutLock())
        m->markSpans = foreground.paintMarks(m->model->inTime(), m->model->outTime(),
                                             Settings::all().inOutMarker);
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
    if (m->isMain() && Settings::all().doublePlayhead) {
        QColor faint = color;
        faint.setAlpha(DoublePlayheadAlpha);
        const Geometry ruler = m->geometry();
        m->painterFor(painter, ruler).paintPlayheadEnd(m->currentTime, faint, m->markSpans);
    }
    paintPlayheadAtTime(painter, m->currentTime, color);
}

void TimeSlider::paintPlayheadAtTime(QPainter& painter, Time time, const QColor& color) {
    const Geometry ruler = m->geometry();
    // The label may come to stand on one of a mark or of the other playhead.
    const bool plate = m->hoverTime != InvalidTime || (m->model && m->model->inOutLock());
    m->painterFor(painter, ruler).paintPlayhead(time, color, m->markSpans, m->isMain(), plate);
}

void TimeSlider::paintExtra(QPainter&) {}

} // namespace Kestrel::UI
