#include <KxUI/picker/TrackBallDrag_p.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <cfloat>
#include <cmath>
#include <random>
#include <vector>

using namespace Kestrel::UI;

namespace {

using Factors = std::array<double, 3>;

constexpr int Shift = Qt::ShiftModifier;
constexpr int Control = Qt::ControlModifier;

/** A ball of 100 pixels around (120, 120), with a ring of 16. */
TrackBallScene sceneOf(TrackBall::Mode mode) {
    TrackBallScene scene;
    scene.geometry = TrackBallGeometry::of(QSizeF(242, 242), 0.0);
    scene.geometry.ball = 100.0;
    const bool isGain = mode == TrackBall::Gain;
    scene.scale = {mode, isGain ? 1.0 : 0.25, isGain ? 1.0 : 0.0, 0.0};
    scene.pose = scene.scale.neutralValue().pose;
    return scene;
}

QPointF at(double x, double y) {
    return QPointF(121.0 + x, 121.0 - y);
}

} // namespace

class TrackBallDragTest : public QObject {
    Q_OBJECT

private slots:
    // Three numbers are a pose, and the pose is the three numbers again.
    void posesAreExact() {
        std::mt19937 random(5);
        std::uniform_real_distribution<double> number(-3.0, 3.0);
        std::vector<Factors> triples{{0, 0, 0},      {1, 1, 1},    {0.1, 0.1, 0.1},
                                     {1, 0, 0},      {0, 0, 1e-9}, {-1, 2, 0.5},
                                     {1e-6, 1, 1e6}, {1, 1, 0},    {0.5, 2.0, 1.0}};
        for (int i = 0; i < 2000; ++i)
            triples.push_back({number(random), number(random), number(random)});
        for (const auto mode : {TrackBall::Offset, TrackBall::Gain}) {
            for (const double range : {0.25, 1.0, 3.0}) {
                const TrackBallScale scale{mode, range, 0.0, range * 0.7};
                for (const Factors& given : triples) {
                    const TrackBallPose pose = scale.poseOf(given);
                    const Factors back = scale.factorsOf(pose);
                    double largest = 0.0;
                    for (const double factor : given)
                        largest = std::max(largest, std::fabs(factor));
                    for (std::size_t i = 0; i < 3; ++i) {
                        // A power's error grows with its exponent.
                        const double scaled = pose.isOffset ? largest : given[i] * 8.0;
                        QVERIFY2(std::fabs(back[i] - given[i]) <= 2e-15 * scaled,
                                 qPrintable(QStringLiteral("%1 is %2").arg(given[i]).arg(back[i])));
                    }
                    const bool areEqual = given[0] == given[1] && given[1] == given[2];
                    QVERIFY(!areEqual || (pose.balance == QPointF() && pose.master == given[0]));
                }
            }
        }
    }

    void directions() {
        const TrackBallScale scale{TrackBall::Offset, 0.25, 0.0, 0.0};
        const QPointF red = scale.poseOf(Factors{0.25, -0.125, -0.125}).balance;
        QVERIFY(std::fabs(red.x() - 1.0) < 1e-12 && std::fabs(red.y()) < 1e-12);
        const QPointF green = scale.poseOf(Factors{-0.125, 0.25, -0.125}).balance;
        QVERIFY(green.x() < -0.49 && green.y() > 0.86);
        // Floats that an exact reset came back as are neutral.
        const TrackBallScale gain{TrackBall::Gain, 1.0, 1.0, 0.0};
        TrackBallPose pose = gain.neutralValue().pose;
        for (int i = 1; i <= 50; ++i) {
            pose.balance = QPointF(0.013 * i, -0.007 * i * i);
            QCOMPARE(gain.valueOf(gain.valueOf(pose).factors).pose.master, 1.0);
        }
        // What no float holds is limited, and the pose tells so.
        pose.balance = QPointF(1e5, 0.0);
        const TrackBallValue limited = gain.valueOf(pose);
        QCOMPARE(limited.factors.x(), FLT_MAX);
        QVERIFY(limited.pose.balance.x() < 300.0);
    }

    void drags_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QVector<QPointF>>("places");
        QTest::addColumn<QPointF>("balance");
        QTest::addColumn<double>("master");
        const auto row = [](const char* name, int modifiers, const QVector<QPointF>& places,
                            const QPointF& balance, double master = 0.0, int mode = 0,
                            int button = Qt::LeftButton) {
            QTest::newRow(name) << mode << button << modifiers << places << balance << master;
        };
        constexpr int Right = Qt::RightButton;
        constexpr int Gain = TrackBall::Gain;
        // A quarter of the ring, in steps.
        const double arc = sceneOf(TrackBall::Offset).geometry.ringMiddle() * M_PI / 2.0 * 0.01;
        row("relative", 0, {at(50, 50), at(90, 30)}, {0.1, -0.05});
        row("and back", 0, {at(0, 0), at(90, 30), at(0, 0)}, {0.0, 0.0});
        row("far out", 0, {at(0, 0), at(0, 600)}, {0.0, 1.5});
        row("coarse", Shift, {at(0, 0), at(4, 0)}, {0.1, 0.0});
        row("fine", Shift | Control, {at(0, 0), at(0, 40)}, {0.0, 0.01});
        row("axis", Control, {at(0, 0), at(5, 4), at(40, 90)}, {0.1, 0.0});
        row("other axis", Control, {at(0, 0), at(3, -4), at(40, 80)}, {0.0, 0.2});
        row("no axis yet", Control, {at(0, 0), at(3, 3)}, {0.0, 0.0});
        row("ring", 0, {at(0, 113), at(100, 100), at(113, 0)}, {}, 0.25 * arc);
        row("around", 0, {at(113, 0), at(0, -113), at(-113, 0), at(0, 113), at(113, 0)}, {}, arc);
        row("ring, back", 0, {at(0, 113), at(-80, 80), at(0, 113)}, {});
        row("ring, fine", Control, {at(0, 113), at(-113, 0)}, {}, -0.025 * arc);
        row("ring, gain", 0, {at(0, 113), at(113, 0)}, {}, std::exp2(arc), Gain);
        row("right", 0, {at(0, 0), at(50, 70)}, {}, 0.125, 0, Right);
        row("right, gain", Shift, {at(110, 110), at(120, 0)}, {}, 2.0, Gain, Right);
        row("nowhere", 0, {at(115, 115), at(0, 0)}, {});
    }
    void drags() {
        QFETCH(int, mode);
        QFETCH(int, button);
        QFETCH(int, modifiers);
        QFETCH(QVector<QPointF>, places);
        QFETCH(QPointF, balance);
        QFETCH(double, master);
        TrackBallScene scene = sceneOf(TrackBall::Mode(mode));
        TrackBallDrag drag;
        const Qt::KeyboardModifiers held(modifiers);
        drag.press(scene, {places[0], held}, Qt::MouseButton(button));
        for (int i = 1; i < places.size(); ++i)
            scene.pose = drag.move(scene, {places[i], held});
        QVERIFY(std::fabs(scene.pose.balance.x() - balance.x()) < 1e-12);
        QVERIFY(std::fabs(scene.pose.balance.y() - balance.y()) < 1e-12);
        QVERIFY2(std::fabs(scene.pose.master - master) < 1e-12,
                 qPrintable(QString::number(scene.pose.master)));
    }

    // Neither a modifier nor the host makes the ball jump.
    void goesOnFromWhereItIs() {
        TrackBallScene scene = sceneOf(TrackBall::Offset);
        TrackBallDrag drag;
        drag.press(scene, {at(0, 0), Qt::NoModifier}, Qt::LeftButton);
        scene.pose = drag.move(scene, {at(40, 0), Qt::NoModifier});
        scene.pose = drag.move(scene, {at(40, 0), Qt::ShiftModifier});
        QCOMPARE(scene.pose.balance, QPointF(0.1, 0.0));
        scene.pose = drag.move(scene, {at(44, 0), Qt::ShiftModifier});
        QCOMPARE(scene.pose.balance, QPointF(0.2, 0.0));
        scene.pose.balance = QPointF(-1.0, 0.5);
        drag.rebase(scene);
        scene.pose = drag.move(scene, {at(48, 0), Qt::ShiftModifier});
        QCOMPARE(scene.pose.balance, QPointF(-0.9, 0.5));
    }

    void parts() {
        const TrackBallGeometry places = TrackBallGeometry::of(QSizeF(140, 160), 20.0);
        QCOMPARE(places.centre, QPointF(70, 90));
        QCOMPARE(places.partAt(places.centre), TrackBallGeometry::Ball);
        QCOMPARE(places.partAt(QPointF(70, 25)), TrackBallGeometry::Ring);
        QCOMPARE(places.partAt(QPointF(3, 23)), TrackBallGeometry::Nowhere);
        const QPointF rim = places.markerOf(QPointF(0.0, -7.0));
        QCOMPARE(rim, QPointF(70, 90 + places.reach()));
        QVERIFY(!TrackBallGeometry::of(QSizeF(20, 20), 0.0).isUsable());
    }
};

KXUI_TEST(TrackBallDragTest);

#include "TrackBallDragTest.moc"
