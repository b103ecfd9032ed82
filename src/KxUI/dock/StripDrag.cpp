#include <KxUI/dock/StripDrag_p.h>

#include <utility>

namespace Kestrel::UI {

void StripDrag::press(const QPoint& position, const StripGeometry& strip) {
    end();
    m_press = position;
    for (int i = 0; i < strip.tabs.size(); ++i) {
        if (strip.tabs.at(i).contains(position)) {
            m_pressedIndex = i;
            m_grabOffset = position.x() - strip.tabs.at(i).left();
            return;
        }
    }
}

void StripDrag::end() {
    m_press.setX(-1);
    m_pressedIndex = -1;
    m_index = -1;
}

StripDrag::Step StripDrag::move(const QPoint& position, bool leftHeld, int startDistance,
                                const StripGeometry& strip) {
    constexpr int Slack = 5; // how far outside the title bar a tab still belongs to it
    if (!leftHeld || m_pressedIndex >= strip.tabs.size() || m_index >= strip.tabs.size()) {
        end();
        return {};
    }
    if (!isDragging()) {
        const bool isPressed = m_press.x() != -1 && m_pressedIndex >= 0;
        if (!isPressed || (position - m_press).manhattanLength() < 2 * startDistance)
            return {};
        m_index = m_pressedIndex;
        m_left = strip.tabs.at(m_index).left();
        return {Command::Begin, m_index};
    }

    if (!strip.titleBar.adjusted(-Slack, -Slack, Slack, Slack).contains(position)) {
        m_pressedIndex = -1;
        return {Command::TearOff, std::exchange(m_index, -1)};
    }

    m_left = position.x() - m_grabOffset;
    const int right = m_left + strip.tabs.at(m_index).width() - 1;
    if (m_index > 0 && m_left <= strip.tabs.at(m_index - 1).left())
        return {Command::Reorder, m_index - 1};
    if (m_index < strip.tabs.size() - 1 && right >= strip.tabs.at(m_index + 1).right())
        return {Command::Reorder, m_index + 1};
    return {};
}

} // namespace Kestrel::UI
