#pragma once

#include <KxUI/Export.h>

#include <QMenu>

#include <memory>

namespace Kestrel::UI {

class NamedWorkspaces;

/** A menu for a host's menu bar: goes to the named workspaces, saves, renames and deletes them.
    Asks and complains in windows of its own, which do not stop the event loop. Interface thread. */
class KXUI_EXPORT NamedWorkspacesMenu : public QMenu {
    Q_OBJECT

public:
    /** @param parent  owns the menu; the windows that ask come up over it or its window */
    explicit NamedWorkspacesMenu(QWidget* parent = nullptr);
    ~NamedWorkspacesMenu() override;

    /** The workspaces that the menu is for, borrowed; none at first, and then the menu is empty. */
    NamedWorkspaces* workspaces() const;
    void setWorkspaces(NamedWorkspaces* workspaces);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
