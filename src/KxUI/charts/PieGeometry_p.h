#pragma once

#include <KxUI/charts/PieSlice.h>

#include <QPointF>
#include <QRectF>

#include <vector>

namespace Kestrel::UI {

/** A sector of a pie. Angles are parts of a turn, clockwise from the top. */
struct PieSector {
    int slice = 0; ///< the first that it shows; -1 for those shown together
    double value = 0;
    double begin = 0;
    double end = 0;
    double percent = 0;

    double middle() const { return (begin + end) / 2; }
};

/** The sectors of visible slices. Each begins where the one before ends, and the last ends at 1. */
std::vector<PieSector> pieSectors(const std::vector<PieSlice>& slices,
                                  const std::vector<bool>& visible, double othersBelow);

/** A place on the pie. */
QPointF onPie(const QPointF& middle, double radius, double turn);

/** The outline of a sector; `radius` in device pixels says how fine it is. */
std::vector<QPointF> sectorOutline(const PieSector& sector, const QPointF& middle, double inner,
                                   double outer);

/** Heights of labels that shall lie at `wanted`, ascending, at least `height` apart, between `top` and
    `bottom`; as near to what is wanted as that allows. */
std::vector<double> spreadLabels(std::vector<double> wanted, double height, double top,
                                 double bottom);

} // namespace Kestrel::UI
