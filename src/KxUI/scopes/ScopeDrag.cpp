#include <KxUI/scopes/ScopeDrag_p.h>

namespace Kestrel::UI {

void ScopeDrag::press(const ScopeInput& input) {
    if (m_state != Idle)
        return;
    if (input.button == Qt::LeftButton)
        m_state = input.pans ? Panning : Pressed;
    else if (input.button == Qt::MiddleButton)
        m_state = Panning;
    else
        return;
    m_button = input.button;
    m_modifiers = input.modifiers;
    m_start = m_last = input.position;
    m_path = {input.position};
}

ScopeCommand ScopeDrag::move(const ScopeInput& input) {
    const QPointF before = m_last;
    switch (m_state) {
    case Idle:
        return {};
    case Pressed:
        if ((input.position - m_start).manhattanLength() < Slack)
            return {};
        if (m_turns && !(m_modifiers & (Qt::ShiftModifier | Qt::ControlModifier))) {
            m_state = Turning;
            m_last = input.position;
            return {ScopeCommand::Turn, before, input.position};
        }
        m_state = Selecting;
        return {ScopeCommand::BeginSelect, m_start, input.position};
    case Selecting:
        m_last = input.position;
        m_path.append(input.position);
        return {ScopeCommand::Select, m_start, input.position};
    case Panning:
        m_last = input.position;
        return {ScopeCommand::Pan, before, input.position};
    case Turning:
        m_last = input.position;
        return {ScopeCommand::Turn, before, input.position};
    }
    return {};
}

ScopeCommand ScopeDrag::release(const ScopeInput& input) {
    if (m_state == Idle || input.button != m_button)
        return {};
    const State ended = m_state;
    m_state = Idle;
    if (ended == Pressed)
        return {ScopeCommand::Click, m_start, input.position};
    if (ended == Selecting)
        return {ScopeCommand::EndSelect, m_start, input.position};
    return {};
}

ScopeCommand ScopeDrag::cancel() {
    const State ended = m_state;
    m_state = Idle;
    return {ended == Selecting ? ScopeCommand::CancelSelect : ScopeCommand::Nothing, m_start,
            m_start};
}

} // namespace Kestrel::UI
