#include <KxUI/draw/Ticks.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <cfloat>
#include <cmath>
#include <random>

using namespace Kestrel::UI;

Q_DECLARE_METATYPE(Kestrel::UI::Ticks::Unit)

namespace {

// Ranges, how many steps are wanted at most, and the steps of QwtLinearScaleEngine of Qwt 6.1.4.
struct KnownStep {
    double lower, upper;
    int most;
    double step;
};
constexpr KnownStep KnownSteps[]{
    {0, 1, 5, 0.2},
    {0, 1.1, 10, 0.2},
    {-0.1, 1.1, 8, 0.2},
    {0, 100, 4, 50},
    {0, 255, 5, 100},
    {0, 1023, 10, 200},
    {0, 41.7, 8, 10},
    {0, 3e-05, 4, 1e-05},
    {1001, 1100, 5, 20},
    {1, 1240, 10, 200},
    {-90, 90, 8, 50},
    {-0.001, 0.002, 4, 0.001},
    {0, 1000000, 5, 200000},
    {0, 123456, 10, 20000},
    {5, 5.02, 8, 0.005},
    {0.299, 0.301, 4, 0.0005},
    {-7.3, 109.5, 5, 50},
    {0, 7, 10, 1},
    {0, 9, 8, 2},
    {0, 1e-09, 4, 5e-10},
    {1e8, 100000003, 5, 1},
    {-5, -1, 10, 0.5},
    {0, 33, 8, 5},
    {0, 64, 4, 20},
    {12, 78, 5, 20},
    {0, 0.07, 10, 0.01},
    {-250000, 400000, 8, 100000},
    {0, 1920, 4, 500},
    {0, 16.667, 5, 5},
    {3, 2048, 10, 500},
};

Ticks::Rules rules(Ticks::Unit unit, double length, double label, bool logarithmic = false) {
    Ticks::Rules all;
    all.unit = unit;
    all.logarithmic = logarithmic;
    all.length = length;
    all.labelLength = [label](const QString& text) { return label * double(text.size()); };
    all.locale = QLocale::c();
    return all;
}

} // namespace

class TicksTest : public QObject {
    Q_OBJECT

private slots:
    void niceSteps() {
        for (const KnownStep& each : KnownSteps)
            QCOMPARE(Ticks::niceStep((each.upper - each.lower) / each.most), each.step);
        QCOMPARE(Ticks::niceStep(100, Ticks::Bytes), 128.0);
        QCOMPARE(Ticks::niceStep(7, Ticks::Seconds), 10.0);
        QCOMPARE(Ticks::niceStep(31, Ticks::Seconds), 60.0);
        QCOMPARE(Ticks::niceStep(5000, Ticks::Seconds), 7200.0);
        QCOMPARE(Ticks::niceStep(130000, Ticks::Seconds), 172800.0);
        QCOMPARE(Ticks::niceStep(0.3, Ticks::Frames), 1.0);
        for (const double none : {0.0, -1.0, double(NAN), double(INFINITY)})
            QCOMPARE(Ticks::niceStep(none), 0.0);
    }

    void texts_data() {
        const Kestrel::Test::Columns<double, double, Ticks::Unit, double, QString> add(
            "lower", "upper", "unit", "length", "expected");
        add("tenths", -0.3, 0.3, Ticks::Plain, 400, "-0.3 -0.2 -0.1 0.0 0.1 0.2 0.3");
        add("a prefix", 0, 2e6, Ticks::Plain, 300, "0.0M 0.5M 1.0M 1.5M 2.0M");
        add("small", 0, 2e-3, Ticks::Plain, 200, "0.0m 0.5m 1.0m 1.5m 2.0m");
        add("percent", 0, 1, Ticks::Percent, 300, "0 % 20 % 40 % 60 % 80 % 100 %");
        add("milliseconds", 0, 0.05, Ticks::Seconds, 400, "0 ms 10 ms 20 ms 30 ms 40 ms 50 ms");
        add("a clock", 0, 90, Ticks::Seconds, 250, "0:00 0:15 0:30 0:45 1:00 1:15 1:30");
        add("hours", 0, 7200, Ticks::Seconds, 350, "0:00 30:00 1:00:00 1:30:00 2:00:00");
        add("bytes", 0, 1536.0 * 1024, Ticks::Bytes, 400, "0.0 MiB 0.5 MiB 1.0 MiB 1.5 MiB");
        add("frames", 1001, 1003, Ticks::Frames, 400, "1001 1002 1003");
        add("frames far apart", 1001, 1240, Ticks::Frames, 200, "1050 1100 1150 1200");
        add("one label's room", 0, 1, Ticks::Plain, 20, "0 1");
    }
    void texts() {
        QFETCH(double, lower);
        QFETCH(double, upper);
        QFETCH(Ticks::Unit, unit);
        QFETCH(double, length);
        const Ticks ticks = Ticks::plan(lower, upper, rules(unit, length, 6));
        QTEST(ticks.texts.join(QLatin1Char(' ')), "expected");
        QVERIFY(std::is_sorted(ticks.minor.begin(), ticks.minor.end()));
    }

    void powersOfTen() {
        const auto texts = [](double lower, double upper, double length) {
            return Ticks::plan(lower, upper, rules(Ticks::Plain, length, 6, true))
                .texts.join(QLatin1Char(' '));
        };
        QCOMPARE(texts(0.1, 100, 600), QStringLiteral("0.1 0.2 0.5 1 2 5 10 20 50 100"));
        QCOMPARE(texts(0.1, 100, 150), QStringLiteral("0.1 1 10 100"));
        QCOMPARE(texts(0, 100, 150), QString());
        QVERIFY(Ticks::plan(1e-300, 1e300, rules(Ticks::Plain, 300, 6, true)).values.size() > 2);
        QVERIFY(Ticks::plan(3, 7, rules(Ticks::Plain, 300, 6, true)).values.size() > 2);
    }

    void oddRanges() {
        const Ticks::Rules some = rules(Ticks::Plain, 300, 6);
        const double pairs[][2]{{1, 1}, {2, 1}, {NAN, 1}, {0, INFINITY}, {-DBL_MAX, DBL_MAX}};
        for (const auto& pair : pairs)
            QVERIFY(Ticks::plan(pair[0], pair[1], some).values.empty());
        QVERIFY(!Ticks::plan(-DBL_MAX / 2, DBL_MAX / 2, some).values.empty());
        Ticks::plan(1e15, std::nextafter(1e15, 2e15), some); // comes back
        QVERIFY(Ticks::plan(0, 5e-324, some).values.empty());
        QVERIFY(Ticks::plan(0, 1, rules(Ticks::Plain, 1e9, 0)).values.size() <= 1000);
        QVERIFY(Ticks::plan(0, 1, rules(Ticks::Plain, 0, 6)).values.size() <= 2);
    }

    // Whatever the range is, labels stay half a label apart and values within the range.
    void labelsStayApart() {
        std::mt19937 random(3);
        for (int i = 0; i < 2000; ++i) {
            const double middle = std::ldexp(double(random()) - 2e9, int(random() % 80) - 60);
            const double reach = std::ldexp(double(random()) + 1, int(random() % 80) - 60);
            const double length = 30 + double(random() % 900);
            const auto unit = Ticks::Unit(random() % 5);
            const double lower = middle - reach;
            const double upper = middle + reach;
            const Ticks ticks = Ticks::plan(lower, upper, rules(unit, length, 6));
            QCOMPARE(int(ticks.values.size()), int(ticks.texts.size()));
            for (std::size_t k = 0; k < ticks.values.size(); ++k) {
                QVERIFY(ticks.values[k] >= lower && ticks.values[k] <= upper);
                if (k == 0)
                    continue;
                const double apart = (ticks.values[k] - ticks.values[k - 1]) / (upper - lower);
                const auto sizes = ticks.texts[int(k)].size() + ticks.texts[int(k) - 1].size();
                QVERIFY(apart * length * 1.0001 >= 0.75 * 6 * double(sizes));
            }
        }
    }

    void readings() {
        const auto text = [](double value, Ticks::Unit unit, double step = 0) {
            return Ticks::text(value, step, value, unit, QLocale::c());
        };
        QCOMPARE(text(0.03124, Ticks::Seconds), QStringLiteral("31.24 ms"));
        QCOMPARE(text(3725.5, Ticks::Seconds), QStringLiteral("1:02:06"));
        QCOMPARE(text(-0.0001, Ticks::Plain, 1), QStringLiteral("0"));
        QCOMPARE(text(5.2 * 1024 * 1024 * 1024, Ticks::Bytes), QStringLiteral("5.200 GiB"));
        QCOMPARE(text(NAN, Ticks::Plain), QStringLiteral("nan"));
        QCOMPARE(text(-INFINITY, Ticks::Bytes), QStringLiteral("-inf"));
        QCOMPARE(text(0, Ticks::Plain), QStringLiteral("0"));
        QCOMPARE(text(1e300, Ticks::Plain), QStringLiteral("1e+300"));
    }
};

KXUI_TEST(TicksTest);
#include "TicksTest.moc"
