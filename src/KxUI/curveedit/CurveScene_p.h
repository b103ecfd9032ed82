#pragma once

#include <KxUI/curveedit/CurveModel.h>
#include <KxUI/curveedit/CurvePlot_p.h>

#include <QVector>

#include <limits>
#include <vector>

namespace Kestrel::UI {

/** What a curve view shows at the time of an input, as far as mouse and keys need to know. */
struct CurveScene {
    /** Null shows no curves. */
    const CurveModel* model = nullptr;
    CurvePlot plot;
    /** The curve above the others, and those that can be edited, it among them. */
    int current = 0;
    std::vector<int> curves;

    /** Several curves are edited together: nothing is pulled out, a press off the lines selects. */
    bool several = false;
    /** Whether a press off the line adds a knot, in the one curve that is edited. */
    bool pressAdds = true;
    /** Whether the frame around what is selected shows. */
    bool hasFrame = false;
    bool canZoom = true;
    /** What zoom and pan are limited by. */
    QRectF nominal{0, 0, 1, 1};

    /** Whether drags snap, and to what beside what the curves offer. */
    bool snaps = false;
    QVector<double> snapX;
    QVector<double> snapY;
    double playhead = std::numeric_limits<double>::quiet_NaN();
    /** x is a time: drags snap to whole frames. */
    bool hasFrames = false;

    bool holds(int curve) const { return model && curve >= 0 && curve < model->count(); }
    bool holds(int curve, int knot) const {
        return holds(curve) && knot >= 0 && knot < model->knots(curve);
    }
    bool can(int curve, CurveModel::Ability ability) const {
        return holds(curve) && model->abilities(curve).testFlag(ability);
    }
};

} // namespace Kestrel::UI
