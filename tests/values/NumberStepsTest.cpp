#include <KxUI/values/NumberSteps_p.h>
#include <KxUI/values/ScrubDrag_p.h>

#include <support/TestRegistry.h>

#include <limits>

using namespace Kestrel;
using Kestrel::UI::ScrubDrag;

class NumberStepsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stepsLeaveNoDust() {
        QCOMPARE(UI::steppedNumber(20.005, 1.0, 1), 21.005);
        QCOMPARE(UI::steppedNumber(20.005, 1.23, 1), 21.235);
        QCOMPARE(UI::steppedNumber(1e-6, 1e-7, 1), 1.1e-6);
        double number = 1.0;
        for (int i = 0; i < 10; ++i)
            number = UI::steppedNumber(number, -0.1, 1);
        QVERIFY(number == 0.0 && !std::signbit(number));
        QCOMPARE(UI::steppedNumber(1e300, 1.0, 1), 1e300);
        QCOMPARE(UI::adaptiveStep(123.0, 1, 1), 10.0);
        QCOMPARE(UI::adaptiveStep(100.0, -1, 1), 1.0);
        QCOMPARE(UI::adaptiveStep(-100.0, 1, 1), 1.0);
        QCOMPARE(UI::adaptiveStep(-0.001, -1, 1), 0.0001);
        QCOMPARE(UI::adaptiveStep(0.0, 1, 0.25), 0.25);
        QCOMPARE(UI::adaptiveStep(5e-324, 1, 0.25), 0.25);
    }

    void digits() {
        const struct {
            const char* text;
            int caret, steps;
            const char* after;
            int position;
        } rows[] = {
            {"-99.95", 0, 1, "-89.95", 1}, // over the sign the first digit
            {"-99.95", 1, -1, "-109.95", 2},
            {"-99.95", 2, 1, "-98.95", 2},
            {"-99.95", 3, 1, "-99.85", 4}, // the point: the digit behind it
            {"-99.95", 5, 1, "-99.94", 5},
            {"-99.95", 6, 1, "-99.94", 5}, // behind the last
            {"99", 1, 1, "100", 2},
            {"100", 0, -1, "000", 0}, // the digit stays there for the way back
            {"100", 2, -1, "99", 1},
            {"0", 0, -1, "-1", 1},
            {"-1", 1, 1, "0", 0},
            {"0.05", 3, -10, "-0.05", 4},
            {"1e-6", 0, 1, "2e-6", 0},
            {"9.5e+3", 2, 10, "10.5e+3", 3},
            {"12.5 mm", 7, 1, "12.6 mm", 3},
            {"1ev", 0, 1, "2ev", 0},
            {"1,5", 2, 1, "1,6", 2},
            {"", 0, 1, "none", 0},
            {"2*3", 0, 1, "none", 0},
            {"1.2.3", 0, 1, "none", 0},
        };
        for (const auto& row : rows) {
            const QString text = QString::fromLatin1(row.text);
            UI::NumberNotation notation;
            if (text.contains(QLatin1Char(',')))
                notation.point = u',';
            const auto step = UI::steppedDigit(text, row.caret, row.steps, notation);
            QCOMPARE(step ? step->text : QStringLiteral("none"), QString::fromLatin1(row.after));
            QCOMPARE(step ? step->position : 0, row.position);
        }
    }

    void scrub() {
        ScrubDrag drag;
        ScrubDrag::Start start;
        start.number = 0.123;
        start.minimum = 0.0;
        start.maximum = 1.0;
        start.grain = 0.01;
        drag.press({100, 0}, start);
        QVERIFY(!drag.moveTo({103, 3}, 1.0, false));
        QCOMPARE(drag.state(), ScrubDrag::Armed);
        QVERIFY(!drag.moveTo({104, 0}, 1.0, false)); // the first pixels count for nothing
        QCOMPARE(drag.axis(), Qt::Horizontal);
        const auto at = [&](double x, double factor, bool snap = false) {
            drag.moveTo({x, 40}, factor, snap);
            return drag.number();
        };
        QCOMPARE(at(105, 1.0), 0.123); // less than half a step
        QCOMPARE(at(108, 1.0), 0.13);
        QCOMPARE(at(112, 10.0), 0.2);
        QCOMPARE(at(116, 0.1), 0.234);
        QCOMPARE(at(117, 1.0, true), 0.24);
        QCOMPARE(at(5000, 1.0), 1.0);
        QCOMPARE(at(4996, 1.0), 0.99); // the way back counts at once
        QCOMPARE(at(-5000, 1.0), 0.0);
        drag.rebase(0.5);
        QCOMPARE(at(-4996, 1.0), 0.51);
        drag.takeBack();
        QVERIFY(!drag.moveTo({200, 0}, 1.0, false));
        drag.release();
        start.upAndDownOnly = true;
        start.maximum = std::numeric_limits<double>::infinity();
        drag.press({0, 0}, start);
        QVERIFY(!drag.moveTo({50, -3}, 1.0, false));
        QVERIFY(!drag.moveTo({50, -4}, 1.0, false));
        QVERIFY(drag.moveTo({50, -8}, 1.0, false));
        QCOMPARE(drag.number(), 0.13);
    }
};

KXUI_TEST(NumberStepsTest);
#include "NumberStepsTest.moc"
