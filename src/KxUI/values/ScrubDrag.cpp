#include <KxUI/values/ScrubDrag_p.h>

#include <KxUI/values/NumberSteps_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// To as many places as the step has: what is dragged looks as though it had been stepped.
double roundedLike(double number, double step) {
    constexpr double wholeLimit = 9007199254740992.0; // 2^53
    const int decimals = decimalsOf(step);
    const double scale = powerOfTen(decimals);
    const double scaled = number * scale;
    return decimals > 15 || !(std::fabs(scaled) < wholeLimit) ? number
                                                              : std::round(scaled) / scale + 0.0;
}

} // namespace

void ScrubDrag::press(const QPointF& at, const Start& start) {
    m_state = Armed;
    m_start = start;
    m_pressed = m_at = at;
    m_base = m_exact = m_shown = start.number;
}

// The first pixels choose the axis; a drag along the other one is none.
bool ScrubDrag::begins(const QPointF& at) {
    const QPointF way = at - m_pressed;
    const double across = m_start.upAndDownOnly ? 0.0 : std::fabs(way.x());
    const double along = std::fabs(way.y());
    if (std::max(across, along) < PixelsPerStep)
        return false;
    m_axis = across >= along ? Qt::Horizontal : Qt::Vertical;
    m_state = Scrubbing;
    m_at = at;
    return true;
}

bool ScrubDrag::moveTo(const QPointF& at, double factor, bool snap) {
    if (m_state == Armed)
        begins(at);
    if (m_state != Scrubbing)
        return false;
    const QPointF way = at - m_at;
    m_at = at;
    return moveBy(m_axis == Qt::Horizontal ? way.x() : -way.y(), factor, snap);
}

bool ScrubDrag::moveBy(double pixels, double factor, bool snap) {
    if (m_state != Scrubbing || pixels == 0.0)
        return false;
    const double step = withoutDust(m_start.grain * factor);
    const double before = m_shown;
    const double moved = m_exact + pixels / PixelsPerStep * step;
    m_exact = std::clamp(moved, m_start.minimum, m_start.maximum);
    double shown = snap ? std::round(m_exact / m_start.grain) * m_start.grain : m_exact;
    shown = roundedLike(shown, snap ? m_start.grain : step);
    // Less than half a step is no change, nor is the way back to where the drag began.
    if (std::fabs(m_exact - m_base) < (snap ? m_start.grain : step) / 2.0)
        shown = m_base;
    // At an end the number is the end, which need not be a whole number of steps.
    if (m_exact == m_start.minimum || m_exact == m_start.maximum)
        shown = m_exact;
    m_shown = std::clamp(shown, m_start.minimum, m_start.maximum);
    return m_shown != before;
}

} // namespace Kestrel::UI
