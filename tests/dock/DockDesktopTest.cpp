#include "Workspace.h"

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockTabBar.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QProcess>
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

} // namespace

/** Real windows, a real window manager and a real pointer. */
class DockDesktopTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drops_data() {
        const Columns<double, double, int> row("x", "y", "zone");
        row("as a tab", 0.5, 0.5, 0);
        row("left", 0.02, 0.5, 1);
        row("right", 0.98, 0.5, 2);
        row("above", 0.5, 0.02, 4);
        row("below", 0.5, 0.98, 8);
    }
    void drops() {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(int, zone);
        Workspace workspace;
        workspace.setSplitPanelsByDragging(true);
        workspace.move(100, 100);
        Dock* left = workspace.pane({"a", "b"});
        show(workspace);
        Dock* right = left->split(Qt::Horizontal, false);
        right->addWidget(workspace.page("x"), true, false);
        QTest::qWait(200);

        dragTo(tabOf(left, 1), inside(right, x, y));
        QVERIFY(DockDragSession::instance().isActive());
        QCOMPARE(int(DockDragSession::instance().zone()), zone);
        QCOMPARE(DockDragSession::instance().target(), right);
        SANE(workspace);
        xdotool({"mouseup", "1"});
        QTRY_VERIFY(!DockDragSession::instance().isActive());
        SANE(workspace);
        QCOMPARE(workspace.docks().size(), zone == 0 ? 2 : 3);
        QVERIFY(Dock::dockForWidget(workspace.page("b")) != left);
        QVERIFY(workspace.page("b")->isVisible());
    }

    void tearsOffAndDocksAgain() {
        Workspace workspace;
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
