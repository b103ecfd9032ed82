#include <KxUI/eventgraph/SelectionDrag_p.h>

#include <cstdlib>

namespace Kestrel::UI {

void SelectionDrag::press(int x) {
    m_state = State::Pressed;
    m_from = x;
}

SelectionDrag::Command SelectionDrag::move(int x, bool buttonHeld) {
    if (!buttonHeld)
        m_state = State::Idle;
    if (m_state == State::Pressed && std::abs(x - m_from) >= m_threshold)
        m_state = State::Dragging;
    return m_state == State::Dragging ? Command{Command::Select, m_from, x} : Command();
}

SelectionDrag::Command SelectionDrag::release() {
    const bool clicked = m_state == State::Pressed;
    m_state = State::Idle;
    return clicked ? Command{Command::Clear} : Command();
}

} // namespace Kestrel::UI
