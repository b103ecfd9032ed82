#include <KxUI/dock/DockMoves_p.h>

#include <KxUI/dock/DockAnnouncer_p.h>
#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/dock/DockPages_p.h>
#include <KxUI/dock/DockWindow.h>
#include <KxUI/dock/Dock_p.h>
#include <KxUI/kit/WindowSystem_p.h>

namespace Kestrel::UI {

DockWindow* floatPages(DockMainWindow& workspace, const QVector<QPointer<QWidget>>& pages,
                       const QRect& place) {
    const DockChange change(&workspace);
    const QPointer<DockMainWindow> alive(&workspace);
    const QPointer<DockWindow> window(workspace.createWindow());
    const QPointer<Dock> dock(alive ? workspace.createDock() : nullptr);
    if (!alive || !window || !dock) {
        if (window)
            window->deleteLater();
        return nullptr;
    }
    for (const QPointer<QWidget>& page : pages) {
        if (page)
            dock->addWidget(page, true, false);
    }
    window->addWidget(dock);
    DockMainWindowPrivate::of(workspace).addFloatingDock(window);
    if (place.isEmpty()) {
        window->resize(dock->sizeHint());
    } else {
        window->move(place.topLeft());
        window->resize(place.size());
    }
    window->show();
    bringToFront(window);
    return window;
}

bool dockPage(QWidget* page, Dock* target, DockDropZone zone, int index) {
    const DockChange change(target->controller());
    const QPointer<QWidget> alive(page);
    QPointer<Dock> pane(target);
    const auto split = [&](Qt::Orientation orientation, bool before) {
        pane = target->split(orientation, before);
    };
    switch (zone) {
    case DropLeft:
        split(Qt::Horizontal, true);
        break;
    case DropRight:
        split(Qt::Horizontal, false);
        break;
    case DropTop:
        split(Qt::Vertical, true);
        break;
    case DropBottom:
        split(Qt::Vertical, false);
        break;
    case DropCentre:
        break;
    }
    if (!pane || !alive)
        return false;
    const QPointer<Dock> source(paneOf(page));
    pane->insertWidget(index, page);
    if (pane && alive)
        pane->setCurrentWidget(page);
    if (source)
        DockPrivate::of(*source).settleEmptied();
    return true;
}

Dock* paneOf(const QWidget* page) {
    const DockPages* pages = DockPages::holding(page);
    return pages ? qobject_cast<Dock*>(pages->parentWidget()) : nullptr;
}

} // namespace Kestrel::UI
