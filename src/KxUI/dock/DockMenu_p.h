#pragma once

#include <QMenu>
#include <QPointer>

namespace Kestrel::UI {

class Dock;
class DockMainWindow;

/** A menu whose entries may do away with the pane, the workspace and the menu itself: it dies when
    it is no longer at work, and the host hears of what an entry did when the menu has done. */
class DockMenuBase : public QMenu {
    Q_OBJECT

public:
    explicit DockMenuBase(const QString& title);
    ~DockMenuBase() override;

    /** Deletes the menu, now or as soon as it can be. */
    void dispose();

protected:
    /** The workspace that the entries change, null for none. */
    virtual DockMainWindow* workspace() const = 0;
    bool event(QEvent* event) override;

private:
    int m_eventsUnderWay = 0;
};

/** The menu of a pane. */
class DockMenu : public DockMenuBase {
    Q_OBJECT

public:
    explicit DockMenu(Dock* dock);
    ~DockMenu() override;

    /** Shows whether the titles are, without doing anything about it. */
    void setTitleVisible(bool visible);

protected:
    DockMainWindow* workspace() const override;

private:
    QPointer<Dock> m_dock;
    QAction* m_showTabs;
};

} // namespace Kestrel::UI
