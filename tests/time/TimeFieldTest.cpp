#include <KxUI/time/Beep_p.h>
#include <KxUI/time/TimeField.h>

#include <support/Columns.h>
#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QDialog>
#include <QPushButton>
#include <QVBoxLayout>

#include <limits>
#include <type_traits>

using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;
using Kestrel::UI::TimeField;
namespace UI = Kestrel::UI;
namespace Timecode = Kestrel::Base::Timecode;

namespace {

int beeps = 0;

enum Notation { FramesOf25, TimecodeOf25, DropFrame };

void setNotation(TimeField& field, Notation notation) {
    field.setTimeBase(notation == DropFrame ? TimeBase(30, true) : TimeBase(25, false));
    field.setTimeDisplayFormat(notation != FramesOf25, notation == DropFrame);
}

void type(TimeField& field, const QString& text) {
    field.selectAll();
    QTest::keyClicks(&field, text);
}

void enter(TimeField& field, const QString& text) {
    type(field, text);
    QTest::keyClick(&field, Qt::Key_Return);
}

constexpr Time Maximum = std::numeric_limits<Time>::max();

} // namespace

class TimeFieldTest : public QObject {
    Q_OBJECT

private slots:
    void init() { beeps = 0; }

    void initTestCase() {
        UI::beep = [] { ++beeps; };
    }

    void editsAreBracketed() {
        Kestrel::Test::EditedWidget<TimeField> edited;
        edited.make = [] {
            auto field = std::make_unique<TimeField>();
            setNotation(*field, FramesOf25);
            field->setTime(10);
            field->setCursorPosition(1);
            return field;
        };
        edited.another = QVariant::fromValue<Time>(77);
        edited.key = Qt::Key_Up;
        edited.notch = [](TimeField& field) { return Kestrel::Test::turnWheel(field, 120); };
        edited.wheelNeedsFocus = false;
        edited.once = [](TimeField& field) {
            type(field, QStringLiteral("42"));
            Kestrel::Test::sendKey(field, Qt::Key_Return);
        };
        edited.assisted = false; // as text, which is taken when the focus goes
        Kestrel::Test::checkEditBracket(edited);
    }

    void edits_data() {
        // The range that is announced: "lower upper", or nothing.
        const Kestrel::Test::Columns<int, QString, Time, Time, QString, int> columns(
            "notation", "typed", "start", "expected", "range", "expectedBeeps");
        const auto row = [&](Notation notation, const char* typed, Time start, Time expected,
                             const char* range = "", int expectedBeeps = 0) {
            columns(typed, notation, typed, start, expected, range, expectedBeeps);
        };
        row(FramesOf25, "50", 5, 50);
        row(FramesOf25, "  51 ", 5, 51);
        row(FramesOf25, "+12", 5, 17);
        row(FramesOf25, "-10", 5, -5);
        row(FramesOf25, "--10", 5, 15);
        row(FramesOf25, "+7", InvalidTime, 7);
        row(FramesOf25, "10-20", 5, 5, "10 20");
        row(FramesOf25, "10-", 5, 5, "10 invalid");
        row(FramesOf25, "a-b", 5, 5, "", 1);
        row(FramesOf25, "1-2-3", 5, 5, "", 1);
        row(FramesOf25, "+x", 5, 5, "", 1);
        row(FramesOf25, "5", 5, 5);
        row(FramesOf25, "101", 5, 5); // beyond the limits: refused without a beep
        row(FramesOf25, "", 5, 5);
        row(TimecodeOf25, "1:00", 5, 25);
        row(TimecodeOf25, "+1:00", 5, 30);
        row(TimecodeOf25, "-1:00", 50, 25);
        row(TimecodeOf25, "1s", 5, 25);
        row(TimecodeOf25, "90s", 5, 5, "", 1);
        row(TimecodeOf25, "0:30", 5, 5, "", 1);
        row(TimecodeOf25, "1:00-3:00", 5, 5, "25 75");
        row(DropFrame, "3;00", 5, 90);
        row(DropFrame, "-;10", 30, 20);
    }

    void edits() {
        QFETCH(int, notation);
        QFETCH(QString, typed);
        QFETCH(Time, start);
        QFETCH(Time, expected);
        QFETCH(QString, range);
        QFETCH(int, expectedBeeps);

        TimeField field;
        setNotation(field, Notation(notation));
        field.setTime(start, false);
        field.setMinTime(-100);
        field.setMaxTime(100);
        field.useMinMaxTime(true);
        const QString shownBefore = field.text();
        QSignalSpy times(&field, qOverload<Time>(&TimeField::timeChanged));
        QSignalSpy flagged(&field, qOverload<Time, bool>(&TimeField::timeChanged));
        QSignalSpy ranges(&field, &TimeField::rangeChanged);

        type(field, typed);
        if (typed.isEmpty())
            QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClick(&field, Qt::Key_Return);

        QCOMPARE(field.time(), expected);
        QCOMPARE(beeps, expectedBeeps);
        QCOMPARE(times.count(), expected == start ? 0 : 1);
        QCOMPARE(flagged.count(), times.count());
        QString emitted;
        for (const auto& each : ranges) {
            const Time upper = each[1].value<Time>();
            emitted += QStringLiteral("%1 ").arg(qint64(each[0].value<Time>()));
            emitted += upper == InvalidTime ? QStringLiteral("invalid") : QString::number(upper);
        }
        QCOMPARE(emitted, range);
        if (expectedBeeps > 0)
            QCOMPARE(field.text(), typed); // stays to be mended
        else if (expected == start)
            QCOMPARE(field.text(), shownBefore);
        QCOMPARE(field.selectedText(), field.text());
    }

    void oneEditIsHandledOnce() {
        QWidget window;
        QVBoxLayout layout(&window);
        TimeField field;
        QLineEdit other;
        layout.addWidget(&field);
        layout.addWidget(&other);
        setNotation(field, FramesOf25);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QSignalSpy ranges(&field, &TimeField::rangeChanged);

        struct {
            const char* typed;
            Time expected;
            int beeps, ranges;
        } const cases[] = {{"-10", -5, 0, 0}, {"10-20", 5, 0, 1}, {"a-b", 5, 1, 0}};
        for (const auto& each : cases) {
            for (const bool withReturn : {true, false}) {
                field.setTime(5, false);
                field.setFocus();
                beeps = 0;
                ranges.clear();
                type(field, QString::fromLatin1(each.typed));
                if (withReturn)
                    QTest::keyClick(&field, Qt::Key_Return);
                QTest::keyClick(&field, Qt::Key_Tab);
                QVERIFY(other.hasFocus());
                QCOMPARE(field.time(), each.expected);
                QCOMPARE(beeps, each.beeps);
                QCOMPARE(ranges.count(), each.ranges);
                field.setTime(0, false);
            }
        }

        // A text that was typed away and back is the text that was shown.
        field.setTime(-10, false);
        field.setFocus();
        QTest::keyClicks(&field, QStringLiteral("7"));
        QTest::keyClick(&field, Qt::Key_Backspace);
        field.setTime(-10, false);
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(field.time(), Time(-10));
        // What the host writes counts as typed.
        field.setText(QStringLiteral("-10"));
        QTest::keyClick(&field, Qt::Key_Return);
        QCOMPARE(field.time(), Time(-20));
        // The same step typed again is another step.
        field.setTime(-10, false);
        for (const Time expected : {Time(2), Time(14)}) {
            enter(field, "+12");
            QCOMPARE(field.time(), expected);
        }
    }

    void followsItsFormatter() {
        static_assert(!std::is_constructible_v<TimeField, QWidget*, bool> &&
                          !std::is_constructible_v<TimeField, bool, QWidget*>,
                      "no pointer is a flag");
        QWidget parent;
        TimeField field(&parent);
        QCOMPARE(field.parentWidget(), &parent);
        QVERIFY(!field.isIgnoreTimecodeStart());
        UI::TimeFormatter formatter, other;
        formatter.setTimeDisplay(TimeBase(24, false), true, false, 24);
        field.setTime(24);
        field.setFormatter(&formatter);
        QCOMPARE(field.text(), QStringLiteral("00:00:02:00")); // at once
        field.setFormatter(&other);
        formatter.setDisplayTimecode(false); // not its any more
        QCOMPARE(field.text(), QStringLiteral("00:00:00:24"));
        field.setFormatter(nullptr);
        other.setDisplayTimecode(false);
        QCOMPARE(field.text(), QStringLiteral("00:00:00:24"));
    }

    void displayFollowsTheFormatter() {
        TimeField field;
        QCOMPARE(field.text(), QStringLiteral("-00:00:00:01")); // shown from the start
        const int timecodeWidth = field.width();
        field.setTime(50, false);
        field.setTimeDisplay(TimeBase(50, false), true, true, 100);
        QCOMPARE(field.text(), QStringLiteral("00:00:03:00")); // 50 does not drop frames
        field.setTimecodeStart(-75);
        QCOMPARE(field.text(), QStringLiteral("-00:00:00:25"));
        field.setTimeDisplay(TimeBase(25, false), false, false, 0);
        QCOMPARE(field.text(), QStringLiteral("50"));
        QVERIFY(field.width() < timecodeWidth);
        field.setTime(InvalidTime, false);
        QCOMPARE(field.text(), QString());

        TimeField ignoring(false, true);
        ignoring.setTimeDisplay(TimeBase(25, false), true, false, 25);
        enter(ignoring, "2:00");
        QCOMPARE(ignoring.time(), Time(50));
        ignoring.ignoreTimecodeStart(false);
        enter(ignoring, "3:00");
        QCOMPARE(ignoring.time(), Time(50)); // 75 less the start
        QCOMPARE(ignoring.text(), QStringLiteral("00:00:03:00"));
    }

    void stepsTheDigitAtTheCaret() {
        // In 12:00:00:00; 0 where there is nothing to count.
        const Time steps[] = {900000, 90000, 0, 15000, 1500, 0, 250, 25, 0, 10, 1, 0};
        const Time noon = Time(12) * 3600 * 25;
        for (int caret = 0; caret < 12; ++caret) {
            for (const auto& [key, step] :
                 {std::pair(Qt::Key_Up, steps[caret]), std::pair(Qt::Key_Down, -steps[caret])}) {
                TimeField field;
                field.setTime(noon, false);
                field.setCursorPosition(caret);
                QTest::keyClick(&field, key);
                QCOMPARE(field.time(), noon + step);
                if (step != 0)
                    QCOMPARE(field.selectionStart(), caret);
            }
        }
    }

    void stepsByKeyWheelAndSelection() {
        TimeField field;
        setNotation(field, FramesOf25);
        field.setTime(99, false);
        field.setSelection(0, 1); // the tens
        QTest::keyClick(&field, Qt::Key_Up);
        QCOMPARE(field.text(), QStringLiteral("109"));
        QCOMPARE(field.selectedText(), QStringLiteral("0")); // the tens still

        const auto wheel = [&field](int delta) { Kestrel::Test::turnWheel(field, delta); };
        wheel(-120);
        QCOMPARE(field.time(), Time(99));
        wheel(120);
        wheel(0);
        for (const int part : {50, 50, 10})
            wheel(part);
        QCOMPARE(field.time(), Time(109));
        wheel(10); // the parts make a notch
        QCOMPARE(field.time(), Time(119));
        wheel(-240);
        QCOMPARE(field.time(), Time(109)); // one digit, however fast

        field.setMaxTime(110);
        field.useMinMaxTime(true);
        wheel(120);
        QCOMPARE(field.time(), Time(109)); // refused
        field.useMinMaxTime(false);
        field.setReadOnly(true);
        wheel(120);
        QCOMPARE(field.time(), Time(109));
    }

    void sumsThatDoNotFit() {
        const UI::TimeFieldNotation frames{TimeBase(25, false), Timecode::Frames, 0};
        using Edit = UI::TimeFieldNotation::Edit;
        QCOMPARE(frames.read(QStringLiteral("+1"), Maximum).kind, Edit::Failed);
        QCOMPARE(frames.read(QStringLiteral("-1"), -Maximum).kind, Edit::Failed);
        QCOMPARE(frames.digitStep(QString(40, QLatin1Char('1')), 1), Time(0));
        QCOMPARE(UI::TimeFieldNotation().digitStep(QStringLiteral("1:").repeated(14), 0), Time(0));

        TimeField field;
        setNotation(field, FramesOf25);
        field.setTime(Maximum - 1, false);
        field.setText(QString(30, QLatin1Char('1')));
        field.setCursorPosition(12); // 10 ^ 17
        QTest::keyClick(&field, Qt::Key_Up);
        QCOMPARE(field.time(), Maximum - 1);
    }

    void keysStayInTheField() {
        QDialog dialog;
        QVBoxLayout layout(&dialog);
        QWidget group;
        group.setFocusPolicy(Qt::StrongFocus);
        QVBoxLayout inner(&group);
        TimeField field;
        inner.addWidget(&field);
        QPushButton ok;
        ok.setDefault(true);
        layout.addWidget(&group);
        layout.addWidget(&ok);
        QSignalSpy clicked(&ok, &QPushButton::clicked);
        QSignalSpy rejected(&dialog, &QDialog::rejected);
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        field.setFocus();

        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape})
            QTest::keyClick(&field, key);
        QCOMPARE(clicked.count(), 0);
        QCOMPARE(rejected.count(), 0);
        QVERIFY(group.hasFocus()); // Escape gives the focus back

        const auto overrides = [&field](Qt::KeyboardModifiers modifiers) {
            QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_Left, modifiers);
            event.ignore();
            QCoreApplication::sendEvent(&field, &event);
            return event.isAccepted();
        };
        QVERIFY(overrides(Qt::NoModifier));
        QVERIFY(!overrides(Qt::AltModifier)); // the host's shortcut
    }

    void clickThatFocusesSelectsAll() {
        TimeField field;
        field.setTime(50, false);
        field.show();
        field.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&field));
        field.clearFocus();
        field.setFocus(Qt::MouseFocusReason);
        QTest::mousePress(&field, Qt::LeftButton, {}, QPoint(5, 5));
        Kestrel::Test::moveMouse(field, QPoint(7, 6)); // a click trembles
        QTest::mouseRelease(&field, Qt::LeftButton, {}, QPoint(7, 6));
        QCOMPARE(field.selectedText(), field.text());
        QTest::mouseClick(&field, Qt::LeftButton);
        QVERIFY(!field.hasSelectedText());

        field.clearFocus(); // a drag selects what it passes
        field.setFocus(Qt::MouseFocusReason);
        QTest::mousePress(&field, Qt::LeftButton, {}, field.rect().center());
        Kestrel::Test::moveMouse(field, field.rect().center() + QPoint(30, 0));
        QVERIFY(field.hasSelectedText() && field.selectedText() != field.text());
    }
};

KXUI_TEST(TimeFieldTest);
#include "TimeFieldTest.moc"
