#include "robot/Robot.h"

#include "app/MainWindow.h"
#include "media/ListedSequence.h"
#include "panels/ScopeOverlay.h"
#include "panels/ScopesPanel.h"
#include "panels/SequenceListPanel.h"
#include "panels/TimelinePanel.h"
#include "panels/ViewerPanel.h"
#include "play/ScopeFeed.h"
#include "robot/Heap.h"
#include "scopes/ScopeCell.h"
#include "scopes/ScopeKinds.h"
#include "workspace/BuiltInLayouts.h"

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/color/ColorWheel.h>
#include <KxUI/curveedit/CurveView.h>
#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/dock/DockWindow.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/scopes/ScopeView.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/values/LogSlider.h>

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPixmapCache>
#include <QPointer>
#include <QScreen>
#include <QWheelEvent>

#include <cstdio>
#include <utility>
#include <vector>

namespace Kestrel::Workbench {

namespace {

constexpr int stepMs = 20;
constexpr int restMs = 3000;
constexpr int mostWindows = 8;

void send(QWidget* widget, QEvent::Type type, const QPoint& at, Qt::MouseButton button,
          Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QMouseEvent event(type, at, widget->mapToGlobal(at), button, buttons, modifiers);
    QApplication::sendEvent(widget, &event);
}

/** Whether an action keeps to the program: no questions, no browser, no end. */
bool isHarmless(const QAction* action) {
    return action->isEnabled() && !action->menu() && !action->isSeparator() &&
           !action->text().endsWith(QLatin1String("...")) &&
           action->shortcut() != QKeySequence(QKeySequence::Quit);
}

void collect(const QList<QAction*>& actions, QList<QAction*>& all) {
    for (QAction* action : actions) {
        if (action->menu())
            collect(action->menu()->actions(), all);
        else if (isHarmless(action))
            all.append(action);
    }
}

qint64 objectCount() {
    qint64 count = 1 + qApp->findChildren<QObject*>().size();
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (!window->parent())
            count += 1 + window->findChildren<QObject*>().size();
    }
    return count;
}

} // namespace

Robot::Robot(MainWindow* window, unsigned seed, int minutes)
    : m_window(window)
    , m_random(seed)
    , m_minutes(minutes) {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // Nothing of the user's is renamed, and no other program is started.
    m_window->list()->browser()->setReadOnly(true);
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "stay");
    // A closed window is opened again.
    QApplication::setQuitOnLastWindowClosed(false);
    connect(&m_step, &QTimer::timeout, this, &Robot::step);
    connect(&m_rescue, &QTimer::timeout, this, &Robot::rescue);
    m_step.start(stepMs);
    m_rescue.start(10 * stepMs);
    m_clock.start();
    std::printf("minute   steps   heap KiB   widgets   objects\n");
}

Robot::~Robot() {
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

int Robot::below(int many) {
    return many <= 0 ? 0 : int(m_random() % unsigned(many));
}

QPoint Robot::pointIn(const QRect& rect) {
    const int x = below(rect.width());
    return rect.topLeft() + QPoint(x, below(rect.height()));
}

QWidget* Robot::anyWidget() {
    QList<QWidget*> windows;
    const auto all = QApplication::topLevelWidgets();
    for (QWidget* window : all) {
        if (window->isVisible())
            windows.append(window);
    }
    if (windows.isEmpty())
        return nullptr;
    QWidget* window = windows.at(below(int(windows.size())));
    QWidget* child = window->childAt(pointIn(window->rect()));
    return child ? child : window;
}

UI::Dock* Robot::anyDock() {
    const auto docks = m_window->docks();
    return docks.isEmpty() ? nullptr : docks.at(below(int(docks.size())));
}

void Robot::step() {
    if (m_clock.elapsed() >= qint64(m_minute + 1) * 60000)
        return rest();
    static const std::vector<Deed> lots = [] {
        const std::pair<std::size_t, Deed> deeds[] = {
            {20, &Robot::click},  {10, &Robot::drag},    {5, &Robot::wheel},     {10, &Robot::type},
            {20, &Robot::scrub},  {15, &Robot::trigger}, {2, &Robot::open},      {6, &Robot::tear},
            {6, &Robot::dragTab}, {4, &Robot::arrange},  {2, &Robot::profile},   {8, &Robot::grade},
            {6, &Robot::undo},    {8, &Robot::measure},  {1, &Robot::exportSome}};
        std::vector<Deed> all;
        for (const auto& [weight, deed] : deeds)
            all.insert(all.end(), weight, deed);
        return all;
    }();
    ++m_steps;
    (this->*lots[std::size_t(below(int(lots.size())))])();
}

/** Menus, boxes and dialogs wait for an answer in loops of their own. */
void Robot::rescue() {
    if (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    } else if (QWidget* modal = QApplication::activeModalWidget()) {
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
        else
            modal->close();
    }
    if (!m_window->isVisible() || m_window->isMinimized())
        m_window->showNormal();
}

void Robot::rest() {
    m_step.stop();
    ++m_minute;
    Session* session = m_window->session();
    session->player()->stop();
    m_window->tasks()->manager()->cancelAll();
    m_window->tasks()->dialog()->hide();
    UI::EventGraph* profiler = UI::EventGraph::instance();
    profiler->stop();
    profiler->clear();
    profiler->hide();
    m_window->arrange(builtInLayouts().front());
    m_window->setTheme(Theme::Dark);
    session->open(Sequence());
    session->scopes()->model()->clearReference();
    session->scopes()->model()->setSelection({});
    session->scopes()->model()->setRegion({});
    // Neither pictures that are kept nor a history is a leak, but they grow.
    QPixmapCache::clear();
    UI::MultiStackUndoGroup* history = session->grades()->group();
    const auto projects = history->projects();
    for (UI::UndoableProject* project : projects) {
        history->removeProject(project);
        history->addProject(project);
    }
    QTimer::singleShot(restMs, this, &Robot::count);
}

void Robot::count() {
    std::printf("%6d %7d %10lld %9d %9lld\n", m_minute, m_steps,
                static_cast<long long>(heapBytes() / 1024), int(QApplication::allWidgets().size()),
                static_cast<long long>(objectCount()));
    std::fflush(stdout);
    if (m_minute >= m_minutes)
        return QApplication::quit();
    open();
    m_step.start(stepMs);
}

void Robot::click() {
    const QPointer<QWidget> widget = anyWidget();
    if (!widget)
        return;
    const QPoint at = pointIn(widget->rect());
    const Qt::MouseButton button = oneIn(6) ? Qt::RightButton : Qt::LeftButton;
    static const Qt::KeyboardModifier modifiers[] = {Qt::ShiftModifier, Qt::ControlModifier,
                                                     Qt::AltModifier};
    const auto modifier = oneIn(4) ? modifiers[below(3)] : Qt::NoModifier;
    send(widget, QEvent::MouseButtonPress, at, button, button, modifier);
    if (widget)
        send(widget, QEvent::MouseButtonRelease, at, button, Qt::NoButton, modifier);
    if (widget && oneIn(8))
        send(widget, QEvent::MouseButtonDblClick, at, button, button, modifier);
    if (widget && button == Qt::RightButton) {
        QContextMenuEvent menu(QContextMenuEvent::Mouse, at, widget->mapToGlobal(at));
        QApplication::sendEvent(widget, &menu);
    }
}

void Robot::dragOn(QWidget* widget, const QPoint& from, const QPoint& to) {
    constexpr int moves = 12;
    const QPointer<QWidget> held(widget);
    send(held, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    const int interrupted = oneIn(6) ? below(moves) : -1;
    for (int i = 0; held && i < moves; ++i) {
        send(held, QEvent::MouseMove, from + (to - from) * (i + 1) / moves, Qt::NoButton,
             Qt::LeftButton);
        // The other hand is on the keyboard.
        if (i == interrupted) {
            static constexpr Deed deeds[] = {&Robot::type, &Robot::undo, &Robot::trigger};
            (this->*deeds[below(3)])();
        }
    }
    if (held)
        send(held, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

void Robot::drag() {
    if (QWidget* widget = anyWidget()) {
        const QPoint from = pointIn(widget->rect());
        dragOn(widget, from, pointIn(widget->rect().adjusted(-50, -50, 50, 50)));
    }
}

void Robot::wheel() {
    if (QWidget* widget = anyWidget()) {
        const QPoint at = pointIn(widget->rect());
        const auto modifiers = oneIn(3) ? Qt::ControlModifier : Qt::NoModifier;
        QWheelEvent event(at, widget->mapToGlobal(at), {}, {0, oneIn(2) ? 120 : -120}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget, &event);
    }
}

void Robot::type() {
    static const int keys[] = {Qt::Key_Up,    Qt::Key_Down,      Qt::Key_Left,   Qt::Key_Right,
                               Qt::Key_Tab,   Qt::Key_Return,    Qt::Key_Space,  Qt::Key_Delete,
                               Qt::Key_Home,  Qt::Key_Backspace, Qt::Key_Escape, Qt::Key_1,
                               Qt::Key_0,     Qt::Key_5,         Qt::Key_Plus,   Qt::Key_Minus,
                               Qt::Key_Colon, Qt::Key_A};
    const int key = keys[below(int(std::size(keys)))];
    const QString text = key < 0x80 ? QString(QChar(key)) : QString();
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (QWidget* focus = QApplication::focusWidget()) {
            QKeyEvent event(type, key, Qt::NoModifier, text);
            QApplication::sendEvent(focus, &event);
        }
    }
}

void Robot::scrub() {
    UI::TimeSlider* slider = m_window->timeline()->slider();
    const QPoint from = pointIn(slider->rect());
    dragOn(slider, from, pointIn(slider->rect()));
}

void Robot::trigger() {
    QList<QAction*> actions;
    const auto menus = m_window->menuBar()->actions();
    // The last menu is about help, which opens a browser.
    collect(menus.mid(0, menus.size() - 1), actions);
    if (!actions.isEmpty())
        actions.at(below(int(actions.size())))->trigger();
}

void Robot::open() {
    SequenceListPanel* list = m_window->list();
    if (const int rows = list->model()->rowCount(); rows > 0) {
        const int row = below(rows);
        if (!list->isFolder(row))
            m_window->session()->open(sequenceOf(list->item(row)));
    }
    if (oneIn(3))
        list->reload();
}

void Robot::tear() {
    UI::Dock* dock = anyDock();
    if (!dock)
        return;
    if (m_window->floatingWindows().size() > mostWindows)
        return arrange();
    switch (below(8)) {
    case 0:
        return dock->floatDock();
    case 1:
        dock->split(oneIn(2) ? Qt::Horizontal : Qt::Vertical, oneIn(2));
        return;
    case 2:
        return dock->transposeDock();
    case 3:
        return dock->setExpanded(oneIn(2));
    case 4:
        return dock->setTitleVisible(oneIn(2));
    case 5:
        if (UI::Dock* other = anyDock(); other && dock->currentWidget())
            other->addWidget(dock->currentWidget(), true, false);
        return;
    case 6:
        if (dock->count() > 0)
            dock->closeTab(below(dock->count()));
        return;
    default:
        return dock->floatActiveTab();
    }
}

void Robot::dragTab() {
    UI::Dock* dock = anyDock();
    auto* bar = dock ? dock->findChild<UI::DockTabBar*>() : nullptr;
    if (!bar || bar->count() == 0)
        return;
    const QRect desk = bar->screen()->availableGeometry();
    dragOn(bar, pointIn(bar->tabRect(below(bar->count()))), bar->mapFromGlobal(pointIn(desk)));
}

void Robot::arrange() {
    const QString file = m_folder.filePath(QString::number(below(4)));
    switch (below(4)) {
    case 0:
        m_window->saveTo(file);
        return;
    case 1:
        m_window->loadFrom(file);
        return;
    case 2:
        return m_window->remember();
    default:
        return m_window->arrange(
            builtInLayouts().at(std::size_t(below(int(builtInLayouts().size())))));
    }
}

void Robot::grade() {
    const QString id = oneIn(4) ? QStringLiteral("Exposure") : QStringLiteral("Grade");
    m_window->showPage(id);
    const QWidget* panel = m_window->page(id);
    QWidget* const controls[] = {panel->findChild<UI::ColorWheel*>(),
                                 panel->findChild<UI::LogSlider*>(),
                                 panel->findChild<UI::CurveView*>()};
    // The pane of the exposure has only the last one.
    QWidget* control = controls[below(3)];
    if (!control)
        control = controls[2];
    const QPoint from = pointIn(control->rect());
    dragOn(control, from, pointIn(control->rect()));
}

/** Exports a part of what is open into the robot's own folder; one that goes on is paused, goes on or
    is cancelled. */
void Robot::exportSome() {
    ExportDesk* exports = m_window->exports();
    const Sequence& sequence = m_window->session()->sequence();
    UI::ProgressManager* tasks = m_window->tasks()->manager();
    if (exports->count() > 0 || sequence.isEmpty()) {
        for (const auto& task : tasks->tasks())
            oneIn(3) ? task->cancel() : oneIn(2) ? task->pause() : task->resume();
        return;
    }
    ExportPlan plan;
    plan.sequence = sequence;
    plan.grade = m_window->session()->grades()->grade();
    plan.first = sequence.firstTime() + below(8);
    plan.last = plan.first + below(12);
    plan.folder = m_folder.path().toStdString();
    plan.name = oneIn(2) ? "robot.####.exr" : "robot.####.png";
    plan.format = *exportFormatOf(plan.name, oneIn(2));
    // Some of them are there from the last time: it is asked about them.
    plan.replaces = {{std::int32_t(plan.first), std::int32_t(plan.first + below(12))}};
    exports->start(plan);
    m_window->showPage(QStringLiteral("RenderTimes"));
}

void Robot::undo() {
    UI::MultiStackUndoGroup* history = m_window->session()->grades()->group();
    switch (below(4)) {
    case 0:
        return history->makeIndex(below(int(history->undoCommands().size()) + 1));
    case 1:
        return history->redo();
    default:
        return history->undo();
    }
}

/** Draws regions on the viewer, and changes and uses the scopes. */
void Robot::measure() {
    m_window->showPage(oneIn(4) ? QStringLiteral("Statistics") : QStringLiteral("Scopes"));
    auto* scopes = static_cast<ScopesPanel*>(m_window->page(QStringLiteral("Scopes")));
    ScopeCell* cell = scopes->cell(below(ScopesPanel::MostScopes));
    auto* overlay = m_window->viewer()->findChild<ScopeOverlay*>();
    const auto& kinds = scopeKinds();
    switch (below(6)) {
    case 0:
        return scopes->setScopeCount(1 << below(3));
    case 1:
        return cell->setKind(QLatin1String(kinds[std::size_t(below(int(kinds.size())))].id));
    case 2:
        return m_window->session()->scopes()->setSource(oneIn(2) ? ScopeFeed::File
                                                                 : ScopeFeed::Screen);
    case 3: {
        UI::ScopeModel* model = m_window->session()->scopes()->model();
        return oneIn(2) ? model->hold() : model->setRegion({});
    }
    case 4:
        if (QWidget* view = cell->view(); view && view->isVisible()) {
            const QPoint from = pointIn(view->rect());
            dragOn(view, from, pointIn(view->rect()));
        }
        return;
    default:
        if (overlay->isVisible()) {
            const QPoint from = pointIn(overlay->rect());
            dragOn(overlay, from, pointIn(overlay->rect()));
        }
        return;
    }
}

void Robot::profile() {
    m_window->openProfiler();
    UI::EventGraphView* view = UI::EventGraph::instance()->view();
    const QString file = m_folder.filePath(QStringLiteral("capture"));
    switch (below(5)) {
    case 0:
        return UI::EventGraph::instance()->start();
    case 1:
        view->save(file, below(4));
        return;
    case 2:
        view->exportTrace(file + QStringLiteral(".json"));
        return;
    case 3:
        return view->clear();
    default:
        return UI::EventGraph::instance()->stop();
    }
}

} // namespace Kestrel::Workbench
