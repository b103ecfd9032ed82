#pragma once

#include <KxUI/dock/DockDropZone.h>
#include <KxUI/dock/DockMenu_p.h>

#include <QPointer>

namespace Kestrel::UI {

class Dock;

/** The submenu "Move Tab" that all pane menus of a workspace share: everything that dragging the
    current tab can do, for the keyboard. Filled when it opens. */
class DockArrangeMenu : public DockMenuBase {
    Q_OBJECT

public:
    DockArrangeMenu();
    ~DockArrangeMenu() override;

    /** The pane whose menu is about to open. */
    void setDock(Dock* dock);

protected:
    DockMainWindow* workspace() const override;

private:
    void fill();
    void addPlaces(QMenu* menu, Dock* target);
    void move(Dock* target, DockDropZone zone);
    void reorder(int step);

    QPointer<Dock> m_dock;
};

} // namespace Kestrel::UI
