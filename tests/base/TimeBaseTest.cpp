#include <KxUI/base/TimeBase.h>

#include <support/Plain.h>

#include <limits>

using Kestrel::Base::TimeBase;

static_assert(TimeBase::standard(TimeBase::Rate2997) == TimeBase(29.97));
static_assert(!std::is_constructible_v<TimeBase, unsigned, int>, "30000, 1001 is no (fps, NTSC)");

KXUI_PLAIN_TEST(TimeBaseTest, fromMeasuredRate) {
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
        COMPARE(base.numerator(), row.numerator);
        COMPARE(base.denominator(), row.denominator);
    }
}

KXUI_PLAIN_TEST(TimeBaseTest, standardRates) {
    const double rates[] = {24, 25, 30, 50, 60, 23.976, 29.97, 59.94};
    TimeBase base;
    for (std::uint32_t index = 0; index < 8; ++index) {
        CHECK(base.setStandard(index));
        CHECK(base == TimeBase(rates[index]));
        COMPARE(base.isNtscRate(), index >= 5);
        COMPARE(base.isDropFrameRate(), index >= 6);
    }
    CHECK(!base.setStandard(8));
    COMPARE(base.numerator(), std::uint64_t{60000});
    COMPARE(TimeBase(4294967295U, true).numerator(), std::uint64_t{4294967295000});
    COMPARE(TimeBase::fromFraction(499, 1000).roundedFps(), 0);
    COMPARE(TimeBase::fromFraction(1, 2).roundedFps(), 1);
    COMPARE(TimeBase::fromFraction(std::uint64_t{1} << 63, 1).roundedFps(), 2147483647);
}

KXUI_PLAIN_TEST(TimeBaseTest, equality) {
    const TimeBase ntsc = TimeBase::fromFraction(30000, 1001);
    CHECK(ntsc == TimeBase::fromFraction(2997, 100));
    CHECK(ntsc != TimeBase::fromFraction(29971, 1000));
    CHECK(TimeBase(0, true) == TimeBase::fromFraction(25, 0));
    CHECK(TimeBase() != TimeBase(0.0));
}
