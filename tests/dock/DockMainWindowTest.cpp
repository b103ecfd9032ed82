#include "Workspace.h"

#include <KxUI/dock/DockTabBar.h>

#include <support/TestRegistry.h>

#include <QAction>
#include <QMenu>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

class DockMainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void focusWalksPanesAndTabs() {
        Workspace workspace;
        Dock* first = workspace.pane({"a", "b"});
        workspace.pane({});
        Dock* third = workspace.pane({"c"});
        show(workspace);
        if (QWidget* focus = QApplication::focusWidget())
            focus->clearFocus();
        workspace.nextDock();
        QVERIFY(!workspace.activeDock());

        workspace.page("a")->setFocus();
        workspace.nextDock();
        QCOMPARE(workspace.activeDock(), third);
        workspace.nextDock();
        QCOMPARE(workspace.activeDock(), first);
        workspace.prevDock();
        QCOMPARE(workspace.activeDock(), third);
        QCOMPARE(workspace.activeTab(), workspace.page("c"));

        QStringList visited;
        for (int i = 0; i < 3; ++i) {
            workspace.nextTab();
            visited.append(workspace.activeTab()->objectName());
        }
        QCOMPARE(visited, QStringList({"a", "b", "c"}));
        workspace.prevTab();
        QCOMPARE(workspace.activeTab(), workspace.page("b"));
        SANE(workspace);
    }

    void findsPanes() {
        Workspace workspace;
        Dock* viewers = workspace.pane({"Viewer.1", "Viewer.2"}, "dock1");
        Dock* scopes = workspace.pane({"Scope.1"}, "dock2");
        DockWindow* window = workspace.addNewFloatingDock(workspace.page("Curves.1"));
        Dock* floating = window->panes().first();
        scopes->paneIDs() << "Histogram.1";

        QCOMPARE(workspace.docks(), QList<Dock*>({viewers, scopes, floating}));
        QCOMPARE(workspace.findDockByName("Viewer.2", true, false), viewers);
        QCOMPARE(workspace.findDockByName("Curves.1", true, false), floating);
        QCOMPARE(workspace.findDockByName("dock2", true, false), scopes);
        QCOMPARE(workspace.findDockByName("Scope.7", true, false), nullptr);
        QCOMPARE(workspace.findDockByName("Scope.7", false, false), scopes);
        QCOMPARE(workspace.findDockByName("Histogram.7", false, true), scopes);
        QCOMPARE(workspace.findDockByName("Histogram.7", true, true), nullptr);
        QCOMPARE(workspace.findDockByName("Histogram.1", true, true), scopes);
        QCOMPARE(workspace.findDockByName(QString(), false, true), nullptr);
        QCOMPARE(workspace.getDocksWithPrefix("Viewer."), QList<Dock*>({viewers}));
    }

    void findsThePaneUnderAPoint() {
        Workspace workspace;
        Dock* main = workspace.pane({"a"});
        show(workspace);
        const QPoint inside = main->mapToGlobal(main->rect().center());
        QCOMPARE(workspace.findDockAt(inside), main);
        QCOMPARE(workspace.findDockAt(QPoint(-5000, 0)), nullptr);

        DockWindow* window = workspace.addNewFloatingDock(workspace.page("b"));
        window->setGeometry(QRect(inside - QPoint(50, 50), QSize(100, 100)));
        settle();
        QCOMPARE(workspace.findDockAt(inside), window->panes().first());
        window->hide();
        QCOMPARE(workspace.findDockAt(inside), main);
    }

    void closingClosesFloatingWindows() {
        auto* workspace = new Workspace;
        workspace->setAttribute(Qt::WA_DeleteOnClose);
        workspace->pane({"a"});
        show(*workspace);
        const QPointer<DockWindow> window(workspace->addNewFloatingDock(workspace->page("b")));
        const QPointer<Workspace> alive(workspace);
        QVERIFY(workspace->close());
        QVERIFY(workspace->floatingWindows().isEmpty());
        settle();
        QVERIFY(!window);
        QVERIFY(!alive);
    }

    void outlivedByPanesAndWindows() {
        auto workspace = std::make_unique<Workspace>();
        std::unique_ptr<Dock> loose(workspace->createDock());
        Page page("p");
        loose->addWidget(&page, true, false);
        std::unique_ptr<DockWindow> window(workspace->addNewFloatingDock(nullptr));
        window->setParent(nullptr);
        Dock* inWindow = workspace->createDock();
        window->addWidget(inWindow);
        workspace.reset();
        QVERIFY(!loose->controller());
        QVERIFY(!window->controller());
        QVERIFY(!inWindow->controller());
        loose->floatActiveTab();
        loose->closeActiveTab();
        QVERIFY(!inWindow->split(Qt::Horizontal, true));
        loose.reset();
        window.reset();
    }

    void highlightFollowsTheFocus() {
        Workspace workspace;
        Dock* left = workspace.pane({"a"});
        workspace.pane({"b"});
        workspace.setHighlightCurrentTab(true);
        show(workspace);
        workspace.page("a")->setFocus();
        const QImage focused = left->tabBar()->grab().toImage();
        QSignalSpy activated(&workspace, &DockMainWindow::widgetActivated);
        workspace.page("b")->setFocus();
        settle();
        QCOMPARE(activated.size(), 1);
        QVERIFY(left->tabBar()->grab().toImage() != focused);
    }

    /** What dragging can do, by the pane menu. */
    void arrangesByKeyboard() {
        Workspace workspace;
        Dock* left = workspace.pane({"a", "b", "c"});
        Dock* right = workspace.pane({"x"});
        show(workspace);
        const auto choose = [](Dock* dock, const QStringList& path) {
            QMenu* menu = dock->menu();
            Q_EMIT menu->aboutToShow();
            for (const QString& text : path) {
                QAction* found = nullptr;
                const auto actions = menu->actions();
                for (QAction* action : actions) {
                    if (action->text() == text)
                        found = action;
                }
                if (!found || !found->isEnabled())
                    return false;
                if (!found->menu()) {
                    found->trigger();
                    return true;
                }
                menu = found->menu();
                Q_EMIT menu->aboutToShow();
            }
            return false;
        };
        left->setCurrentTab(0);
        QVERIFY(!choose(left, {"Move Tab", "Left in Its Pane"}));
        QVERIFY(choose(left, {"Move Tab", "Right in Its Pane"}));
        QCOMPARE(names(left), QStringList({"b", "a", "c"}));
        QVERIFY(choose(left, {"Move Tab", "x", "As Tab"}));
        QCOMPARE(names(right), QStringList({"x", "a"}));
        QVERIFY(workspace.page("a")->hasFocus());
        QVERIFY(choose(right, {"Move Tab", "To a New Pane", "On the Left"}));
        QCOMPARE(workspace.docks().size(), 3);
        QVERIFY(choose(left, {"Move Tab", "a", "Below"}));
        QCOMPARE(workspace.docks().size(), 4);
        SANE(workspace);

        right->floatActiveTab();
        const QPointer<DockWindow> window(workspace.floatingWindows().first());
        QVERIFY(choose(window->panes().first(), {"Move Tab", "a", "As Tab"}));
        settle();
        QVERIFY(!window);
        SANE(workspace);
    }
};

KXUI_TEST(DockMainWindowTest);
#include "DockMainWindowTest.moc"
