#pragma once

#include "app/ExportDesk.h"
#include "app/PathMappings.h"
#include "app/RecentShots.h"

#include <KxUI/browse/FileChooserDialog.h>

#include <QMenu>

namespace Kestrel::Workbench {

class MainWindow;
class SequenceListPanel;

/** What opens shots and folders: the choosers, the shots opened last, reading anew, and where paths
    of other machines lead. */
class FileMenu : public QMenu {
    Q_OBJECT

public:
    /** @param window  owns the menu */
    explicit FileMenu(MainWindow* window);

    PathMappings* mappings() { return &m_mappings; }
    RecentShots* recent() const { return m_recent; }

    /** Takes what the user left last time, and keeps it from now on. */
    void remember();

    /** Opens what was chosen: the part of a sequence that was asked for lies between its marks. */
    void open(const UI::FileChooserDialog::Choice& choice);

private:
    void askForShot();
    void askForFolder();
    void askForExport(ExportOptions::What what);
    void beginHere(UI::FileChooserDialog* chooser);
    void reload();
    void noteShot();

    MainWindow* m_window;
    PathMappings m_mappings;
    RecentShots* m_recent;
    bool m_remembers = false;
};

} // namespace Kestrel::Workbench
