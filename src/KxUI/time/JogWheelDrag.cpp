#include <KxUI/time/JogWheelDrag_p.h>

#include <cstdint>

namespace Kestrel::UI {

std::optional<double> JogWheelDrag::press(int x, Qt::MouseButton button, int value) {
    if (button == Qt::RightButton && isHeld() && m_button != button)
        return takeBack();
    m_state = Dragging;
    m_button = button;
    m_pressX = x;
    m_pressValue = value;
    return std::nullopt;
}

std::optional<double> JogWheelDrag::move(int x, Qt::MouseButtons held, float sensitivity) {
    if (!(held & m_button))
        m_state = Idle;
    if (m_state != Dragging)
        return std::nullopt;
    const float moved = static_cast<float>(std::int64_t{x} - m_pressX) * sensitivity;
    return static_cast<double>(m_pressValue) + static_cast<double>(moved);
}

void JogWheelDrag::release(Qt::MouseButton button) {
    if (button == m_button)
        m_state = Idle;
}

std::optional<double> JogWheelDrag::takeBack() {
    if (m_state != Dragging)
        return std::nullopt;
    m_state = TakenBack;
    return m_pressValue;
}

} // namespace Kestrel::UI
