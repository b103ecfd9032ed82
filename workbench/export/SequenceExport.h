#pragma once

#include "export/ExportRun.h"

#include <QMetaType>
#include <QObject>

#include <memory>

namespace Kestrel::UI {
class ProgressManager;
}

namespace Kestrel::Workbench {

/** Writes graded frames to files, on threads of its own, as a task that can be paused and cancelled.
    Files are there as a whole or not at all, whenever it ends. Interface thread. */
class SequenceExport : public QObject {
    Q_OBJECT

public:
    /** Begins.
        @param tasks  where the task is listed; borrowed
        @param title  of the task
        @param write  what writes files; writeNewFile but in tests */
    SequenceExport(const ExportPlan& plan, UI::ProgressManager* tasks, const QString& title,
                   QObject* parent = nullptr, WriteFile write = writeNewFile);
    /** Ends it, and gives it a moment to take away what it has begun. */
    ~SequenceExport() override;

    const ExportPlan& plan() const { return m_plan; }

    /** The task, for who watches. */
    std::shared_ptr<UI::ProgressTask> task() const { return m_task; }

    /** What to do about the frame of failed(). */
    void answer(ExportAnswer answer);

signals:
    /** A frame could not be written; nothing becomes of it until answer(). */
    void failed(Kestrel::Base::Time frame, const QString& why);
    /** It is over. */
    void finished(const Kestrel::Workbench::ExportResult& result);

private:
    struct Mailbox;

    ExportPlan m_plan;
    std::shared_ptr<UI::ProgressTask> m_task;
    std::shared_ptr<Mailbox> m_mailbox;
    std::shared_ptr<ExportRun> m_run;
};

} // namespace Kestrel::Workbench

Q_DECLARE_METATYPE(Kestrel::Workbench::ExportResult)
