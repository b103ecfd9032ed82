#pragma once

#include <vector>

namespace Kestrel::UI {

/** How an axis is drawn; the models never see it. */
enum class AxisScale {
    Linear,
    /** By powers of ten. Linear where what is visible begins at 0 or below. */
    Logarithmic,
    /** t = ln(1 + x (b - 1)) / ln b, mirrored below 0: wide in the shadows, 0 and 1 where they are. */
    Shadows
};

/** A stretch of an axis. */
struct CurveSpan {
    double low = 0;
    double high = 1;

    double width() const { return high - low; }
    friend bool operator==(const CurveSpan& a, const CurveSpan& b) {
        return a.low == b.low && a.high == b.high;
    }
};

/** The nearest span that a zoom about `nominal` may show. */
CurveSpan limitedSpan(const CurveSpan& span, const CurveSpan& nominal);

/** Where the numbers of an axis lie: number to t, in which distances are even, to pixels. */
class CurveAxis {
public:
    static constexpr double UsualShadowBase = 64;
    static constexpr double LeastShadowBase = 2;
    static constexpr double MostShadowBase = 256;
    /** How many times as wide as what is shown usually a range may be, or as narrow. */
    static constexpr double MostZoom = 1e9;

    /** `origin` is the pixel of the low end; to the high one it is `length`, which may be
        negative. */
    CurveAxis(AxisScale scale, const CurveSpan& span, double origin, double length,
              double shadowBase = UsualShadowBase);

    const CurveSpan& span() const { return m_span; }
    AxisScale scale() const { return m_scale; }
    bool isLinear() const { return m_scale == AxisScale::Linear; }
    double origin() const { return m_origin; }
    double length() const { return m_length; }

    double pixelOf(double value) const {
        if (isLinear())
            return m_origin + (value - m_span.low) * m_pixelsPerT;
        return m_origin + (toT(value) - m_low) * m_pixelsPerT;
    }
    double valueAt(double pixel) const;
    /** How many pixels a unit takes at `value`, with the sign of length(). */
    double pixelsPerUnit(double value) const;
    /** How many decimals tell the values of neighbouring pixels apart at `value`, 0 to 17. */
    int decimalsAt(double value) const;

    CurveSpan zoomed(double pixel, double factor, const CurveSpan& nominal) const;
    CurveSpan panned(double pixels, const CurveSpan& nominal) const;

    friend bool operator==(const CurveAxis& a, const CurveAxis& b) {
        return a.m_scale == b.m_scale && a.m_base == b.m_base && a.m_span == b.m_span &&
               a.m_origin == b.m_origin && a.m_length == b.m_length;
    }

private:
    double toT(double value) const;
    double fromT(double t) const;
    double farthestT() const;
    CurveSpan fromT(double low, double high, const CurveSpan& nominal) const;

    AxisScale m_scale;
    double m_base;
    double m_logBase;
    CurveSpan m_span;
    double m_origin;
    double m_length;
    double m_low;  ///< as t
    double m_high; ///< as t
    double m_pixelsPerT;
};

/** A tick of an axis, where a line of the grid is. */
struct CurveTick {
    double value = 0;
    double pixel = 0;
    bool isLong = false; ///< stronger, and labelled where there is room
};

/** The ticks of an axis, in the order of their values. */
struct CurveTicks {
    std::vector<CurveTick> ticks;
    /** How many decimals the long ones need where they are evenly spaced; -1 where each has its
        own. */
    int decimals = -1;

    /** By 1, 2 and 5 on an even axis and wherever it is nearly even; by decades elsewhere. Ticks
        stand `spacing` pixels apart at least, long ones `longSpacing`. */
    static CurveTicks of(const CurveAxis& axis, double spacing, double longSpacing);
};

} // namespace Kestrel::UI
