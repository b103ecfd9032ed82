#include "Workspace.h"

#include <KxUI/dock/DockGeometry_p.h>
#include <KxUI/dock/DockPlaceHolder.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/dock/DockTitleBar.h>
#include <KxUI/dock/TitleBarButton.h>

#include <support/TestRegistry.h>

#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QToolBar>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

class DockPaneTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void addsPages() {
        Workspace workspace;
        QSignalSpy added(&workspace, &DockMainWindow::widgetAdded);
        Dock* dock = workspace.pane({"a", "b"});
        QCOMPARE(names(dock), QStringList({"a", "b"}));
        QCOMPARE(added.size(), 2);

        dock->addWidget(workspace.page("b"), false, true);
        QCOMPARE(dock->count(), 2);
        QCOMPARE(dock->currentTab(), 1);
        QCOMPARE(added.size(), 2);
        dock->addWidget(workspace.page("b"), false, true);
        QCOMPARE(dock->rememberedWidgets(), QList<QWidget*>({workspace.page("b")}));

        Page unnamed{QString()};
        Page alsoUnnamed{QString()};
        dock->addWidget(&unnamed, true, false);
        dock->addWidget(&alsoUnnamed, true, false);
        QCOMPARE(dock->count(), 4);
        SANE(workspace);
    }

    void placeHoldersKeepPlaces() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b", "c"});
        workspace.saved();
        QVERIFY(!dock->restorePlaceHolderForWidget(std::make_unique<Page>("stranger").get()));

        Page* b = workspace.page("b");
        dock->removeWidget(b);
        b->setParent(nullptr);
        QWidget* placeHolder = dock->restorePlaceHolderForWidget(b);
        QVERIFY(qobject_cast<DockPlaceHolder*>(placeHolder));
        QCOMPARE(workspace.placeHolders().size(), 1);
        QCOMPARE(names(dock), QStringList({"a", "c", "b"}));
        dock->insertWidget(1, placeHolder);
        dock->addWidget(b, true, false);
        settle();
        QCOMPARE(names(dock), QStringList({"a", "b", "c"}));
        QCOMPARE(dock->currentWidget(), b);
        QVERIFY(workspace.placeHolders().isEmpty());
        SANE(workspace);
    }

    void insertsAndRemoves() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b", "c"});
        show(workspace);
        dock->insertWidget(0, workspace.page("d"));
        dock->insertWidget(0, workspace.page("c"));
        QCOMPARE(names(dock), QStringList({"c", "d", "a", "b"}));
        SANE(workspace);

        const QRect second = dock->tabBar()->tabRect(1);
        dock->insertWidget(second.center() + QPoint(2, 0), workspace.page("e"));
        QCOMPARE(names(dock), QStringList({"c", "d", "e", "a", "b"}));
        dock->insertWidget(QPoint(5000, 2), workspace.page("f"));
        QCOMPARE(dock->widget(5), workspace.page("f"));

        dock->setCurrentTab(2);
        dock->removeWidgetAndSetCurrentTab(workspace.page("e"), 3);
        QCOMPARE(dock->currentTab(), 3);
        dock->removeWidget(workspace.page("c"));
        QCOMPARE(dock->currentWidget(), workspace.page("b"));
        SANE(workspace);
        // The removed pages are the caller's to reparent.
        workspace.page("e")->setParent(nullptr);
        workspace.page("c")->setParent(nullptr);
    }

    void walksTabs() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b", "c"});
        dock->prevTab();
        QCOMPARE(dock->currentTab(), 2);
        dock->nextTab();
        QCOMPARE(dock->currentTab(), 0);
        dock->cycleCurrentWidget();
        dock->setCurrentWidget(nullptr);
        QCOMPARE(dock->currentTab(), 0);

        QSignalSpy activated(&workspace, &DockMainWindow::widgetActivated);
        dock->setCurrentTab(0);
        QCOMPARE(activated.size(), 1);
        dock->setCurrentTab(7);
        dock->setCurrentWidget(&workspace);
        QCOMPARE(activated.size(), 1);
    }

    void closesTabs() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b", "c", "d"});
        QSignalSpy removed(&workspace, &DockMainWindow::widgetRemoved);
        workspace.page("b")->m_refuses = true;
        dock->setCurrentTab(2);
        dock->closeInactiveTabs();
        QCOMPARE(names(dock), QStringList({"b", "c"}));
        QCOMPARE(removed.size(), 2);
        QVERIFY(!workspace.page("a")->parentWidget());
        dock->closeTab(9);
        dock->closeTab(-1);
        dock->closeActiveTab();
        QCOMPARE(names(dock), QStringList({"b"}));

        QPointer<Dock> alive(dock);
        QVERIFY(!dock->close());
        settle();
        QVERIFY(alive);
        workspace.page("b")->m_refuses = false;
        QVERIFY(dock->close());
        SANE(workspace);
        settle();
        QVERIFY(!alive);
        QVERIFY(workspace.m_pages["b"]);
        QVERIFY(workspace.docks().isEmpty());
    }

    /** A page deletes itself after its tab was closed; only then is its floating pane empty. */
    void closesWindowsThatBecomeEmpty() {
        Workspace workspace;
        auto* page = new Page("floating");
        page->setAttribute(Qt::WA_DeleteOnClose);
        const QPointer<DockWindow> window(workspace.addNewFloatingDock(page));
        window->panes().first()->closeActiveTab();
        SANE(workspace);
        settle();
        settle();
        QVERIFY(!window);
        QVERIFY(workspace.floatingWindows().isEmpty());

        const QPointer<DockWindow> second(workspace.addNewFloatingDock(workspace.page("p")));
        second->panes().first()->close();
        settle();
        QVERIFY(!second);
        QVERIFY(workspace.m_pages["p"]);
    }

    void refusedPagesOutliveTheirWindow() {
        Workspace workspace;
        auto* page = new Page("stubborn");
        page->setAttribute(Qt::WA_DeleteOnClose);
        page->m_refuses = true;
        const QPointer<Page> alive(page);
        const QPointer<DockWindow> window(workspace.addNewFloatingDock(page));
        window->close();
        settle();
        QVERIFY(!window);
        QVERIFY(alive);
        QVERIFY(!alive->parentWidget());
        delete alive;
    }

    void hostsDeletePages() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b", "c"});
        dock->setCurrentTab(1);
        delete workspace.page("b");
        QCOMPARE(names(dock), QStringList({"a", "c"}));
        SANE(workspace);
        delete workspace.page("a");
        delete workspace.page("c");
        QCOMPARE(dock->count(), 0);
        SANE(workspace);
    }

    void floats() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b", "c"});
        show(workspace);
        dock->setCurrentTab(1);
        dock->floatActiveTab();
        QCOMPARE(names(dock), QStringList({"a", "c"}));
        QCOMPARE(workspace.floatingWindows().size(), 1);
        DockWindow* window = workspace.floatingWindows().first();
        QCOMPARE(window->pos(), dock->mapToGlobal(QPoint()));
        QCOMPARE(window->size(), dock->size());
        SANE(workspace);

        // Out of a floating pane of one tab, the emptied window closes.
        const QPointer<DockWindow> emptied(window);
        window->panes().first()->floatActiveTab();
        settle();
        QVERIFY(!emptied);
        QCOMPARE(workspace.floatingWindows().size(), 1);

        dock->floatDock();
        QCOMPARE(dock->count(), 0);
        QCOMPARE(names(workspace.docks().last()), QStringList({"c", "a"}));
        SANE(workspace);
    }

    void splits() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a"});
        show(workspace);
        workspace.page("a")->setFocus();
        QVERIFY(!std::make_unique<Dock>(&workspace, nullptr)->split(Qt::Horizontal, true));

        Dock* right = dock->split(Qt::Horizontal, false);
        auto* root = workspace.rootSplitter();
        QCOMPARE(root->orientation(), Qt::Horizontal);
        QCOMPARE(root->indexOf(right), 1);
        root->setStretchFactor(1, 1);
        Dock* above = right->split(Qt::Vertical, true);
        auto* branch = qobject_cast<DockSplitter*>(above->parentWidget());
        QVERIFY(branch && branch != root);
        settle();
        QCOMPARE(branch->sizePolicy().horizontalStretch(), 1);
        QCOMPARE(branch->indexOf(above), 0);
        QCOMPARE(branch->indexOf(right), 1);
        QVERIFY(qAbs(branch->sizes().at(0) - branch->sizes().at(1)) <= 1);
        Dock* third = dock->split(Qt::Horizontal, true);
        QCOMPARE(root->indexOf(third), 0);
        QVERIFY(workspace.page("a")->hasFocus());
        SANE(workspace);

        third->transposeDock();
        QCOMPARE(root->orientation(), Qt::Vertical);
        above->close();
        right->close();
        SANE(workspace);
        QCOMPARE(root->count(), 2);
        const QPointer<DockSplitter> gone(branch);
        settle();
        QVERIFY(!gone);
    }

    void expandsAndGoesBack() {
        Workspace workspace;
        Dock* left = workspace.pane({"a"});
        show(workspace);
        Dock* right = left->split(Qt::Horizontal, false);
        Dock* below = right->split(Qt::Vertical, false);
        auto* root = workspace.rootSplitter();
        const QList<int> sizes = root->sizes();
        below->setExpanded(true);
        right->setExpanded(true);
        QCOMPARE(root->sizes().at(0), 0);
        QCOMPARE(root->realSizes(), sizes);
        right->setExpanded(false);
        QCOMPARE(root->sizes(), sizes);
        root->expand(-1);
        root->expand(99);
        QCOMPARE(root->sizes(), sizes);
        QVERIFY(below->isExpanded());
    }

    void layOut_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<bool>("menu");
        QTest::addColumn<bool>("rightToLeft");
        QTest::addColumn<QRect>("strip");
        QTest::addColumn<QRect>("closeButton");
        QTest::addColumn<bool>("buttonsFit");
        QTest::newRow("roomy") << 300 << true << false << QRect(22, 0, 120, 24)
                               << QRect(278, 2, 20, 20) << true;
        QTest::newRow("mirrored") << 300 << false << true << QRect(0, 0, 120, 24)
                                  << QRect(2, 2, 20, 20) << true;
        QTest::newRow("crowded") << 100 << false << false << QRect(0, 0, 57, 24)
                                 << QRect(78, 2, 20, 20) << true;
        QTest::newRow("too narrow")
            << 62 << true << false << QRect(22, 0, 0, 24) << QRect(40, 2, 20, 20) << false;
    }
    void layOut() {
        QFETCH(int, width);
        QFETCH(bool, menu);
        QFETCH(bool, rightToLeft);
        PaneMetrics metrics;
        metrics.pane = QSize(width, 200);
        metrics.hasMenu = menu;
        metrics.hasCloseButton = true;
        metrics.closeHint = metrics.floatHint = QSize(20, 20);
        metrics.margin = 1;
        metrics.lineSpacing = 14;
        metrics.stripHint = QSize(120, 22);
        metrics.rightToLeft = rightToLeft;
        const PaneLayout layout = layOutPane(metrics);
        QTEST(layout.strip, "strip");
        QTEST(layout.closeButton, "closeButton");
        QTEST(layout.buttonsFit, "buttonsFit");
        QCOMPARE(layout.stack, QRect(0, 24, width, 176));
        metrics.titleVisible = false;
        QCOMPARE(layOutPane(metrics).stack, QRect(0, 3, width, 197));
    }

    void titlesHideAndReveal() {
        Workspace workspace;
        workspace.setHideSingleTabs(true);
        Dock* dock = workspace.pane({"a"});
        show(workspace);
        QVERIFY(!dock->titleVisible());
        QVERIFY(!dock->tabBar()->isVisible());
        QCOMPARE(dock->stack()->geometry(), dock->rect().adjusted(0, 3, 0, 0));
        dock->addWidget(workspace.page("b"), false, false);
        settle();
        QVERIFY(dock->titleVisible());
        QVERIFY(dock->stack()->y() > 10);

        dock->setTitleVisible(false);
        auto* titleBar = dock->findChild<DockTitleBar*>();
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(titleBar, &enter);
        QTRY_VERIFY(dock->titleVisible());
        QVERIFY(titleBar->isRevealed());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(titleBar, &leave);
        QVERIFY(!dock->titleVisible());
    }

    void toolBarsLimitTheirPane() {
        Workspace workspace;
        Dock* dock = workspace.pane({});
        show(workspace);
        QToolBar bar;
        bar.setFixedHeight(40);
        dock->addWidget(&bar, true, false);
        settle();
        QCOMPARE(dock->maximumHeight(), dock->stack()->layout()->maximumSize().height());
        QVERIFY(dock->maximumHeight() < QWIDGETSIZE_MAX);
        dock->removeWidget(&bar);
        bar.setParent(nullptr);
        settle();
        QCOMPARE(dock->maximumHeight(), QWIDGETSIZE_MAX);
    }

    void menusAndButtons() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a"});
        QStringList texts;
        const auto actions = dock->menu()->actions();
        for (const QAction* action : actions)
            texts.append(action->text());
        const QStringList stated = {
            "Split Vertical", "Split Horizontal", "",         "Float Pane", "Close Pane",
            "Float Tab",      "Close Tab",        "Solo Tab", "Show Tabs",  ""};
        QCOMPARE(texts.mid(0, stated.size()), stated);
        actions.at(8)->trigger();
        QVERIFY(!dock->titleVisible());
        QCOMPARE(dock->findChildren<TitleBarButton*>().size(), 3);

        workspace.setTabsAreClosable(true);
        workspace.setHasPanelMenu(false);
        Dock* plain = workspace.pane({"b"});
        QVERIFY(plain->findChildren<TitleBarButton*>().isEmpty());
        QVERIFY(plain->tabBar()->tabsClosable());
        Q_EMIT plain->tabBar()->tabCloseRequested(0);
        QCOMPARE(plain->count(), 0);
    }

    void theMouseNeverTakesTheFocusFromText() {
        Workspace workspace;
        Dock* left = workspace.pane({"a"});
        Dock* right = workspace.pane({"b"});
        show(workspace);
        QLineEdit edit(&workspace);
        edit.show();
        workspace.page("a")->setFocus();
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(right, &enter);
        QVERIFY(workspace.page("b")->hasFocus());
        edit.setFocus();
        QCoreApplication::sendEvent(left, &enter);
        QVERIFY(edit.hasFocus());
    }
};

KXUI_TEST(DockPaneTest);
#include "DockPaneTest.moc"
