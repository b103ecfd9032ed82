#include "play/RateMeter.h"

namespace Kestrel::Workbench {

void RateMeter::reset() {
    *this = RateMeter();
}

void RateMeter::restart() {
    m_started = false;
}

void RateMeter::reached(std::uint64_t ticks, bool shown, std::int64_t nowNs) {
    if (m_started)
        m_dropped += ticks - m_ticks - 1;
    m_started = true;
    m_ticks = ticks;
    m_lastShown = shown;
    if (shown)
        m_shown.push_back(nowNs);
    else
        ++m_dropped;
}

bool RateMeter::shownLate(std::int64_t nowNs) {
    if (!m_started || m_lastShown)
        return false;
    m_lastShown = true;
    --m_dropped;
    m_shown.push_back(nowNs);
    return true;
}

double RateMeter::rate(std::int64_t nowNs) {
    constexpr std::int64_t window = 1000000000;
    while (!m_shown.empty() && m_shown.front() < nowNs - window)
        m_shown.pop_front();
    if (m_shown.size() < 2)
        return 0.0;
    // From the first to the last shown: exact however many frames the window holds.
    const double seconds = double(m_shown.back() - m_shown.front()) / 1e9;
    return seconds > 0.0 ? double(m_shown.size() - 1) / seconds : 0.0;
}

} // namespace Kestrel::Workbench
