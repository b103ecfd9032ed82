#pragma once

#include <KxUI/base/Time.h>
#include <KxUI/time/TimeSliderGeometry_p.h>
#include <KxUI/time/TimeSliderLabels_p.h>
#include <KxUI/time/TimecodeTicks_p.h>

#include <QRect>
#include <QString>
#include <QtMath>

#include <vector>

class QColor;
class QPainter;
class QRegion;

namespace Kestrel::UI {

class TimeFormatter;
class TimeGlyphs;
struct TimeSliderColors;

/** How many device pixels a painter puts on one of its units. */
qreal deviceScale(const QPainter& painter);

/** While it lives, a painter's coordinates are device pixels, so that edges fall between pixels and
    images are copied rather than resampled at any scale. */
class DeviceSpace {
public:
    explicit DeviceSpace(QPainter& painter);
    ~DeviceSpace();
    Q_DISABLE_COPY(DeviceSpace)

    qreal scale() const { return m_scale; }
    int lineWidth() const { return qMax(qRound(m_scale), 1); }

    /** From widget pixels to device pixels. */
    int operator()(int pixels) const { return qRound(pixels * m_scale); }
    QRect operator()(const QRect& rect) const {
        const int left = (*this)(rect.x());
        const int top = (*this)(rect.y());
        return {left, top, (*this)(rect.x() + rect.width()) - left,
                (*this)(rect.y() + rect.height()) - top};
    }

private:
    QPainter& m_painter;
    qreal m_scale;
};

/** Paints the parts of a time slider, each where the geometry says. While it lives the QPainter is
    in device space. */
class TimeSliderPainter {
public:
    /** Glyphs must be prepared for the painter's scale. All arguments are borrowed; without a
        formatter, texts are empty. */
    TimeSliderPainter(QPainter& painter, const TimeSliderGeometry& geometry,
                      const TimeSliderRange& playback, const TimeSliderColors& colors,
                      TimeGlyphs& glyphs, const TimeFormatter* formatter);

    /** The ruler's background: outside the clip, the clip, the playback range. */
    void paintBands();

    /** Ticks and their labels, for a visible range of at least a frame; on whole seconds if wanted,
        where there is timecode. */
    void paintTicks(bool wholeSeconds);

    /** The visible part of the clip in the overview. */
    void paintRangeBar(bool hover);

    /** The marks that are valid, with their times. Returns what these cover, in widget pixels. */
    TimeSliderMarkSpans paintMarks(Base::Time in, Base::Time out, const QColor& color);

    /** The range swept by a drag. */
    void paintZoomRectangle(const TimeSliderRange& swept);

    /** A playhead with its time, clear of those of the marks, and, if wanted, the line down the
        widget and a plate of the ruler's colour under the time. */
    void paintPlayhead(Base::Time time, const QColor& color, const TimeSliderMarkSpans& marks,
                       bool line, bool plate);

    /** The line of the double playhead, at the end of the current frame. */
    void paintPlayheadEnd(Base::Time time, const QColor& color, const TimeSliderMarkSpans& marks);

    /** What a playhead's label may cover, in widget pixels; nothing where it has no room. */
    static QRect playheadTextRect(const TimeSliderGeometry& geometry,
                                  const TimeSliderMarkSpans& marks, const TimeGlyphs& glyphs,
                                  qreal scale, Base::Time time, const QString& text);

    static constexpr int PlayheadTop = 13; ///< of the triangle
    static constexpr int PlayheadTip = 20;

private:
    QString text(TimeSliderTime time) const;
    int textWidth(const QString& label) const;
    int pinnedLeft(int x, int labelWidth) const;
    template <class Ticks>
    void paintTicks(const Ticks& ticks);
    TimecodeTicks::Rate timecodeRate() const;
    void paintPlayheadLabel(Base::Time time, const QColor& color, const TimeSliderMarkSpans& marks,
                            bool plate);
    void drawTextPinned(int x, int baseline, const QString& label, const QColor& color);
    void drawRulerLabel(int x, const QString& label, const QRegion& outside);
    void drawLines(const std::vector<QRect>& lines, const QColor& color);
    void drawHighlightFrame(TimeSliderTime frame, const QColor& color);
    int paintMark(Base::Time time, const QColor& color);
    const QColor& bandColor(TimeSliderBand::Kind kind) const;
    QRect fullHeight(int x, int end) const;

    QPainter& m_painter;
    DeviceSpace m_device;
    const TimeSliderGeometry& m_geometry;
    const TimeSliderColors& m_colors;
    TimeGlyphs& m_glyphs;
    const TimeFormatter* m_formatter;
    std::array<TimeSliderBand, 5> m_bands;
};

} // namespace Kestrel::UI
