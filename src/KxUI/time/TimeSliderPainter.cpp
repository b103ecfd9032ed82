#include <KxUI/time/TimeSliderPainter_p.h>

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeGlyphs_p.h>
#include <KxUI/time/TimeSliderColors_p.h>
#include <KxUI/time/TimeSliderLabels_p.h>

#include <QPainter>
#include <QRegion>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Base::InvalidTime;
using Base::Time;
using Geometry = TimeSliderGeometry;

constexpr int TopTextY = 12; // baseline of the labels of the playhead and the marks
constexpr int HighlightAlpha = 70;
constexpr int ZoomRectangleAlpha = 25;

} // namespace

qreal deviceScale(const QPainter& painter) {
    const QTransform transform = painter.deviceTransform();
    return qBound(0.1, std::hypot(transform.m11(), transform.m12()), 16.0);
}

DeviceSpace::DeviceSpace(QPainter& painter)
    : m_painter(painter)
    , m_scale(deviceScale(painter)) {
    m_painter.save();
    if (m_scale != 1)
        m_painter.scale(1 / m_scale, 1 / m_scale);
}

DeviceSpace::~DeviceSpace() {
    m_painter.restore();
}

TimeSliderPainter::TimeSliderPainter(QPainter& painter, const TimeSliderGeometry& geometry,
                                     const TimeSliderRange& playback,
                                     const TimeSliderColors& colors, TimeGlyphs& glyphs,
                                     const TimeFormatter* formatter)
    : m_painter(painter)
    , m_device(painter)
    , m_geometry(geometry)
    , m_colors(colors)
    , m_glyphs(glyphs)
    , m_formatter(formatter)
    , m_bands(planBands(geometry, playback)) {}

// -- Text

QString TimeSliderPainter::text(TimeSliderTime time) const {
    return m_formatter ? m_formatter->formatTime(time.time()) : QString();
}

// In widget pixels, rounded up.
int TimeSliderPainter::textWidth(const QString& label) const {
    return qCeil(m_glyphs.width(label) / m_device.scale());
}

// Left end, in device pixels, of a text centred on x but kept inside the widget.
int TimeSliderPainter::pinnedLeft(int x, int labelWidth) const {
    const int right = std::max(m_device(m_geometry.width) - labelWidth, 0);
    return qBound(0, m_device(x) - labelWidth / 2, right);
}

void TimeSliderPainter::drawTextPinned(int x, int baseline, const QString& label,
                                       const QColor& color) {
    m_glyphs.draw(m_painter, pinnedLeft(x, m_glyphs.width(label)), m_device(baseline), label,
                  color);
}

// Where the label reaches before or after the clip, it may need another colour.
void TimeSliderPainter::drawRulerLabel(int x, const QString& label, const QRegion& outside) {
    const int baseline = m_geometry.height - 1;
    if (outside.isEmpty()) {
        drawTextPinned(x, baseline, label, m_colors.text);
        return;
    }
    m_painter.save();
    m_painter.setClipRegion(outside);
    drawTextPinned(x, baseline, label, m_colors.outsideText);
    m_painter.setClipRegion(QRegion(m_device(QRect(0, 0, m_geometry.width, m_geometry.height))) -
                            outside);
    drawTextPinned(x, baseline, label, m_colors.text);
    m_painter.restore();
}

// -- The ruler

const QColor& TimeSliderPainter::bandColor(TimeSliderBand::Kind kind) const {
    return kind == TimeSliderBand::Clip       ? m_colors.clip
           : kind == TimeSliderBand::Playback ? m_colors.playback
                                              : m_colors.outside;
}

// Columns of the ruler from top to bottom, in device pixels.
QRect TimeSliderPainter::fullHeight(int x, int end) const {
    return m_device(QRect(x, Geometry::Margin, end - x, m_geometry.height - Geometry::Margin));
}

void TimeSliderPainter::paintBands() {
    for (const TimeSliderBand& band : m_bands)
        m_painter.fillRect(fullHeight(band.x, band.end), bandColor(band.kind));
}

void TimeSliderPainter::drawLines(const std::vector<QRect>& lines, const QColor& color) {
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(color);
    m_painter.drawRects(lines.data(), static_cast<int>(lines.size()));
}

/** How the formatter labels frames; none a second where it shows no timecode. */
TimecodeTicks::Rate TimeSliderPainter::timecodeRate() const {
    TimecodeTicks::Rate rate;
    rate.fps =
        m_formatter && m_formatter->displayTimecode() ? m_formatter->timeBase().roundedFps() : 0;
    if (rate.fps == 0)
        return rate;
    if (m_formatter->displayDropFrames() && m_formatter->timeBase().isDropFrameRate())
        rate.dropped = rate.fps / 15; // SMPTE ST 12-1: two of thirty, four of sixty
    rate.start = std::max<Time>(m_formatter->timecodeStart(), 0);
    return rate;
}

void TimeSliderPainter::paintTicks(bool wholeSeconds) {
    const TimecodeTicks::Rate rate = timecodeRate();
    if (wholeSeconds && TimecodeTicks::canCount(m_geometry.visible, rate))
        paintTicks(TimecodeTicks::plan(m_geometry, rate, textWidth(text(m_geometry.visible.last))));
    else
        paintTicks(TimeSliderTicks::plan(m_geometry));
}

template <class Ticks>
void TimeSliderPainter::paintTicks(const Ticks& ticks) {
    const TimeSliderRange& visible = m_geometry.visible;
    const QString firstText = text(visible.first);
    const QString lastText = text(visible.last);
    TimeSliderLabels labels(m_geometry, textWidth(firstText), textWidth(lastText));

    const TimeSliderBand& before = m_bands.front();
    const TimeSliderBand& after = m_bands.back();
    QRegion outside;
    if (m_colors.text != m_colors.outsideText)
        outside = QRegion(fullHeight(before.x, before.end)) + fullHeight(after.x, after.end);

    std::vector<QRect> lines;
    std::vector<QRect> outsideLines;
    lines.reserve(1024);
    const auto addLine = [&](int x, int top, int bottom) {
        (x >= before.end && x < after.x ? lines : outsideLines)
            .emplace_back(m_device(x), top, m_device.lineWidth(), bottom - top);
    };
    const auto row = [&](int rows) { return m_device(Geometry::Baseline + rows); };
    const int markTop = row(-6);

    const int firstX = m_geometry.timeToX(visible.first.time());
    addLine(firstX, markTop, row(3 + 1));
    drawRulerLabel(firstX, firstText, outside);

    const std::array<int, 4> tops = {
        row(-TimeSliderTicks::rows(TimeSliderTicks::Major)),
        row(-TimeSliderTicks::rows(TimeSliderTicks::Step)),
        row(-TimeSliderTicks::rows(TimeSliderTicks::Half)),
        row(-TimeSliderTicks::rows(TimeSliderTicks::Tenth)),
    };
    const int bottom = row(1);
    const TimeSliderMapping toX(m_geometry);
    ticks.forEach(visible, [&](Time time, TimeSliderTicks::Kind kind) {
        const int x = toX(time);
        if (x < Geometry::Margin || x >= m_geometry.width - Geometry::Margin)
            return;
        addLine(x, tops[static_cast<std::size_t>(kind)], bottom);
        if (kind != TimeSliderTicks::Major)
            return;
        const QString label = text(time);
        if (labels.take(x, textWidth(label)))
            drawRulerLabel(x, label, outside);
    });

    const int lastX = m_geometry.timeToX(visible.last.time());
    addLine(lastX, markTop, row(6 + 1));
    if (labels.lastFits())
        drawRulerLabel(lastX, lastText, outside);

    drawLines(lines, m_colors.text);
    drawLines(outsideLines, m_colors.outsideText);
}

void TimeSliderPainter::paintRangeBar(bool hover) {
    const auto limited = [this](int x) { return qBound(0, x, m_geometry.width); };
    const int x = limited(m_geometry.timeToRangeBarX(m_geometry.visible.first));
    const int end = limited(m_geometry.timeToRangeBarX(m_geometry.visible.last + 1));
    m_painter.fillRect(m_device(QRect(x, 0, std::max(end - x, 1), Geometry::RangeBarHeight)),
                       hover ? m_colors.rangeBarHover : m_colors.rangeBar);
}

// -- Marks and the zoom rectangle

// Tints a frame over the height of the ruler.
void TimeSliderPainter::drawHighlightFrame(TimeSliderTime frame, const QColor& color) {
    const int x = m_geometry.clampX(m_geometry.timeToX(frame.time()));
    const int end = m_geometry.clampX(m_geometry.timeToX((frame + 1).time()));
    QColor tint = color;
    tint.setAlpha(HighlightAlpha);
    m_painter.fillRect(fullHeight(x, end), tint);
}

int TimeSliderPainter::paintMark(Time time, const QColor& color) {
    const int x = m_geometry.clampX(m_geometry.timeToX(time));
    drawHighlightFrame(time, color);
    m_painter.fillRect(fullHeight(x - 1, x + 1), color);
    const int barX = qBound(0, m_geometry.timeToRangeBarX(time), m_geometry.width);
    m_painter.fillRect(m_device(QRect(barX, 0, 2, Geometry::RangeBarHeight)), color);
    return x;
}

TimeSliderMarkSpans TimeSliderPainter::paintMarks(Time in, Time out, const QColor& color) {
    using Labels = TimeSliderMarkLabels;
    const auto mark = [&](Time time, const QString& label) {
        return time == InvalidTime ? std::optional<Labels::Mark>()
                                   : Labels::Mark{paintMark(time, color), textWidth(label)};
    };
    const QString inText = text(in);
    const QString outText = text(out);
    const auto inMark = mark(in, inText);
    const auto outMark = mark(out, outText);
    const Labels labels = Labels::plan(m_geometry.width, inMark, outMark);
    // With the mark itself: another time beside it should not cover it either.
    const auto spanOf = [](const Labels::Mark& each, int left) {
        return TimeSliderSpan{std::min(left, each.x - 1),
                              std::max(left + each.labelWidth, each.x + 1)};
    };
    TimeSliderMarkSpans spans;
    if (labels.in) {
        m_glyphs.draw(m_painter, m_device(*labels.in), m_device(TopTextY), inText, color);
        spans[0] = spanOf(*inMark, *labels.in);
    }
    if (labels.out) {
        m_glyphs.draw(m_painter, m_device(*labels.out), m_device(TopTextY), outText, color);
        spans[1] = spanOf(*outMark, *labels.out);
    }
    return spans;
}

void TimeSliderPainter::paintZoomRectangle(const TimeSliderRange& swept) {
    if (!swept.isValid() || swept.first == swept.last)
        return;
    const auto limited = [this](int x) { return qBound(-1, x, m_geometry.width); };
    const int x = limited(m_geometry.timeToX(swept.first.time()));
    const int end = limited(m_geometry.timeToX(swept.last.time()));
    QColor veil = m_colors.sweep;
    veil.setAlpha(ZoomRectangleAlpha);
    m_painter.fillRect(m_device(QRect(x, -1, end - x, m_geometry.height + 2)), veil);
    for (const int edge : {x, end})
        m_painter.fillRect(m_device(edge), 0, m_device.lineWidth(), m_device(m_geometry.height),
                           m_colors.sweep);
}

// -- Playheads

void TimeSliderPainter::paintPlayhead(Time time, const QColor& color,
                                      const TimeSliderMarkSpans& marks, bool line, bool plate) {
    const int x = m_geometry.timeToX(time);
    if (line)
        m_painter.fillRect(m_device(x), m_device(PlayheadTip), m_device.lineWidth(),
                           m_device(m_geometry.height) - m_device(PlayheadTip), color);

    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(color);
    const qreal scale = m_device.scale();
    const QPointF triangle[] = {QPointF(x - 6, PlayheadTop) * scale,
                                QPointF(x + 7, PlayheadTop) * scale,
                                QPointF(x + 0.5, PlayheadTip) * scale};
    m_painter.drawConvexPolygon(triangle, 3);
    paintPlayheadLabel(time, color, marks, plate);
}

void TimeSliderPainter::paintPlayheadLabel(Time time, const QColor& color,
                                           const TimeSliderMarkSpans& marks, bool plate) {
    const int x = m_geometry.timeToX(time);
    const QString label = text(time);
    const int labelWidth = m_glyphs.width(label);
    const auto place = playheadLabelLeft(m_geometry.width, x, textWidth(label), marks);
    if (!place)
        return;
    const bool isCentred =
        place == playheadLabelLeft(m_geometry.width, x, textWidth(label), TimeSliderMarkSpans());
    const int left = isCentred ? pinnedLeft(x, labelWidth) : m_device(*place);
    const int baseline = m_device(TopTextY);
    if (plate) {
        const int top = std::max(baseline + m_glyphs.top(), m_device(Geometry::Margin));
        const int under = isCentred ? x : *place + textWidth(label) / 2;
        for (const TimeSliderBand& band : m_bands) {
            if (under >= band.x && under < band.end)
                m_painter.fillRect(left - 1, top, labelWidth + 2, baseline + 1 - top,
                                   bandColor(band.kind));
        }
    }
    m_glyphs.draw(m_painter, left, baseline, label, color);
}

void TimeSliderPainter::paintPlayheadEnd(Time time, const QColor& color,
                                         const TimeSliderMarkSpans& marks) {
    const int x = m_geometry.timeToX((TimeSliderTime(time) + 1).time());
    const QRect label =
        playheadTextRect(m_geometry, marks, m_glyphs, m_device.scale(), time, text(time));
    const bool isCovered = x >= label.left() && x <= label.right();
    const int top = m_device(isCovered ? PlayheadTop : Geometry::Margin);
    m_painter.fillRect(m_device(x), top, m_device.lineWidth(), m_device(m_geometry.height) - top,
                       color);
}

QRect TimeSliderPainter::playheadTextRect(const TimeSliderGeometry& geometry,
                                          const TimeSliderMarkSpans& marks,
                                          const TimeGlyphs& glyphs, qreal scale, Time time,
                                          const QString& text) {
    const int labelWidth = qCeil(glyphs.width(text) / scale);
    const auto left = playheadLabelLeft(geometry.width, geometry.timeToX(time), labelWidth, marks);
    if (!left)
        return {};
    const int top = TopTextY + qFloor(glyphs.top() / scale) - 1;
    return {*left - 1, top, labelWidth + 3, PlayheadTop - top};
}

} // namespace Kestrel::UI
