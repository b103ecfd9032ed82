#pragma once

#include <KxUI/charts/ChartReadout.h>
#include <KxUI/charts/PlotLayout_p.h>
#include <KxUI/draw/DrawingContext.h>

#include <QPalette>

#include <vector>

namespace Kestrel::UI {

struct ChartItem;

/** The colours and the fonts of a chart. */
struct ChartLook {
    ChartLook(const QPalette& palette, const QFont& textFont);

    QFont font;
    QFont titleFont;
    QColor ground;
    QColor text;
    QColor faint; ///< of labels
    QColor grid;
    QColor axis;
};

/** Grid, ticks, labels and titles of a plot. */
void drawAxes(DrawingContext& context, const PlotLayout& layout, const PlotRules& rules,
              const ChartLook& look);

/** The mark of a series in lists: a line of its style, or a square of its colour. */
void drawMark(DrawingContext& context, const QRectF& rect, const QColor& color, Qt::PenStyle style);

/** Where the box of a read-out lies: beside `anchor`, within `bounds`. */
QRectF readoutBox(const QPointF& anchor, const QRectF& bounds, const ChartReadout& readout,
                  const ChartLook& look, qreal ratio);
/** The values of a read-out in it. */
void drawReadoutBox(DrawingContext& context, const QPointF& anchor, const QRectF& bounds,
                    const ChartReadout& readout, const ChartLook& look);

/** How high the lines of a legend are, and the legend itself. */
double legendHeight(const std::vector<ChartItem>& items, double width, const QFont& font);
void drawLegend(DrawingContext& context, const QRectF& rect, const std::vector<ChartItem>& items,
                const ChartLook& look);

} // namespace Kestrel::UI
