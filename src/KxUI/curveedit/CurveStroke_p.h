#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

#include <vector>

namespace Kestrel::UI {

/** What the line of a function covers of one column of pixels; y downwards, in pixels. */
struct CurveColumn {
    float in = 0; ///< where it comes in at the left edge
    float out = 0;
    float top = 0; ///< the extremes in between, which are beyond `in` and `out` at knots
    float bottom = 0;
    /** Goes up and down too often for anything but the extremes to be seen. */
    bool dense = false;
};

/** The columns of a line from `first` on; none where the line is not defined. */
struct CurveColumns {
    int first = 0;
    std::vector<CurveColumn> columns;

    int end() const { return first + int(columns.size()); }
};

/** Draws a line of `width` pixels over an opaque image (`Format_RGB32`), within `clip`. Lines of
    functions have one place a column, so that this costs what the line covers, however many knots
    and turns it has; a stroked path costs many times as much. Distances are exact but where columns
    are dense. */
void strokeCurve(QImage& image, const QRect& clip, const CurveColumns& line, double width,
                 const QColor& color);

} // namespace Kestrel::UI
