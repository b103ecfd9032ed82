#include <KxUI/dock/PageDrag_p.h>

#include <KxUI/dock/DropZones_p.h>

namespace Kestrel::UI {

using Command = PageDragCommand;

void PageDrag::begin(const PageDragStart& start) {
    *this = {};
    m_active = true;
    m_start = start;
}

PageDragCommands PageDrag::move(const PageDragAlive& alive, const QPoint& global) const {
    if (!m_active)
        return {};
    if (!alive.page || !alive.workspace || !alive.source)
        return {{Command::TakeBack}};
    return {{Command::MovePage, QRect(global - m_start.press, QSize())}};
}

PageDragCommands PageDrag::aim(const PageDragScene& scene) {
    if (!m_active)
        return {};
    const bool splits = scene.pane && scene.splits;
    m_zone = splits ? dropZoneAt(scene.inStack, scene.stack, scene.paneSize) : DropCentre;
    m_index = scene.pane ? dropIndexAt(scene.inStrip, scene.tabs) : -1;
    PageDragCommands commands;
    if (m_pane != scene.pane) {
        if (m_pane)
            commands.append({Command::LeavePane});
        m_pane = scene.pane;
        if (m_pane)
            commands.append({Command::EnterPane});
    }
    commands.append({Command::ShowZone, {}, m_zone});
    return commands;
}

PageLanding PageDrag::drop(const QPoint& global, bool floating) const {
    PageLanding landing;
    landing.m_to = m_pane && !floating ? PageLanding::To::Pane : PageLanding::To::Window;
    landing.m_start = m_start;
    landing.m_position = global - m_start.press;
    landing.m_zone = m_zone;
    // The new pane at an edge has no tabs to go between.
    landing.m_index = m_zone == DropCentre ? m_index : -1;
    return landing;
}

PageLanding PageDrag::cancel(const QPoint& position) const {
    PageLanding landing;
    landing.m_start = m_start;
    landing.m_position = position;
    return landing;
}

PageDragCommands PageDrag::end() {
    PageDragCommands commands;
    if (!m_active)
        return commands;
    if (m_pane)
        commands.append({Command::LeavePane});
    commands.append({Command::LetGo});
    *this = {};
    return commands;
}

void PageDrag::forget(const void* pane) {
    if (m_pane == pane)
        m_pane = nullptr;
}

PageDragCommands PageLanding::letGo(const PageDragAlive& alive) const {
    switch (m_to) {
    case To::Pane:
        return {{Command::Dock, {}, m_zone, m_index}};
    case To::Window:
        return docked(false);
    case To::Source:
        break;
    }
    return home(alive);
}

PageDragCommands PageLanding::docked(bool done) const {
    PageDragCommands commands;
    if (!done)
        commands.append({Command::Float, QRect(m_position, m_start.paneSize)});
    commands.append({Command::TidySource});
    commands.append({Command::GiveFocus});
    return commands;
}

PageDragCommands PageLanding::home(const PageDragAlive& alive) const {
    PageDragCommands commands;
    if (alive.page)
        commands.append({Command::HidePage});
    if (alive.source && alive.page) {
        commands.append({Command::PutBack, {}, DropCentre, m_start.index});
        if (m_start.expandedAlone)
            commands.append({Command::Expand});
    } else if (alive.source) {
        commands.append({Command::CloseSource});
    } else if (alive.page && alive.workspace) {
        commands.append({Command::Float, QRect(m_position, m_start.paneSize)});
    }
    commands.append({Command::GiveFocus});
    return commands;
}

} // namespace Kestrel::UI
