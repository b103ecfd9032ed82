#include "app/TaskDesk.h"

#include "play/CacheFill.h"
#include "play/Session.h"
#include "sample/SampleGenerator.h"

#include <KxUI/progress/ProgressDialog.h>
#include <KxUI/progress/ProgressStrip.h>
#include <KxUI/progress/ProgressText.h>

#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::ProgressTask;

TaskDesk::TaskDesk(QMainWindow* window)
    : m_window(window)
    , m_dialog(new UI::ProgressDialog(window)) {
    m_dialog->setObjectName(QStringLiteral("Tasks"));
    m_dialog->setManager(&m_manager);
    // The strip is there all along; a window of its own only for what somebody asked to see.
    m_dialog->setOpensByItself(false);
}

TaskDesk::~TaskDesk() {
    delete m_question;
    delete m_dialog;
}

UI::ProgressStrip* TaskDesk::strip() {
    if (!m_strip) {
        m_strip = new UI::ProgressStrip;
        m_strip->setManager(&m_manager);
        m_strip->setOpened(m_dialog);
    }
    return m_strip;
}

void TaskDesk::rememberPlace() {
    m_dialog->setRemembersPlace(true);
}

void TaskDesk::showTasks(bool activate) {
    m_dialog->show();
    m_dialog->raise();
    if (activate)
        m_dialog->activateWindow();
}

void TaskDesk::hold(const std::shared_ptr<ProgressTask>& task) {
    m_held.erase(std::remove_if(m_held.begin(), m_held.end(),
                                [](const auto& each) { return each.expired(); }),
                 m_held.end());
    m_held.push_back(task);
}

std::vector<std::shared_ptr<ProgressTask>> TaskDesk::holding() const {
    std::vector<std::shared_ptr<ProgressTask>> all;
    for (const auto& each : m_held) {
        const auto task = each.lock();
        // Who has been asked to end, and does not, holds up nobody for a second time.
        if (task && !task->isEnded() && task->state() != ProgressTask::State::Cancelling)
            all.push_back(task);
    }
    return all;
}

bool TaskDesk::mayClose() {
    const auto tasks = holding();
    if (tasks.empty())
        return true;
    ask(int(tasks.size()));
    return false;
}

void TaskDesk::ask(int tasks) {
    if (m_question) {
        m_question->raise();
        m_question->activateWindow();
        return;
    }
    m_question =
        new QMessageBox(QMessageBox::Question, tr("Close the Window"),
                        UI::ProgressText::stillRunning(tasks), QMessageBox::NoButton, m_window);
    m_question->setObjectName(QStringLiteral("StillRunning"));
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    m_question->setInformativeText(
        tr("Files that are complete stay; nothing else is left behind."));
    auto* keep = m_question->addButton(tr("&Keep Running"), QMessageBox::RejectRole);
    auto* cancel = m_question->addButton(tr("&Cancel Them and Quit"), QMessageBox::AcceptRole);
    m_question->setDefaultButton(keep);
    m_question->setEscapeButton(keep);
    connect(cancel, &QPushButton::clicked, this, &TaskDesk::cancelAndClose);
    m_question->open();
}

/** Nobody waits for it: the window closes when the last of them has ended. */
void TaskDesk::cancelAndClose() {
    const auto tasks = holding();
    connect(&m_manager, &UI::ProgressManager::idleChanged, m_window,
            [window = m_window](bool idle) {
                if (idle)
                    window->close();
            });
    m_manager.cancelAll();
    m_manager.look();
    if (std::all_of(tasks.begin(), tasks.end(), [](const auto& task) { return task->isEnded(); }))
        QMetaObject::invokeMethod(m_window, "close", Qt::QueuedConnection);
}

void TaskDesk::fillCache(Session* session) {
    if (session->sequence().isEmpty() || m_fill)
        return;
    m_fill = new CacheFill(session, m_manager.start(tr("Filling the cache")), this);
}

void TaskDesk::watch(UI::FileBrowser* browser) {
    m_listings.emplace_back(std::make_unique<FolderTask>(browser, &m_manager));
}

void TaskDesk::makeSample(const std::function<void(const QString& folder)>& done) {
    const QString folder = SampleGenerator::standardFolder();
    auto* generator = new SampleGenerator(folder, this);
    const auto task = m_manager.start(tr("Writing the sample"));
    task->setUnit(ProgressTask::Unit::Frames);
    task->start();
    task->setCancelHandler([generator = QPointer<SampleGenerator>(generator)] {
        if (generator)
            generator->cancel();
    });
    connect(generator, &SampleGenerator::progressed, this, [task](int count, int total) {
        task->setTotal(total);
        task->setDone(count);
    });
    connect(generator, &SampleGenerator::finished, this, [=](bool ok, const QString& message) {
        generator->deleteLater();
        if (!message.isEmpty())
            task->fail(message);
        else if (!ok)
            task->finishCancelled();
        else
            task->finish();
        if (ok && done)
            done(folder);
    });
    generator->start();
}

} // namespace Kestrel::Workbench
