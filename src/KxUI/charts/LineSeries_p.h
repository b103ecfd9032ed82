#pragma once

#include <KxUI/charts/LineData_p.h>
#include <KxUI/charts/LineSeries.h>

namespace Kestrel::UI {

class LineSeriesPrivate {
public:
    static const LineData& dataOf(const LineSeries& series) { return series.d->data; }

    LineData data;
    LineSeries::Style style = LineSeries::Line;
    double width = 1.5;
    bool isOnRightAxis = false;
};

/** The index of the point whose x is nearest; there is at least one. */
std::size_t nearestPoint(const LineData& data, double x);

} // namespace Kestrel::UI
