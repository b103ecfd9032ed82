#pragma once

#include <KxUI/curveedit/CurvePlot_p.h>
#include <KxUI/curveedit/CurveStroke_p.h>

#include <cstdint>
#include <vector>

namespace Kestrel::UI {

class CurveModel;

/** What is seen of a curve in a plot: its line by columns of device pixels, and which knots. */
struct CurveLine {
    CurveColumns columns;
    /** The knots in sight: first up to but without end. */
    int firstKnot = 0;
    int endKnot = 0;
    /** How many of them are in each column of `columns`, 255 at most. */
    std::vector<std::uint8_t> density;

    /** More knots than columns: of each the extremes are known. */
    bool dense = false;

    int knots() const { return endKnot - firstKnot; }

    /** Whether the knots lie too close to be told apart, in a plot of this width. */
    bool isCrowded(double width) const { return knots() > width / 2.0; }

    /** Of the columns [0, width) of a picture with `ratio` pixels to one of the widget. */
    static CurveLine of(const CurveModel& model, int curve, const CurvePlot& plot, double ratio,
                        int width);

    /** The same again, after the curve became another one between the columns `first` and `end` and
        nowhere else. */
    void renew(const CurveModel& model, int curve, const CurvePlot& plot, double ratio, int width,
               int first, int end);
};

} // namespace Kestrel::UI
