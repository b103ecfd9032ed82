#include "app/MainWindow.h"

#include "app/FileMenu.h"
#include "panels/RateMenu.h"
#include "panels/SequenceListPanel.h"
#include "panels/StatusLine.h"
#include "panels/TimelinePanel.h"
#include "panels/TransportRow.h"
#include "panels/ViewerPanel.h"
#include "workspace/BuiltInLayouts.h"
#include "workspace/PageKinds.h"
#include "workspace/WorkspaceMenu.h"

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/progress/ProgressStrip.h>
#include <KxUI/settings/AppSettings.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TransportControlsWidget.h>

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QMenuBar>
#include <QStatusBar>
#include <QTimer>

namespace Kestrel::Workbench {

namespace {

/** Folders of a command line or a drop that are offered beside the list, and the time that their disks
    have to say what they are. */
constexpr int mostOffered = 16;
constexpr int answerMs = 3000;

/** Adds an action with its keys; the callable is run when it is triggered. */
template <typename Receiver, typename Function>
QAction* addItem(QMenu* menu, const QString& text, const QKeySequence& keys, Receiver* receiver,
                 Function function) {
    QAction* action = menu->addAction(text);
    action->setShortcut(keys);
    QObject::connect(action, &QAction::triggered, receiver, function);
    return action;
}

QString cacheKey() {
    return QStringLiteral("cache/mebibytes");
}

QString browserKey() {
    return QStringLiteral("sequences");
}

QString profilerKey() {
    return QStringLiteral("workspace/profilerIsOpen");
}

} // namespace

MainWindow::MainWindow(Base::TimeBase timeBase, std::size_t cacheBytes, Theme theme)
    : Workspace(&m_session)
    , m_session(timeBase, cacheBytes)
    , m_help(this, m_session.navigator())
    , m_theme(theme) {
    setWindowTitle(QStringLiteral("KxUI Workbench"));
    connect(this, &Workspace::pageMade, this, &MainWindow::setUpPage);
    connect(&m_session, &Session::sequenceChanged, this, &MainWindow::nameSequence);
    m_files = new FileMenu(this);
    menuBar()->addMenu(m_files);
    connect(m_files->mappings(), &PathMappings::changed, this,
            [this] { list()->browser()->setPathRemap(m_files->mappings()->remap()); });
    makeEditMenu();
    makePlaybackMenu();
    makeMarksMenu();
    makeViewMenu();
    menuBar()->addMenu(new WorkspaceMenu(this));
    makeToolsMenu();
    m_help.fillMenu(menuBar()->addMenu(tr("&Help")));
    makeStatusBar();
    resize(1280, 720);
    arrange(builtInLayouts().front());
}

MainWindow::~MainWindow() {
    // Before the session that they show.
    destroyPages();
}

void MainWindow::makeStatusBar() {
    auto* line = new StatusLine(&m_session);
    connect(line, &StatusLine::cacheSizeChosen, this, [this](int mebibytes) {
        if (m_remembers)
            UI::AppSettings().setValue(cacheKey(), mebibytes);
    });
    statusBar()->addWidget(line, 1);
    line->setMiddle(m_tasks.strip());
    m_help.addPanel(m_tasks.strip(), "progress.html");
    m_help.addPanel(m_tasks.dialog(), "progress.html");
    statusBar()->setSizeGripEnabled(false);
}

SequenceListPanel* MainWindow::list() {
    return static_cast<SequenceListPanel*>(page(QStringLiteral("Sequences")));
}

ViewerPanel* MainWindow::viewer() {
    return static_cast<ViewerPanel*>(page(QStringLiteral("Viewer")));
}

TimelinePanel* MainWindow::timeline() {
    return static_cast<TimelinePanel*>(page(QStringLiteral("Timeline")));
}

void MainWindow::setUpPage(const QString& id, QWidget* page) {
    m_help.addPanel(page, pageKind(id)->help);
    if (const auto* list = qobject_cast<SequenceListPanel*>(page)) {
        connect(list, &SequenceListPanel::sequenceChosen, this,
                [this](const Sequence& sequence, Base::Time at) { m_session.open(sequence, at); });
        connect(list, &SequenceListPanel::pathsDropped, this, &MainWindow::openPaths);
        m_tasks.watch(list->browser());
        list->browser()->setPathRemap(m_files->mappings()->remap());
        if (m_remembers)
            list->browser()->setSettingsKey(browserKey());
    } else if (const auto* viewer = qobject_cast<ViewerPanel*>(page)) {
        connect(viewer, &ViewerPanel::pathsDropped, this, &MainWindow::openPaths);
    } else if (const auto* timeline = qobject_cast<TimelinePanel*>(page)) {
        m_help.addPanel(timeline->transportRow(), "transport.html");
    }
}

void MainWindow::nameSequence() {
    const Sequence& sequence = m_session.sequence();
    setWindowTitle(sequence.isEmpty() ? QStringLiteral("KxUI Workbench")
                                      : tr("%1 - KxUI Workbench").arg(sequence.title()));
}

void MainWindow::rememberArrangement() {
    m_remembers = true;
    m_files->remember();
    list()->browser()->setSettingsKey(browserKey());
    m_tasks.rememberPlace();
    QString problem;
    if (!recall(&problem) && !problem.isEmpty()) {
        // Before it is seen, the bar would show the message on top of what else it shows.
        QTimer::singleShot(0, this, [this, problem] {
            statusBar()->showMessage(
                tr("The last workspace could not be restored. %1").arg(problem), 20000);
        });
    }
}

void MainWindow::recallCacheSize() {
    if (!m_remembers)
        return;
    const int mebibytes = UI::AppSettings().value(cacheKey()).toInt();
    if (mebibytes > 0)
        m_session.setCacheBytes(std::size_t(mebibytes) << 20);
}

void MainWindow::openTools() {
    if (m_remembers && UI::AppSettings().value(profilerKey()).toBool())
        openProfiler();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!m_tasks.mayClose())
        return event->ignore();
    if (m_remembers) {
        remember();
        UI::AppSettings().setValue(profilerKey(), m_profiler && m_profiler->isVisible());
    }
    Workspace::closeEvent(event);
}

void MainWindow::openPaths(const QList<QByteArray>& paths) {
    if (paths.isEmpty())
        return;
    PathMappings* mappings = m_files->mappings();
    list()->openPath(mappings->mapped(paths.front()));
    // What is a folder among the others only the disk knows, which answers when it likes.
    for (int i = 0; i < paths.size() && i < mostOffered; ++i) {
        const QByteArray path = mappings->mapped(paths.at(i));
        using Status = UI::FileManager::PathStatus;
        UI::FileManager::requestStatus(path, answerMs, list(), [this, path](const Status& status) {
            if (status.kind == Status::Kind::Directory)
                list()->offerFolder(path);
        });
    }
}

void MainWindow::setTheme(Theme theme) {
    m_theme = theme;
    UI::ApplicationStyle::install(theme);
}

void MainWindow::makeEditMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&Edit"));
    const UI::MultiStackUndoGroup* group = m_session.grades()->group();
    QAction* undo = group->createUndoAction(menu);
    undo->setShortcut(QKeySequence(QStringLiteral("Ctrl+Z")));
    menu->addAction(undo);
    QAction* redo = group->createRedoAction(menu);
    redo->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+Z")));
    menu->addAction(redo);
    menu->addSeparator();
    QAction* bypass = menu->addAction(tr("&Bypass Grade"));
    bypass->setShortcut(QKeySequence(QStringLiteral("Ctrl+B")));
    bypass->setCheckable(true);
    GradeHistory* grades = m_session.grades();
    connect(bypass, &QAction::toggled, grades, &GradeHistory::setBypassed);
    connect(grades, &GradeHistory::bypassChanged, bypass, &QAction::setChecked);
}

void MainWindow::makePlaybackMenu() {
    Player* player = m_session.player();
    Navigator* navigator = m_session.navigator();
    QMenu* menu = menuBar()->addMenu(tr("&Playback"));
    QAction* play = addItem(menu, tr("&Play"), QKeySequence(Qt::Key_Space), player,
                            [player] { player->toggle(); });
    connect(player, &Player::playingChanged, play,
            [play](bool playing) { play->setText(playing ? tr("&Stop") : tr("&Play")); });
    const auto addShuttle = [&](const QString& text, Qt::Key key, int direction) {
        // A key that is held down means it once.
        addItem(menu, text, QKeySequence(key), player, [player, direction] {
            player->shuttle(direction);
        })->setAutoRepeat(false);
    };
    addShuttle(tr("Play &Backwards"), Qt::Key_J, -1);
    addItem(menu, tr("St&op"), QKeySequence(Qt::Key_K), player, &Player::stop);
    addShuttle(tr("Play For&wards"), Qt::Key_L, 1);
    makeRepeatMenu(menu->addMenu(tr("&Repeat")));
    menu->addMenu(new RateMenu(&m_session, menu));
    menu->addSeparator();

    // A pair of actions, there and back, on the same key with the arrows.
    const auto addPair = [&](const QString& back, const QString& forward, int modifier,
                             void (Navigator::*go)(int)) {
        addItem(menu, back, QKeySequence(modifier | Qt::Key_Left), navigator,
                [navigator, go] { (navigator->*go)(-1); });
        addItem(menu, forward, QKeySequence(modifier | Qt::Key_Right), navigator,
                [navigator, go] { (navigator->*go)(1); });
    };
    addPair(tr("Step B&ack"), tr("Step &Forward"), 0, &Navigator::step);
    addPair(tr("Skip Back"), tr("Skip Forward"), Qt::SHIFT, &Navigator::skip);
    addPair(tr("Jump Back"), tr("Jump Forward"), Qt::ALT, &Navigator::jump);
    addPair(tr("Half Way to Previous Keyframe"), tr("Half Way to Next Keyframe"), Qt::CTRL,
            &Navigator::goHalfWay);
    addItem(menu, tr("Go to Star&t"), QKeySequence(Qt::Key_Home), navigator, &Navigator::goToStart);
    addItem(menu, tr("Go to &End"), QKeySequence(Qt::Key_End), navigator, &Navigator::goToEnd);
    addItem(menu, tr("Type a Ti&me"), QKeySequence(QStringLiteral("Ctrl+T")), this, [this] {
        showPage(timeline()->objectName());
        timeline()->transportRow()->transport()->setFocusToTimecodeWidget();
    });
    menu->addSeparator();
    QAction* keyframesOnly = menu->addAction(tr("Jump to &Keyframes Only"));
    keyframesOnly->setCheckable(true);
    connect(keyframesOnly, &QAction::toggled, navigator, [navigator](bool only) {
        navigator->setJumpMode(only ? UI::KeyframesOnly : UI::KeyframesOrEdits);
    });
}

void MainWindow::makeRepeatMenu(QMenu* menu) {
    Player* player = m_session.player();
    auto* kinds = new QActionGroup(this);
    using Repeat = PlaybackClock::Repeat;
    const std::pair<QString, Repeat> entries[] = {
        {tr("&Once"), Repeat::Once}, {tr("&Loop"), Repeat::Loop}, {tr("&Bounce"), Repeat::Bounce}};
    for (const auto& [text, repeat] : entries) {
        QAction* action = menu->addAction(text);
        action->setCheckable(true);
        action->setChecked(repeat == player->repeat());
        kinds->addAction(action);
        connect(action, &QAction::triggered, player,
                [player, kind = repeat] { player->setRepeat(kind); });
    }
}

void MainWindow::makeMarksMenu() {
    UI::TimeSliderModel* model = m_session.model();
    QMenu* menu = menuBar()->addMenu(tr("&Marks"));
    addItem(menu, tr("Mark &In"), QKeySequence(Qt::Key_I), model, &UI::TimeSliderModel::markIn);
    addItem(menu, tr("Mark &Out"), QKeySequence(Qt::Key_O), model, &UI::TimeSliderModel::markOut);
    addItem(menu, tr("Go to I&n"), QKeySequence(QStringLiteral("Shift+I")), model,
            &UI::TimeSliderModel::goToInPoint);
    addItem(menu, tr("Go to O&ut"), QKeySequence(QStringLiteral("Shift+O")), model,
            &UI::TimeSliderModel::goToOutPoint);
    addItem(menu, tr("&Clear In and Out"), QKeySequence(QStringLiteral("Ctrl+I")), model,
            &UI::TimeSliderModel::clearInOut);
    QAction* lock = menu->addAction(tr("Play &Between Marks"));
    lock->setCheckable(true);
    connect(lock, &QAction::triggered, model, &UI::TimeSliderModel::enableInOutLock);
    connect(menu, &QMenu::aboutToShow, lock,
            [lock, model] { lock->setChecked(model->inOutLock()); });
    menu->addSeparator();
    addItem(menu, tr("Set or Remove &Keyframe"), QKeySequence(QStringLiteral("Ctrl+K")), this,
            [this] { m_session.toggleKeyFrame(); });
}

void MainWindow::makeViewMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&View"));
    UI::TimeFormatter* formatter = m_session.formatter();
    auto* notation = new QActionGroup(this);
    const auto addNotation = [&](const QString& text, bool timecode, bool dropFrames) {
        QAction* action = menu->addAction(text);
        action->setCheckable(true);
        notation->addAction(action);
        connect(action, &QAction::triggered, formatter, [formatter, timecode, dropFrames] {
            formatter->setTimeDisplayFormat(timecode, dropFrames);
        });
        // The notation can be chosen under the timeline, too.
        const auto showChoice = [action, formatter, timecode, dropFrames] {
            if (formatter->displayTimecode() == timecode &&
                (!timecode || formatter->displayDropFrames() == dropFrames))
                action->setChecked(true);
        };
        connect(formatter, &UI::TimeFormatter::timeFormatChanged, action, showChoice);
        showChoice();
        return action;
    };
    addNotation(tr("&Frames"), false, false);
    addNotation(tr("&Timecode"), true, false);
    QAction* drop = addNotation(tr("&Drop-frame Timecode"), true, true);
    const auto showDrop = [drop, formatter] {
        drop->setEnabled(formatter->timeBase().isDropFrameRate());
    };
    connect(&m_session, &Session::timeBaseChanged, drop, showDrop);
    showDrop();
    menu->addSeparator();
    addItem(menu, tr("&Whole Clip"), QKeySequence(Qt::Key_F), this,
            [this] { timeline()->slider()->zoomToFit(); });
    addItem(menu, tr("&Marked Range"), QKeySequence(QStringLiteral("Shift+F")), this,
            [this] { timeline()->slider()->zoomToFitInOut(); });
    menu->addSeparator();
    auto* themes = new QActionGroup(this);
    const auto addTheme = [&](const QString& text, Theme theme) {
        QAction* action = menu->addAction(text);
        action->setCheckable(true);
        action->setChecked(theme == m_theme);
        themes->addAction(action);
        connect(action, &QAction::triggered, this, [this, theme] { setTheme(theme); });
    };
    addTheme(tr("Dar&k"), Theme::Dark);
    addTheme(tr("&Light"), Theme::Light);
    addTheme(tr("High &Contrast"), Theme::HighContrast);
}

void MainWindow::makeToolsMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&Tools"));
    addItem(menu, tr("&Profiler"), QKeySequence(QStringLiteral("Ctrl+Shift+P")), this,
            [this] { openProfiler(); });
    addItem(menu, tr("&Render Times"), QKeySequence(), this,
            [this] { showPage(QStringLiteral("RenderTimes")); });
    addItem(menu, tr("&Tasks"), QKeySequence(), this, [this] { m_tasks.showTasks(); });
    menu->addSeparator();
    addItem(menu, tr("&Export Capture..."), QKeySequence(), this, [this] {
        m_exports.askForCapture(m_remembers ? QStringLiteral("export-capture") : QString());
    });
    addItem(menu, tr("&Fill Cache"), QKeySequence(), this,
            [this] { m_tasks.fillCache(&m_session); });
}

void MainWindow::openSample() {
    m_tasks.makeSample([this](const QString& folder) { openPaths({QFile::encodeName(folder)}); });
}

void MainWindow::openProfiler() {
    UI::EventGraph* profiler = UI::EventGraph::instance();
    m_session.profiling()->addTo(profiler->view());
    m_help.addPanel(profiler, "profiler.html");
    profiler->setAttribute(Qt::WA_QuitOnClose, false);
    if (m_remembers) {
        profiler->setObjectName(QStringLiteral("Profiler"));
        profiler->setRemembersPlace(true);
    }
    m_profiler = profiler;
    profiler->show();
    profiler->raise();
    profiler->activateWindow();
}

} // namespace Kestrel::Workbench
