#pragma once

#include <KxUI/base/FrameSet.h>
#include <KxUI/time/TimeSliderGeometry_p.h>

#include <QColor>
#include <QImage>
#include <QRect>

#include <set>
#include <vector>

class QPainter;

namespace Kestrel::UI {

class DeviceSpace;

/** Columns of a slider, from x up to but without end. */
struct TimeSliderColumns {
    int x = 0;
    int end = 0;
};

/** The cache bars and the keyframe strip: which frames they show, and for each one row of device
    pixels that is stretched to the strip's height when it is painted. */
class TimeSliderIndicators {
public:
    using FrameSet = Base::FrameSet;

    /** Has so many cache bars; none for a negative number. */
    void setBars(int bars);
    int bars() const { return static_cast<int>(m_bars.size()); }

    /** The columns are out of date: the next update() fills them again. */
    void invalidate() { m_stale = true; }

    /** Adds or removes a frame. Returns the columns that changed, none while all are out of date. A
        bar that does not exist, or a time that is not a frame, changes nothing. */
    TimeSliderColumns setFrame(const TimeSliderGeometry& geometry, int bar, Base::Time frame,
                               bool isCached);

    /** Both return whether anything changed; the columns are then out of date. */
    bool setFrames(int bar, const FrameSet& frames);
    bool setColor(int bar, const QColor& color);

    /** Fills the columns if they are out of date. */
    void update(const TimeSliderGeometry& geometry, qreal scale,
                const std::set<Base::Time>& keyFrames, const QColor& keyFrameColor);

    /** Paints what lies in `rect`, in widget pixels. */
    void draw(QPainter& painter, const DeviceSpace& device, const QRect& rect) const;

    /** The rows of all strips, at some columns. */
    QRect area(const TimeSliderColumns& columns) const;

private:
    struct Strip {
        QImage row;
        bool isBlank = true;

        void reset(int columns);
        void fill(const TimeSliderColumns& columns, int width, qreal scale, const QColor& color);
        void draw(QPainter& painter, const QRect& target) const;
    };
    struct Bar {
        FrameSet frames;
        QColor color = QColor(74, 158, 92);
        Strip strip;
    };

    Bar* bar(int index);
    QRect rows(const QRect& rect, int y) const;

    std::vector<Bar> m_bars;
    Strip m_keyFrames;
    qreal m_scale = 1;
    bool m_stale = true;
};

} // namespace Kestrel::UI
