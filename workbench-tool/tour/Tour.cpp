#include "tour/Tour.h"

#include "media/ListedSequence.h"
#include "media/Paths.h"
#include "panels/CurvesPanel.h"
#include "panels/ExposureCurvePanel.h"
#include "panels/ExposurePanel.h"
#include "panels/GradePanel.h"
#include "panels/HistoryPanel.h"
#include "panels/ScopesPanel.h"
#include "panels/SequenceListPanel.h"
#include "panels/StatisticsPanel.h"
#include "panels/TimelinePanel.h"
#include "panels/TransportRow.h"
#include "panels/ViewerPanel.h"
#include "tour/TextTable.h"
#include "workspace/BuiltInLayouts.h"

#include <KxUI/curveedit/CurveEditor.h>
#include <KxUI/curveedit/CurveView.h>
#include <KxUI/dock/Dock.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/time/TimeSlider.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace Kestrel::Workbench {

namespace {

/** Sequences opened in a folder at most. */
constexpr int mostVisits = 12;
/** Seconds for the decodes of one sequence, and for the sizes of what is in a folder. */
constexpr int decodeSeconds = 120;
constexpr int sizeSeconds = 5;

using UI::FileListModel;

void print(const QString& text) {
    std::fputs(text.toUtf8().constData(), stdout);
    std::fflush(stdout);
}

/** Some edits, as a user may make them: warm light that comes up, and a curve with a soft shoulder. */
void applySampleGrade(GradeHistory* grades, const Sequence& sequence) {
    Grade grade = grades->grade();
    const auto edit = [&](const QString& text) { grades->edit(grade, text); };
    const auto editCurve = [&](Grade::Slot slot, const QString& what) {
        edit(CurvesPanel::tr("%1 Curve: %2").arg(CurvesPanel::nameOf(slot), what));
    };
    grade.gain = {0.09F, 0.22F, 1.0F};
    edit(GradePanel::tr("Gain"));
    grade.exposure = 0.75F;
    edit(ExposurePanel::tr("Exposure"));
    const Base::Time first = sequence.firstTime();
    const Base::Time length = sequence.lastTime() - first;
    grade.addExposureKey(first);
    grade.setExposureAt(first + length / 3, 1.0F);
    grade.setExposureAt(first + length * 2 / 3, 0.25F);
    edit(ExposurePanel::tr("Add Exposure Key"));
    UI::Curve blue(UI::Curve::MaximumKnots, 3);
    blue.setKnot(1, {0.42F, 0.36F, false});
    grade.curves.setCurve(Grade::Blue, blue);
    editCurve(Grade::Blue, UI::CurveView::tr("add knot"));
    UI::Curve master(UI::Curve::MaximumKnots, 4);
    master.setKnot(1, {0.24F, 0.17F, false});
    master.setKnot(2, {0.7F, 0.79F, true});
    grade.curves.setCurve(Grade::Master, master);
    editCurve(Grade::Master, UI::CurveView::tr("move knot"));
    grade.preview = UI::ColorSpace::Rec709;
    edit(GradePanel::tr("YCbCr preview"));
}

QString shown(const QByteArray& path) {
    return QString::fromUtf8(path);
}

} // namespace

Tour::Tour(const ToolLine& line, QList<QByteArray> paths)
    : m_line(line)
    , m_paths(std::move(paths))
    , m_scale(std::max(line.tourScale, 1))
    , m_window(line.timeBase, line.cacheBytes, m_theme) {}

int Tour::run() {
    if (!QDir().mkpath(m_line.tourFolder)) {
        std::fprintf(stderr, "kxui-workbench-tool: the folder %s cannot be made\n",
                     m_line.tourFolder.toUtf8().constData());
        return 1;
    }
    // Laid out and styled as on a screen, without a platform window.
    m_window.setAttribute(Qt::WA_DontShowOnScreen);
    m_window.show();
    m_window.openPaths(m_paths);
    if (m_line.tourScale == 0) {
        for (const QByteArray& path : m_paths) {
            const std::string bytes = path.toStdString();
            visitFolder(isFolder(bytes) ? path : QByteArray::fromStdString(parentFolder(bytes)));
        }
        print(QStringLiteral("Saved to %1\n").arg(m_line.tourFolder));
        m_window.openPaths(m_paths);
    }
    capturePlayback();
    savePictures(Theme::Dark);
    savePictures(Theme::Light);
    if (m_line.tourScale == 0 && runOtherScale(2) != 0)
        m_failed = true;
    return m_failed ? 1 : 0;
}

void Tour::visitFolder(const QByteArray& folder) {
    SequenceListPanel* list = m_window.list();
    const FileListModel* model = list->model();
    list->openFolder(folder);
    waitFor([list] { return list->isSettled(); }, decodeSeconds);
    print(QStringLiteral("Listed %1\n").arg(shown(folder)));
    const QString problem = UI::FileManager::errorText(*model->listing());
    if (!problem.isEmpty() || model->rowCount() == 0) {
        print(QStringLiteral("  %1\n\n")
                  .arg(problem.isEmpty() ? QStringLiteral("This folder is empty.") : problem));
        return;
    }
    waitForSizes();

    TextTable table({QStringLiteral("Name"), QStringLiteral("Range"), QStringLiteral("Missing"),
                     QStringLiteral("Size"), QStringLiteral("Decoded"),
                     QStringLiteral("Unreadable"), QStringLiteral("Seconds")});
    int visits = 0;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList cells;
        for (const int column : {FileListModel::Name, FileListModel::Frames, FileListModel::Missing,
                                 FileListModel::Size})
            cells << model->index(row, column).data().toString();
        if (list->isFolder(row) || visits == mostVisits) {
            table.add(cells << QString() << QString() << QString());
            continue;
        }
        ++visits;
        Session* session = m_window.session();
        const Sequence sequence = sequenceOf(list->item(row));
        QElapsedTimer timer;
        timer.start();
        session->open(sequence);
        waitFor([session] { return session->isSettled(); }, decodeSeconds);
        const std::size_t pictures = session->cache().pictureTimes().size();
        table.add(cells << QStringLiteral("%1 of %2").arg(pictures).arg(sequence.members().size())
                        << QString::number(session->cache().count() - pictures)
                        << QString::number(double(timer.elapsed()) / 1000.0, 'f', 1));
    }
    print(table.text() + QLatin1Char('\n'));
}

/** Asks for the sizes of all rows, which the list does for those in view. */
void Tour::waitForSizes() {
    const FileListModel* model = m_window.list()->model();
    std::vector<int> items;
    for (int row = 0; row < model->rowCount(); ++row)
        items.push_back(model->itemOf(row));
    model->gatherer()->requestStatus(items);
    const auto isTold = [model](int item) {
        return model->listing()->status(item).known != UI::FileListing::Status::NotAsked;
    };
    waitFor([&] { return std::all_of(items.begin(), items.end(), isTold); }, sizeSeconds);
}

/** Captures how a sequence that is not in the cache yet comes in and plays. */
void Tour::capturePlayback() {
    Session* session = m_window.session();
    const SequenceListPanel* list = m_window.list();
    waitFor([&] { return list->isSettled() && session->isSettled(); }, decodeSeconds);
    UI::EventGraph* profiler = UI::EventGraph::instance();
    profiler->setAttribute(Qt::WA_DontShowOnScreen);
    m_window.openProfiler();
    m_times = std::make_unique<RenderTimesPanel>(session);
    m_times->setAttribute(Qt::WA_DontShowOnScreen);
    m_times->show();
    profiler->view()->start(10.0F, UI::EventGraphMode::History);
    Grade grade;
    grade.exposure = 0.5F;
    session->grades()->edit(grade, ExposurePanel::tr("Exposure"));
    session->open(Sequence(session->sequence()));
    session->player()->play();
    wait(1500);
    session->player()->stop();
    profiler->stop();
    session->grades()->group()->makeIndex(0);
}

/** Puts the window into a state that shows what it can: marks, keyframes, a filled cache. */
void Tour::showcase() {
    Session* session = m_window.session();
    const SequenceListPanel* list = m_window.list();
    waitFor([&] { return list->isSettled() && session->isSettled(); }, decodeSeconds);
    UI::TimeSliderModel* times = session->model();
    const Base::Time length = times->duration();
    if (length == Base::InvalidTime)
        return;
    const Base::Time start = times->startTime();
    times->setInTime(start + length / 8, true);
    times->setOutTime(start + length * 7 / 8, true);
    times->setKeyFrames(
        std::set<Base::Time>{start + length / 4, start + length / 3, start + length * 2 / 3});
    times->setCurrentTime(start + length * 3 / 7);
    waitFor([session] { return !session->isLoading(); }, decodeSeconds);
    restForFigures();
}

/** Figures are brought up to date a few times a second only, so that they can be read. */
void Tour::restForFigures() {
    wait(400);
}

void Tour::savePictures(Theme theme) {
    m_theme = theme;
    m_window.setTheme(theme);
    Session* session = m_window.session();
    // Grading takes steps of the history back, and keeps more of each frame.
    session->open(Sequence(session->sequence()));
    showcase();
    waitFor([session] { return session->isSettled(); }, decodeSeconds);
    save(&m_window, QStringLiteral("main-window"));
    save(m_window.list(), QStringLiteral("sequence-list"));
    save(m_window.viewer(), QStringLiteral("viewer"));
    save(m_window.timeline(), QStringLiteral("timeline"));
    save(m_window.timeline()->transportRow(), QStringLiteral("transport"));
    UI::TimeSlider* slider = m_window.timeline()->slider();
    slider->zoomAboutTime(session->model()->currentTime(), 8.0F);
    save(m_window.timeline(), QStringLiteral("timeline-zoomed"));
    slider->zoomToFit();

    SequenceListPanel empty;
    empty.resize(m_window.list()->size());
    const QTemporaryDir emptyFolder;
    empty.openFolder(QFile::encodeName(emptyFolder.path()));
    waitFor([&empty] { return empty.isSettled(); }, decodeSeconds);
    save(&empty, QStringLiteral("sequence-list-empty"));
    saveLayouts();
    saveDamaged();
    saveGrading();
    saveScopes();
    saveProfiler();
    saveRenderTimes();
    saveTasks();
}

/** The window in each of its layouts, and a panel that floats. */
void Tour::saveLayouts() {
    Session* session = m_window.session();
    for (const BuiltInLayout& layout : builtInLayouts()) {
        m_window.arrange(layout);
        if (m_window.showsPage(QStringLiteral("Grade")))
            applySampleGrade(session->grades(), session->sequence());
        else
            session->grades()->group()->makeIndex(0);
        waitFor(
            [session] {
                return session->isSettled() && !session->isLoading() &&
                       session->scopes()->model()->isCurrent();
            },
            decodeSeconds);
        restForFigures();
        save(&m_window, QStringLiteral("layout-%1").arg(QLatin1String(layout.id)));
    }
    m_window.arrange(builtInLayouts().front());
    UI::Dock::dockForWidget(m_window.timeline())->floatActiveTab();
    const auto floating = m_window.floatingWindows();
    for (UI::DockWindow* window : floating) {
        window->resize(700, 130);
        save(window, QStringLiteral("floating-pane"));
    }
    m_window.arrange(builtInLayouts().front());
}

/** A viewer on a frame that is missing and on one that cannot be read. */
void Tour::saveDamaged() {
    const Sequence& open = m_window.session()->sequence();
    const QTemporaryDir folder;
    if (open.isEmpty() || !folder.isValid())
        return;
    const QString good = folder.filePath(QStringLiteral("shot.0001"));
    QFile::copy(QFile::decodeName(QByteArray::fromStdString(open.path(open.firstTime()))), good);
    QFile::copy(good, folder.filePath(QStringLiteral("shot.0002")));
    QFile damaged(folder.filePath(QStringLiteral("shot.0004")));
    damaged.open(QIODevice::WriteOnly);
    damaged.close();

    Session session(m_line.timeBase, std::size_t(256) << 20);
    ViewerPanel viewer(&session);
    viewer.resize(m_window.viewer()->size());
    session.open(Sequence(QStringLiteral("shot.####"), folder.path().toStdString(),
                          {{1, "shot.0001"}, {2, "shot.0002"}, {4, "shot.0004"}}));
    waitFor([&session] { return session.isSettled(); }, decodeSeconds);
    session.model()->setCurrentTime(3);
    save(&viewer, QStringLiteral("viewer-missing"));
    session.model()->setCurrentTime(4);
    waitFor([&session] { return !session.isLoading(); }, decodeSeconds);
    save(&viewer, QStringLiteral("viewer-unreadable"));
}

/** Two graded sequences: the panel, the frame it grades, and the history of both. */
void Tour::saveGrading() {
    std::vector<Sequence> sequences;
    const SequenceListPanel* list = m_window.list();
    for (int row = 0; row < list->model()->rowCount() && sequences.size() < 2; ++row) {
        if (!list->isFolder(row))
            sequences.push_back(sequenceOf(list->item(row)));
    }
    Session session(m_line.timeBase, std::size_t(256) << 20);
    GradePanel panel(&session);
    panel.resize(360, 860);
    ExposureCurvePanel exposure(&session);
    exposure.resize(900, 180);
    ViewerPanel viewer(&session);
    viewer.resize(m_window.viewer()->size());
    HistoryPanel history(&session);
    history.resize(360, 256);
    for (auto sequence = sequences.rbegin(); sequence != sequences.rend(); ++sequence) {
        const Base::Time length = sequence->lastTime() - sequence->firstTime() + 1;
        session.open(*sequence, sequence->firstTime() + length * 3 / 7);
        applySampleGrade(session.grades(), *sequence);
    }
    session.grades()->group()->undo();
    waitFor([&session] { return session.isSettled() && !session.isLoading(); }, decodeSeconds);
    save(&panel, QStringLiteral("grade-panel"));
    save(&exposure, QStringLiteral("exposure-panel"));
    save(&viewer, QStringLiteral("viewer-graded"));
    save(&history, QStringLiteral("history-panel"));
}

/** Four scopes and the figures of a region, with the pixels that were selected in a scope. */
void Tour::saveScopes() {
    const Sequence& open = m_window.session()->sequence();
    Session session(m_line.timeBase, std::size_t(256) << 20);
    ScopesPanel scopes(&session);
    StatisticsPanel figures(&session);
    ViewerPanel viewer(&session);
    scopes.setScopeCount(ScopesPanel::MostScopes);
    scopes.resize(800, 600);
    figures.resize(800, 220);
    viewer.resize(m_window.viewer()->size());
    for (QWidget* panel : {static_cast<QWidget*>(&viewer), static_cast<QWidget*>(&scopes),
                           static_cast<QWidget*>(&figures)}) {
        panel->setAttribute(Qt::WA_DontShowOnScreen);
        panel->show();
    }
    session.open(open, open.firstTime() + (open.lastTime() - open.firstTime() + 1) * 3 / 7);
    UI::ScopeModel* model = session.scopes()->model();
    const auto wait = [&] {
        waitFor([&] { return session.isSettled() && !session.isLoading() && model->isCurrent(); },
                decodeSeconds);
    };
    wait();
    save(&scopes, QStringLiteral("scopes-panel"));
    const QSize frame = session.scopes()->frameSize();
    model->setRegion(
        {frame.width() / 4, frame.height() / 4, frame.width() / 2, frame.height() / 2});
    UI::ScopeSelection bright;
    bright.kind = UI::ScopeSelection::Kind::Values;
    bright.lower = 0.6F;
    bright.upper = 2.0F;
    model->setSelection(bright);
    wait();
    restForFigures();
    save(&figures, QStringLiteral("statistics-panel"));
    save(&viewer, QStringLiteral("viewer-region"));
}

void Tour::saveProfiler() {
    UI::EventGraph* profiler = UI::EventGraph::instance();
    profiler->resize(1280, 720);
    for (QAction* action : profiler->findChildren<QAction*>()) {
        if (action->isCheckable() && action->text() == UI::EventGraph::tr("Statistics"))
            action->setChecked(true);
    }
    QApplication::processEvents();
    profiler->view()->zoomToFit();
    save(profiler, QStringLiteral("profiler"));
}

void Tour::saveRenderTimes() {
    m_times->resize(640, 600);
    save(m_times.get(), QStringLiteral("render-times"));
    m_times->resize(380, 720);
    save(m_times.get(), QStringLiteral("render-times-narrow"));
}

/** An export: what is asked before it, and how it goes on until it is cancelled. */
void Tour::saveTasks() {
    Session* session = m_window.session();
    if (session->sequence().isEmpty())
        return;
    UI::FileChooserDialog* chooser = m_window.exports()->ask(ExportOptions::What::Sequence, {});
    chooser->resize(760, 560);
    wait(500);
    save(chooser, QStringLiteral("export"));
    chooser->reject();

    UI::ProgressManager* tasks = m_window.tasks()->manager();
    tasks->setKeptFor(std::chrono::milliseconds(0));
    const QTemporaryDir folder;
    ExportPlan plan;
    plan.sequence = session->sequence();
    plan.grade.exposure = 0.5F;
    plan.first = plan.sequence.firstTime();
    plan.last = plan.sequence.lastTime();
    plan.folder = folder.path().toStdString();
    plan.name = "leader_graded.####.exr";
    SequenceExport* work = m_window.exports()->start(plan);
    const auto task = work->task();
    waitFor([&task] { return task->isEnded() || task->done() * 3 > task->total(); }, 5);
    save(&m_window, QStringLiteral("main-window-exporting"));
    save(m_window.tasks()->dialog(), QStringLiteral("tasks"));
    task->cancel();
    tasks->look();
    save(m_window.tasks()->dialog(), QStringLiteral("tasks-cancelling"));
    waitFor([this] { return m_window.exports()->count() == 0; }, decodeSeconds);
    m_window.tasks()->dialog()->hide();
}

void Tour::wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void Tour::save(QWidget* widget, const QString& name) {
    QApplication::processEvents();
    const QString file =
        QStringLiteral("%1-%2-%3x.png")
            .arg(name, m_theme == Theme::Dark ? QStringLiteral("dark") : QStringLiteral("light"))
            .arg(m_scale);
    const QPixmap picture = widget->grab();
    if (!picture.save(QDir(m_line.tourFolder).filePath(file))) {
        std::fprintf(stderr, "kxui-workbench-tool: %s cannot be saved\n",
                     file.toUtf8().constData());
        m_failed = true;
        return;
    }
    print(QStringLiteral("  %1  %2 x %3\n")
              .arg(file.leftJustified(34))
              .arg(picture.width())
              .arg(picture.height()));
}

bool Tour::waitFor(const std::function<bool()>& done, int seconds) {
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.hasExpired(qint64(seconds) * 1000))
            return false;
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    return true;
}

int Tour::runOtherScale(int scale) {
    QStringList arguments = QCoreApplication::arguments().mid(1);
    arguments << QStringLiteral("--tour-scale") << QString::number(scale);
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1;
}

} // namespace Kestrel::Workbench
