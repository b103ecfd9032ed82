#include <KxUI/kit/CallbackParameter.h>
#include <KxUI/kit/ParameterBinding.h>
#include <KxUI/picker/TrackBall.h>
#include <KxUI/picker/TrackBallGeometry_p.h>

#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QAccessible>
#include <QMetaProperty>
#include <QtTest>

#include <cmath>
#include <limits>

using namespace Kestrel::UI;
using Kestrel::Test::moveMouse;

namespace {

constexpr int Side = 200;
const QPoint Middle(Side / 2, Side / 2);
const QPoint OnRing(Side / 2, 8);

std::unique_ptr<TrackBall> makeBall(TrackBall::Mode mode = TrackBall::Gain) {
    auto ball = std::make_unique<TrackBall>();
    ball->setMode(mode);
    ball->resize(Side, Side);
    return ball;
}

Kestrel::Test::EditedWidget<TrackBall> editedBall(const QPoint& from, Qt::MouseButton button) {
    Kestrel::Test::EditedWidget<TrackBall> edited;
    edited.make = [] {
        auto ball = makeBall();
        ball->setFactors(1.1F, 0.9F, 1.3F);
        return ball;
    };
    edited.another = QVector3D(0.3F, 0.2F, 0.1F);
    edited.press = [=](TrackBall& ball) { QTest::mousePress(&ball, button, {}, from); };
    edited.move = [=](TrackBall& ball, int nth) {
        moveMouse(ball, from + QPoint(12, 5) * nth, button);
    };
    edited.release = [=](TrackBall& ball) { QTest::mouseRelease(&ball, button, {}, from); };
    edited.key = Qt::Key_Left;
    edited.notch = [](TrackBall& ball) { return Kestrel::Test::turnWheel(ball, 120); };
    edited.once = [=](TrackBall& ball) { QTest::mouseDClick(&ball, Qt::LeftButton, {}, from); };
    edited.assisted = false; // the ring is, below
    return edited;
}

} // namespace

class TrackBallTest : public QObject {
    Q_OBJECT

private slots:
    void brackets() {
        Kestrel::Test::checkEditBracket(editedBall(Middle, Qt::LeftButton));
        Kestrel::Test::checkEditBracket(editedBall(OnRing, Qt::LeftButton));
    }

    void propertiesTell() {
        auto ball = makeBall(TrackBall::Offset);
        const std::pair<const char*, QVariant> changes[] = {{"factors", QVector3D(1, 2, 3)},
                                                            {"mode", 1},
                                                            {"range", 0.5},
                                                            {"neutral", 0.25},
                                                            {"hueRotation", 2.0},
                                                            {"sensitivity", 1.0},
                                                            {"wheelPolicy", 2},
                                                            {"title", QStringLiteral("Lift")}};
        for (const auto& [name, value] : changes) {
            const QMetaObject& meta = *ball->metaObject();
            const QMetaProperty property = meta.property(meta.indexOfProperty(name));
            QSignalSpy told(ball.get(), property.notifySignal());
            for (int i = 0; i < 2; ++i) {
                QVERIFY(property.write(ball.get(), value));
                const QVariant stored = property.read(ball.get());
                if (value.userType() == QMetaType::Int) // of an enumeration
                    QCOMPARE(stored.toInt(), value.toInt());
                else
                    QCOMPARE(stored, value);
                QCOMPARE(told.count(), 1);
            }
        }
        QCOMPARE(ball->factors(), QVector3D(1, 2, 3)); // whatever the scale
        const float infinite = std::numeric_limits<float>::infinity();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        ball->setFactors(1.0F, infinite, 1.0F);
        for (const double wrong : {nan, -1.0, 1e-9, 1e9, double(infinite)}) {
            ball->setRange(wrong);
            ball->setSensitivity(wrong);
        }
        ball->setNeutral(nan);
        ball->setHueRotation(double(infinite));
        QCOMPARE(ball->factors(), QVector3D(1, 2, 3));
        QCOMPARE(ball->range(), 0.5);
        QCOMPARE(ball->sensitivity(), 1.0);
    }

    // An untouched ball is neutral in every mode; one that was set keeps what it was set to.
    void untouched() {
        TrackBall ball;
        QCOMPARE(ball.factors(), QVector3D());
        ball.setMode(TrackBall::Gain);
        QCOMPARE(ball.factors(), QVector3D(1, 1, 1));
        QCOMPARE(ball.range(), 1.0);
        ball.setFactors(1, 1, 1);
        ball.setMode(TrackBall::Offset);
        QCOMPARE(ball.factors(), QVector3D(1, 1, 1));
        QCOMPARE(ball.master(), 1.0);
    }

    // Whatever was done to it, a reset clears to the bit, and only its part.
    void resetsAreExact() {
        for (const auto mode : {TrackBall::Offset, TrackBall::Gain}) {
            auto ball = makeBall(mode);
            const auto neutral = static_cast<float>(ball->neutral());
            const QVector3D cleared(neutral, neutral, neutral);
            const auto drag = [&](const QPoint& from, const QPoint& to) {
                QTest::mousePress(ball.get(), Qt::LeftButton, {}, from);
                moveMouse(*ball, to);
                QTest::mouseRelease(ball.get(), Qt::LeftButton, {}, to);
            };
            for (int i = 1; i < 20; ++i) {
                drag(Middle, Middle + QPoint(7 * i, -3 * i));
                ball->setFactors(ball->factors()); // a host's echo
                QTest::mouseDClick(ball.get(), Qt::LeftButton, {}, Middle);
                QCOMPARE(ball->factors(), cleared);
            }
            drag(Middle, Middle + QPoint(40, 0));
            const QPointF balance = ball->balance();
            drag(OnRing, OnRing + QPoint(40, 10));
            QVERIFY(ball->master() > ball->neutral());
            QCOMPARE(ball->balance(), balance);
            QTest::mouseDClick(ball.get(), Qt::LeftButton, {}, OnRing);
            QCOMPARE(ball->master(), ball->neutral());
            QCOMPARE(ball->balance(), balance);
            QTest::keyClick(ball.get(), Qt::Key_Home);
            QCOMPARE(ball->factors(), cleared);
        }
    }

    // A gain without light is shown and moved as an offset, and is a gain again when it can be.
    void gainsOfNothing() {
        auto ball = makeBall(TrackBall::Gain);
        ball->setFactors(0.0F, 0.3F, 0.6F);
        QVERIFY(std::fabs(ball->master() - 0.3) < 1e-7);
        QTest::keyClick(ball.get(), Qt::Key_PageUp, Qt::ShiftModifier);
        QVERIFY(std::fabs(double(ball->factors().x()) - 0.5) < 1e-6);
        ball->setFactors(ball->factors() * 1.0001F);
        QVERIFY(std::fabs(ball->master() - std::cbrt(0.5 * 0.8 * 1.1)) < 1e-3);
        ball->setFactors(0.0F, -2.0F, 5.0F);
        ball->resetToNeutral();
        QCOMPARE(ball->factors(), QVector3D(1, 1, 1));
    }

    void wheelAndKeys() {
        auto ball = makeBall(TrackBall::Gain);
        const std::pair<int, QPointF> arrows[] = {{Qt::Key_Right, {0.01, 0.0}},
                                                  {Qt::Key_Left, {-0.01, 0.0}},
                                                  {Qt::Key_Up, {0.0, 0.01}},
                                                  {Qt::Key_Down, {0.0, -0.01}}};
        for (const auto& [key, way] : arrows) {
            QTest::keyClick(ball.get(), Qt::Key(key), Qt::ShiftModifier);
            QCOMPARE(ball->balance(), way * 10.0);
            QCOMPARE(ball->master(), 1.0);
            QTest::keyClick(ball.get(), Qt::Key_Delete);
        }
        ball->setWheelPolicy(WheelPolicy::WheelAlways);
        QVERIFY(Kestrel::Test::turnWheel(*ball, 120));
        QCOMPARE(ball->master(), std::exp2(0.05));
        QTest::keyClick(ball.get(), Qt::Key_PageDown);
        QVERIFY(std::fabs(ball->master() - 1.0) < 1e-12);
        ball->setWheelPolicy(WheelPolicy::WheelNever);
        QVERIFY(!Kestrel::Test::turnWheel(*ball, 120));
        QTest::mouseClick(ball.get(), Qt::MiddleButton, {}, Middle);
        QVERIFY(!ball->isEditing());
    }

    void assisted() {
        auto ball = makeBall(TrackBall::Offset);
        ball->setLocale(QLocale::c());
        ball->setFactors(0.03F, -0.01F, -0.02F);
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(ball.get());
        QVERIFY(seen);
        QCOMPARE(seen->role(), QAccessible::ColorChooser);
        QCOMPARE(seen->text(QAccessible::Name), QStringLiteral("Track ball"));
        ball->setTitle(QStringLiteral("Lift"));
        QCOMPARE(seen->text(QAccessible::Name), QStringLiteral("Lift"));
        QCOMPARE(seen->text(QAccessible::Value),
                 QStringLiteral("Red +0.030, green -0.010, blue -0.020"));
        QAccessibleInterface* ring = seen->child(0);
        QVERIFY(ring && ring->parent() == seen && seen->indexOfChild(ring) == 0);
        QCOMPARE(ring->role(), QAccessible::Dial);
        QCOMPARE(ring->valueInterface()->maximumValue().toDouble(), 1.0);
        QCOMPARE(ring->valueInterface()->minimumValue().toDouble(), -1.0);
        Kestrel::Test::EditLog<TrackBall> log(
            *ball, [](const TrackBall& each) { return QVariant(each.factors()); });
        ring->valueInterface()->setCurrentValue(0.5);
        QCOMPARE(log.text, QStringLiteral("SEF"));
        QCOMPARE(ring->valueInterface()->currentValue().toDouble(), 0.5);
        QVERIFY(std::fabs(double(ball->factors().x()) - 0.53) < 1e-6);
        ring->valueInterface()->setCurrentValue(QStringLiteral("much"));
        ball->setMode(TrackBall::Gain);
        ball->setFactors(1, 1, 1);
        ring->valueInterface()->setCurrentValue(-1.0);
        QCOMPARE(ball->factors(), QVector3D(1, 1, 1));
        ball.reset();
        QVERIFY(!QAccessible::queryAccessibleInterface(ball.get()));
    }

    void followsAParameter() {
        QVector3D held(1, 1, 1);
        CallbackParameter parameter([&] { return QVariant(held); },
                                    [&](const QVariant& wanted) {
                                        const auto factors = wanted.value<QVector3D>();
                                        if (factors.x() > 2.0F)
                                            return false;
                                        held = factors;
                                        return true;
                                    });
        auto ball = makeBall(TrackBall::Gain);
        QVERIFY(ParameterBinding::bind(ball.get(), &parameter));
        QTest::keyClick(ball.get(), Qt::Key_Right, Qt::ShiftModifier);
        QVERIFY(held.x() > 1.05F && held == ball->factors());
        QTest::mousePress(ball.get(), Qt::RightButton, {}, Middle);
        moveMouse(*ball, Middle + QPoint(300, 0), Qt::RightButton);
        QVERIFY(held == ball->factors() && held.x() < 2.0F); // refused
        QTest::mouseRelease(ball.get(), Qt::RightButton, {}, Middle);
    }

    // Red is where the rotation says, at any scale; small and empty ones paint without a fuss.
    void paintsTheHues() {
        for (const double ratio : {1.0, 1.25, 2.0}) {
            for (const double turn : {0.0, M_PI / 2.0}) {
                auto ball = makeBall();
                ball->setHueRotation(turn);
                QImage image(QSize(Side, Side) * ratio, QImage::Format_ARGB32_Premultiplied);
                image.setDevicePixelRatio(ratio);
                image.fill(Qt::black);
                ball->render(&image);
                const TrackBallGeometry places = TrackBallGeometry::of(ball->size(), 0.0);
                const QPointF rim = QPointF(std::cos(turn), -std::sin(turn)) * (places.ball - 2.0);
                const QColor red = image.pixelColor(((places.centre + rim) * ratio).toPoint());
                QVERIFY(red.red() > 2 * red.green() && red.red() > 2 * red.blue());
            }
        }
        TrackBall ball;
        ball.setTitle(QStringLiteral("A title that is longer than the ball is wide"));
        ball.setFactors(7, -8, 9);
        for (const int side : {1, 20, 60, 300}) {
            ball.resize(side, side);
            ball.grab();
        }
    }
};

KXUI_TEST(TrackBallTest);

#include "TrackBallTest.moc"
