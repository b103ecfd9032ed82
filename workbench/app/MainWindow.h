#pragma once

#include "app/ExportDesk.h"
#include "app/HelpDesk.h"
#include "app/TaskDesk.h"
#include "play/Session.h"
#include "workspace/Workspace.h"

#include <KxUI/style/ApplicationStyle.h>

#include <QByteArray>
#include <QPointer>

class QMenu;

namespace Kestrel::UI {
class EventGraph;
}

namespace Kestrel::Workbench {

class FileMenu;
class SequenceListPanel;
class TimelinePanel;
class ViewerPanel;

using Theme = UI::ApplicationStyle::Theme;

/** The window: a workspace of panels round one session, and the menus that drive it. It begins in
    the first built-in layout. */
class MainWindow : public Workspace {
    Q_OBJECT

public:
    MainWindow(Base::TimeBase timeBase, std::size_t cacheBytes, Theme theme);
    ~MainWindow() override;

    Session* session() { return &m_session; }
    FileMenu* files() { return m_files; }

    // The panels, in a pane or not.
    SequenceListPanel* list();
    ViewerPanel* viewer();
    TimelinePanel* timeline();

    /** Comes up arranged as the program was left last, and keeps that in the settings when it is
        closed, with the tool windows that are open. Says so when that arrangement cannot be read;
        the window then stays as it is. To be called before the window is shown. */
    void rememberArrangement();

    /** Takes the size of the frame cache that the user chose last, if this window remembers. */
    void recallCacheSize();

    /** Opens the tool windows that were open then. To be called when the window is shown, so that
        they come up above it. */
    void openTools();

    /** Lists the first of these folders and files and opens its sequence, or its first one, as soon as
        the disk has told; the folders among them are offered beside the list. Absolute paths in the
        bytes of the file system; those of other machines are mapped to this one. */
    void openPaths(const QList<QByteArray>& paths);

    /** Of the whole application. */
    void setTheme(Theme theme);

    /** Brings up the profiler's window, on this window's tracks. It does not keep the program
        running when this window closes. */
    void openProfiler();

    /** Its long work, and its exports. */
    TaskDesk* tasks() { return &m_tasks; }
    ExportDesk* exports() { return &m_exports; }

    /** Writes the sample and opens it. */
    void openSample();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void setUpPage(const QString& id, QWidget* page);
    void nameSequence();
    void makeStatusBar();
    void makeEditMenu();
    void makePlaybackMenu();
    void makeRepeatMenu(QMenu* menu);
    void makeMarksMenu();
    void makeViewMenu();
    void makeToolsMenu();
    void makeHelpMenu();

    Session m_session;
    HelpDesk m_help;
    TaskDesk m_tasks{this};
    ExportDesk m_exports{this, &m_session, &m_tasks};
    FileMenu* m_files = nullptr;
    QPointer<UI::EventGraph> m_profiler; // once it was opened
    Theme m_theme;
    bool m_remembers = false;
};

} // namespace Kestrel::Workbench
