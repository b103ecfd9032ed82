#include <KxUI/curveedit/CurveAxis_p.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace Kestrel::UI {
namespace {

// What all numbers of an axis stay below, so that widths are finite.
constexpr double Largest = 1e150;
constexpr double LargestExponent = 150;
// Of the numbers at its ends, what a range is wide at least, so that doubles tell its pixels apart.
constexpr double LeastPart = DBL_EPSILON * 1e5;

bool isUsable(const CurveSpan& span) {
    return std::isfinite(span.width()) && span.low < span.high;
}

// The same middle, another width, and not out of what doubles hold.
CurveSpan about(double middle, double width) {
    const double half = std::min(width, Largest) / 2;
    const double inside = std::clamp(middle, half - Largest, Largest - half);
    return {inside - half, inside + half};
}

} // namespace

CurveSpan limitedSpan(const CurveSpan& span, const CurveSpan& nominal) {
    const CurveSpan usual = isUsable(nominal) ? nominal : CurveSpan();
    if (!isUsable(span))
        return usual;
    const double middle = span.low + span.width() / 2;
    const double farthest = usual.width() * CurveAxis::MostZoom;
    const double kept = std::clamp(middle, usual.low - farthest, usual.high + farthest);
    const double least = std::max(usual.width() / CurveAxis::MostZoom, std::abs(kept) * LeastPart);
    const double width = std::clamp(span.width(), least, std::max(least, farthest));
    if (width == span.width() && kept == middle && std::abs(middle) < Largest / 2)
        return span;
    return about(kept, width);
}

CurveAxis::CurveAxis(AxisScale scale, const CurveSpan& span, double origin, double length,
                     double shadowBase)
    : m_scale(scale)
    , m_base(std::isfinite(shadowBase) ? std::clamp(shadowBase, LeastShadowBase, MostShadowBase)
                                       : UsualShadowBase)
    , m_logBase(std::log(m_base))
    , m_span(isUsable(span) ? span : CurveSpan())
    , m_origin(origin)
    , m_length(length) {
    if (scale == AxisScale::Logarithmic && !(m_span.low > 0))
        m_scale = AxisScale::Linear;
    m_low = toT(m_span.low);
    m_high = toT(m_span.high);
    if (!(m_high > m_low)) { // too narrow for this scale
        m_scale = AxisScale::Linear;
        m_low = m_span.low;
        m_high = m_span.high;
    }
    m_pixelsPerT = m_length / (m_high - m_low);
}

double CurveAxis::toT(double value) const {
    switch (m_scale) {
    case AxisScale::Logarithmic:
        return value > 0 ? std::log10(value) : -2 * LargestExponent;
    case AxisScale::Shadows:
        return std::copysign(std::log1p(std::abs(value) * (m_base - 1)) / m_logBase, value);
    case AxisScale::Linear:
        break;
    }
    return value;
}

double CurveAxis::fromT(double t) const {
    switch (m_scale) {
    case AxisScale::Logarithmic:
        return std::pow(10, t);
    case AxisScale::Shadows:
        return std::copysign(std::expm1(std::abs(t) * m_logBase) / (m_base - 1), t);
    case AxisScale::Linear:
        break;
    }
    return t;
}

double CurveAxis::farthestT() const {
    return m_scale == AxisScale::Linear        ? Largest
           : m_scale == AxisScale::Logarithmic ? LargestExponent
                                               : LargestExponent * std::log(10.0) / m_logBase;
}

double CurveAxis::valueAt(double pixel) const {
    if (m_pixelsPerT == 0)
        return m_span.low;
    const double t = (pixel - m_origin) / m_pixelsPerT;
    return isLinear() ? m_span.low + t : fromT(m_low + t);
}

double CurveAxis::pixelsPerUnit(double value) const {
    switch (m_scale) {
    case AxisScale::Logarithmic:
        return m_pixelsPerT / (std::max(value, DBL_MIN) * std::log(10.0));
    case AxisScale::Shadows:
        return m_pixelsPerT * (m_base - 1) / (m_logBase * (1 + std::abs(value) * (m_base - 1)));
    case AxisScale::Linear:
        break;
    }
    return m_pixelsPerT;
}

int CurveAxis::decimalsAt(double value) const {
    const double perPixel = 1 / std::abs(pixelsPerUnit(value));
    const double decimals = std::ceil(-std::log10(perPixel)) + 1;
    return decimals > 0 ? int(std::min(decimals, 17.0)) : 0;
}

// The span between two places; the limits hold for t where that is what the user sees.
CurveSpan CurveAxis::fromT(double low, double high, const CurveSpan& nominal) const {
    if (isLinear())
        return limitedSpan({low, high}, nominal);
    CurveSpan usual{toT(nominal.low), toT(nominal.high)};
    if (m_scale == AxisScale::Logarithmic && !(nominal.low > 0))
        usual = {m_low, m_high};
    const double farthest = farthestT();
    const CurveSpan limited = limitedSpan({low, high}, usual);
    const CurveSpan inside{std::clamp(limited.low, -farthest, farthest),
                           std::clamp(limited.high, -farthest, farthest)};
    const CurveSpan span{fromT(inside.low), fromT(inside.high)};
    return isUsable(span) ? span : m_span;
}

CurveSpan CurveAxis::zoomed(double pixel, double factor, const CurveSpan& nominal) const {
    if (!(factor > 0) || !std::isfinite(factor) || m_pixelsPerT == 0)
        return m_span;
    // As far as the limits go, so that the place stays where it is also at them.
    const bool isLog = m_scale == AxisScale::Logarithmic && !(nominal.low > 0);
    const double usual = isLog ? m_high - m_low : toT(nominal.high) - toT(nominal.low);
    const double width = m_high - m_low;
    const double part = (pixel - m_origin) / m_length;
    const double fixed = m_low + part * width;
    const double least = std::max(usual / MostZoom, std::abs(fixed) * LeastPart);
    const double becomes =
        usual > 0 ? std::clamp(width / factor, least, std::max(least, usual * MostZoom))
                  : width / factor;
    return fromT(fixed - part * becomes, fixed + (1 - part) * becomes, nominal);
}

CurveSpan CurveAxis::panned(double pixels, const CurveSpan& nominal) const {
    if (m_pixelsPerT == 0)
        return m_span;
    const double t = pixels / m_pixelsPerT;
    return fromT(m_low - t, m_high - t, nominal);
}

} // namespace Kestrel::UI
