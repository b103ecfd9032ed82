#pragma once

#include <KxUI/charts/AxisScale_p.h>
#include <KxUI/charts/BarChart.h>

#include <QRectF>

#include <vector>

namespace Kestrel::UI {

/** What bars are arranged from. A row of values for each series, a place in it for each category. */
struct BarRules {
    std::vector<std::vector<double>> values;
    std::vector<int> order; ///< which category each slot shows
    BarChart::Arrangement arrangement = BarChart::Grouped;
    bool areLying = false;
    AxisScale places;
    AxisScale scale;
    qreal ratio = 1;
};

/** A bar in logical pixels, with its edges between device pixels. */
struct Bar {
    int series = 0;
    int slot = 0;
    int category = 0;
    double value = 0; ///< as it was given
    QRectF rect;
};

/** The bars of all slots; none for values that are not finite, at least a device pixel for any but 0. */
std::vector<Bar> arrangeBars(const BarRules& rules);

/** From the lowest end of the bars to the highest one; both reach to 0. */
struct BarRange {
    double lowest = 0;
    double highest = 0;
};
BarRange rangeOfBars(const std::vector<std::vector<double>>& values,
                     BarChart::Arrangement arrangement);

/** The categories, by falling sum where `isSorted`. */
std::vector<int> orderOfBars(const std::vector<std::vector<double>>& values, int categories,
                             bool isSorted);

} // namespace Kestrel::UI
