#pragma once

#include <KxUI/charts/LineData_p.h>
#include <KxUI/charts/LineSeries.h>
#include <KxUI/charts/PlotLayout_p.h>
#include <KxUI/draw/DrawingContext.h>

namespace Kestrel::UI {

/** How a line looks. */
struct LineLook {
    LineSeries::Style style = LineSeries::Line;
    QColor color;
    double width = 1.5;
    Qt::PenStyle dashes = Qt::SolidLine;
};

/** Draws a line in a plot, of as many points as there are; the clip is the plot. */
void drawLine(DrawingContext& context, const LineData& data, const QRectF& plot, const AxisScale& x,
              const AxisScale& y, const LineLook& look);

} // namespace Kestrel::UI
