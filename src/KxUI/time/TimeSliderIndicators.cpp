#include <KxUI/time/TimeSliderIndicators_p.h>

#include <KxUI/time/TimeSliderPainter_p.h>

#include <QPainter>

#include <algorithm>

namespace Kestrel::UI {
namespace {

using Base::Time;
using Geometry = TimeSliderGeometry;

// The columns of the frames from `first` up to but without `end`.
TimeSliderColumns columnsOf(const Geometry& geometry, Time first, TimeSliderTime end) {
    const TimeSliderMapping toX(geometry);
    return {toX(first), toX(end.time())};
}

} // namespace

void TimeSliderIndicators::Strip::reset(int columns) {
    if (row.width() != columns)
        row = QImage(columns, 1, QImage::Format_ARGB32_Premultiplied);
    row.fill(Qt::transparent);
    isBlank = true;
}

void TimeSliderIndicators::Strip::fill(const TimeSliderColumns& columns, int width, qreal scale,
                                       const QColor& color) {
    const auto column = [&](int x) {
        return std::min(qRound(qBound(0, x, width) * scale), row.width());
    };
    const int from = column(columns.x);
    const int to = column(columns.end);
    if (from >= to)
        return;
    isBlank = false;
    auto* pixels = reinterpret_cast<QRgb*>(row.scanLine(0));
    std::fill(pixels + from, pixels + to, qPremultiply(color.rgba()));
}

void TimeSliderIndicators::Strip::draw(QPainter& painter, const QRect& target) const {
    if (isBlank)
        return;
    const QRect part = target & QRect(0, target.y(), row.width(), target.height());
    for (int y = part.top(); y <= part.bottom(); ++y)
        painter.drawImage(QPoint(part.x(), y), row, QRect(part.x(), 0, part.width(), 1));
}

void TimeSliderIndicators::setBars(int bars) {
    m_bars.resize(static_cast<std::size_t>(std::max(bars, 0)));
    m_stale = true;
}

TimeSliderIndicators::Bar* TimeSliderIndicators::bar(int index) {
    const auto place = static_cast<std::size_t>(index);
    return index >= 0 && place < m_bars.size() ? &m_bars[place] : nullptr;
}

TimeSliderColumns TimeSliderIndicators::setFrame(const TimeSliderGeometry& geometry, int index,
                                                 Time frame, bool isCached) {
    Bar* target = bar(index);
    // The latest of all times has no end and so cannot be shown.
    if (!target || frame == Base::InvalidTime || frame == TimeSliderTime::Max)
        return {};
    const auto interval = FrameSet::interval_type::right_open(frame, frame + 1);
    if (isCached)
        target->frames.add(interval);
    else
        target->frames.subtract(interval);
    if (m_stale)
        return {};
    const TimeSliderColumns columns = columnsOf(geometry, frame, frame + 1);
    target->strip.fill(columns, geometry.width, m_scale,
                       isCached ? target->color : QColor(Qt::transparent));
    return columns;
}

bool TimeSliderIndicators::setFrames(int index, const FrameSet& frames) {
    Bar* target = bar(index);
    if (!target || target->frames == frames)
        return false;
    target->frames = frames;
    m_stale = true;
    return true;
}

bool TimeSliderIndicators::setColor(int index, const QColor& color) {
    Bar* target = bar(index);
    if (!target || target->color == color)
        return false;
    target->color = color;
    m_stale = true;
    return true;
}

void TimeSliderIndicators::update(const TimeSliderGeometry& geometry, qreal scale,
                                  const std::set<Time>& keyFrames, const QColor& keyFrameColor) {
    if (!m_stale && scale == m_scale)
        return;
    m_stale = false;
    m_scale = scale;
    const int columns = qRound(geometry.width * scale);
    for (Bar& each : m_bars) {
        each.strip.reset(columns);
        for (const auto& interval : each.frames) {
            const TimeSliderTime end = TimeSliderTime(boost::icl::last(interval)) + 1;
            each.strip.fill(columnsOf(geometry, boost::icl::first(interval), end), geometry.width,
                            scale, each.color);
        }
    }
    m_keyFrames.reset(columns);
    if (!geometry.visible.isValid())
        return;
    const auto end = keyFrames.upper_bound(geometry.visible.last.time());
    for (auto time = keyFrames.lower_bound(geometry.visible.first.time()); time != end; ++time) {
        TimeSliderColumns span = columnsOf(geometry, *time, TimeSliderTime(*time) + 1);
        span.end = std::max(span.end, span.x + 1); // visible where many frames share a column too
        m_keyFrames.fill(span, geometry.width, scale, keyFrameColor);
    }
}

QRect TimeSliderIndicators::rows(const QRect& rect, int y) const {
    return rect & QRect(rect.x(), y, rect.width(), Geometry::StripHeight);
}

void TimeSliderIndicators::draw(QPainter& painter, const DeviceSpace& device,
                                const QRect& rect) const {
    for (int i = 0; i < bars(); ++i)
        m_bars[static_cast<std::size_t>(i)].strip.draw(
            painter, device(rows(rect, Geometry::cacheBarY(i, bars()))));
    m_keyFrames.draw(painter, device(rows(rect, Geometry::KeyFrameY)));
}

QRect TimeSliderIndicators::area(const TimeSliderColumns& columns) const {
    const int lastY =
        m_bars.empty() ? Geometry::KeyFrameY : Geometry::cacheBarY(bars() - 1, bars());
    return {columns.x, Geometry::KeyFrameY, columns.end - columns.x,
            lastY + Geometry::StripHeight - Geometry::KeyFrameY};
}

} // namespace Kestrel::UI
