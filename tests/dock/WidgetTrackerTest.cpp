#include <KxUI/dock/FloatingWindowRegistry.h>
#include <KxUI/dock/WidgetTracker.h>
#include <KxUI/settings/AppSettings.h>

#include <support/TestRegistry.h>

#include <QScreen>
#include <QSplitter>

using namespace Kestrel::UI;

namespace {

/** A named tool window with a named splitter, one without a name, and one named like the window. */
struct Tool {
    explicit Tool(const QString& name) {
        window.setObjectName(name);
        int i = 0;
        for (const QString& splitterName : {QString("tool.split"), QString(), name}) {
            auto* splitter = new QSplitter(&window);
            splitter->setObjectName(splitterName);
            splitter->addWidget(new QWidget);
            splitter->addWidget(new QWidget);
            splitter->setGeometry(0, i++ * 30, 304, 30);
            splitter->setSizes({100, 200});
            splitters.append(splitter);
        }
        window.setGeometry(20, 30, 310, 200);
    }
    QWidget window;
    QList<QSplitter*> splitters;
};

} // namespace

class WidgetTrackerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { AppSettings().clear(); }
    void cleanup() { AppSettings().clear(); }

    void remembersForTheSession() {
        WidgetTracker first;
        WidgetTracker tracker;
        {
            Tool other("other");
            first.registerWidget(&other.window, false);
            Tool tool("tool");
            tracker.registerWidget(&tool.window, false);
            tool.window.move(120, 130);
            tool.window.hide();
            QVERIFY(!tracker.restoreWidget(&tool.window));
            tool.window.close();
        }
        Tool again("tool");
        QVERIFY(!first.restoreWidget(&again.window));
        QVERIFY(tracker.restoreWidget(&again.window));
        QCOMPARE(again.window.pos(), QPoint(120, 130));
        QVERIFY(AppSettings().allKeys().isEmpty());
        QVERIFY(!WidgetTracker().restoreWidget(&again.window));
    }

    void remembersForTheNextSession() {
        {
            WidgetTracker tracker;
            Tool tool("tool");
            tracker.registerWidget(&tool.window, true);
            tool.splitters.at(0)->setSizes({50, 250});
            tool.window.setGeometry(60, 70, 320, 210);
            tool.window.close();
        }
        QStringList keys = AppSettings().allKeys();
        QCOMPARE(keys, QStringList({"tool", "tool.split"}));
        Tool again("tool");
        QVERIFY(WidgetTracker().restoreWidget(&again.window));
        QCOMPARE(again.window.size(), QSize(320, 210));
        QCOMPARE(again.splitters.at(0)->sizes(), QList<int>({50, 250}));
        QCOMPARE(again.splitters.at(1)->sizes(), QList<int>({100, 200}));
    }

    void forgetsWhatIsUnregisteredAndUnnamed() {
        WidgetTracker tracker;
        Tool tool("tool");
        Tool unnamed("");
        tracker.registerWidget(&unnamed.window, true);
        unnamed.window.close();
        tracker.registerWidgetRect(&unnamed.window);
        QVERIFY(!tracker.restoreWidget(&unnamed.window));
        tracker.registerWidget(&tool.window, true);
        tracker.unregisterWidget(&tool.window);
        tool.window.close();
        QVERIFY(AppSettings().allKeys().isEmpty());
    }

    void pullsBackFromScreensThatAreGone() {
        AppSettings().setValue("tool", QRect(9000, 9000, 200, 100));
        Tool tool("tool");
        QVERIFY(WidgetTracker().restoreWidget(&tool.window));
        QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(
            QRect(tool.window.pos(), tool.window.size())));
        AppSettings().setValue("tool", "garbage");
        QVERIFY(!WidgetTracker().restoreWidget(&tool.window));
    }

    void movedIsMeasuredAgainstTheShiftedRectangle() {
        const TrackedWidget tracked(QRect(0, 0, 100, 100), true);
        QVERIFY(tracked.hasMoved(QRect(0, 0, 100, 100)));
        QVERIFY(!tracked.hasMoved(QRect(10, 10, 100, 100)));
        QVERIFY(tracked.hasMoved(QRect(11, 10, 100, 100)));
    }

    void registryListsTheLiving() {
        FloatingWindowRegistry registry;
        QWidget window;
        auto* other = new QWidget;
        registry.addWindow(&window);
        registry.addWindow(&window);
        registry.addWindow(other);
        registry.addWindow(nullptr);
        QCOMPARE(registry.windows(), QList<QWidget*>({&window, other}));
        delete other;
        QCOMPARE(registry.windows(), QList<QWidget*>({&window}));
        registry.removeWindow(&window);
        QVERIFY(registry.windows().isEmpty());
    }
};

KXUI_TEST(WidgetTrackerTest);
#include "WidgetTrackerTest.moc"
