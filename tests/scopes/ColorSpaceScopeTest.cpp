#include "Pictures.h"

#include <KxUI/scopes/ColorSpaceScope.h>
#include <KxUI/scopes/SolidCloud_p.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

using namespace Kestrel::UI;
using Kestrel::Test::Picture;
using Color = SolidShape::Color;

namespace {

bool near(double a, double b, double slack = 1e-4) {
    return std::fabs(a - b) <= slack;
}

bool near(const QVector3D& a, const QVector3D& b) {
    return (a - b).length() < 1e-4F;
}

void drag(QWidget& widget, Qt::KeyboardModifiers held, const QVector<QPoint>& path) {
    QTest::mousePress(&widget, Qt::LeftButton, held, path.first());
    for (const QPoint& each : path) {
        QMouseEvent event(QEvent::MouseMove, each, widget.mapToGlobal(each), Qt::NoButton,
                          Qt::LeftButton, held);
        QApplication::sendEvent(&widget, &event);
    }
    QTest::mouseRelease(&widget, Qt::LeftButton, held, path.last());
}

int behind(const SolidProjection& at, const std::vector<SolidSegment>& segments) {
    return int(std::count_if(segments.begin(), segments.end(), [&](const SolidSegment& each) {
        const QVector3D middle = (each.from + each.to) / 2;
        return !at.isFront(middle, each.outward[0]) && !at.isFront(middle, each.outward[1]);
    }));
}

int redPixels(const QImage& image) {
    int red = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            red += qRed(image.pixel(x, y)) > 170 && qGreen(image.pixel(x, y)) < 60 ? 1 : 0;
    return red;
}

} // namespace

class ColorSpaceScopeTest : public QObject {
    Q_OBJECT

private slots:
    void pointsToPixels_data() {
        // In units of half the plot from its middle, upwards; and which of both is nearer.
        const Kestrel::Test::Columns<double, double, bool, QVector3D, QPointF, bool> add(
            "yaw", "pitch", "perspective", "place", "signs", "nearer");
        add("front", 0.0, 0.0, false, QVector3D(0.5F, 0.25F, 0.1F), QPointF(2, 1), true);
        add("back", 180.0, 0.0, false, QVector3D(0.5F, 0.25F, 0.1F), QPointF(-2, 1), false);
        add("side", 90.0, 0.0, false, QVector3D(0.1F, 0.25F, -0.5F), QPointF(2, 1), true);
        add("top", 0.0, 90.0, false, QVector3D(0.5F, 0.1F, -0.25F), QPointF(2, 1), true);
        add("below", 0.0, -90.0, false, QVector3D(0.5F, 0.1F, 0.25F), QPointF(2, 1), false);
        add("perspective", 0.0, 0.0, true, QVector3D(0.5F, 0.25F, 0), QPointF(2, 1), false);
    }
    void pointsToPixels() {
        QFETCH(double, yaw);
        QFETCH(double, pitch);
        QFETCH(bool, perspective);
        QFETCH(QVector3D, place);
        QFETCH(QPointF, signs);
        QFETCH(bool, nearer);
        const SolidOrbit orbit = SolidOrbit{yaw, pitch}.normalized();
        const ScopeGeometry whole({300, 200}, {}, {}, false, 1);
        const SolidProjection at(orbit, perspective, 1, whole);
        const QPointF middle = at.toWidget({});
        QVERIFY((middle - whole.plot.center()).manhattanLength() < 1e-3);
        const QPointF shift = at.toWidget(place) - middle;
        // The same scale each way, whatever the plot's shape.
        QVERIFY(near(shift.x() / signs.x(), -shift.y() / signs.y(), 1e-2));
        QVERIFY(shift.x() * signs.x() > 0);
        QCOMPARE(at.depth(place) < at.depth({}) - 1e-6, nearer);
        QVERIFY(std::fabs(at.depth(place)) <= 1);
        // Zoomed, what is under the wheel stays there; the matrix says the same as toWidget().
        const QPointF uv = whole.fromWidget(at.toWidget(place));
        const ScopeGeometry zoomed(
            {300, 200}, {}, whole.view.zoomed(uv, 4, Qt::Horizontal | Qt::Vertical), false, 1);
        const SolidProjection closer(orbit, perspective, 1, zoomed);
        QVERIFY((closer.toWidget(place) - at.toWidget(place)).manhattanLength() < 1e-2);
        QVERIFY((zoomed.toWidget(uv) - closer.toWidget(place)).manhattanLength() < 1e-2);
    }

    void orbitsAreKept() {
        QVERIFY((SolidOrbit{540, 100}.normalized() == SolidOrbit{-180, 90}));
        QVERIFY((SolidOrbit{NAN, NAN}.normalized() == SolidOrbit{0, 0}));
        QVERIFY((SolidOrbit{-INFINITY, -INFINITY}.normalized() == SolidOrbit{0, -90}));
        const SolidOrbit turned = SolidOrbit{}.turned({10, 6});
        QVERIFY(turned.yaw < 0 && turned.pitch > 0); // what is in front follows the mouse
    }

    void placesOfColors() {
        const ScopeEncoding encoding;
        const SolidShape cube(ColorSpaceScope::RgbCube, encoding);
        QVERIFY(near(cube.place({1, 0, 0.25F}), {0.5F, -0.5F, -0.25F}));
        const SolidShape solid(ColorSpaceScope::YCbCrSolid, encoding);
        QVERIFY(near(solid.place({1, 1, 1}), {0, 0.5F, 0}));
        QVERIFY(near(solid.place({0, 0, 1}), {0.5F, 0.0722F - 0.5F, -0.045847F}));
        const SolidShape cone(ColorSpaceScope::HsvCone, encoding);
        QVERIFY(near(cone.place({0, 0, 0}), {0, -0.5F, 0}));
        QVERIFY(near(cone.place({1, 0, 0}), {0.5F, 0.5F, 0}));
        QVERIFY(near(cone.place({0.5F, 0, 0}), {0.25F, 0, 0}));
        QVERIFY(near(cone.place({2, 0, 0}), {0.5F, 1.5F, 0}));
        QVERIFY(near(cone.place({0.4F, 0.4F, 0.4F}), {0, -0.1F, 0}));
        QVERIFY(cone.place({0, 1, 0}).z() < -0.4F); // around to the back
    }

    void linesBehindTheCloud() {
        const ScopeGeometry whole({300, 300}, {}, {}, false, 1);
        const ScopeEncoding encoding;
        for (const auto space : {ColorSpaceScope::RgbCube, ColorSpaceScope::YCbCrSolid}) {
            const SolidShape shape(space, encoding);
            for (int yaw = -170; yaw < 180; yaw += 35) {
                // Of a box three edges are hidden, or four, or none but those of its back.
                const SolidProjection at({double(yaw), 24}, true, 0.9, whole);
                const int hidden = behind(at, shape.wires());
                QVERIFY2(hidden >= 3 * 16 && hidden <= 5 * 16, qPrintable(QString::number(hidden)));
            }
            QCOMPARE(behind({{0, 0}, false, 0.9, whole}, shape.wires()) > 0, true);
        }
        const SolidShape cone(ColorSpaceScope::HsvCone, encoding);
        // From above the lid hides all but the ring, from below nothing.
        QCOMPARE(behind({{20, 89}, false, 0.9, whole}, cone.wires()), 6 * 16);
        QCOMPARE(behind({{20, -89}, false, 0.9, whole}, cone.wires()), 0);
    }

    void primariesOfOthers() {
        ScopeEncoding encoding;
        for (const auto signal : {ScopeEncoding::Transfer::AsStored, ScopeEncoding::Transfer::Pq,
                                  ScopeEncoding::Transfer::Hlg}) {
            encoding.stored = signal;
            const SolidShape shape(ColorSpaceScope::RgbCube, encoding);
            const Color white = shape.converted(ColorSpaceScope::Rec709Wire, {1, 1, 1});
            const Color green = shape.converted(ColorSpaceScope::Rec709Wire, {0, 1, 0});
            const Color back = shape.converted(ColorSpaceScope::Rec2020Wire, green);
            for (std::size_t i = 0; i < 3; ++i) {
                QVERIFY(near(double(white[i]), 1, 1e-3));
                QVERIFY(near(double(back[i]), i == 1 ? 1 : 0, 0.06)); // digits of the matrices
                QVERIFY(green[i] > 0 && green[i] < 1);                // within the larger gamut
            }
            QVERIFY(shape.converted(ColorSpaceScope::Rec2020Wire, {0, 1, 0})[0] < 0);
        }
        const SolidShape display(ColorSpaceScope::RgbCube, ScopeEncoding());
        const Color red = display.converted(ColorSpaceScope::Rec709Wire, {1, 0, 0});
        QVERIFY(near(double(red[0]), std::pow(0.627404, 1 / 2.4)));
    }

    void cellsAndTheirDiscs() {
        ScopeSolid solid;
        solid.cells = 4;
        solid.range = {0, 1, 4};
        solid.counts.resize(64);
        solid.outsideCounts.resize(64);
        solid.counts[solid.index(0, 0, 3)] = 1000; // before the next in the front view
        solid.counts[solid.index(0, 0, 0)] = 3;
        solid.counts[solid.index(3, 3, 3)] = 1;
        solid.outsideCounts[solid.index(3, 0, 0)] = 7;
        const SolidShape shape(ColorSpaceScope::RgbCube, ScopeEncoding());
        const auto& luma = ScopeEncoding().matrix.luma;
        SolidRules rules;
        const auto cells = SolidCloud::cells(solid, shape, luma, rules);
        QCOMPARE(cells.size(), std::size_t(4));
        const ScopeGeometry whole({300, 300}, {}, {}, false, 1);
        const SolidProjection at({0, 0}, false, 0.9, whole);
        // A ring is a disc behind a smaller one.
        QCOMPARE(SolidCloud::points(cells, at, Qt::magenta, Qt::black).size(), std::size_t(5));
        const SolidPlaces places(cells, at);
        const int front = places.cellAt(at.toWidget(shape.place({0.125F, 0.125F, 0.9F})), 6);
        QCOMPARE(cells[std::size_t(front)].count, 1000U);
        QCOMPARE(places.cellAt(whole.plot.center(), 6), -1);
        QVERIFY(places.cellAt(whole.plot.center(), INFINITY) >= 0);
        QCOMPARE(places.cellsIn(QRectF(whole.plot.topLeft(), whole.plot.center())).size(),
                 std::size_t(0));
        QCOMPARE(places.cellsIn(QRectF(whole.plot)).size(), std::size_t(4));

        rules.least = 4;
        QCOMPARE(SolidCloud::cells(solid, shape, luma, rules).size(), std::size_t(2));
        rules.least = 1;
        rules.hasSlab = true;
        rules.lower = 0.5F;
        QCOMPARE(SolidCloud::cells(solid, shape, luma, rules).size(), std::size_t(1));
        // More is never smaller, and what is rare goes only where that is asked for.
        for (const bool logarithmic : {true, false}) {
            rules.logarithmic = logarithmic;
            for (std::uint32_t count = 1; count < 1000000; count *= 3)
                QVERIFY(SolidCloud::radius(count, 1000000, rules) <=
                        SolidCloud::radius(3 * count, 1000000, rules));
            QVERIFY(SolidCloud::radius(1, 1U << 31, rules) >= 1);
        }
        rules.singlePixels = false;
        QCOMPARE(SolidCloud::radius(1, 1U << 31, rules), 0.0F);
    }

    void hotPixelOfLargePictureIsSeen() {
        const auto counts = [](const ScopeImage& image) {
            ScopeModel model;
            ColorSpaceScope scope;
            scope.setModel(&model);
            scope.setGamutWires({});
            scope.resize(200, 150);
            scope.show();
            model.setImage(image);
            [&] { QTRY_VERIFY(model.isCurrent()); }();
            return redPixels(scope.grab().toImage());
        };
        const Picture picture = Picture::ofGrey(20, 3840, 2160);
        QCOMPARE(counts(picture.image), 0);
        picture.memory[picture.image.stride * 999 + 3 * 777] = 240;
        QVERIFY(counts(picture.image) >= 2);
    }

    void turnedAndRead() {
        ScopeModel model;
        const Picture picture = Picture::ofGrey(128);
        picture.memory[0] = 255;
        model.setImage(picture.image);
        ColorSpaceScope scope;
        scope.setModel(&model);
        scope.resize(300, 240);
        scope.show();
        QTRY_VERIFY(model.isCurrent());
        QCOMPARE(model.requiredParts(), ScopeModel::Parts(ScopeModel::Solid));
        QSignalSpy turned(&scope, &ColorSpaceScope::orbitChanged);
        const double home = scope.yaw();
        drag(scope, {}, {{100, 100}, {150, 100}});
        QVERIFY(scope.yaw() < home);
        QVERIFY(!scope.isEditing());
        QTest::keyClick(&scope, Qt::Key_Left, Qt::ControlModifier);
        QTest::keyClick(&scope, Qt::Key_3);
        QCOMPARE(scope.pitch(), 90.0);
        QCOMPARE(scope.projection(), ColorSpaceScope::Orthographic);
        scope.setZoom(4);
        QTest::keyClick(&scope, Qt::Key_0);
        QCOMPARE(scope.yaw(), home);
        QCOMPARE(scope.zoom(), 1.0);
        QCOMPARE(scope.projection(), ColorSpaceScope::Perspective);
        QVERIFY(turned.count() >= 4);

        // By keys, however far the next disc is; in words for those who do not see it.
        QTest::keyClick(&scope, Qt::Key_Right);
        const ScopeReadout grey = scope.readout();
        QCOMPARE(grey.count, quint64(64 * 32 - 1));
        QVERIFY(near(grey.value, 0.5, 0.02) && near(grey.third, 0.5, 0.02));
        QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&scope);
        QVERIFY(accessible);
        QCOMPARE(accessible->text(QAccessible::Value), grey.text);
        QVERIFY(grey.text.contains(QLatin1String("R 4")) ||
                grey.text.contains(QLatin1String("R 5")));
        for (const auto space : {ColorSpaceScope::YCbCrSolid, ColorSpaceScope::HsvCone}) {
            scope.setSpace(space);
            QVERIFY(scope.readout().valueText.startsWith(
                QLatin1String(space == ColorSpaceScope::HsvCone ? "H 0" : "Y ")));
        }
    }

    void selectsPixels() {
        ScopeModel model;
        const Picture picture = Picture::ofGrey(128);
        for (int i = 0; i < 5; ++i)
            picture.memory[picture.image.stride * 3 + 3 * i] = 250;
        model.setImage(picture.image);
        ColorSpaceScope scope;
        scope.setModel(&model);
        scope.resize(300, 300);
        scope.show();
        scope.showView(ColorSpaceScope::FrontView);
        QTRY_VERIFY(model.isCurrent());
        QSignalSpy finished(&scope, &ScopeView::editFinished);
        const auto chosen = [&model] {
            const auto mask = selectionMask(model.image(), model.encoding(), model.selection());
            return std::count(mask.begin(), mask.end(), 255);
        };
        // What is to the right of grey, by rectangle and by hand.
        drag(scope, Qt::ShiftModifier, {{170, 20}, {290, 280}});
        QCOMPARE(chosen(), 5);
        drag(scope, Qt::ControlModifier, {{20, 20}, {170, 20}, {170, 280}, {20, 280}, {20, 20}});
        QCOMPARE(chosen(), 64 * 32 - 5);
        QCOMPARE(finished.count(), 2);
        QTest::keyClick(&scope, Qt::Key_Right);
        QTest::keyClick(&scope, Qt::Key_Return);
        QCOMPARE(chosen(), 64 * 32 - 5);
        QTest::keyClick(&scope, Qt::Key_Escape);
        QCOMPARE(chosen(), 0);
    }

    void stateComesBack() {
        ColorSpaceScope scope;
        scope.setSpace(ColorSpaceScope::HsvCone);
        scope.setProjection(ColorSpaceScope::Orthographic);
        scope.setOrbit(-77, 12.5);
        scope.setMinimumCount(9);
        scope.setSlab(0.8, 0.2);
        scope.setGamutWires(ColorSpaceScope::Rec2020Wire);
        const QVariantMap state = scope.saveState();
        ColorSpaceScope other;
        other.restoreState(state);
        QCOMPARE(other.saveState(), state);
        QCOMPARE(other.slabLower(), 0.2);
        other.restoreState({{QStringLiteral("space"), 7}, {QStringLiteral("yaw"), "x"}});
        QCOMPARE(other.space(), ColorSpaceScope::HsvCone);
        // Who listens may delete it in the middle of a way home.
        auto* const doomed = new ColorSpaceScope;
        doomed->setOrbit(10, 10);
        connect(doomed, &ColorSpaceScope::orbitChanged, doomed, [doomed] { delete doomed; });
        const QPointer<ColorSpaceScope> gone(doomed);
        doomed->resetView();
        QVERIFY(!gone);
    }
};

KXUI_TEST(ColorSpaceScopeTest);
#include "ColorSpaceScopeTest.moc"
