#pragma once

#include <QColor>
#include <QImage>

class QPainter;

namespace Kestrel::UI {

/** A coloured strip that marks spans along the slider: one row of device pixels, stretched to the
    strip's height when it is painted. */
class TimeSliderStrip {
public:
    /** Starts over, transparent, for a slider of `width` pixels at `scale` device pixels each. */
    void reset(int width, qreal scale);

    /** Colours the columns from pixel x up to, not including, pixel `end`; what lies outside the
        slider is left out. Transparent erases. */
    void fill(int x, int end, const QColor& color);

    /** Paints the columns `x` to `end` of the strip on the rows `y` up to `bottom`. Device pixels,
       as the painter's. */
    void draw(QPainter& painter, int x, int end, int y, int bottom) const;

private:
    QImage m_row;
    int m_width = 0;
    qreal m_scale = 1;
};

} // namespace Kestrel::UI
