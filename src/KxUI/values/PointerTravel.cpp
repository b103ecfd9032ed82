#include <KxUI/values/PointerTravel_p.h>

#include <KxUI/values/platform/PointerWarp_p.h>

#include <algorithm>

namespace Kestrel::UI {

std::optional<QPoint> PointerTravel::beyond(const QPoint& at, const QRect& screen,
                                            Qt::Orientation axis) {
    constexpr int edge = 2;
    constexpr int inside = 2 * edge; // and not at the other edge at once
    if (screen.width() <= 4 * inside || screen.height() <= 4 * inside)
        return {};
    const bool across = axis == Qt::Horizontal;
    const int place = across ? at.x() : at.y();
    const int low = across ? screen.left() : screen.top();
    const int high = across ? screen.right() : screen.bottom();
    if (place > low + edge && place < high - edge)
        return {};
    const int to = place <= low + edge ? high - inside : low + inside;
    return across ? QPoint(to, at.y()) : QPoint(at.x(), to);
}

bool PointerTravel::jump(const QPoint& to) {
    m_canJump = m_canJump && warpPointer(to);
    return m_canJump;
}

double PointerTravel::tick() const {
    return std::clamp(m_speed, -FastestTick, FastestTick);
}

} // namespace Kestrel::UI
