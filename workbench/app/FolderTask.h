#pragma once

#include <KxUI/progress/ProgressTask.h>

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

namespace Kestrel::UI {
class FileBrowser;
class ProgressManager;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

/** The folder that a browser reads, as a task when that takes long. */
class FolderTask : public QObject {
    Q_OBJECT

public:
    /** Both are borrowed; the list outlives this. */
    FolderTask(UI::FileBrowser* browser, UI::ProgressManager* tasks);

private:
    void follow();
    void look();

    QPointer<UI::FileBrowser> m_browser;
    UI::ProgressManager* m_tasks;
    std::shared_ptr<UI::ProgressTask> m_task; ///< while a folder is read
    QTimer m_timer;
};

} // namespace Kestrel::Workbench
