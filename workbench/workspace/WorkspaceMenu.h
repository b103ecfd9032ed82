#pragma once

#include <KxUI/browse/FileChooserDialog.h>

#include <QMenu>

#include <functional>

namespace Kestrel::UI {
class Dock;
}

namespace Kestrel::Workbench {

class Workspace;

/** What can be done with the arrangement of a workspace: layouts, saving and loading, the pages,
    the focus, the pane that has it, full screen. */
class WorkspaceMenu : public QMenu {
    Q_OBJECT

public:
    /** @param workspace  owns the menu */
    explicit WorkspaceMenu(Workspace* workspace);

private:
    void addLayouts();
    void addFiles();
    void addPages();
    void addFocusActions();
    void addPaneActions();
    QAction* addPaneAction(const QString& text, const QString& keys,
                           const std::function<void(UI::Dock*)>& act);
    void togglePage(const QString& id);
    void save();
    void load();
    UI::FileChooserDialog* askForFile(UI::FileChooserDialog::Mode mode,
                                      const std::function<void(const QString&)>& done);
    void showState();

    Workspace* m_workspace;
    QMenu* m_pages = nullptr;
    QAction* m_expand = nullptr;
    QAction* m_showTabs = nullptr;
    QAction* m_fullScreen = nullptr;
};

} // namespace Kestrel::Workbench
