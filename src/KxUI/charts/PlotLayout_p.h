#pragma once

#include <KxUI/charts/AxisScale_p.h>
#include <KxUI/charts/ChartAxis.h>

#include <QFont>
#include <QRectF>

namespace Kestrel::UI {

/** What a plot between axes is arranged from. */
struct PlotRules {
    QRectF area;
    QFont font;
    const ChartAxis* bottom = nullptr;
    const ChartAxis* left = nullptr;
    const ChartAxis* right = nullptr; ///< null for none
    qreal ratio = 1;
    /** Whether places 0, 1, 2 ... of the axis of categories lie in the middle of slots; the axis that
        has them is the left one for bars that lie. */
    bool hasSlots = false;
    bool slotsOnLeft = false;
    bool isPercent = false; ///< the axis of values is of parts of 1, whatever its unit is
    std::vector<int> order; ///< which category each slot shows
};

/** Where a plot and its axes lie, in logical pixels. */
struct PlotLayout {
    QRectF plot;
    AxisScale x;
    AxisScale y;
    AxisScale yRight;
    Ticks bottom;
    Ticks left;
    Ticks right;
    double lineHeight = 0;

    static PlotLayout arrange(const PlotRules& rules);
};

} // namespace Kestrel::UI
