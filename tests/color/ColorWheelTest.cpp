#include <KxUI/color/ColorConversions.h>
#include <KxUI/color/ColorWheel.h>
#include <KxUI/color/ColorWheelDrag_p.h>

#include <support/Columns.h>
#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QAccessible>
#include <QContextMenuEvent>

#include <cmath>
#include <functional>
#include <limits>

using namespace Kestrel::UI;

namespace {

constexpr int Side = 402; // a wheel of 200 pixels around its centre

// Points from the centre in pixels, y upwards.
QPoint at(int x, int y) {
    return {Side / 2 + x, Side / 2 - y};
}

void drag(QWidget& wheel, QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton,
          Qt::KeyboardModifiers modifiers = {}) {
    QTest::mousePress(&wheel, button, modifiers, from);
    for (const QPoint position : {(from + to) / 2, to})
        Kestrel::Test::moveMouse(wheel, position, button, modifiers);
    QTest::mouseRelease(&wheel, button, modifiers, to);
}

Hsv colorOf(const ColorWheel& wheel) {
    Hsv color;
    wheel.getHSV(color.hue, color.saturation, color.value);
    return color;
}

#define COMPARE_HSV(wheel, h, s, v)                                                                \
    do {                                                                                           \
        const Hsv color = colorOf(wheel);                                                          \
        const bool near = std::fabs(color.hue - (h)) < 0.003F &&                                   \
                          std::fabs(color.saturation - (s)) < 0.003F &&                            \
                          std::fabs(color.value - (v)) < 0.003F;                                   \
        QVERIFY2(near, qPrintable(QStringLiteral("is %1 %2 %3")                                    \
                                      .arg(color.hue)                                              \
                                      .arg(color.saturation)                                       \
                                      .arg(color.value)));                                         \
    } while (false)

} // namespace

class ColorWheelTest : public QObject {
    Q_OBJECT

private slots:
    void storesColors() {
        ColorWheel wheel;
        QSignalSpy changed(&wheel, SIGNAL(hsvChanged(float, float, float)));
        COMPARE_HSV(wheel, 0.0F, 0.0F, 1.0F);
        const float tiny = -std::numeric_limits<float>::denorm_min();
        const float infinite = std::numeric_limits<float>::infinity();
        for (const auto& [given, stored] :
             {std::pair(1.25F, 0.25F), std::pair(-0.25F, 0.75F), std::pair(tiny, 0.0F),
              std::pair(-3.0F, 0.0F), std::pair(infinite, 0.0F)}) {
            wheel.setHue(given);
            QCOMPARE(colorOf(wheel).hue, stored);
            QVERIFY(!std::signbit(colorOf(wheel).hue));
        }
        wheel.setHSVSlot(1.5F, 2.0F, 0.0F);
        QCOMPARE(wheel.getClampedHue(), 1.0F);
        QCOMPARE(colorOf(wheel).saturation, 2.0F);
        QCOMPARE(changed.count(), 0);
    }

    void propertiesTell() {
        QWidget parent;
        auto* wheel = new ColorWheel(&parent);
        QCOMPARE(wheel->displayMode(), ColorWheel::PlainWheel);
        const std::pair<const char*, QVariant> changes[] = {
            {"hue", 0.25F},         {"saturation", 0.5F},       {"value", 0.75F},
            {"ringValue", 0.5F},    {"zoomEnabled", false},     {"displayMode", 2},
            {"interactionMode", 1}, {"interactionScale", 0.2F}, {"hueRotation", 1.0F}};
        for (const auto& [name, value] : changes) {
            const QMetaObject& meta = *wheel->metaObject();
            QSignalSpy told(wheel, meta.property(meta.indexOfProperty(name)).notifySignal());
            for (int i = 0; i < 2; ++i) {
                QVERIFY(wheel->setProperty(name, value));
                const QVariant stored = wheel->property(name);
                if (value.userType() == QMetaType::Int) // of an enumeration
                    QCOMPARE(stored.toInt(), value.toInt());
                else
                    QCOMPARE(stored.toFloat(), value.toFloat());
                QCOMPARE(told.count(), 1);
            }
        }
    }

    void followsThePicker() {
        ColorWheel wheel;
        wheel.updateFromControl();
        std::array<float, 3> picked{0.5F, 1.0F, 0.5F};
        wheel.setColorSource([&] { return picked; });
        wheel.updateFromControl();
        COMPARE_HSV(wheel, 1.0F / 3.0F, 0.5F, 1.0F);
        picked = {0.25F, 0.25F, 0.25F};
        wheel.updateFromControl();
        COMPARE_HSV(wheel, 1.0F / 3.0F, 0.0F, 0.25F);
    }

    void drags_data() {
        const Kestrel::Test::Columns<int, QPoint, QPoint, float, float, float, int, int> columns(
            "mode", "from", "to", "hue", "saturation", "value", "button", "modifiers");
        const auto row = [&](const char* name, int mode, QPoint from, QPoint to, float hue,
                             float saturation, float value, int button = Qt::LeftButton,
                             int modifiers = 0) {
            columns(name, mode, from, to, hue, saturation, value, button, modifiers);
        };
        constexpr int Shift = Qt::ShiftModifier;
        constexpr int Control = Qt::ControlModifier;
        constexpr int Alt = Qt::AltModifier;
        constexpr int Left = Qt::LeftButton;
        constexpr int Right = Qt::RightButton;
        // The outer radius is 198, 182 in mode 2; every wheel starts at 0.1, 0.5, 0.6.
        row("plain", 0, at(0, 0), at(0, 89), 0.25F, 0.5F, 0.6F);
        row("plain, beyond the disc", 0, at(0, 0), at(-300, -300), 0.625F, 1.0F, 0.6F);
        row("plain, saturation", 0, at(0, 0), at(0, 89), 0.1F, 0.5F, 0.6F, Left, Shift);
        row("plain, hue", 0, at(5, 0), at(0, -50), 0.75F, 0.5F, 0.6F, Left, Control);
        row("plain, value", 0, at(0, 0), at(100, 50), 0.1F, 0.5F, 0.8F, Right);
        row("plain, value by Alt", 0, at(0, 0), at(-100, 50), 0.1F, 0.5F, 0.4F, Left, Alt);
        row("plain, value ends", 0, at(-190, 0), at(190, 0), 0.1F, 0.5F, 1.0F, Right);
        row("plain, corner", 0, at(190, 190), at(0, 0), 0.1F, 0.5F, 0.6F);
        row("square", 1, at(0, 0), at(55, -55), 0.1F, 0.75F, 0.25F);
        row("square, clamped", 1, at(0, 0), at(-300, 300), 0.1F, 0.0F, 1.0F);
        row("square, saturation", 1, at(0, 0), at(55, -55), 0.1F, 0.75F, 0.6F, Left, Control);
        row("square, both keys", 1, at(0, 0), at(55, -55), 0.1F, 0.75F, 0.6F, Left,
            Control | Shift);
        row("square, value", 1, at(0, 0), at(55, -55), 0.1F, 0.5F, 0.25F, Left, Shift);
        row("square, right", 1, at(0, 0), at(55, -55), 0.1F, 0.75F, 0.25F, Right);
        row("square, ring", 1, at(180, 0), at(-100, 0), 0.5F, 0.5F, 0.6F);
        row("ring, disc", 2, at(0, 0), at(0, -91), 0.75F, 0.5F, 0.6F);
        row("ring, along the hue", 2, at(0, 0), at(91, 66), 0.1F, 0.618F, 0.6F, Left, Shift);
        row("ring, against the hue", 2, at(0, 0), at(-91, -66), 0.1F, 0.0F, 0.6F, Left, Shift);
        row("ring", 2, at(-190, 0), at(0, -190), 0.1F, 0.5F, 0.5F);
        row("ring, right", 2, at(0, -50), at(50, 0), 0.1F, 0.5F, 0.25F, Right);
    }
    void drags() {
        QFETCH(int, mode);
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(int, button);
        QFETCH(int, modifiers);
        QFETCH(float, hue);
        QFETCH(float, saturation);
        QFETCH(float, value);
        ColorWheelScene scene;
        scene.geometry =
            ColorWheelGeometry::of(QSize(Side, Side), ColorWheel::DisplayMode(mode), 1.0, {}, 0.0);
        scene.color = {0.1F, 0.5F, 0.6F};
        const auto held = Qt::MouseButton(button);
        const auto inputAt = [&](QPoint place) {
            return ColorWheelInput{QPointF(place.x(), Side - place.y()), held,
                                   Qt::KeyboardModifiers(modifiers)};
        };
        ColorWheelDrag drag;
        const auto obey = [&](const ColorWheelCommands& commands) {
            for (const ColorWheelCommand& command : commands) {
                if (command.kind == ColorWheelCommand::ShowColor)
                    scene.color = command.color;
            }
        };
        obey(drag.press(scene, inputAt(from), held));
        const bool begun = drag.isActive();
        obey(drag.move(scene, inputAt((from + to) / 2)));
        obey(drag.move(scene, inputAt(to)));
        const ColorWheelCommands end = drag.release(held);
        QCOMPARE(int(end.size()), begun ? 2 : 0);
        QVERIFY(!begun || end.last().kind == ColorWheelCommand::Changed);
        QVERIFY(std::fabs(scene.color.hue - hue) < 0.003F);
        QVERIFY(std::fabs(scene.color.saturation - saturation) < 0.003F);
        QVERIFY(std::fabs(scene.color.value - value) < 0.003F);
    }

    void relativeDrags() {
        ColorWheel wheel;
        wheel.resize(Side, Side);
        wheel.setInteractionMode(ColorWheel::RelativeInteraction);
        wheel.setHSV(0.25F, 0.5F, 0.6F);
        QTest::mouseClick(&wheel, Qt::LeftButton, {}, at(-60, -60));
        COMPARE_HSV(wheel, 0.25F, 0.5F, 0.6F);
        drag(wheel, at(-100, -100), at(-100, 78));
        COMPARE_HSV(wheel, 0.25F, 0.6F, 0.6F);
        QVERIFY(!wheel.isAbsoluteMode());
        QTest::mousePress(&wheel, Qt::LeftButton, Qt::ShiftModifier | Qt::ControlModifier,
                          at(0, -89));
        QVERIFY(wheel.isAbsoluteMode());
        COMPARE_HSV(wheel, 0.75F, 0.5F, 0.6F);
    }

    void valueRingDoesNotWrap() {
        ColorWheel wheel({}, ColorWheel::ValueRingWheel);
        wheel.resize(Side, Side);
        drag(wheel, at(-20, 190), at(20, 190));
        QCOMPARE(colorOf(wheel).value, 1.0F);
        drag(wheel, at(20, 190), at(-20, 190));
        QCOMPARE(colorOf(wheel).value, 0.0F);
        QCOMPARE(wheel.ringValue(), 0.0F);
        for (const float value : {0.001F, 0.25F, 0.7F, 1.0F}) {
            const float back =
                ColorWheelGeometry::ringValueAt(ColorWheelGeometry::ringDirection(value));
            QVERIFY(std::fabs(back - value) < 1e-5F);
        }
    }

    void panAndZoom() {
        ColorWheel wheel;
        wheel.resize(Side, Side);
        drag(wheel, at(0, 0), at(178, -89), Qt::MiddleButton);
        QVERIFY(std::fabs(wheel.pan().x() - 1.0) < 0.003 &&
                std::fabs(wheel.pan().y() + 0.5) < 0.003);
        drag(wheel, at(0, 0), at(3000, -3000), Qt::MiddleButton);
        QCOMPARE(wheel.pan(), QPointF(1.9, -1.9));
        wheel.resetView();
        drag(wheel, at(0, 0), at(48, 48), Qt::MiddleButton, Qt::AltModifier);
        QCOMPARE(wheel.zoom(), 2.0F);

        // The wheel turns about the cursor, and what is below it stays there.
        QTest::mouseClick(&wheel, Qt::LeftButton, {}, at(60, 30));
        const Hsv before = colorOf(wheel);
        const auto turn = [&] { Kestrel::Test::turnWheel(wheel, 720, at(60, 30)); };
        turn();
        QVERIFY(wheel.zoom() > 5.0F);
        QTest::mouseClick(&wheel, Qt::LeftButton, {}, at(60, 30));
        COMPARE_HSV(wheel, before.hue, before.saturation, 1.0F);
        for (int i = 0; i < 10; ++i)
            turn();
        QCOMPARE(wheel.zoom(), 64.0F);
        wheel.grab();
        wheel.setZoomEnabled(false);
        drag(wheel, at(0, 0), at(10, 10), Qt::MiddleButton);
        QTest::keyClick(&wheel, Qt::Key_0);
        QCOMPARE(wheel.zoom(), 64.0F);
    }

    void signalsOfADrag() {
        ColorWheel wheel;
        wheel.resize(Side, Side);
        QStringList log;
        connect(&wheel, &ColorWheel::startDragSignal, this, [&] { log += "start"; });
        connect(&wheel, &ColorWheel::draggingSignal, this, [&] { log += "move"; });
        connect(&wheel, &ColorWheel::stopDragSignal, this, [&] { log += "stop"; });
        connect(&wheel, &ColorWheel::changedSignal, this, [&] { log += "changed"; });
        connect(&wheel, &ColorWheel::hsvChanged, this, [&] { log += "hsv"; });
        drag(wheel, at(0, 0), at(20, 20));
        QCOMPARE(log.join(' '), QStringLiteral("start hsv hsv move hsv move stop changed"));
        log.clear();
        drag(wheel, at(0, 0), at(20, 20), Qt::MiddleButton);
        QCOMPARE(log.join(' '), QStringLiteral("start move move stop"));
        const std::vector<std::function<void()>> edits{
            [&] { QTest::keyClick(&wheel, Qt::Key_Left); },
            [&] { QTest::keyClick(&wheel, Qt::Key_Home); },
            [&] { QTest::mouseDClick(&wheel, Qt::LeftButton, {}, at(9, 9)); },
        };
        for (const auto& edit : edits) {
            log.clear();
            edit();
            QCOMPARE(log.join(' '), QStringLiteral("start hsv stop changed"));
        }

        // A drag whose release never comes ends with the next movement, or when the wheel is
        // hidden.
        wheel.show();
        QTest::mousePress(&wheel, Qt::RightButton, {}, at(0, 0));
        QCOMPARE(wheel.dragMode(), ColorWheel::DragModes(ColorWheel::DragValue));
        wheel.hide();
        QVERIFY(!wheel.dragMode());

        auto* doomed = new ColorWheel;
        doomed->resize(Side, Side);
        connect(doomed, &ColorWheel::hsvChanged, this, [&] { delete doomed; });
        QTest::keyClick(doomed, Qt::Key_Right);
    }

    // Escape and the right button show the start again, bit for bit, whatever was dragged; the rest
    // of the drag goes unheeded.
    void takenBack() {
        constexpr auto Relative = ColorWheel::RelativeInteraction;
        for (const auto mode :
             {ColorWheel::PlainWheel, ColorWheel::SquareWheel, ColorWheel::ValueRingWheel}) {
            for (const Qt::MouseButton button :
                 {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
                for (const auto interaction : {ColorWheel::AbsoluteInteraction, Relative}) {
                    for (const bool byKey : {true, false}) {
                        if (button == Qt::RightButton && !byKey)
                            continue;
                        QWidget parent;
                        auto& wheel = *new ColorWheel({}, mode, &parent);
                        wheel.resize(Side, Side);
                        wheel.setInteractionMode(interaction);
                        const Hsv start{0.123F, 1.7F, 0.456F};
                        wheel.setHSV(start.hue, start.saturation, start.value);
                        wheel.setRingValue(0.7F);
                        QSignalSpy stopped(&wheel, &ColorWheel::stopDragSignal);
                        QSignalSpy changed(&wheel, &ColorWheel::changedSignal);
                        QSignalSpy told(&wheel, &ColorWheel::hsvChanged);
                        QSignalSpy menu(&wheel, &QWidget::customContextMenuRequested);
                        QTest::mousePress(&wheel, button, {}, at(5, 5));
                        Kestrel::Test::moveMouse(wheel, at(50, -30), button);
                        if (byKey) {
                            QVERIFY(Kestrel::Test::sendKey(wheel, Qt::Key_Escape));
                        } else {
                            QTest::mousePress(&wheel, Qt::RightButton, {}, at(50, -30));
                            QContextMenuEvent event(QContextMenuEvent::Mouse, at(50, -30));
                            QCoreApplication::sendEvent(&wheel, &event);
                            QTest::mouseRelease(&wheel, Qt::RightButton, {}, at(50, -30));
                        }
                        Kestrel::Test::moveMouse(wheel, at(-50, -30), button);
                        QVERIFY(!wheel.dragMode());
                        QTest::mouseRelease(&wheel, button, {}, at(-50, -30));
                        const Hsv now = colorOf(wheel);
                        QVERIFY(now.hue == start.hue && now.saturation == start.saturation &&
                                now.value == start.value && wheel.ringValue() == 0.7F);
                        QCOMPARE(wheel.pan(), QPointF());
                        QCOMPARE(wheel.zoom(), 1.0F);
                        QCOMPARE(stopped.count(), 1);
                        QCOMPARE(changed.count() + menu.count(), 0);
                        if (button != Qt::MiddleButton)
                            QCOMPARE(told.last().at(0).toFloat(), start.hue);
                        QVERIFY(!Kestrel::Test::sendKey(wheel, Qt::Key_Escape));
                        drag(wheel, at(0, 0), at(20, 20), button);
                        QCOMPARE(stopped.count(), 2);
                    }
                }
            }
        }
    }

    void editsAreBracketed() {
        Kestrel::Test::EditedWidget<ColorWheel> edited;
        edited.make = [] {
            auto wheel = std::make_unique<ColorWheel>();
            wheel->resize(Side, Side);
            wheel->setInteractionMode(ColorWheel::RelativeInteraction);
            wheel->setHSV(0.1F, 0.5F, 0.7F);
            return wheel;
        };
        edited.another = QVector3D(0.3F, 0.2F, 0.1F);
        edited.press = [](ColorWheel& w) { QTest::mousePress(&w, Qt::LeftButton, {}, at(9, 9)); };
        edited.move = [](ColorWheel& w, int nth) {
            Kestrel::Test::moveMouse(w, at(9, 9 + 50 * nth));
        };
        edited.release = [](ColorWheel& w) {
            QTest::mouseRelease(&w, Qt::LeftButton, {}, at(9, 9));
        };
        edited.key = Qt::Key_Right;
        edited.once = [](ColorWheel& w) { QTest::mouseDClick(&w, Qt::LeftButton, {}, at(9, 9)); };
        edited.assisted = false; // its text can be read only
        Kestrel::Test::checkEditBracket(edited);
    }

    void doubleClicksAndKeys() {
        ColorWheel wheel({}, ColorWheel::ValueRingWheel);
        wheel.resize(Side, Side);
        QSignalSpy changed(&wheel, &ColorWheel::changedSignal);
        wheel.setHSV(0.25F, 0.5F, 0.5F);
        QTest::mouseDClick(&wheel, Qt::LeftButton, {}, at(50, 0));
        COMPARE_HSV(wheel, 0.25F, 0.0F, 0.5F);
        QTest::mouseDClick(&wheel, Qt::LeftButton, {}, at(0, -190));
        COMPARE_HSV(wheel, 0.25F, 0.0F, 1.0F);
        changed.clear();
        QTest::keyClick(&wheel, Qt::Key_Left);
        QTest::keyClick(&wheel, Qt::Key_Up, Qt::ShiftModifier);
        QTest::keyClick(&wheel, Qt::Key_Up);
        QTest::keyClick(&wheel, Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(&wheel, Qt::Key_PageDown);
        COMPARE_HSV(wheel, 89.0F / 360.0F, 0.01F, 0.99F);
        QCOMPARE(changed.count(), 5);
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&wheel);
        QVERIFY(accessible);
        QCOMPARE(accessible->text(QAccessible::Value),
                 QStringLiteral("Hue 89\u00b0, saturation 1 %, value 99 %"));
        QTest::keyClick(&wheel, Qt::Key_Home);
        QCOMPARE(colorOf(wheel).saturation, 0.0F);
    }

    void markersDoNotRedrawTheWheel() {
        for (int mode = 0; mode < 4; ++mode) {
            int rows = 0;
            ColorWheel wheel([&rows](float*, int pixels) { rows += pixels > 1 ? 1 : 0; },
                             ColorWheel::DisplayMode(mode));
            wheel.grab();
            QVERIFY(rows > 0);
            rows = 0;
            const QPoint centre = wheel.rect().center();
            drag(wheel, centre, centre + QPoint(10, 5));
            wheel.setRingValue(0.3F);
            wheel.setValue(0.3F);
            wheel.grab();
            QCOMPARE(rows, 0);
            wheel.setHueRotation(1.0F);
            wheel.grab();
            QVERIFY(rows > 0);
        }
    }

    void paintsTheColors() {
        for (const auto mode : {ColorWheel::PlainWheel, ColorWheel::SquareWheel}) {
            // Nothing but the square depends on the colour, and the marker is out of the way.
            ColorWheel wheel({}, mode);
            wheel.resize(Side, Side);
            wheel.setHueRotation(0.5F);
            wheel.setHSV(0.3F, 0.0F, 0.0F);
            const QImage image = wheel.grab().toImage();
            const auto geometry = ColorWheelGeometry::of(wheel.size(), mode, 1.0, {}, 0.5);
            for (int i = 1; i <= 60; ++i) {
                Hsv color{float(i) / 61.0F, std::fmod(float(i) * 0.37F, 0.8F) + 0.15F, 1.0F};
                if (mode == ColorWheel::SquareWheel)
                    color = {0.3F, color.hue, color.saturation};
                const QPoint pixel = geometry.toWidget(geometry.markerOf(color)).toPoint();
                if (mode == ColorWheel::PlainWheel) {
                    const QPointF point(pixel.x() + 0.5 - Side / 2, Side / 2 - pixel.y() - 0.5);
                    color.hue = geometry.hueAt(point);
                    color.saturation = float(std::hypot(point.x(), point.y()) / geometry.disc);
                }
                float rgb[3];
                hsvToRgb(color.hue, color.saturation, color.value, rgb[0], rgb[1], rgb[2]);
                const QColor seen = image.pixelColor(pixel);
                const double tolerance = mode == ColorWheel::PlainWheel ? 0.007 : 0.012;
                QVERIFY(std::fabs(seen.redF() - double(rgb[0])) < tolerance &&
                        std::fabs(seen.greenF() - double(rgb[1])) < tolerance &&
                        std::fabs(seen.blueF() - double(rgb[2])) < tolerance);
            }
        }
    }

    void tinyWheels() {
        for (int mode = 0; mode < 4; ++mode) {
            for (const int side : {1, 4, 7, 8, 9, 10, 40, 42}) {
                ColorWheel wheel({}, ColorWheel::DisplayMode(mode));
                wheel.setFixedSize(side, 2 * side);
                wheel.grab();
                drag(wheel, {side / 2, side}, {side, side}, Qt::RightButton);
                drag(wheel, {side / 2, side}, {side, side});
                const Hsv color = colorOf(wheel);
                QVERIFY(color.hue >= 0.0F && color.hue < 1.0F);
                QVERIFY(color.saturation >= 0.0F && color.saturation <= 1.0F);
                QVERIFY(color.value >= 0.0F && color.value <= 1.0F);
            }
        }
    }
};

KXUI_TEST(ColorWheelTest);

#include "ColorWheelTest.moc"
