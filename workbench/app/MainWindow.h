#pragma once

#include "app/HelpDesk.h"
#include "app/Theme.h"
#include "play/Session.h"

#include <QByteArray>
#include <QMainWindow>

class QMenu;

namespace Kestrel::Workbench {

class SequenceListPanel;
class TimelinePanel;
class ViewerPanel;

/** The window: sequence list, viewer and timeline round one session, and the menus that drive it.
 */
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow(Base::TimeBase timeBase, std::size_t cacheBytes, Theme theme);

    Session* session() { return &m_session; }
    SequenceListPanel* list() const { return m_list; }
    ViewerPanel* viewer() const { return m_viewer; }
    TimelinePanel* timeline() const { return m_timeline; }

    /** Lists the first of these folders and files and opens its sequence, or its first one; the
       other folders are offered in the list's path field. Absolute paths in the bytes of the file
       system. */
    void openPaths(const QList<QByteArray>& paths);

    void setTheme(Theme theme);

    /** Brings up the profiler's window, on this window's tracks. It does not keep the program
        running when this window closes. */
    void openProfiler();

private:
    void makeFileMenu();
    void makePlaybackMenu();
    void makeRepeatMenu(QMenu* menu);
    void makeMarksMenu();
    void makeViewMenu();
    void makeToolsMenu();
    void makeHelpMenu();
    void askForFolder();
    void reload();

    Session m_session;
    HelpDesk m_help;
    SequenceListPanel* m_list;
    ViewerPanel* m_viewer;
    TimelinePanel* m_timeline;
    Theme m_theme;
};

} // namespace Kestrel::Workbench
