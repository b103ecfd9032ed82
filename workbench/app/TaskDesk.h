#pragma once

#include "app/FolderTask.h"

#include <KxUI/progress/ProgressDialog.h>
#include <KxUI/progress/ProgressManager.h>

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

class QMainWindow;
class QMessageBox;

namespace Kestrel::UI {
class FileBrowser;
class ProgressStrip;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class Session;

/** The long work of a window: its list, the line in the status bar and the dialog that show it, and
    the question whether the window may close before it is done. */
class TaskDesk : public QObject {
    Q_OBJECT

public:
    /** @param window  owns the desk's dialog; outlives the desk */
    explicit TaskDesk(QMainWindow* window);
    ~TaskDesk() override;

    UI::ProgressManager* manager() { return &m_manager; }
    UI::ProgressDialog* dialog() const { return m_dialog; }
    /** The line for the status bar, made by the first call; its parent owns it. */
    UI::ProgressStrip* strip();

    /** The dialog comes up where it was the last time. */
    void rememberPlace();

    /** Shows what goes on.
        @param activate  whether the dialog takes the focus */
    void showTasks(bool activate = true);

    /** This task writes files: the window asks before it closes amid of it. */
    void hold(const std::shared_ptr<UI::ProgressTask>& task);

    /** Whether the window may close now. Else it asks, and closes when the work has ended where the
        user says so. */
    bool mayClose();

    /** Fills the cache with the frames that playback needs. */
    void fillCache(Session* session);

    /** Shows it as a task when a browser takes long to read a folder. Borrowed. */
    void watch(UI::FileBrowser* browser);

    /** Writes the sample; `done` is called with its folder when it is there. */
    void makeSample(const std::function<void(const QString& folder)>& done);

private:
    std::vector<std::shared_ptr<UI::ProgressTask>> holding() const;
    void ask(int tasks);
    void cancelAndClose();

    QMainWindow* m_window;
    UI::ProgressManager m_manager;
    QPointer<UI::ProgressDialog> m_dialog;
    QPointer<UI::ProgressStrip> m_strip;
    QPointer<QMessageBox> m_question;
    std::vector<std::weak_ptr<UI::ProgressTask>> m_held;
    QPointer<QObject> m_fill;
    std::vector<std::unique_ptr<FolderTask>> m_listings;
};

} // namespace Kestrel::Workbench
