#include <KxUI/kit/CollapsibleToolbar.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/FloatingWindowStyle.h>
#include <KxUI/kit/FullScreen.h>
#include <KxUI/kit/SnappableWindow.h>
#include <KxUI/kit/WindowPlacement.h>

#include <support/TestRegistry.h>

#include <QWidget>

using namespace Kestrel::UI;

class WindowHelpersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fullScreenKeepsMaximized() {
        QWidget window;
        window.setWindowState(Qt::WindowMaximized);
        FullScreen::toggle(&window, nullptr);
        QVERIFY(FullScreen::isOn(&window));
        FullScreen::set(&window, true, nullptr);
        FullScreen::toggle(&window, nullptr);
        QCOMPARE(window.windowState(), Qt::WindowStates(Qt::WindowMaximized));
        QVERIFY(!FullScreen::isOn(nullptr));
    }

    void nullDoesNothing() {
        FullScreen::set(nullptr, true, nullptr);
        FloatingWindowStyle::apply(nullptr, nullptr);
        QVERIFY(!WindowPlacement::moveAside(nullptr));
        QVERIFY(!SnappableWindow(nullptr).snap());
        CollapsibleToolbar toolbar;
        toolbar.addItem(nullptr);
        toolbar.addOverflowItem(nullptr, QStringLiteral("None"), 0);
        QCOMPARE(toolbar.sizeHint(), QSize(0, 0));
    }

    void contrast() {
        using namespace Kestrel::UI;
        const auto compare = [](const QColor& a, const QColor& b, double ratio) {
            // Colours are floats in some versions of Qt.
            QVERIFY(qAbs(contrastRatio(a, b) / ratio - 1) < 1e-6);
        };
        compare(Qt::black, Qt::white, 21.0);
        compare(Qt::white, QColor(0x76, 0x76, 0x76), 4.542224959605253);
        QCOMPARE(firstVisible({Qt::blue, Qt::yellow, Qt::white}, {Qt::black}, ReadableContrast),
                 QColor(Qt::yellow));
        QCOMPARE(firstVisible({Qt::gray, Qt::darkGray}, {Qt::gray}, ReadableContrast),
                 QColor(Qt::darkGray));
        QCOMPARE(mixed(Qt::black, Qt::white, 0.2).red(), 51);
    }

    void floatingWindowsAreTools() {
        QWidget parent;
        QWidget window;
        FloatingWindowStyle::apply(&window, &parent);
        QCOMPARE(window.windowType(), Qt::Tool);
        QCOMPARE(window.parentWidget(), &parent);
        window.setParent(nullptr);
    }

    void pullsBack() {
        const QRect first(0, 0, 1000, 800);
        const auto pulledBack = [&](const QRect& window) {
            return WindowPlacement::pulledBack(window, {first, QRect(1000, 0, 800, 600)});
        };
        QCOMPARE(pulledBack({10, 10, 200, 100}), QRect(10, 10, 200, 100));
        QCOMPARE(pulledBack({-100, 10, 200, 100}), QRect(-100, 10, 200, 100)); // half out
        QCOMPARE(pulledBack({1500, 0, 200, 100}), QRect(1500, 0, 200, 100));
        QCOMPARE(pulledBack({-195, 10, 200, 100}), QRect(0, 10, 200, 100)); // a sliver is left
        QCOMPARE(pulledBack({5000, 5000, 3000, 3000}), first);
        QCOMPARE(pulledBack({INT_MIN, INT_MIN, 200, 100}), QRect(0, 0, 200, 100));
        QCOMPARE(WindowPlacement::pulledBack({1500, 0, 200, 100}, {first}),
                 QRect(800, 0, 200, 100)); // the second screen is gone
        QCOMPARE(WindowPlacement::pulledBack({5000, 0, 10, 10}, {}), QRect(5000, 0, 10, 10));
    }

    void standsAside() {
        const QVector<QRect> areas = {QRect(0, 0, 1000, 800)};
        const QRect window(100, 100, 400, 300);
        const auto position = [&](const QRect& other, const QRect& avoid) {
            return WindowPlacement::positionAside(window, {other}, avoid, areas);
        };
        QCOMPARE(position(QRect(0, 0, 1000, 800), QRect()), window.topLeft());
        QCOMPARE(position(QRect(110, 110, 50, 50), QRect()), QPoint(124, 124));
        const QRect avoid(300, 100, 300, 300);
        QVERIFY(!QRect(position(QRect(0, 0, 1, 1), avoid), window.size()).intersects(avoid));
        // Nothing helps: it stays.
        QCOMPARE(position(QRect(), QRect(0, 0, 1000, 800)), window.topLeft());
    }

    void snaps() {
        const auto snapped = [](const QPoint& from, int distance) {
            return SnappableWindow::snappedPosition(QRect(from, QSize(100, 100)),
                                                    {QRect(0, 0, 1000, 800)},
                                                    {QRect(400, 400, 200, 200)}, distance);
        };
        QCOMPARE(snapped({7, -4}, 10), QPoint(0, 0));        // the screen's corner
        QCOMPARE(snapped({905, 300}, 10), QPoint(900, 300)); // its right edge
        QCOMPARE(snapped({606, 405}, 10), QPoint(600, 400)); // a neighbour
        QCOMPARE(snapped({300, 200}, 10), QPoint(300, 200));
        QCOMPARE(snapped({7, -4}, 0), QPoint(7, -4)); // switched off
    }
};

KXUI_TEST(WindowHelpersTest);
#include "WindowHelpersTest.moc"
