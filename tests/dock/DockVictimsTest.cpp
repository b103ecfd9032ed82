#include "Mouse.h"
#include "Workspace.h"

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockWindow.h>

#include <support/TestRegistry.h>

#include <QtWidgets>

#include <functional>
#include <tuple>
#include <vector>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

namespace {

enum Callback { Added, Removed, Activated, Created, Closing, CallbackCount };
enum Victim { ThePage, OtherPage, ThePane, TheWindow, TheMainWindow, VictimCount };
const char* const CallbackNames[] = {"widgetAdded", "widgetRemoved", "widgetActivated",
                                     "createPage", "closeEvent"};
const char* const VictimNames[] = {"page", "other page", "pane", "window", "main window"};

/** Two panes side by side and a third in a floating window; the first time that `callback` comes,
    `victim` is destroyed in it. */
class Scene {
public:
    Scene(int callback, int victim, bool special)
        : m_callback(callback)
        , m_victim(victim)
        , main(new Host(*this)) {
        if (special) {
            main->setHideSingleTabs(true);
            main->setHighlightCurrentTab(true);
            main->setTabsAreClosable(true);
            main->setEmptiedPanesClose(true);
        }
        main->setSplitPanelsByDragging(true);
        left = main->pane({"a", "b", "c"});
        // Without waiting for the screen, which takes longer than all the rest.
        main->show();
        main->activateWindow();
        settle();
        right = left->split(Qt::Horizontal, false);
        right->addWidget(page("x"), true, false);
        window = main->addNewFloatingDock(page("f"));
        window->move(1500, 40);
        floating = window->panes().first();
        page("a")->setFocus();
        // Some die with their closing, and some know when they are closed.
        page("b")->setAttribute(Qt::WA_DeleteOnClose, special);
        for (const char* name : {"a", "b", "c", "x", "f"})
            page(name)->installEventFilter(main);
        saved = main->saved();
        settle();
        Workspace* host = main;
        QObject::connect(host, &DockMainWindow::widgetAdded, host,
                         [this](Dock* dock, QWidget* page) { strike(Added, dock, page); });
        QObject::connect(host, &DockMainWindow::widgetRemoved, host,
                         [this](Dock* dock, QWidget* page) { strike(Removed, dock, page); });
        QObject::connect(host, &DockMainWindow::widgetActivated, host,
                         [this](Dock* dock, QWidget* page) { strike(Activated, dock, page); });
        armed = true;
    }
    ~Scene() {
        armed = false;
        delete main;
        delete fresh;
    }

    Page* page(const char* name) { return main->page(name); }

    void strike(int callback, Dock* dock, QWidget* page) {
        if (!armed)
            return;
        seen |= 1 << callback;
        if (callback != m_callback)
            return;
        armed = false;
        Dock* pane = dock ? dock : left.data();
        DockWindow* around = pane ? pane->dockWindow() : nullptr;
        switch (m_victim) {
        case ThePage:
            if (dying != ThePage)
                delete (page ? page : main->m_pages.value("a").data());
            break;
        case OtherPage:
            for (const char* name : {"c", "f", "a", "x"}) {
                Page* other = main->m_pages.value(name);
                if (other && other != page) {
                    delete other;
                    break;
                }
            }
            break;
        case ThePane:
            if (dying != ThePane)
                delete pane;
            break;
        case TheWindow:
            if (dying != ThePane)
                delete (around && around != main ? around : window.data());
            break;
        case TheMainWindow:
            delete main;
            break;
        default:
            break;
        }
    }

    bool restore(bool whole) {
        QByteArray document = saved;
        return whole ? main->wholeRestored(document) : main->restored(document);
    }
    void choose(const char* text) {
        QMenu* menu = left->menu();
        Q_EMIT menu->aboutToShow();
        QList<QAction*> all = menu->actions();
        for (int i = 0; i < all.size(); ++i) {
            if (all.at(i)->menu()) {
                Q_EMIT all.at(i)->menu()->aboutToShow();
                all += all.at(i)->menu()->actions();
            } else if (all.at(i)->text() == QLatin1String(text)) {
                all.at(i)->trigger();
                return;
            }
        }
        qFatal("no entry %s", text);
    }
    QPoint centre(const Dock* dock) const {
        return dock->stack()->mapToGlobal(dock->stack()->rect().center());
    }

private:
    class Host : public Workspace {
    public:
        explicit Host(Scene& scene)
            : m_scene(scene) {}
        QWidget* createPage(QString& id) override {
            const QPointer<Host> alive(this);
            m_scene.strike(Created, nullptr, nullptr);
            return alive ? page(id) : nullptr;
        }
        bool eventFilter(QObject* watched, QEvent* event) override {
            auto* page = qobject_cast<QWidget*>(watched);
            const QPointer<Host> alive(this);
            const QPointer<QObject> aliveWatched(watched);
            if (page && event->type() == QEvent::Close)
                m_scene.strike(Closing, Dock::dockForWidget(page), page);
            return !alive || !aliveWatched;
        }

    private:
        Scene& m_scene;
    };

    int m_callback;
    int m_victim;

public:
    QPointer<Host> main;
    QPointer<Dock> left, right, floating;
    QPointer<DockWindow> window;
    QPointer<Page> fresh{new Page("new")};
    QByteArray saved;
    bool armed = false;
    int seen = 0;   ///< a bit for every callback that came
    int dying = -1; ///< what the operation itself destroys, and cannot be destroyed again
};

struct Operation {
    const char* name;
    void (*run)(Scene&);
};

void drag(Scene& s, const std::function<void(Mouse&)>& end) {
    Mouse mouse(s.left);
    mouse.tearOff(1);
    if (!s.main || !s.left || !s.right)
        return;
    mouse.move(s.centre(s.right));
    end(mouse);
}

void pressTab(Scene& s, Qt::KeyboardModifiers modifiers) {
    Mouse mouse(s.left);
    const QPoint at = mouse.tab(1);
    mouse.press(at, modifiers);
    mouse.release(at);
}

#define OPERATION(code)                                                                            \
    {                                                                                              \
#code, [](Scene & s) { code; }                                                             \
    }

const Operation Operations[] = {
    OPERATION(s.left->addWidget(s.fresh, true, true)),
    OPERATION(s.left->split(Qt::Vertical, true)->addWidget(s.fresh, true, true)),
    OPERATION(s.right->addWidget(s.page("a"), true, false)),
    OPERATION(s.left->addWidget(s.page("x"), false, true)),
    OPERATION(s.left->addWidget(s.page("c"), true, true)),
    OPERATION(s.left->insertWidget(1, s.fresh)),
    OPERATION(s.left->insertWidget(0, s.page("f"))),
    OPERATION(s.left->insertWidget(2, s.page("a"))),
    OPERATION(s.left->insertWidget(QPoint(3, 3), s.fresh)),
    OPERATION(s.left->removeWidgetAndSetCurrentTab(s.page("a"), 1)),
    OPERATION(s.right->removeWidget(s.page("x"))),
    OPERATION(s.left->restorePlaceHolderForWidget(s.page("x"))),
    OPERATION(s.left->setCurrentWidget(s.page("b"))),
    OPERATION(s.left->prevTab()),
    OPERATION(s.left->showTab(1)),
    OPERATION(s.left->floatWidgetAt(s.page("b"), QPoint(9, 9))),
    OPERATION(s.floating->floatActiveTab()),
    OPERATION(s.left->floatDock()),
    OPERATION(s.left->closeActiveTab()),
    OPERATION(s.left->closeTab(1)),
    OPERATION(s.floating->closeTab(0)),
    OPERATION(s.left->closeInactiveTabs()),
    OPERATION(s.left->close()),
    OPERATION(s.left->setExpanded(true); s.left->close()),
    OPERATION(s.floating->close()),
    OPERATION(s.window->close()),
    OPERATION(s.page("f")->m_refuses = true; s.window->close()),
    OPERATION(s.main->close()),
    OPERATION(s.main->addNewFloatingDock(s.page("b"))),
    OPERATION(s.main->showPage(s.fresh)),
    OPERATION(s.right->closeTab(0); if (s.main) s.main->showPage(s.page("x"))),
    OPERATION(s.right->makeActive()),
    OPERATION(s.main->nextDock()),
    OPERATION(s.right->setFocus(); s.main->nextTab()),
    OPERATION(s.main->prevTab()),
    OPERATION(QEvent enter(QEvent::Enter); QCoreApplication::sendEvent(s.right, &enter)),
    OPERATION(s.restore(false)),
    OPERATION(s.armed = false; s.left->insertWidget(1, s.fresh); delete s.main->m_pages.take("b");
              s.armed = true; s.restore(true)),
    OPERATION(pressTab(s, Qt::NoModifier)),
    OPERATION(pressTab(s, Qt::ControlModifier)),
    OPERATION(Mouse mouse(s.left); mouse.press(mouse.tab(0));
              for (int i = 0; i < 3; ++i) mouse.move(mouse.tab(1) + QPoint(25 + i, 0));
              mouse.release(mouse.tab(1))),
    OPERATION(drag(s, [&](Mouse& mouse) { mouse.release(s.centre(s.right)); })),
    OPERATION(drag(
        s, [&](Mouse& mouse) { mouse.release(s.right->stack()->mapToGlobal(QPoint(3, 100))); })),
    OPERATION(drag(s, [&](Mouse& mouse) { mouse.release(QPoint(-500, -500)); })),
    OPERATION(drag(s, [&](Mouse&) { QTest::keyClick(s.main, Qt::Key_Escape); })),
    OPERATION(drag(s,
                   [&](Mouse&) {
                       s.dying = ThePane;
                       delete s.left;
                   })),
    OPERATION(s.choose("Close Tab")),
    OPERATION(s.choose("Right in Its Pane")),
    OPERATION(s.choose("As Tab")),
    OPERATION(s.choose("Above")),
    OPERATION(s.dying = ThePage; delete s.page("a")),
    OPERATION(s.dying = ThePane; delete s.left),
    OPERATION(s.dying = ThePane; delete s.window),
    OPERATION(s.page("a")->setParent(nullptr)),
};

struct Cell {
    int operation;
    bool special;
    int callback; ///< none: only looks which callbacks come
    int victim;
};

QString nameOf(const Cell& cell) {
    return QString("%1, %2 destroys %3%4")
        .arg(Operations[cell.operation].name)
        .arg(CallbackNames[cell.callback])
        .arg(VictimNames[cell.victim])
        .arg(cell.special ? ", options" : "");
}

enum Result : signed char { NotRun, Dies, Sane, NotSane };

/** The callbacks that came, and what became of the workspace. */
std::pair<int, Result> runCell(const Cell& cell) {
    Scene scene(cell.callback, cell.victim, cell.special);
    Operations[cell.operation].run(scene);
    for (int i = 0; i < 2; ++i)
        settle();
    return {scene.seen, !scene.main || checkSanity(*scene.main).isEmpty() ? Sane : NotSane};
}

/** Memory that a child process writes and its parent reads. */
template <class Item>
Item* shared(std::size_t count) {
    void* memory = mmap(nullptr, count * sizeof(Item), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<Item*>(memory);
}

/** Runs all cells in child processes; one that dies takes only its own cell with it. */
void runAll(const std::vector<Cell>& cells, int* seen, Result* results) {
    for (std::size_t next = 0; next < cells.size(); ++next) {
        const pid_t child = fork();
        if (child == 0) {
            for (std::size_t i = next; i < cells.size(); ++i) {
                results[i] = Dies;
                std::tie(seen[i], results[i]) = runCell(cells[i]);
            }
            _exit(0);
        }
        int status = 0;
        if (waitpid(child, &status, 0) != child)
            return;
        while (next < cells.size() && results[next] > Dies)
            ++next;
    }
}

} // namespace

/** Hosts destroy what they like in every callback, while any operation runs. */
class DockVictimsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyDeletionIsSurvived() {
        constexpr std::size_t MaxCells = 4000;
        auto* seen = shared<int>(MaxCells);
        auto* results = shared<Result>(MaxCells);
        QVERIFY(seen && results);
        std::vector<Cell> looks;
        for (int i = 0; i < int(std::size(Operations)); ++i) {
            for (const bool special : {false, true})
                looks.push_back({i, special, -1, -1});
        }
        runAll(looks, seen, results);
        std::vector<Cell> cells;
        for (std::size_t i = 0; i < looks.size(); ++i) {
            for (int callback = 0; callback < CallbackCount; ++callback) {
                for (int victim = 0; victim < VictimCount && (seen[i] >> callback & 1); ++victim)
                    cells.push_back({looks[i].operation, looks[i].special, callback, victim});
            }
        }
        QVERIFY(cells.size() > 300 && cells.size() < MaxCells);
        std::fill_n(results, MaxCells, NotRun);
        runAll(cells, seen, results);
        QStringList trouble;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (results[i] != Sane)
                trouble += nameOf(cells[i]) + (results[i] == Dies ? ": dies" : ": is not sane");
        }
        munmap(seen, MaxCells * sizeof(int));
        munmap(results, MaxCells * sizeof(Result));
        QVERIFY2(trouble.isEmpty(),
                 qPrintable(QString("%1 of %2 cells:\n").arg(trouble.size()).arg(cells.size()) +
                            trouble.join('\n')));
    }
};

KXUI_TEST(DockVictimsTest);
#include "DockVictimsTest.moc"
