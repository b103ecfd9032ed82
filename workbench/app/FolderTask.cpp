#include "app/FolderTask.h"

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/progress/ProgressManager.h>

#include <QDir>
#include <QFile>

namespace Kestrel::Workbench {

namespace {

/** What is read sooner is no task. */
constexpr int longMs = 700;
constexpr int lookMs = 250;

} // namespace

FolderTask::FolderTask(UI::FileBrowser* browser, UI::ProgressManager* tasks)
    : m_browser(browser)
    , m_tasks(tasks) {
    connect(browser, &UI::FileBrowser::listedChanged, this, &FolderTask::follow);
    connect(browser, &UI::FileBrowser::folderChanged, this, &FolderTask::follow);
    connect(browser, &QObject::destroyed, this, [this] {
        m_browser = nullptr; // a widget says so before its pointers know
        follow();
    });
    connect(&m_timer, &QTimer::timeout, this, &FolderTask::look);
    follow();
}

void FolderTask::follow() {
    if (m_task)
        m_task->finish();
    m_task.reset();
    if (m_browser && !m_browser->isListed() && !m_browser->folder().isEmpty())
        m_timer.start(longMs);
    else
        m_timer.stop();
}

void FolderTask::look() {
    if (!m_browser)
        return follow();
    if (!m_task) {
        const QString folder = QDir::toNativeSeparators(QFile::decodeName(m_browser->folder()));
        m_task = m_tasks->start(tr("Reading %1").arg(folder), UI::ProgressTask::NoAbility);
        m_task->setUnit(UI::ProgressTask::Unit::Files);
        m_timer.start(lookMs);
    }
    m_task->setDone(m_browser->model()->rowCount());
}

} // namespace Kestrel::Workbench
