#include <KxUI/dock/DockMenu_p.h>

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockAnnouncer_p.h>
#include <KxUI/dock/DockArrangeMenu_p.h>
#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/kit/IconFactory.h>

namespace Kestrel::UI {

DockMenuBase::DockMenuBase(const QString& title)
    : QMenu(title) {}

DockMenuBase::~DockMenuBase() = default;

void DockMenuBase::dispose() {
    if (m_eventsUnderWay > 0)
        deleteLater();
    else
        delete this;
}

bool DockMenuBase::event(QEvent* event) {
    const DockChange change(workspace());
    ++m_eventsUnderWay;
    const bool handled = QMenu::event(event);
    --m_eventsUnderWay;
    return handled;
}

DockMenu::DockMenu(Dock* dock)
    : DockMenuBase(Dock::tr("Panel"))
    , m_dock(dock) {
    // A picture is named after the line between the panes, an entry after how they come to stand.
    connect(addAction(IconFactory::icon(QStringLiteral(":/ui/qrc/images/HSplit.png")),
                      Dock::tr("Split Vertical")),
            &QAction::triggered, dock, &Dock::splitVertical);
    connect(addAction(IconFactory::icon(QStringLiteral(":/ui/qrc/images/VSplit.png")),
                      Dock::tr("Split Horizontal")),
            &QAction::triggered, dock, &Dock::splitHorizontal);
    addSeparator();
    addAction(Dock::tr("Float Pane"), dock, &Dock::floatDock);
    addAction(Dock::tr("Close Pane"), dock, &QWidget::close);
    addAction(Dock::tr("Float Tab"), dock, &Dock::floatActiveTab);
    addAction(Dock::tr("Close Tab"), dock, &Dock::closeActiveTab);
    addAction(Dock::tr("Solo Tab"), dock, &Dock::closeInactiveTabs);
    m_showTabs = addAction(Dock::tr("Show Tabs"));
    m_showTabs->setCheckable(true);
    m_showTabs->setChecked(true);
    connect(m_showTabs, &QAction::toggled, dock, &Dock::setTitleVisible);
    addSeparator();

    if (DockMainWindow* controller = dock->controller()) {
        DockArrangeMenu* arrange = DockMainWindowPrivate::of(*controller).arrangeMenu();
        addAction(arrange->menuAction());
        connect(this, &QMenu::aboutToShow, arrange, [dock, arrange] { arrange->setDock(dock); });
    }
}

DockMenu::~DockMenu() = default;

void DockMenu::setTitleVisible(bool visible) {
    const QSignalBlocker blocker(m_showTabs);
    m_showTabs->setChecked(visible);
}

DockMainWindow* DockMenu::workspace() const {
    // A menu that waits for its end has lost its pane.
    return m_dock ? m_dock->controller() : nullptr;
}

} // namespace Kestrel::UI
