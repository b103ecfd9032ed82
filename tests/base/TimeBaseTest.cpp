#include <KxUI/base/TimeBase.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <limits>

using Kestrel::Base::TimeBase;

static_assert(TimeBase::standard(TimeBase::Rate2997) == TimeBase(29.97));
static_assert(!std::is_constructible_v<TimeBase, unsigned, int>, "30000, 1001 is no (fps, NTSC)");

class TimeBaseTest : public QObject {
    Q_OBJECT

private slots:
    void fromMeasuredRate() {
        const struct {
            double rate;
            std::uint64_t numerator, denominator;
        } rows[] = {
            {0.00009, 0, 1},       {24.00009, 24, 1},
            {23.98, 24000, 1001},  {29.981, 30000, 1001},
            {29.982, 2998, 100},   {59.94, 60000, 1001},
            {12.345, 1235, 100}, // half away from zero, in single precision
            {-25.0, 0, 1},         {-12.5, 0, 100},
            {1e30, UINT64_MAX, 1}, {1e300, 0, 0},
            {-1e300, 0, 0},        {std::numeric_limits<double>::quiet_NaN(), 0, 0},
        };
        for (const auto& row : rows) {
            const TimeBase base(row.rate);
            QCOMPARE(base.numerator(), row.numerator);
            QCOMPARE(base.denominator(), row.denominator);
        }
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
        QCOMPARE(TimeBase(4294967295U, true).numerator(), std::uint64_t{4294967295000});
        QCOMPARE(TimeBase::fromFraction(499, 1000).roundedFps(), 0);
        QCOMPARE(TimeBase::fromFraction(1, 2).roundedFps(), 1);
        QCOMPARE(TimeBase::fromFraction(std::uint64_t{1} << 63, 1).roundedFps(), 2147483647);
    }

    void equality() {
        const TimeBase ntsc = TimeBase::fromFraction(30000, 1001);
        QCOMPARE(ntsc, TimeBase::fromFraction(2997, 100));
        QVERIFY(ntsc != TimeBase::fromFraction(29971, 1000));
        QCOMPARE(TimeBase(0, true), TimeBase::fromFraction(25, 0));
        QVERIFY(TimeBase() != TimeBase(0.0));
    }
};

KXUI_TEST(TimeBaseTest);

#include "TimeBaseTest.moc"
