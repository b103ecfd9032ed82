#include "app/ExportDesk.h"

#include "app/TaskDesk.h"
#include "export/CaptureExport.h"
#include "media/Paths.h"
#include "play/Session.h"

#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphView.h>

#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

#include <algorithm>

namespace Kestrel::Workbench {

using Chooser = UI::FileChooserDialog;

namespace {

constexpr int messageMs = 8000;
/** Errors that are told one by one. */
constexpr std::size_t mostErrors = 20;

/** "leader_graded.####.exr" of "leader.####.exr 1001-1240", or that of one frame. */
QByteArray suggestedName(const Session& session, ExportOptions::What what) {
    const Sequence& sequence = session.sequence();
    std::string name = sequence.members().front().second;
    name.resize(std::min(name.size(), name.rfind('.')));
    while (!name.empty() && name.back() >= '0' && name.back() <= '9')
        name.pop_back();
    while (!name.empty() && (name.back() == '.' || name.back() == '_' || name.back() == '-'))
        name.pop_back();
    if (name.empty())
        name = "frame";
    const std::string frame =
        what == ExportOptions::What::Frame
            ? QString::number(session.heldTime()).rightJustified(4, QLatin1Char('0')).toStdString()
            : "####";
    return QByteArray::fromStdString(name + "_graded." + frame + ".exr");
}

} // namespace

ExportDesk::ExportDesk(QMainWindow* window, Session* session, TaskDesk* tasks)
    : m_window(window)
    , m_session(session)
    , m_tasks(tasks) {}

ExportDesk::~ExportDesk() {
    for (SequenceExport* each : m_exports)
        delete each;
}

UI::FileChooserDialog* ExportDesk::ask(ExportOptions::What what, const QString& purpose) {
    if (m_session->sequence().isEmpty())
        return nullptr;
    auto* options = new ExportOptions(m_session, what);
    const bool isFrame = what == ExportOptions::What::Frame;
    auto* chooser = Chooser::open(
        Chooser::SaveFile, m_window, purpose,
        {tr("OpenEXR, scene-linear half floats (*.exr)"), tr("PNG, as a screen shows it (*.png)")},
        [this, options](const std::vector<Chooser::Choice>& choices) {
            begin(*options, choices.front());
        });
    chooser->setWindowTitle(isFrame ? tr("Export Frame") : tr("Export Sequence"));
    chooser->setAcceptButtonText(tr("Export"));
    chooser->setAcceptsSequences(!isFrame);
    chooser->setCreatesFolders(true);
    chooser->setExtraWidget(options);
    const auto showRange = [chooser, options] {
        chooser->setFrameRange(
            Base::FrameRange(std::int32_t(options->first()), std::int32_t(options->last())));
    };
    connect(options, &ExportOptions::rangeChanged, chooser, showRange);
    showRange();
    chooser->setValidator([options](const std::vector<Chooser::Choice>& choices) {
        if (choices.empty())
            return QString();
        const std::string path = choices.front().path.toStdString();
        options->showFormatOf(path);
        return options->problemWith(path, choices.front().isSequence);
    });
    if (purpose.isEmpty() || chooser->folder().isEmpty())
        chooser->setFolder(QByteArray::fromStdString(m_session->sequence().folder()));
    chooser->setFileName(suggestedName(*m_session, what));
    return chooser;
}

UI::FileChooserDialog* ExportDesk::askForCapture(const QString& purpose) {
    auto* chooser =
        Chooser::open(Chooser::SaveFile, m_window, purpose,
                      {tr("Captures (*.xml)"), tr("Traces for trace viewers (*.json)")},
                      [this](const std::vector<Chooser::Choice>& choices) {
                          const auto task = m_tasks->manager()->start(tr("Exporting a capture"));
                          m_tasks->hold(task->watched());
                          exportCapture(task, UI::EventGraph::instance()->view()->snapshot(),
                                        QFile::decodeName(choices.front().path));
                      });
    chooser->setWindowTitle(tr("Export Capture"));
    chooser->setAcceptButtonText(tr("Export"));
    chooser->setAcceptsSequences(false);
    chooser->setFileName("capture.xml");
    return chooser;
}

void ExportDesk::begin(const ExportOptions& options, const Chooser::Choice& choice) {
    auto plan = options.planFor(choice.path.toStdString());
    if (!plan)
        return;
    plan->replaces = choice.replaces;
    plan->replacesFile = choice.replacesFile;
    start(*plan);
}

SequenceExport* ExportDesk::start(const ExportPlan& plan) {
    const QString name = QString::fromStdString(plan.name.substr(0, plan.name.find('.')));
    auto* work = new SequenceExport(plan, m_tasks->manager(), tr("Exporting %1").arg(name), this);
    m_exports.push_back(work);
    m_tasks->hold(work->task());
    connect(work, &SequenceExport::failed, this,
            [this, work](Base::Time frame, const QString& why) { askAbout(work, frame, why); });
    connect(work, &SequenceExport::finished, this,
            [this, work](const ExportResult& result) { report(work, result); });
    m_window->statusBar()->clearMessage(); // it would hide the strip
    m_tasks->showTasks(false);
    return work;
}

void ExportDesk::askAbout(SequenceExport* work, Base::Time frame, const QString& why) {
    auto* box = new QMessageBox(QMessageBox::Warning, tr("Export"),
                                tr("Frame %1 was not exported.").arg(frame), QMessageBox::NoButton,
                                m_window);
    box->setObjectName(QStringLiteral("ExportError"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(why);
    const auto* retry = box->addButton(tr("&Retry"), QMessageBox::AcceptRole);
    auto* skip = box->addButton(tr("&Skip"), QMessageBox::AcceptRole);
    const auto* skipAll = box->addButton(tr("Skip &All Such"), QMessageBox::AcceptRole);
    auto* stop = box->addButton(tr("S&top"), QMessageBox::RejectRole);
    box->setDefaultButton(skip);
    box->setEscapeButton(stop);
    // Whatever closes it is an answer: the work waits for one.
    connect(box, &QDialog::finished, work, [=] {
        const QAbstractButton* pressed = box->clickedButton();
        work->answer(pressed == retry     ? ExportAnswer::Retry
                     : pressed == skip    ? ExportAnswer::Skip
                     : pressed == skipAll ? ExportAnswer::SkipAll
                                          : ExportAnswer::Stop);
    });
    connect(work, &QObject::destroyed, box, &QWidget::close);
    connect(work, &SequenceExport::finished, box, &QWidget::close);
    box->open();
}

void ExportDesk::report(SequenceExport* work, const ExportResult& result) {
    m_exports.erase(std::remove(m_exports.begin(), m_exports.end(), work), m_exports.end());
    const QString summary = exportSummary(work->plan(), result);
    const QString details = exportDetails(result);
    work->deleteLater();
    m_window->statusBar()->showMessage(summary, messageMs);
    if (details.isEmpty() || result.end == ExportResult::End::Cancelled)
        return;
    auto* box =
        new QMessageBox(QMessageBox::Information, tr("Export"), summary, QMessageBox::Ok, m_window);
    box->setObjectName(QStringLiteral("ExportReport"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(details);
    box->open();
}

QString exportSummary(const ExportPlan& plan, const ExportResult& result) {
    const QString folder =
        QDir::toNativeSeparators(QFile::decodeName(QByteArray::fromStdString(plan.folder)));
    if (result.written == result.asked)
        return result.asked == 1 ? ExportDesk::tr("1 frame was exported to %1.").arg(folder)
                                 : ExportDesk::tr("%1 frames were exported to %2.")
                                       .arg(result.written)
                                       .arg(folder);
    const QString numbers = ExportDesk::tr("%1 of %2 frames were exported to %3.")
                                .arg(result.written)
                                .arg(result.asked)
                                .arg(folder);
    return result.end == ExportResult::End::Cancelled
               ? ExportDesk::tr("The export was cancelled.") + QLatin1Char(' ') + numbers
               : numbers;
}

QString exportDetails(const ExportResult& result) {
    QStringList lines;
    if (!result.missing.empty())
        lines << ExportDesk::tr("Without a file, and left out: %1").arg(framesText(result.missing));
    // Frames of the same fate in one line.
    std::vector<std::pair<QString, std::vector<Base::Time>>> reasons;
    for (const auto& [frame, why] : result.skipped) {
        const auto same =
            std::find_if(reasons.begin(), reasons.end(),
                         [&why = why](const auto& each) { return each.first == why; });
        if (same != reasons.end())
            same->second.push_back(frame);
        else if (reasons.size() < mostErrors)
            reasons.push_back({why, {frame}});
    }
    for (const auto& [why, frames] : reasons)
        lines << ExportDesk::tr("Not written: %1. %2").arg(framesText(frames), why);
    return lines.join(QLatin1Char('\n'));
}

} // namespace Kestrel::Workbench
