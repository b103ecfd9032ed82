#include "Mouse.h"
#include "Workspace.h"

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DropZones_p.h>
#include <KxUI/dock/HoverWidget.h>
#include <KxUI/dock/PageDrag_p.h>
#include <KxUI/dock/StripDrag_p.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QApplication>
#include <QStackedWidget>

#include <functional>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

namespace {

DockDragSession& drag() {
    return DockDragSession::instance();
}

/** Two panes side by side, the left one with tabs a, b, c and the right one with x. */
struct TwoPanes {
    explicit TwoPanes(bool splitByDragging = true) {
        workspace.setSplitPanelsByDragging(splitByDragging);
        left = workspace.pane({"a", "b", "c"});
        show(workspace);
        right = left->split(Qt::Horizontal, false);
        right->addWidget(workspace.page("x"), true, false);
        settle();
    }
    QPoint centre(const Dock* dock) const {
        return dock->stack()->mapToGlobal(dock->stack()->rect().center());
    }
    Workspace workspace;
    Dock* left;
    Dock* right;
};

/** Commands as the executor would get them. */
QString text(const PageDragCommands& commands) {
    static const char* const names[] = {"move to",   "leave", "enter", "zone",  "let go",
                                        "take back", "hide",  "dock",  "float", "put",
                                        "expand",    "tidy",  "close", "focus"};
    QStringList list;
    for (const PageDragCommand& command : commands) {
        QString line = QLatin1String(names[command.kind]);
        const QRect& place = command.place;
        if (command.kind == PageDragCommand::MovePage || command.kind == PageDragCommand::Float)
            line += QString(" %1,%2").arg(place.x()).arg(place.y());
        if (command.kind == PageDragCommand::Float)
            line += QString(" %1x%2").arg(place.width()).arg(place.height());
        if (command.kind == PageDragCommand::ShowZone || command.kind == PageDragCommand::Dock)
            line += QString(" %1").arg(command.zone);
        if (command.kind == PageDragCommand::PutBack || command.kind == PageDragCommand::Dock)
            line += QString(" at %1").arg(command.index);
        list << line;
    }
    return list.join(QLatin1String(", "));
}

/** A point of a pane of 300 x 324 with tabs of 50 each, as the machine sees it. */
PageDragScene over(const void* pane, const QPoint& point, bool splits = true) {
    PageDragScene scene;
    scene.pane = pane;
    scene.paneSize = QSize(300, 324);
    scene.stack = QRect(0, 0, 300, 300);
    scene.inStack = point - QPoint(0, 24);
    scene.tabs = {QRect(0, 0, 50, 24), QRect(50, 0, 50, 24)};
    scene.inStrip = point;
    scene.splits = splits;
    return scene;
}

PageDrag pageDrag(bool expandedAlone = false) {
    PageDrag drag;
    drag.begin({QPoint(10, 8), 2, QSize(300, 324), expandedAlone});
    return drag;
}

using Event = std::function<void(TwoPanes&, Mouse&)>;

} // namespace

Q_DECLARE_METATYPE(Event)

class DockDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stripDrags() {
        StripGeometry strip;
        strip.titleBar = QRect(-22, 0, 300, 24);
        strip.tabs = {QRect(0, 0, 50, 24), QRect(50, 0, 80, 24), QRect(130, 0, 40, 24)};
        using Command = StripDrag::Command;
        StripDrag machine;
        const auto at = [&](int x, int y, bool held = true) {
            return machine.move({x, y}, held, 10, strip);
        };
        QCOMPARE(at(300, 300).command, Command::None);
        machine.press({60, 10}, strip);
        QCOMPARE(at(70, 19).command, Command::None);
        QCOMPARE(at(70, 20).command, Command::Begin);
        QCOMPARE(machine.index(), 1);
        // Near its place, then over the left neighbour's left, then beyond the right one's right.
        QCOMPARE(at(65, 10).command, Command::None);
        QCOMPARE(machine.left(), 55);
        QCOMPARE(at(10, 10).command, Command::Reorder);
        QCOMPARE(at(10, 10).index, 0);
        QCOMPARE(at(100, 10).index, 2);
        QCOMPARE(at(99, 10).command, Command::None);
        QCOMPARE(at(60, 28).command, Command::None);
        const StripDrag::Step torn = at(60, 29);
        QCOMPARE(torn.command, Command::TearOff);
        QCOMPARE(torn.index, 1);
        QVERIFY(!machine.isDragging());

        machine.press({60, 10}, strip);
        at(60, 40);
        QCOMPARE(at(60, 60, false).command, Command::None);
        QCOMPARE(at(60, 90).command, Command::None);
        // The tabs went away under the drag.
        machine.press({150, 10}, strip);
        QCOMPARE(at(150, 40).index, 2);
        strip.tabs.removeLast();
        QCOMPARE(at(150, 90).command, Command::None);
        // What the press scrolled under the mouse is not what was pressed.
        strip.tabs = {QRect(0, 0, 50, 24), QRect(50, 0, 80, 24)};
        machine.press({45, 10}, strip);
        strip.tabs = {QRect(-20, 0, 50, 24), QRect(30, 0, 80, 24)};
        QCOMPARE(at(45, 40).index, 0);
        // A press beside the tabs drags nothing.
        machine.press({250, 10}, strip);
        QCOMPARE(at(250, 90).command, Command::None);
    }

    void pageDrags() {
        const int panes[2] = {};
        PageDrag drag;
        QCOMPARE(text(drag.move({}, {5, 5})) + text(drag.aim({})) + text(drag.end()), QString());
        drag = pageDrag();
        QCOMPARE(text(drag.move({}, {110, 208})), QString("move to 100,200"));
        for (const PageDragAlive& alive :
             {PageDragAlive{false, true, true}, PageDragAlive{true, false, true},
              PageDragAlive{true, true, false}})
            QCOMPARE(text(drag.move(alive, {5, 5})), QString("take back"));
        const auto aim = [&](const PageDragScene& scene, const char* commands, int index) {
            QCOMPARE(text(drag.aim(scene)), QString(commands));
            QCOMPARE(drag.pane(), scene.pane);
            QCOMPARE(drag.dropIndex(), index);
        };
        aim({}, "zone 0", -1);
        aim(over(&panes[0], {150, 150}), "enter, zone 0", -1);
        aim(over(&panes[0], {60, 10}), "zone 0", 1);
        aim(over(&panes[0], {90, 10}), "zone 0", 2);
        aim(over(&panes[0], {2, 150}), "zone 1", -1);
        aim(over(&panes[1], {2, 150}, false), "leave, enter, zone 0", -1);
        drag.forget(&panes[0]);
        QCOMPARE(drag.pane(), static_cast<const void*>(&panes[1]));
        drag.forget(&panes[1]);
        aim({}, "zone 0", -1); // nobody is left to leave
        aim(over(&panes[1], {150, 150}), "enter, zone 0", -1);
        QCOMPARE(text(drag.end()), QString("leave, let go"));
        QVERIFY(!drag.isActive() && !drag.pane());
    }

    void landings_data() {
        const Columns<QPoint, bool, QString> row("point", "floating", "commands");
        row("a tab", {60, 10}, false, "dock 0 at 1");
        row("the centre", {150, 150}, false, "dock 0 at -1");
        row("an edge", {2, 150}, false, "dock 1 at -1");
        row("floating", {150, 150}, true, "float 90,192 300x324, tidy, focus");
        row("over no pane", {-1, -1}, false, "float 90,192 300x324, tidy, focus");
    }
    void landings() {
        QFETCH(QPoint, point);
        QFETCH(bool, floating);
        const int pane = 0;
        PageDrag drag = pageDrag();
        drag.aim(point.x() < 0 ? PageDragScene() : over(&pane, point));
        const PageLanding landing = drag.drop({100, 200}, floating);
        drag.end();
        QTEST(text(landing.letGo({})), "commands");
        QCOMPARE(text(landing.docked(true)), QString("tidy, focus"));
        QCOMPARE(text(landing.docked(false)), QString("float 90,192 300x324, tidy, focus"));
    }

    void waysHome() {
        const auto home = [](const PageDragAlive& alive, bool expanded = false) {
            return text(pageDrag(expanded).cancel({7, 9}).letGo(alive));
        };
        QCOMPARE(home({}), QString("hide, put at 2, focus"));
        QCOMPARE(home({}, true), QString("hide, put at 2, expand, focus"));
        QCOMPARE(home({false, true, true}), QString("close, focus"));
        QCOMPARE(home({true, false, true}), QString("hide, float 7,9 300x324, focus"));
        QCOMPARE(home({true, false, false}), QString("hide, focus"));
        QCOMPARE(home({false, false, false}), QString("focus"));
    }

    void zones() {
        // The title takes 24 pixels, so the stack is that much lower than the pane.
        const auto zone = [](const QSize& pane, const QPoint& point) {
            return dropZoneAt(point, QRect(0, 0, pane.width(), pane.height() - 24), pane);
        };
        const QSize large(300, 324);
        QCOMPARE(zone(large, {150, 150}), DropCentre);
        QCOMPARE(zone(large, {2, -1}), DropCentre); // on the tabs
        QCOMPARE(zone(large, {29, 150}), DropLeft);
        QCOMPARE(zone(large, {30, 150}), DropCentre);
        QCOMPARE(zone(large, {270, 150}), DropRight);
        QCOMPARE(zone(large, {269, 150}), DropCentre);
        QCOMPARE(zone(large, {150, 29}), DropTop);
        QCOMPARE(zone(large, {150, 30}), DropCentre);
        QCOMPARE(zone(large, {150, 270}), DropBottom);
        QCOMPARE(zone(large, {3, 4}), DropLeft); // corners: the nearer edge, or above or below
        QCOMPARE(zone(large, {4, 4}), DropTop);
        QCOMPARE(zone(large, {4, 295}), DropBottom);
        const QSize narrow(60, 324);
        QCOMPARE(zone(narrow, {19, 150}), DropLeft);
        QCOMPARE(zone(narrow, {20, 150}), DropCentre);
        QCOMPARE(zone(narrow, {40, 150}), DropRight);
        const QSize tiny(3, 30);
        QCOMPARE(zone(tiny, {0, 3}), DropLeft);
        QCOMPARE(zone(tiny, {1, 5}), DropBottom);
    }

    void drops_data() {
        const Columns<int> row("zone");
        row("as a tab", DropCentre);
        row("left", DropLeft);
        row("right", DropRight);
        row("above", DropTop);
        row("below", DropBottom);
    }
    void drops() {
        QFETCH(int, zone);
        TwoPanes panes;
        const QRect stack = panes.right->stack()->rect();
        QPoint at = stack.center();
        if (zone & (DropLeft | DropRight))
            at.setX(zone == DropLeft ? 3 : stack.right() - 3);
        if (zone & (DropTop | DropBottom))
            at.setY(zone == DropTop ? 3 : stack.bottom() - 3);
        at = panes.right->stack()->mapToGlobal(at);

        Mouse mouse(panes.left);
        mouse.tearOff(1);
        Page* page = panes.workspace.page("b");
        QCOMPARE(drag().page(), page);
        QVERIFY(page->isVisible() && page->isWindow());
        QCOMPARE(page->windowType(), Qt::Tool);
        SANE(panes.workspace);
        mouse.move(at);
        QCOMPARE(drag().target(), panes.right);
        QCOMPARE(int(drag().zone()), zone);
        QCOMPARE(int(drag().hoverWidget()->zone()), zone);
        SANE(panes.workspace);
        mouse.release(at);
        settle();
        SANE(panes.workspace);
        QVERIFY(!drag().isActive());
        QVERIFY(!page->isWindow() && page->isVisible());
        Dock* pane = Dock::dockForWidget(page);
        if (zone == DropCentre) {
            QCOMPARE(names(panes.right), QStringList({"x", "b"}));
            QCOMPARE(pane->currentWidget(), page);
            return;
        }
        QCOMPARE(names(pane), QStringList({"b"}));
        const auto* splitter = qobject_cast<QSplitter*>(pane->parentWidget());
        QCOMPARE(splitter->orientation(),
                 zone & (DropLeft | DropRight) ? Qt::Horizontal : Qt::Vertical);
        const bool before = zone & (DropLeft | DropTop);
        QCOMPARE(splitter->indexOf(pane) - splitter->indexOf(panes.right), before ? -1 : 1);
    }

    void withoutSplittingEveryDropIsATab() {
        TwoPanes panes(false);
        Mouse mouse(panes.left);
        mouse.tearOff(0);
        // Left of the centre of the first tab: before it.
        const QPoint at = Mouse(panes.right).tab(0) - QPoint(3, 0);
        mouse.move(at);
        QVERIFY(!drag().hoverWidget());
        QCOMPARE(drag().dropIndex(), 0);
        mouse.release(at);
        QCOMPARE(names(panes.right), QStringList({"a", "x"}));
        mouse.tearOff(0);
        const QPoint edge = panes.right->stack()->mapToGlobal(QPoint(1, 100));
        mouse.move(edge);
        QCOMPARE(int(drag().zone()), 0);
        mouse.release(edge);
        QCOMPARE(names(panes.right), QStringList({"a", "x", "b"}));
        SANE(panes.workspace);
    }

    void floatsWithControlAndOverNothing() {
        TwoPanes panes;
        const QPoint press = panes.left->tabBar()->tabRect(2).center();
        Mouse mouse(panes.left);
        mouse.tearOff(2);
        mouse.release(panes.centre(panes.right), Qt::ControlModifier);
        QCOMPARE(panes.workspace.floatingWindows().size(), 1);
        QCOMPARE(panes.workspace.floatingWindows().first()->pos(),
                 panes.centre(panes.right) - press);
        SANE(panes.workspace);

        mouse.tearOff(1);
        const QPoint outside = panes.workspace.geometry().bottomRight() + QPoint(900, 900);
        mouse.move(outside);
        QVERIFY(!drag().target());
        mouse.release(outside);
        QCOMPARE(panes.workspace.floatingWindows().size(), 2);
        QCOMPARE(names(panes.left), QStringList({"a"}));

        mouse.press(mouse.tab(0), Qt::ControlModifier);
        QCOMPARE(panes.workspace.floatingWindows().size(), 3);
        QCOMPARE(panes.left->count(), 0);
        mouse.release(mouse.tab(0));
        settle();
        SANE(panes.workspace);

        // And back: the emptied windows close.
        while (!panes.workspace.floatingWindows().isEmpty()) {
            Mouse back(panes.workspace.floatingWindows().last()->panes().first());
            back.tearOff(0);
            // The other windows may lie above the pane.
            const auto windows = panes.workspace.floatingWindows();
            for (DockWindow* window : windows)
                window->move(3000, 3000);
            back.move(panes.centre(panes.right));
            back.release(panes.centre(panes.right));
            settle();
            SANE(panes.workspace);
        }
        QCOMPARE(panes.right->count(), 4);
    }

    void reordersInTheStrip() {
        TwoPanes panes;
        const QStringList start = names(panes.left);
        Mouse mouse(panes.left);
        const QPoint from = mouse.tab(0);
        mouse.press(from);
        mouse.move(from + QPoint(25, 0));
        QCOMPARE(names(panes.left), start);
        mouse.move(mouse.tab(1) + QPoint(20, 0));
        mouse.move(mouse.tab(1) + QPoint(21, 0));
        QCOMPARE(names(panes.left), QStringList({"b", "a", "c"}));
        mouse.move(mouse.tab(2) + QPoint(20, 0));
        QCOMPARE(names(panes.left), QStringList({"b", "c", "a"}));
        QCOMPARE(panes.left->currentWidget(), panes.workspace.page("a"));
        mouse.release(mouse.tab(2));
        QVERIFY(!drag().isActive());
        SANE(panes.workspace);
    }

    void focusTravelsWithThePage() {
        TwoPanes panes;
        // Away from the pointer: the focus follows it, too, when the dragged window goes.
        panes.workspace.move(50, 50);
        panes.left->setCurrentTab(1);
        panes.workspace.page("b")->setFocus();
        Mouse mouse(panes.left);
        mouse.tearOff(1);
        mouse.release(panes.centre(panes.right));
        settle();
        QVERIFY(panes.workspace.page("b")->hasFocus());
    }

    void ends_data() {
        const Columns<bool, Event> row("pageIsBack", "event");
        row("source destroyed", false, [](TwoPanes& p, Mouse&) { delete p.left; });
        row("source hidden", true, [](TwoPanes& p, Mouse&) { p.left->hide(); });
        row("target destroyed", false, [](TwoPanes& p, Mouse& mouse) {
            delete p.right;
            mouse.release(QPoint(-500, -500));
        });
        row("release lost", true,
            [](TwoPanes&, Mouse& mouse) { mouse.move(QPoint(10, 10), Qt::NoButton); });
        row("pressed again", true, [](TwoPanes&, Mouse& mouse) {
            mouse.press(mouse.tab(0));
            mouse.release(mouse.tab(0));
        });
        row("application deactivated", true, [](TwoPanes&, Mouse&) {
            Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
            settle();
        });
        row("Escape", true,
            [](TwoPanes& p, Mouse&) { QTest::keyClick(&p.workspace, Qt::Key_Escape); });
    }
    void ends() {
        QFETCH(Event, event);
        QFETCH(bool, pageIsBack);
        TwoPanes panes;
        const QPointer<Page> page(panes.workspace.page("b"));
        Mouse mouse(panes.left);
        mouse.tearOff(1);
        mouse.move(panes.centre(panes.right));
        QVERIFY(drag().isActive());
        event(panes, mouse);
        QVERIFY(!drag().isActive());
        QVERIFY(!drag().hoverWidget());
        SANE(panes.workspace);
        settle();
        SANE(panes.workspace);
        if (page) {
            QVERIFY(!page->isWindow());
            QVERIFY(!page->testAttribute(Qt::WA_ShowWithoutActivating));
        }
        if (pageIsBack)
            QCOMPARE(names(Dock::dockForWidget(page)), QStringList({"a", "b", "c"}));
    }

    void theWorkspaceMayDieMeanwhile() {
        auto panes = std::make_unique<TwoPanes>();
        Page* page = panes->workspace.page("b");
        panes->workspace.m_pages.remove("b");
        Mouse mouse(panes->left);
        mouse.tearOff(1);
        int told = 0;
        const auto count = [&told] { ++told; };
        connect(&panes->workspace, &DockMainWindow::widgetAdded, this, count);
        connect(&panes->workspace, &DockMainWindow::widgetActivated, this, count);
        panes.reset();
        QVERIFY(!drag().isActive());
        QCOMPARE(told, 0); // a host that is half gone
        delete page;
    }
};

KXUI_TEST(DockDragTest);
#include "DockDragTest.moc"
