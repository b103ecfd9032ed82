#include <KxUI/dock/DockAnnouncer_p.h>

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockMainWindow_p.h>

#include <utility>

namespace Kestrel::UI {

DockAnnouncer::DockAnnouncer(DockMainWindow& workspace)
    : m_workspace(workspace) {}

DockAnnouncer::~DockAnnouncer() = default;

void DockAnnouncer::tell(News news, Dock* dock, QWidget* page) {
    if (m_silent || !page)
        return;
    m_items.push_back(item(news, dock, page));
    flush();
}

void DockAnnouncer::tell(QObject* who, std::function<void()> say) {
    if (m_silent)
        return;
    m_items.push_back({who, who, std::move(say)});
    flush();
}

DockAnnouncer::Item DockAnnouncer::item(News news, Dock* dock, QWidget* page) {
    return {dock, page, [this, news, dock, page] { tellNow(news, dock, page); }};
}

void DockAnnouncer::tellLater(News news, Dock* dock, QWidget* page) {
    if (m_silent || !page)
        return;
    m_items.push_back(item(news, dock, page));
    QMetaObject::invokeMethod(this, &DockAnnouncer::flush, Qt::QueuedConnection);
}

void DockAnnouncer::tellNow(News news, Dock* dock, QWidget* page) {
    if (m_silent)
        return;
    DockPlaces& places = DockMainWindowPrivate::of(m_workspace).places;
    switch (news) {
    case News::Added:
        places.pageCame(dock, page);
        m_workspace.emitWidgetAdded(dock, page);
        break;
    case News::Removed:
        places.pageLeft(dock, page);
        m_workspace.emitWidgetRemoved(dock, page);
        break;
    case News::Activated:
        m_workspace.emitWidgetActivated(dock, page);
        break;
    }
}

void DockAnnouncer::silence() {
    m_silent = true;
    m_items.clear();
}

void DockAnnouncer::flush() {
    const QPointer<DockAnnouncer> alive(this);
    while (alive && m_changes == 0 && !m_items.empty()) {
        const Item next = std::move(m_items.front());
        m_items.pop_front();
        if (next.who && next.what)
            next.say();
    }
}

DockChange::DockChange(DockMainWindow* workspace)
    : m_workspace(workspace) {
    if (m_workspace)
        ++DockMainWindowPrivate::of(*m_workspace).announcer.m_changes;
}

DockChange::~DockChange() {
    if (!m_workspace)
        return;
    DockAnnouncer& announcer = DockMainWindowPrivate::of(*m_workspace).announcer;
    --announcer.m_changes;
    announcer.flush();
}

} // namespace Kestrel::UI
