#include <KxUI/base/TimeBase.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(Kestrel::Base::TimeBase)

using Kestrel::Base::TimeBase;

static_assert(TimeBase(25, false).roundedFps() == 25);
static_assert(TimeBase::standard(TimeBase::Rate2997) == TimeBase(29.97));
static_assert(!std::is_constructible_v<TimeBase, unsigned, int>, "30000, 1001 is no (fps, NTSC)");

class TimeBaseTest : public QObject {
    Q_OBJECT

private slots:
    void fromRate_data() {
        QTest::addColumn<double>("rate");
        QTest::addColumn<quint64>("numerator");
        QTest::addColumn<quint64>("denominator");
        const auto row = [](double rate, quint64 numerator, quint64 denominator) {
            QTest::addRow("%.9g", rate) << rate << numerator << denominator;
        };
        row(0.0, 0, 1);
        row(0.00009, 0, 1);
        row(25.0, 25, 1);
        row(24.00009, 24, 1);
        row(23.98, 24000, 1001);
        row(29.97, 30000, 1001);
        row(29.981, 30000, 1001);
        row(29.982, 2998, 100);
        row(59.94, 60000, 1001);
        row(12.5, 1250, 100);
        row(12.345, 1235, 100); // 1234.5 in single precision, half away from zero
        row(-25.0, 0, 1);
        row(-12.5, 0, 100);
        row(1e30, std::numeric_limits<quint64>::max(), 1);
        row(1e300, 0, 0);
        row(std::numeric_limits<double>::infinity(), 0, 0);
        row(std::nan(""), 0, 0);
    }

    void fromRate() {
        QFETCH(double, rate);
        const TimeBase base(rate);
        QTEST(quint64{base.numerator()}, "numerator");
        QTEST(quint64{base.denominator()}, "denominator");
    }

    void fromWholeRate() {
        QCOMPARE(TimeBase(0, false).isValid(), false);
        QCOMPARE(TimeBase(0, true).isValid(), false);
        QCOMPARE(TimeBase(24, true).numerator(), std::uint64_t{24000});
        QCOMPARE(TimeBase(24, true).denominator(), std::uint64_t{1001});
        QCOMPARE(TimeBase(4294967295U, true).numerator(), std::uint64_t{4294967295000});
    }

    void standardRates() {
        const double rates[] = {24, 25, 30, 50, 60, 23.976, 29.97, 59.94};
        TimeBase base;
        for (std::uint32_t index = 0; index < 8; ++index) {
            QVERIFY(base.setStandard(index));
            QCOMPARE(base, TimeBase(rates[index]));
            QCOMPARE(base.isNtscRate(), index >= 5);
            QCOMPARE(base.isDropFrameRate(), index >= 6);
        }
        QVERIFY(!base.setStandard(8));
        QCOMPARE(base.numerator(), std::uint64_t{60000});
    }

    void roundedFps_data() {
        QTest::addColumn<TimeBase>("base");
        QTest::addColumn<int>("fps");
        const auto largest = std::numeric_limits<std::uint64_t>::max();
        QTest::newRow("invalid") << TimeBase::fromFraction(25, 0) << 0;
        QTest::newRow("just below a half") << TimeBase::fromFraction(499, 1000) << 0;
        QTest::newRow("a half") << TimeBase::fromFraction(1, 2) << 1;
        QTest::newRow("23.976") << TimeBase::fromFraction(24000, 1001) << 24;
        QTest::newRow("largest") << TimeBase::fromFraction(largest, 1)
                                 << std::numeric_limits<std::int32_t>::max();
    }

    void roundedFps() {
        QFETCH(TimeBase, base);
        QTEST(int{base.roundedFps()}, "fps");
    }

    void equality() {
        const TimeBase ntsc = TimeBase::fromFraction(30000, 1001);
        QCOMPARE(ntsc, TimeBase::fromFraction(29970, 1000));
        QCOMPARE(ntsc, TimeBase::fromFraction(2997, 100));
        QVERIFY(ntsc != TimeBase::fromFraction(29971, 1000));
        QCOMPARE(TimeBase(), TimeBase::fromFraction(25, 0));
        QVERIFY(TimeBase() != TimeBase(0.0));
    }
};

KXUI_TEST(TimeBaseTest);

#include "TimeBaseTest.moc"
