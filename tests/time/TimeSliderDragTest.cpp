#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <KxUI/time/JogWheelDrag_p.h>
#include <KxUI/time/JogWheelPlan_p.h>
#include <KxUI/time/TimeSliderDrag_p.h>

using namespace Kestrel::UI;
using Kestrel::Base::InvalidTime;

namespace {

using Command = TimeSliderCommand;

// A command in a word or two, with the times that it carries.
QString word(const Command& command) {
    static const QHash<int, const char*> words{{Command::AllowTimeUpdates, "allow"},
                                               {Command::HoldTimeUpdates, "hold"},
                                               {Command::BeginTimeDrag, "begin"},
                                               {Command::UpdateTimeDrag, "update"},
                                               {Command::EndTimeDrag, "end"},
                                               {Command::SetInTime, "in"},
                                               {Command::SetOutTime, "out"},
                                               {Command::SetInAndOutTime, "both"},
                                               {Command::SetCurrentTime, "current"},
                                               {Command::SetFirstVisible, "first"},
                                               {Command::SetLastVisible, "last"},
                                               {Command::SetVisibleRange, "show"},
                                               {Command::PutBackMarks, "put back marks"},
                                               {Command::PutBackVisible, "put back range"},
                                               {Command::RedrawRectangle, "rectangle"},
                                               {Command::InOutTimesModified, "marks"},
                                               {Command::ZoomOrPanChanged, "zoomed"},
                                               {Command::RightOrMidClicked, "click"},
                                               {Command::AskDerivedClass, "ask"},
                                               {Command::MoveDerived, "move derived"},
                                               {Command::TakeBackDerived, "take back derived"},
                                               {Command::ReleaseDerived, "release derived"}};
    QString text = QLatin1String(words.value(command.kind));
    for (const TimeSliderTime time : {command.first, command.second}) {
        if (time.isValid())
            text += QStringLiteral(" %1").arg(time.time());
    }
    return text;
}

// Without what every drag does to the hover and the timer.
QString words(const TimeSliderCommands& commands) {
    QStringList all;
    for (const Command& command : commands) {
        if (const QString text = word(command); !text.isEmpty())
            all << text;
    }
    return all.join(QStringLiteral(", "));
}

// 100 frames on 500 pixels: frame t is at x = 5 + 5 t. Marks at 20 and 60, the playhead at 50.
TimeSliderScene makeScene() {
    TimeSliderScene scene;
    scene.geometry.width = 510;
    scene.geometry.height = 37;
    scene.geometry.visible = {0, 99};
    scene.geometry.clip = {0, 99};
    scene.currentTime = 50;
    scene.inTime = 20;
    scene.outTime = 60;
    scene.inOutLock = true;
    scene.mainTransport = true;
    return scene;
}

constexpr int x(int frame) {
    return 5 + 5 * frame;
}

} // namespace

class TimeSliderDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drags_data() {
        const Kestrel::Test::Columns<QPoint, QPoint, int, int, int, QString, QString, QString,
                                     QString>
            row("from", "to", "button", "modifiers", "handle", "pressed", "moved", "released",
                "takenBack");
        constexpr int left = Qt::LeftButton, right = Qt::RightButton, middle = Qt::MiddleButton;
        constexpr int none = Qt::NoModifier, ctrl = Qt::ControlModifier, alt = Qt::AltModifier,
                      shift = Qt::ShiftModifier;
        row("in mark, beside it", {x(20) + 7, 30}, {x(70) + 7, 30}, left, none, 1,
            "allow, hold, begin 20", "in 70, update", "allow, end, marks",
            "put back marks 20 60, update, allow, end, marks");
        row("out mark", {x(60) - 7, 30}, {x(55) - 7, 30}, left, none, 2, "allow, hold, begin 60",
            "out 55, update", "allow, end, marks",
            "put back marks 20 60, update, allow, end, marks");
        row("both marks, to the end", {x(60), 30}, {x(400), 30}, left, ctrl, 3,
            "allow, hold, begin 20 60", "both 59 99, update", "allow, end, marks",
            "put back marks 20 60, update, allow, end, marks");
        row("ctrl sets the out mark", {x(70), 30}, {x(72), 30}, left, ctrl, 2,
            "allow, hold, begin 70, out 70", "out 72, update", "allow, end, marks",
            "put back marks 20 60, update, allow, end, marks");
        row("ctrl sets the in mark", {x(40), 30}, {x(41), 30}, left, ctrl, 1,
            "allow, hold, begin 40, in 40", "in 41, update", "allow, end, marks",
            "put back marks 20 60, update, allow, end, marks");
        row("playhead, not before the clip", {x(50) + 5, 10}, {-50, 10}, left, none, 4,
            "allow, hold, current 51", "begin 0, current 0, update", "allow, end",
            "current 50, update, allow, end");
        row("8 pixels beside a mark", {x(60) + 8, 30}, {x(64), 30}, left, none, 4,
            "allow, ask, hold, current 62", "begin 64, current 64, update", "allow, end",
            "current 50, update, allow, end");
        row("shift on a mark", {x(20), 30}, {x(21), 30}, left, shift, 4,
            "allow, ask, hold, current 20", "begin 21, current 21, update", "allow, end",
            "current 50, update, allow, end");
        row("pan", {x(50), 30}, {x(40), 30}, left, alt, 5, "allow", "show 10 109, zoomed", "allow",
            "put back range 0 99, zoomed, allow");
        row("zoom rectangle, backwards", {x(40), 30}, {x(20), 30}, right, none, 6, "allow",
            "rectangle", "allow, rectangle, show 20 39, zoomed", "allow, rectangle");
        row("a click that trembled", {x(20), 30}, {x(21), 30}, middle, none, 6, "allow",
            "rectangle", "allow, rectangle, click", "allow, rectangle");
        row("drag zoom", {x(0), 30}, {x(0) + 116, 30}, right, alt, 7, "allow", "show 0 49, zoomed",
            "allow", "put back range 0 99, zoomed, allow");
        row("overview, left edge", {5, 2}, {x(10), 2}, left, none, 8, "allow", "first 10, zoomed",
            "allow", "put back range 0 99, zoomed, allow");
        row("overview, right edge", {500, 2}, {400, 2}, left, none, 9, "allow", "last 79, zoomed",
            "allow", "put back range 0 99, zoomed, allow");
        row("overview as a whole", {200, 2}, {250, 2}, left, none, 10, "allow",
            "show 10 109, zoomed", "allow", "put back range 0 99, zoomed, allow");
        row("derived", {x(90), 30}, {x(80), 30}, left, none, 11, "allow, ask", "move derived 80",
            "release derived, allow", "take back derived, release derived, allow");
    }
    void drags() {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(int, button);
        QFETCH(int, modifiers);
        for (const bool release : {true, false}) {
            TimeSliderDrag drag;
            TimeSliderScene scene = makeScene();
            TimeSliderCommands pressed =
                drag.press(scene, {from.x(), from.y(), Qt::MouseButton(button),
                                   Qt::KeyboardModifiers(modifiers)});
            if (pressed.size() > 1 && words(pressed).endsWith(QLatin1String("ask"))) {
                if (qstrcmp(QTest::currentDataTag(), "derived") == 0) {
                    drag.beginDerived();
                } else {
                    const TimeSliderCommands playhead = drag.beginPlayhead(scene);
                    pressed.append(playhead.data(), playhead.size());
                }
            }
            QTEST(int(drag.handle()), "handle");
            QTEST(words(pressed), "pressed");
            const TimeSliderCommands moved =
                drag.move(scene, to.x(), drag.isToTime() ? drag.timeAt(scene, to.x()) : 0);
            QTEST(words(moved), "moved");
            QVERIFY(drag.isAt(to.x()));
            if (release) {
                QCOMPARE(words(drag.release(Qt::MouseButton(button ^ 3))), QString());
                QTEST(words(drag.release(Qt::MouseButton(button))), "released");
                QCOMPARE(drag.button(), Qt::NoButton);
            } else {
                if (words(moved).contains(QLatin1String("zoomed")))
                    scene.geometry.visible = {10, 50}; // as the move left it
                QTEST(words(drag.takeBack(scene)), "takenBack");
                QCOMPARE(words(drag.takeBack(scene)), QString());
                QCOMPARE(words(drag.release(Qt::MouseButton(button))), QString());
            }
            QVERIFY(!drag.isActive());
        }
    }

    void pressesThatGrabNothing() {
        struct {
            TimeSliderRange visible, clip;
            int y;
            Qt::KeyboardModifiers modifiers = Qt::NoModifier;
        } const cases[] = {{{20, 60}, {0, 99}, 2}, // beside the overview bar
                           {{0, 99}, {0, -1}, 30}, // no frames
                           {{}, {0, 99}, 30},      // nothing is shown
                           {{}, {0, 99}, 30, Qt::ControlModifier}};
        for (const auto& each : cases) {
            TimeSliderDrag drag;
            TimeSliderScene scene = makeScene();
            scene.geometry.visible = each.visible;
            scene.geometry.clip = each.clip;
            QCOMPARE(words(drag.press(scene, {x(90), each.y, Qt::LeftButton, each.modifiers})),
                     QStringLiteral("allow"));
            QVERIFY(!drag.isActive());
        }
    }

    void theRulerMayGoUnderADrag() {
        TimeSliderDrag drag;
        TimeSliderScene scene = makeScene();
        drag.press(scene, {x(20), 30});
        scene.geometry.visible = {};
        QCOMPARE(words(drag.move(scene, 300, InvalidTime)), QString());
        drag.press(makeScene(), {x(60), 30, Qt::LeftButton, Qt::ControlModifier});
        scene = makeScene();
        scene.inTime = InvalidTime; // cleared
        QCOMPARE(words(drag.move(scene, 300, 59)), QString());
    }

    void jogWheel() {
        JogWheelDrag drag;
        QVERIFY(!drag.press(10, Qt::LeftButton, 500));
        QCOMPARE(drag.move(20, Qt::LeftButton, 0.5F).value_or(0), 505.0);
        QCOMPARE(drag.press(20, Qt::RightButton, 505).value_or(0), 500.0);
        QVERIFY(drag.isHeld() && !drag.isActive() && !drag.takeBack());
        QVERIFY(!drag.move(30, Qt::LeftButton, 1));
        drag.release(Qt::RightButton);
        QVERIFY(drag.isHeld());
        drag.release(Qt::LeftButton);
        QVERIFY(!drag.isHeld());
        drag.press(10, Qt::LeftButton, 500);
        QVERIFY(!drag.move(20, Qt::RightButton, 1)); // the release was lost
        QVERIFY(!drag.isHeld());

        QVERIFY(JogWheelPlan::of({0, 0, 4, 40}, 0).isEmpty());
        const JogWheelPlan plan = JogWheelPlan::of({0, 0, 22, 22}, 10); // a quarter of a turn
        QVERIFY(qAbs(plan.dimple.center().y() - plan.wheel.center().y()) < 1e-9);
        QVERIFY(plan.wheel.contains(plan.dimple) && plan.dimple.x() > plan.wheel.center().x());
    }
};

KXUI_TEST(TimeSliderDragTest);
#include "TimeSliderDragTest.moc"
