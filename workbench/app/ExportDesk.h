#pragma once

#include "export/SequenceExport.h"
#include "panels/ExportOptions.h"

#include <KxUI/browse/FileChooserDialog.h>

#include <QObject>
#include <QPointer>

#include <vector>

class QMainWindow;
class QMessageBox;

namespace Kestrel::Workbench {

class Session;
class TaskDesk;

/** The exports of a window: asks where to, begins them as tasks, asks what to do about frames that
    cannot be written, and says what became of it. Nothing here waits. */
class ExportDesk : public QObject {
    Q_OBJECT

public:
    /** All are borrowed and outlive the desk. */
    ExportDesk(QMainWindow* window, Session* session, TaskDesk* tasks);
    ~ExportDesk() override;

    /** Asks where to and exports the open sequence, or the frame that is shown; does nothing without
        one. Null where there is nothing to ask.
        @param purpose  under which the dialog remembers; empty for not */
    UI::FileChooserDialog* ask(ExportOptions::What what, const QString& purpose);

    /** Asks where to and writes what the profiler holds. */
    UI::FileChooserDialog* askForCapture(const QString& purpose);

    /** Exports without asking where to. */
    SequenceExport* start(const ExportPlan& plan);

    /** How many go on. */
    int count() const { return int(m_exports.size()); }

private:
    void begin(const ExportOptions& options, const UI::FileChooserDialog::Choice& choice);
    void askAbout(SequenceExport* work, Base::Time frame, const QString& why);
    void report(SequenceExport* work, const ExportResult& result);

    QMainWindow* m_window;
    Session* m_session;
    TaskDesk* m_tasks;
    std::vector<SequenceExport*> m_exports; ///< children
};

/** What became of an export in a line, for the user. */
QString exportSummary(const ExportPlan& plan, const ExportResult& result);

/** What is to be known beside that: frames that are not there, by reason. Empty when nothing is. */
QString exportDetails(const ExportResult& result);

} // namespace Kestrel::Workbench
