#include <support/TestRegistry.h>

#include <KxUI/time/TimeSliderTime.h>

#include <cmath>
#include <limits>

using Kestrel::Base::InvalidTime;
using Kestrel::UI::TimeSliderTime;

class TimeSliderTimeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sumsSaturate() {
        const TimeSliderTime max = TimeSliderTime::Max;
        const TimeSliderTime least = -TimeSliderTime::Max;
        QVERIFY(max + 1 == max);
        QVERIFY(least - 1 == least);
        QVERIFY(least - max == least);
        QVERIFY(max - least == max);
        QVERIFY(max - max == 0);
    }

    void invalidPropagatesAndComparesFalse() {
        const TimeSliderTime none;
        for (const TimeSliderTime& result :
             {none + 1, 1 + none, none - 1, 1 - none, none / 2, none / 2.0F, none * 3, none * 3.0F,
              none % 4, 4 % none, TimeSliderTime(0) * std::nanf("")})
            QCOMPARE(result.time(), InvalidTime);
        QCOMPARE(none / TimeSliderTime(7), 1);
        QCOMPARE(TimeSliderTime(7) / none, 1);
        for (const TimeSliderTime& other : {none, TimeSliderTime(0)})
            QVERIFY(!(none < other || none > other || none <= other || none >= other));
    }

    void quotientsAndProducts() {
        QCOMPARE((TimeSliderTime(5) / 2.0F).time(), 3); // half away from zero
        QCOMPARE((TimeSliderTime(-5) / 2.0F).time(), -3);
        QCOMPARE((TimeSliderTime(-5) / 2).time(), -2);
        QCOMPARE(TimeSliderTime(-9) / TimeSliderTime(4), -2);
        QCOMPARE((TimeSliderTime(3) * 0.5F).time(), 2);
        QCOMPARE((TimeSliderTime(16777217) * 1.0F).time(), 16777216); // single precision
        QCOMPARE((TimeSliderTime(-7) % 4).time(), -3);
    }

    void whatDoesNotFitIsLimited() {
        const TimeSliderTime max = TimeSliderTime::Max;
        QVERIFY(TimeSliderTime(1) / 0.0F == max);
        QVERIFY(TimeSliderTime(-1) / 0.0F == -TimeSliderTime::Max);
        QVERIFY(max * 2.0F == max);
        QCOMPARE(max / TimeSliderTime(1), std::numeric_limits<int>::max());
        QCOMPARE((max * 2).time(), -2); // an int factor wraps around
    }
};

KXUI_TEST(TimeSliderTimeTest);
#include "TimeSliderTimeTest.moc"
