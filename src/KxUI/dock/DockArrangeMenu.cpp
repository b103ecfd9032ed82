#include <KxUI/dock/DockArrangeMenu_p.h>

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockAnnouncer_p.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockMoves_p.h>

#include <QFontMetrics>

namespace Kestrel::UI {

namespace {

/** A pane in words: the titles of its tabs. */
QString paneTitle(const Dock& dock) {
    QStringList titles;
    for (int i = 0; i < dock.count(); ++i)
        titles.append(dock.widget(i)->windowTitle().simplified());
    QString title = titles.join(QStringLiteral(", "));
    if (title.isEmpty())
        title = DockArrangeMenu::tr("Empty Pane");
    title.replace(QLatin1Char('&'), QStringLiteral("&&"));
    constexpr int Longest = 40;
    return title.size() <= Longest ? title : title.left(Longest - 1) + QChar(0x2026);
}

} // namespace

DockArrangeMenu::DockArrangeMenu()
    : DockMenuBase(tr("Move Tab")) {
    connect(this, &QMenu::aboutToShow, this, &DockArrangeMenu::fill);
}

DockArrangeMenu::~DockArrangeMenu() = default;

DockMainWindow* DockArrangeMenu::workspace() const {
    return m_dock ? m_dock->controller() : nullptr;
}

void DockArrangeMenu::setDock(Dock* dock) {
    m_dock = dock;
    menuAction()->setEnabled(dock->currentWidget() != nullptr);
}

void DockArrangeMenu::fill() {
    const auto old = findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    clear();
    qDeleteAll(old);
    if (!m_dock || !m_dock->controller())
        return;

    QAction* left = addAction(tr("Left in Its Pane"), this, [this] { reorder(-1); });
    left->setEnabled(m_dock->currentTab() > 0);
    QAction* right = addAction(tr("Right in Its Pane"), this, [this] { reorder(1); });
    right->setEnabled(m_dock->currentTab() < m_dock->count() - 1);

    QMenu* fresh = addMenu(tr("To a New Pane"));
    addPlaces(fresh, m_dock);

    addSeparator();
    const auto docks = m_dock->controller()->docks();
    for (Dock* dock : docks) {
        if (dock == m_dock)
            continue;
        QMenu* menu = addMenu(paneTitle(*dock));
        const QPointer<Dock> target(dock);
        menu->addAction(tr("As Tab"), this, [this, target] { move(target, DropCentre); });
        addPlaces(menu, dock);
    }
}

void DockArrangeMenu::addPlaces(QMenu* menu, Dock* dock) {
    struct Place {
        QString text;
        DockDropZone zone;
    };
    const Place places[] = {{tr("On the Left"), DropLeft},
                            {tr("On the Right"), DropRight},
                            {tr("Above"), DropTop},
                            {tr("Below"), DropBottom}};
    const QPointer<Dock> target(dock);
    for (const Place& place : places) {
        const DockDropZone zone = place.zone;
        menu->addAction(place.text, this, [this, target, zone] { move(target, zone); });
    }
}

void DockArrangeMenu::move(Dock* target, DockDropZone zone) {
    const QPointer<QWidget> page(m_dock ? m_dock->currentWidget() : nullptr);
    if (!page || !target)
        return;
    const DockChange change(target->controller());
    dockPage(page, target, zone, -1);
    if (page)
        page->setFocus(Qt::OtherFocusReason);
}

void DockArrangeMenu::reorder(int step) {
    QWidget* page = m_dock ? m_dock->currentWidget() : nullptr;
    const int to = m_dock ? m_dock->currentTab() + step : -1;
    if (!page || to < 0 || to >= m_dock->count())
        return;
    const DockChange change(m_dock->controller());
    m_dock->insertWidget(to, page);
    m_dock->setCurrentWidget(page);
}

} // namespace Kestrel::UI
