#include "Mouse.h"
#include "Workspace.h"

#include <KxUI/dock/DockGeometry_p.h>
#include <KxUI/dock/DockPlaceHolder.h>
#include <KxUI/dock/DockTabBar.h>
#include <KxUI/dock/DockTitleBar.h>
#include <KxUI/dock/DockWindow.h>
#include <KxUI/dock/HoverWidget.h>
#include <KxUI/dock/TitleBarButton.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QtWidgets>

#include <functional>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

namespace {

/** A pane with pages a and b beside one with x; something happens to a. */
struct Leaving {
    Workspace workspace;
    Dock* left = workspace.pane({"a", "b"});
    Dock* right = nullptr;
    Page* page = workspace.page("a");
};
using Way = std::function<void(Leaving&)>;

} // namespace

Q_DECLARE_METATYPE(Way)

class DockPaneTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void addsPages() {
        Workspace workspace;
        QSignalSpy added(&workspace, &DockMainWindow::widgetAdded);
        Dock* dock = workspace.pane({"a", "b"});
        dock->addWidget(workspace.page("b"), false, true);
        dock->addWidget(workspace.page("b"), false, true);
        QCOMPARE(names(dock), QStringList({"a", "b"}));
        QCOMPARE(dock->currentTab(), 1);
        QCOMPARE(added.size(), 2);
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
        const QRect second = dock->tabBar()->tabRect(1);
        dock->insertWidget(second.center() + QPoint(2, 0), workspace.page("e"));
        dock->insertWidget(QPoint(5000, 2), workspace.page("f"));
        QCOMPARE(names(dock), QStringList({"a", "b", "e", "c", "f"}));

        dock->setCurrentTab(2);
        dock->removeWidgetAndSetCurrentTab(workspace.page("e"), 3);
        QCOMPARE(dock->currentTab(), 3);
        SANE(workspace);
        workspace.page("e")->setParent(nullptr); // the caller's again
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

    void floats() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b", "c"});
        show(workspace);
        dock->setCurrentTab(1);
        dock->floatActiveTab();
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
        QCOMPARE(names(workspace.docks().last()), QStringList({"c", "a"}));
        SANE(workspace);
    }

    void aPageLeaves_data() {
        const Columns<Way> row("way");
        row("removed", [](Leaving& s) { s.left->removeWidget(s.page); });
        row("closed", [](Leaving& s) { s.left->closeTab(0); });
        row("closed and deleted", [](Leaving& s) {
            s.page->setAttribute(Qt::WA_DeleteOnClose);
            s.left->closeTab(0);
        });
        row("deleted", [](Leaving& s) { delete s.page; });
        row("floated", [](Leaving& s) { s.left->floatActiveTab(); });
        row("added elsewhere", [](Leaving& s) { s.right->addWidget(s.page, true, false); });
        row("inserted elsewhere", [](Leaving& s) { s.right->insertWidget(0, s.page); });
        row("given a parent", [](Leaving& s) { s.page->setParent(&s.workspace); });
        row("off the stack", [](Leaving& s) { s.left->stack()->removeWidget(s.page); });
        row("moved by the menu", [](Leaving& s) {
            auto* arrange = s.left->menu()->actions().last()->menu();
            Q_EMIT s.left->menu()->aboutToShow();
            Q_EMIT arrange->aboutToShow();
            arrange->actions().last()->menu()->actions().first()->trigger();
        });
        row("dragged", [](Leaving& s) {
            Mouse mouse(s.left);
            mouse.tearOff(0);
            mouse.release(s.right->stack()->mapToGlobal(QPoint(150, 150)));
        });
    }
    void aPageLeaves() {
        QFETCH(Way, way);
        Leaving scene;
        scene.workspace.setHideSingleTabs(true);
        show(scene.workspace);
        scene.right = scene.left->split(Qt::Horizontal, false);
        scene.right->addWidget(scene.workspace.page("x"), true, false);
        settle();
        QWidget* page = scene.page;
        QSignalSpy removed(&scene.workspace, &DockMainWindow::widgetRemoved);
        way(scene);
        settle();
        QCOMPARE(removed.size(), 1);
        QCOMPARE(removed.first().at(0).value<Dock*>(), scene.left);
        QCOMPARE(*static_cast<QWidget* const*>(removed.first().at(1).constData()), page);
        QCOMPARE(names(scene.left), QStringList({"b"}));
        QVERIFY(!scene.left->titleVisible());
        SANE(scene.workspace);
        if (scene.workspace.m_pages.value("a"))
            scene.page->setParent(nullptr);
    }

    void anExpandedPaneGivesTheRoomBack_data() {
        const Columns<Way> row("way");
        row("closed", [](Leaving& s) { s.left->close(); });
        row("deleted", [](Leaving& s) { delete s.left; });
        row("floated", [](Leaving& s) { s.left->floatDock(); });
        row("its tab floated", [](Leaving& s) { s.left->floatActiveTab(); });
        row("its tab closed", [](Leaving& s) { s.left->closeActiveTab(); });
        row("dragged away", [](Leaving& s) {
            Mouse mouse(s.left);
            mouse.tearOff(0);
            mouse.release(QPoint(-900, -900));
        });
    }
    void anExpandedPaneGivesTheRoomBack() {
        QFETCH(Way, way);
        Leaving scene;
        show(scene.workspace);
        scene.left->removeWidget(scene.page);
        scene.page->setParent(nullptr);
        scene.right = scene.left->split(Qt::Horizontal, false);
        scene.right->split(Qt::Vertical, false);
        scene.left->split(Qt::Vertical, false);
        settle();
        const QList<int> sizes = scene.workspace.rootSplitter()->sizes();
        scene.left->setExpanded(true);
        way(scene);
        settle();
        QCOMPARE(scene.workspace.rootSplitter()->sizes(), sizes);
    }

    void theFocusGoesToTheNextPage() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b"});
        Dock* other = workspace.pane({"c"});
        show(workspace);
        workspace.page("a")->setAttribute(Qt::WA_DeleteOnClose);
        workspace.page("a")->setFocus();
        dock->closeActiveTab();
        settle();
        QVERIFY(workspace.page("b")->hasFocus());
        // The walk passes over what cannot take it.
        Dock* last = workspace.pane({"d"});
        settle();
        workspace.page("c")->setEnabled(false);
        workspace.nextDock();
        QCOMPARE(workspace.activeDock(), last);
        workspace.page("c")->setEnabled(true);
        other->hide();
        workspace.prevDock();
        QCOMPARE(workspace.activeDock(), dock);
    }

    void propertiesTell() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a", "b"});
        const auto changes = [](QObject* object, const char* name, const QVariant& value) {
            const QMetaObject* meta = object->metaObject();
            const QMetaProperty property = meta->property(meta->indexOfProperty(name));
            QSignalSpy spy(object, property.notifySignal());
            return object->setProperty(name, value) && object->setProperty(name, value) &&
                   property.read(object) == value && spy.size() == 1;
        };
        QVERIFY(changes(dock, "titleVisible", false));
        QVERIFY(changes(dock, "expanded", true));
        QVERIFY(changes(dock, "currentTab", 1));
        for (const char* option :
             {"hideSingleTabs", "splitPanelsByDragging", "highlightCurrentTab", "tabsAreClosable"})
            QVERIFY2(changes(&workspace, option, true), option);
        QVERIFY(changes(&workspace, "hasPanelMenu", false));
        QVERIFY(changes(&workspace, "focusPage", "a"));
        QSignalSpy tab(dock, &Dock::currentTabChanged);
        dock->closeTab(0);
        QCOMPARE(tab.size(), 1); // the same page at another index
    }

    /** As Designer makes them. */
    void partsStandAlone() {
        Workspace workspace;
        QCOMPARE(Dock(&workspace).controller(), &workspace);
        QCOMPARE(DockWindow(workspace.rootSplitter()).controller(), &workspace);
        DockTabBar strip;
        strip.addTab("x");
        show(strip);
        const QPoint at = strip.tabRect(0).center();
        QTest::mousePress(&strip, Qt::LeftButton, {}, at);
        QTest::mouseMove(&strip, at + QPoint(0, 200));
        QTest::mouseRelease(&strip, Qt::LeftButton, {}, at);
        QWidget host;
        for (QWidget* part : std::initializer_list<QWidget*>{
                 new Dock(&host), new DockTitleBar(&host), new TitleBarButton(&host),
                 new DockSplitter(&host), new DockTabBar(&host), new HoverWidget(&host)}) {
            part->resize(100, 30);
            QVERIFY(!part->grab().isNull());
        }
    }

    /** What null does is nothing, and a warning neither. */
    void nothingIsNoPage() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a"});
        QSignalSpy added(&workspace, &DockMainWindow::widgetAdded);
        dock->addWidget(nullptr, true, true);
        dock->insertWidget(-1, nullptr);
        dock->insertWidget(QPoint(), nullptr);
        dock->removeWidget(nullptr);
        dock->removeWidgetAndSetCurrentTab(nullptr, 0);
        dock->floatWidgetAt(nullptr, QPoint());
        QVERIFY(!dock->restorePlaceHolderForWidget(nullptr));
        QVERIFY(!Dock::dockForWidget(nullptr) && Dock::isTopLevel(nullptr));
        workspace.addWidget(nullptr);
        workspace.setRootSplitter(nullptr);
        workspace.setFloatingWindows({nullptr});
        QVERIFY(!workspace.saveLayout(nullptr, nullptr));
        QVERIFY(!DockMainWindow::IsLayoutValid(nullptr));
        QBuffer closed;
        for (QIODevice* device : {static_cast<QBuffer*>(nullptr), &closed}) {
            DockLayoutError error;
            QVERIFY(!workspace.restoreWholeLayout(device, false, &error));
            QCOMPARE(error.reason, QString("There is no device that is open for reading."));
        }
        QVERIFY(!workspace.saveLayout(&closed, nullptr));
        QCOMPARE(added.size(), 0);
        QCOMPARE(names(dock), QStringList({"a"}));
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
        root->setStretchFactor(1, 1);
        Dock* above = right->split(Qt::Vertical, true);
        auto* branch = qobject_cast<DockSplitter*>(above->parentWidget());
        QVERIFY(branch && branch != root);
        settle();
        QCOMPARE(branch->sizePolicy().horizontalStretch(), 1);
        QVERIFY(qAbs(branch->sizes().at(0) - branch->sizes().at(1)) <= 1);
        Dock* third = dock->split(Qt::Horizontal, true);
        QVERIFY(workspace.page("a")->hasFocus());
        SANE(workspace);

        third->transposeDock();
        QCOMPARE(root->orientation(), Qt::Vertical);
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

    void layOut() {
        PaneMetrics metrics;
        metrics.hasCloseButton = true;
        metrics.closeHint = metrics.floatHint = QSize(20, 20);
        metrics.margin = 1;
        metrics.lineSpacing = 14;
        metrics.stripHint = QSize(120, 22);
        const auto layout = [&metrics](int width, bool menu, bool rightToLeft) {
            metrics.pane = QSize(width, 200);
            metrics.hasMenu = menu;
            metrics.rightToLeft = rightToLeft;
            return layOutPane(metrics);
        };
        QCOMPARE(layout(300, true, false).stack, QRect(0, 24, 300, 176));
        QCOMPARE(layout(300, true, false).strip, QRect(22, 0, 120, 24));
        QCOMPARE(layout(300, true, false).closeButton, QRect(278, 2, 20, 20));
        QCOMPARE(layout(300, false, true).strip, QRect(0, 0, 120, 24));
        QCOMPARE(layout(300, false, true).closeButton, QRect(2, 2, 20, 20));
        QCOMPARE(layout(100, false, false).strip, QRect(0, 0, 57, 24)); // crowded
        QVERIFY(layout(100, false, false).buttonsFit);
        QCOMPARE(layout(62, true, false).strip, QRect(22, 0, 0, 24));
        QVERIFY(!layout(62, true, false).buttonsFit);
        metrics.titleVisible = false;
        QCOMPARE(layout(300, true, false).stack, QRect(0, 3, 300, 197));
    }

    void titlesHideAndReveal() {
        Workspace workspace;
        workspace.setHideSingleTabs(true);
        Dock* dock = workspace.pane({"a"});
        show(workspace);
        QVERIFY(!dock->tabBar()->isVisible());
        QCOMPARE(dock->stack()->geometry(), dock->rect().adjusted(0, 3, 0, 0));
        dock->addWidget(workspace.page("b"), false, false);
        settle();
        QVERIFY(dock->titleVisible());

        dock->setTitleVisible(false);
        auto* titleBar = dock->findChild<DockTitleBar*>();
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(titleBar, &enter);
        QTRY_VERIFY(dock->titleVisible());
        QVERIFY(titleBar->isRevealed());
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(titleBar, &leave);
        QVERIFY(!dock->titleVisible());

        // One that is due meanwhile stays.
        dock->closeTab(1);
        QVERIFY(!dock->titleVisible());
        QCoreApplication::sendEvent(titleBar, &enter);
        QTRY_VERIFY(dock->titleVisible());
        QVERIFY(workspace.saved().contains("hideTitles"));
        dock->addWidget(workspace.page("b"), false, false);
        QCoreApplication::sendEvent(titleBar, &leave);
        QVERIFY(dock->titleVisible());
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
        const auto actions = dock->menu()->actions();
        QCOMPARE(actions.at(8)->text(), QString("Show Tabs"));
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
