#pragma once

#include <KxUI/charts/AxisScale_p.h>
#include <KxUI/charts/LineData_p.h>

#include <QPointF>

#include <vector>

namespace Kestrel::UI {

/** What a line covers of a column of device pixels, without its width. */
struct LineSpan {
    int column = 0;
    double top = 0;
    double bottom = 0;
};

/** How points are joined. */
enum class LineJoin { Straight, Steps, None };

/** A line of many points in a plot, both scales in device pixels: for each column from `left` on all that
    a thin line through all points would cover. The extents of points are exact, so that a peak has
    its height wherever it falls while the plot moves. */
std::vector<LineSpan> lineSpans(const LineData& data, const AxisScale& x, const AxisScale& y,
                                LineJoin join, int left, int columns);

/** A line of few points: its runs between gaps, with the points to both sides of the plot. */
std::vector<std::vector<QPointF>> lineRuns(const LineData& data, const AxisScale& x,
                                           const AxisScale& y, LineJoin join, double right);

/** How many points lie in the plot. */
std::size_t pointsWithin(const LineData& data, const AxisScale& x);

} // namespace Kestrel::UI
