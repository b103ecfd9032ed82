#include <KxUI/kit/FloatingWindowStyle.h>
#include <KxUI/kit/FullScreen.h>
#include <KxUI/kit/SnappableWindow.h>
#include <KxUI/kit/WindowPlacement.h>

#include <support/TestRegistry.h>

#include <QWidget>
#include <QtTest>

using namespace Kestrel::UI;

class WindowHelpersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fullScreenKeepsMaximized() {
        QWidget window;
        window.setWindowState(Qt::WindowMaximized);
        FullScreen::Toggle(&window, nullptr);
        QVERIFY(FullScreen::IsOn(&window));
        FullScreen::Set(&window, true, nullptr);
        FullScreen::Toggle(&window, nullptr);
        QCOMPARE(window.windowState(), Qt::WindowStates(Qt::WindowMaximized));
        QVERIFY(!FullScreen::IsOn(nullptr));
        FullScreen::Set(nullptr, true, nullptr);
    }

    void floatingWindowsAreTools() {
        QWidget parent;
        QWidget window;
        FloatingWindowStyle::Apply(&window, &parent);
        QCOMPARE(window.windowType(), Qt::Tool);
        QCOMPARE(window.parentWidget(), &parent);
        window.setParent(nullptr);
    }

    void pullsBack_data() {
        const QRect first(0, 0, 1000, 800);
        const QRect second(1000, 0, 800, 600);
        QTest::addColumn<QRect>("window");
        QTest::addColumn<QVector<QRect>>("areas");
        QTest::addColumn<QRect>("expected");
        const QVector<QRect> both = {first, second};
        QTest::newRow("inside") << QRect(10, 10, 200, 100) << both << QRect(10, 10, 200, 100);
        QTest::newRow("half out") << QRect(-100, 10, 200, 100) << both << QRect(-100, 10, 200, 100);
        QTest::newRow("on the second")
            << QRect(1500, 0, 200, 100) << both << QRect(1500, 0, 200, 100);
        QTest::newRow("second gone")
            << QRect(1500, 0, 200, 100) << QVector<QRect>{first} << QRect(800, 0, 200, 100);
        QTest::newRow("a sliver is left")
            << QRect(-195, 10, 200, 100) << both << QRect(0, 10, 200, 100);
        QTest::newRow("too large") << QRect(5000, 5000, 3000, 3000) << both << first;
        QTest::newRow("no screens")
            << QRect(5000, 0, 10, 10) << QVector<QRect>() << QRect(5000, 0, 10, 10);
    }
    void pullsBack() {
        QFETCH(QRect, window);
        QFETCH(QVector<QRect>, areas);
        QTEST(WindowPlacement::PulledBack(window, areas), "expected");
    }

    void standsAside() {
        const QVector<QRect> areas = {QRect(0, 0, 1000, 800)};
        const QRect window(100, 100, 400, 300);
        const auto position = [&](const QRect& other, const QRect& avoid) {
            return WindowPlacement::PositionAside(window, {other}, avoid, areas);
        };
        QCOMPARE(position(QRect(0, 0, 1000, 800), QRect()), window.topLeft());
        QCOMPARE(position(QRect(110, 110, 50, 50), QRect()), QPoint(124, 124));
        const QRect avoid(300, 100, 300, 300);
        QVERIFY(!QRect(position(QRect(0, 0, 1, 1), avoid), window.size()).intersects(avoid));
        // Nothing helps: it stays.
        QCOMPARE(position(QRect(), QRect(0, 0, 1000, 800)), window.topLeft());
    }

    void snaps_data() {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<int>("distance");
        QTest::addColumn<QPoint>("to");
        QTest::newRow("screen corner") << QPoint(7, -4) << 10 << QPoint(0, 0);
        QTest::newRow("right edge") << QPoint(905, 300) << 10 << QPoint(900, 300);
        QTest::newRow("neighbour") << QPoint(606, 405) << 10 << QPoint(600, 400);
        QTest::newRow("far from all") << QPoint(300, 200) << 10 << QPoint(300, 200);
        QTest::newRow("off") << QPoint(7, -4) << 0 << QPoint(7, -4);
    }
    void snaps() {
        QFETCH(QPoint, from);
        QFETCH(int, distance);
        const QVector<QRect> screens = {QRect(0, 0, 1000, 800)};
        const QVector<QRect> neighbours = {QRect(400, 400, 200, 200)};
        QTEST(SnappableWindow::SnappedPosition(QRect(from, QSize(100, 100)), screens, neighbours,
                                               distance),
              "to");
    }
};

KXUI_TEST(WindowHelpersTest);
#include "WindowHelpersTest.moc"
