#include "app/MainWindow.h"

#include "media/Paths.h"
#include "panels/FolderModel.h"
#include "panels/SequenceListPanel.h"
#include "panels/StatusLine.h"
#include "panels/TimelinePanel.h"
#include "panels/ViewerPanel.h"

#include <KxUI/time/TimeSlider.h>

#include <QActionGroup>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QMenuBar>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

namespace Kestrel::Workbench {

namespace {

/** Adds an action with its keys; the callable is run when it is triggered. */
template <typename Receiver, typename Function>
QAction* addItem(QMenu* menu, const QString& text, const QKeySequence& keys, Receiver* receiver,
                 Function function) {
    QAction* action = menu->addAction(text);
    action->setShortcut(keys);
    QObject::connect(action, &QAction::triggered, receiver, function);
    return action;
}

QWidget* aboveEachOther(std::initializer_list<QWidget*> widgets) {
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (QWidget* widget : widgets)
        layout->addWidget(widget, widget == *widgets.begin() ? 1 : 0);
    return column;
}

} // namespace

MainWindow::MainWindow(Base::TimeBase timeBase, std::size_t cacheBytes, Theme theme)
    : m_session(timeBase, cacheBytes)
    , m_list(new SequenceListPanel)
    , m_viewer(new ViewerPanel(&m_session))
    , m_timeline(new TimelinePanel(&m_session))
    , m_theme(theme) {
    setWindowTitle(QStringLiteral("KxUI Workbench"));
    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(m_list);
    splitter->addWidget(aboveEachOther({m_viewer, m_timeline, new StatusLine(&m_session)}));
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({400, 880});
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);

    makeFileMenu();
    makePlaybackMenu();
    makeMarksMenu();
    makeViewMenu();
    connect(m_list, &SequenceListPanel::sequenceChosen, this,
            [this](const Sequence& sequence, Base::Time at) {
                m_session.open(sequence, at);
                setWindowTitle(tr("%1 - KxUI Workbench").arg(sequence.title()));
            });
    resize(1280, 720);
}

void MainWindow::openPaths(const QList<QByteArray>& paths) {
    for (const QByteArray& path : paths) {
        if (isFolder(path.toStdString()))
            m_list->offerFolder(path);
    }
    if (paths.isEmpty())
        return;
    const QByteArray first = paths.first();
    if (!isFolder(first.toStdString())) {
        m_list->openFile(first);
        return;
    }
    m_list->openFolder(first);
    m_list->chooseFirst();
    m_list->view()->setFocus();
}

void MainWindow::setTheme(Theme theme) {
    m_theme = theme;
    applyTheme(theme);
}

void MainWindow::makeFileMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    addItem(menu, tr("&Open Folder..."), QKeySequence::Open, this, [this] { askForFolder(); });
    addItem(menu, tr("&Reload"), QKeySequence(Qt::Key_F5), this, [this] { reload(); });
    menu->addSeparator();
    addItem(menu, tr("&Quit"), QKeySequence::Quit, this, [this] { close(); });
}

void MainWindow::makePlaybackMenu() {
    UI::TimeSliderModel* model = m_session.model();
    Player* player = m_session.player();
    QMenu* menu = menuBar()->addMenu(tr("&Playback"));
    QAction* play = addItem(menu, tr("&Play"), QKeySequence(Qt::Key_Space), player,
                            [player] { player->toggle(); });
    connect(player, &Player::playingChanged, play,
            [play](bool playing) { play->setText(playing ? tr("&Stop") : tr("&Play")); });
    addItem(menu, tr("Play &Backwards"), QKeySequence(Qt::SHIFT | Qt::Key_Space), player,
            [player] { player->isPlaying() ? player->stop() : player->play(-1); });
    QAction* loop = menu->addAction(tr("&Loop"));
    loop->setCheckable(true);
    loop->setChecked(player->loops());
    connect(loop, &QAction::toggled, player, &Player::setLoops);
    menu->addSeparator();

    // Stepping past an end is of no use here; and a step or a jump takes over from playback.
    const auto goTo = [player, model](Base::Time time) {
        player->stop();
        if (model->duration() != Base::InvalidTime)
            model->setCurrentTime(qBound(model->startTime(), time, model->endTime()));
    };
    const auto addJump = [&](const QString& text, const QKeySequence& keys, auto target) {
        addItem(menu, text, keys, player, [goTo, target, model] { goTo(target(*model)); });
    };
    using Model = UI::TimeSliderModel;
    addJump(tr("Step B&ack"), QKeySequence(Qt::Key_Left),
            [](const Model& m) { return m.currentTime() - 1; });
    addJump(tr("Step &Forward"), QKeySequence(Qt::Key_Right),
            [](const Model& m) { return m.currentTime() + 1; });
    addJump(tr("Go to S&tart"), QKeySequence(Qt::Key_Home),
            [](const Model& m) { return m.playbackStartTime(); });
    addJump(tr("Go to &End"), QKeySequence(Qt::Key_End),
            [](const Model& m) { return m.playbackEndTime(); });
}

void MainWindow::makeMarksMenu() {
    UI::TimeSliderModel* model = m_session.model();
    QMenu* menu = menuBar()->addMenu(tr("&Marks"));
    addItem(menu, tr("Mark &In"), QKeySequence(Qt::Key_I), model, &UI::TimeSliderModel::markIn);
    addItem(menu, tr("Mark &Out"), QKeySequence(Qt::Key_O), model, &UI::TimeSliderModel::markOut);
    addItem(menu, tr("Go to I&n"), QKeySequence(Qt::SHIFT | Qt::Key_I), model,
            &UI::TimeSliderModel::goToInPoint);
    addItem(menu, tr("Go to O&ut"), QKeySequence(Qt::SHIFT | Qt::Key_O), model,
            &UI::TimeSliderModel::goToOutPoint);
    addItem(menu, tr("&Clear In and Out"), QKeySequence(Qt::CTRL | Qt::Key_I), model,
            &UI::TimeSliderModel::clearInOut);
    QAction* lock = menu->addAction(tr("Play &Between Marks"));
    lock->setCheckable(true);
    connect(lock, &QAction::triggered, model, &UI::TimeSliderModel::enableInOutLock);
    connect(menu, &QMenu::aboutToShow, lock,
            [lock, model] { lock->setChecked(model->inOutLock()); });
    menu->addSeparator();
    addItem(menu, tr("Set or Remove &Keyframe"), QKeySequence(Qt::CTRL | Qt::Key_K), this,
            [this] { m_session.toggleKeyFrame(); });
    addItem(menu, tr("&Previous Keyframe"), QKeySequence(Qt::CTRL | Qt::Key_Left), this,
            [this] { m_session.goToKeyFrame(-1); });
    addItem(menu, tr("Ne&xt Keyframe"), QKeySequence(Qt::CTRL | Qt::Key_Right), this,
            [this] { m_session.goToKeyFrame(1); });
}

void MainWindow::makeViewMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&View"));
    UI::TimeFormatter* formatter = m_session.formatter();
    auto* notation = new QActionGroup(this);
    const auto addNotation = [&](const QString& text, bool timecode, bool dropFrames) {
        QAction* action = menu->addAction(text);
        action->setCheckable(true);
        action->setChecked(formatter->displayTimecode() == timecode &&
                           formatter->displayDropFrames() == dropFrames);
        notation->addAction(action);
        connect(action, &QAction::triggered, formatter, [formatter, timecode, dropFrames] {
            formatter->setTimeDisplayFormat(timecode, dropFrames);
        });
        return action;
    };
    addNotation(tr("&Frames"), false, false);
    addNotation(tr("&Timecode"), true, false);
    QAction* drop = addNotation(tr("&Drop-frame Timecode"), true, true);
    drop->setEnabled(formatter->timeBase().isDropFrameRate());
    menu->addSeparator();
    UI::TimeSlider* slider = m_timeline->slider();
    addItem(menu, tr("&Whole Clip"), QKeySequence(Qt::Key_F), slider, &UI::TimeSlider::zoomToFit);
    addItem(menu, tr("&Marked Range"), QKeySequence(Qt::SHIFT | Qt::Key_F), slider,
            &UI::TimeSlider::zoomToFitInOut);
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
}

void MainWindow::askForFolder() {
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("Open Folder"), QFile::decodeName(m_list->model()->folder()));
    if (!folder.isEmpty())
        openPaths({QFile::encodeName(folder)});
}

/** Reads the folder again, and the open sequence with it, since files may have come or changed. */
void MainWindow::reload() {
    const Sequence open = m_session.sequence();
    const Base::Time at = m_session.model()->currentTime();
    m_list->reload();
    if (open.isEmpty() || open.folder() != m_list->model()->folder().toStdString())
        return;
    const int row = m_list->model()->rowOfFile(open.members().front().second);
    if (row >= 0)
        m_session.open(m_list->model()->sequence(row), at);
}

} // namespace Kestrel::Workbench
