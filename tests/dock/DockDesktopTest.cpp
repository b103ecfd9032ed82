#include "Workspace.h"

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockTabBar.h>

#include <support/TestRegistry.h>

#include <QStackedWidget>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

namespace {

/** Runs xdotool while the event loop turns, as a user at the mouse would. */
void xdotool(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 10000);
    QCOMPARE(process.exitCode(), 0);
    QTest::qWait(30);
}

void moveTo(const QPoint& at) {
    xdotool({"mousemove", QString::number(at.x()), QString::number(at.y())});
}

void dragTo(const QPoint& from, const QPoint& to) {
    moveTo(from);
    xdotool({"mousedown", "1"});
    // In steps: a tab is taken hold of first, leaves its strip then, and travels.
    for (const double way : {0.0, 0.3, 0.7, 1.0})
        moveTo(from + QPoint(0, 30) + (to - from - QPoint(0, 30)) * way);
    moveTo(from + (to - from) * 0.9);
    moveTo(to);
}

QPoint tabOf(Dock* dock, int index) {
    return dock->tabBar()->mapToGlobal(dock->tabBar()->tabRect(index).center());
}

QPoint inside(const Dock* dock, double x, double y) {
    const QStackedWidget* stack = dock->stack();
    return stack->mapToGlobal(QPoint(int(stack->width() * x), int(stack->height() * y)));
}

/** The visible ones of these windows, as they lie on one another, the lowest first. */
QStringList stacked(const QHash<QString, QWidget*>& windows) {
    QProcess process;
    process.start("xprop", {"-root", "-notype", "_NET_CLIENT_LIST_STACKING"});
    process.waitForFinished();
    QStringList result;
    const QStringList ids =
        QString::fromLatin1(process.readAll().trimmed()).section('#', 1).split(", ");
    for (const QString& id : ids) {
        for (auto window = windows.begin(); window != windows.end(); ++window) {
            if (window.value()->isVisible() &&
                window.value()->winId() == id.toULongLong(nullptr, 0))
                result.append(window.key());
        }
    }
    return result;
}

} // namespace

/** Real windows, a real window manager and a real pointer. */
class DockDesktopTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tearsOffAndDocksAgain() {
        Workspace workspace;
        workspace.setSplitPanelsByDragging(true);
        workspace.move(100, 100);
        workspace.resize(500, 400);
        Dock* dock = workspace.pane({"a", "b"});
        show(workspace);
        QTest::qWait(200);
        dragTo(tabOf(dock, 1), QPoint(900, 700));
        xdotool({"mouseup", "1"});
        QTRY_COMPARE(workspace.floatingWindows().size(), 1);
        const QPointer<DockWindow> window(workspace.floatingWindows().first());
        QTRY_VERIFY(window->isVisible());
        QTest::qWait(200);
        SANE(workspace);

        dragTo(tabOf(window->panes().first(), 0), inside(dock, 0.5, 0.5));
        xdotool({"mouseup", "1"});
        QTRY_VERIFY(!window);
        QCOMPARE(names(dock).size(), 2);
        QCOMPARE(dock->currentWidget(), workspace.page("b"));
        SANE(workspace);

        // To an edge of its own pane, which the sign for the place lies over.
        dragTo(tabOf(dock, 1), inside(dock, 0.98, 0.5));
        QCOMPARE(int(DockDragSession::instance().zone()), int(DropRight));
        QCOMPARE(DockDragSession::instance().target(), dock);
        SANE(workspace);
        xdotool({"mouseup", "1"});
        QTRY_VERIFY(!DockDragSession::instance().isActive());
        SANE(workspace);
        QCOMPARE(workspace.docks().size(), 2);
        QVERIFY(workspace.page("b")->isVisible());
    }

    void pressingEscapePutsThePageBack() {
        Workspace workspace;
        workspace.move(100, 100);
        Dock* dock = workspace.pane({"a", "b"});
        show(workspace);
        QTest::qWait(200);
        dragTo(tabOf(dock, 0), QPoint(700, 500));
        QVERIFY(DockDragSession::instance().isActive());
        xdotool({"key", "Escape"});
        QTRY_VERIFY(!DockDragSession::instance().isActive());
        xdotool({"mouseup", "1"});
        QCOMPARE(names(dock), QStringList({"a", "b"}));
        QVERIFY(workspace.floatingWindows().isEmpty());
    }

    // At the next start of a program: everything comes back before its main window is shown.
    void windowsComeBackAsTheyLay() {
        QByteArray layout;
        const auto windows = [](Workspace& workspace) {
            QHash<QString, QWidget*> all{{"main", &workspace}};
            const auto floating = workspace.floatingWindows();
            for (DockWindow* window : floating)
                all.insert(names(window->panes().first()).first(), window);
            return all;
        };
        const QStringList order{"main", "b", "a", "c"};
        {
            Workspace workspace;
            workspace.setGeometry(150, 120, 700, 500);
            workspace.pane({"x"});
            show(workspace);
            QTest::qWait(200);
            workspace.showMaximized();
            int step = 0;
            for (const char* name : {"a", "b", "c"}) {
                DockWindow* window = workspace.addNewFloatingDock(workspace.page(name));
                window->resize(300, 200);
                window->move(100 + 350 * step, 200);
                ++step;
            }
            QTest::qWait(300);
            for (const char* name : {"b", "a", "c"}) {
                const QPoint corner = windows(workspace)[name]->frameGeometry().topLeft();
                xdotool({"mousemove", QString::number(corner.x() + 30),
                         QString::number(corner.y() + 8), "click", "1"});
                QTest::qWait(100);
            }
            QTRY_COMPARE(stacked(windows(workspace)), order);
            layout = workspace.saved();
        }
        for (int start = 0; start < 2; ++start) {
            Workspace workspace;
            QVERIFY(workspace.wholeRestored(layout));
            workspace.show();
            QVERIFY(QTest::qWaitForWindowExposed(&workspace));
            QTest::qWait(300);
            QTRY_COMPARE(stacked(windows(workspace)), order);
            QVERIFY(workspace.isMaximized());
            layout = workspace.saved();
            if (start == 0)
                continue;
            workspace.showNormal();
            QTest::qWait(300);
            QTRY_COMPARE(workspace.geometry(), QRect(150, 120, 700, 500));
        }
    }

    void framedWindowsDoNotDrift() {
        Workspace workspace;
        workspace.setGeometry(150, 120, 700, 500);
        workspace.pane({"a"});
        show(workspace);
        DockWindow* floating = workspace.addNewFloatingDock(workspace.page("b"));
        floating->move(300, 260);
        floating->resize(320, 240);
        QTest::qWait(300);
        QVERIFY(workspace.frameGeometry() != workspace.geometry());
        const QByteArray first = workspace.saved();
        for (int i = 0; i < 6; ++i) {
            const QByteArray layout = workspace.saved();
            QVERIFY(i % 2 ? workspace.restored(layout) : workspace.wholeRestored(layout));
            QTest::qWait(300);
            QByteArray now = workspace.saved();
            QByteArray before = first;
            QCOMPARE(QString(now.replace(" focus=\"true\"", "")),
                     QString(before.replace(" focus=\"true\"", "")));
        }
    }
};

KXUI_TEST(DockDesktopTest);
#include "DockDesktopTest.moc"
