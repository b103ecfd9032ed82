#include <support/TestRegistry.h>

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSliderGeometry_p.h>
#include <KxUI/time/TimeSliderLabels_p.h>
#include <KxUI/time/TimecodeTicks_p.h>

#include <limits>
#include <optional>
#include <random>

using namespace Kestrel::UI;
using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;

namespace {

constexpr Time Max = TimeSliderTime::Max;
constexpr Time Extremes[] = {InvalidTime, -Max, -Max + 1, -1, 0, 1, 99, 1 << 20, Max - 1, Max};

TimeSliderGeometry makeGeometry(int width, TimeSliderRange visible, TimeSliderRange clip) {
    TimeSliderGeometry geometry;
    geometry.width = width;
    geometry.height = 37;
    geometry.visible = visible;
    geometry.clip = clip;
    return geometry;
}

using Ticks = std::vector<std::pair<Time, int>>;

// The ticks by the plainest of loops over the finest of them.
Ticks plainTicks(const TimeSliderGeometry& geometry, const TimeSliderTicks& plan) {
    const Time first = geometry.visible.first.time();
    const Time fine = std::max<Time>(plan.step / 10, 1);
    Ticks ticks;
    for (Time time = first + 1; time <= geometry.visible.last.time(); ++time) {
        if (time % fine != 0)
            continue;
        if (time % plan.major == 0)
            ticks.emplace_back(time, TimeSliderTicks::Major);
        else if (time % plan.step == 0)
            ticks.emplace_back(time, TimeSliderTicks::Step);
        else if (plan.pixelsPerStep > 10 && time % (plan.step / 2) == 0)
            ticks.emplace_back(time, TimeSliderTicks::Half);
        else if (plan.pixelsPerStep > 30)
            ticks.emplace_back(time, TimeSliderTicks::Tenth);
    }
    return ticks;
}

} // namespace

class TimeSliderGeometryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Nothing here may overflow, divide by zero or leave the range of an int: the sanitizers watch.
    void answersEverythingOnAnyWidth() {
        for (int width = 0; width <= 20; ++width) {
            for (const Time first : Extremes) {
                for (const Time last : Extremes) {
                    const auto geometry = makeGeometry(width, {first, last}, {last, first});
                    const auto swapped = makeGeometry(width, {first, last}, {first, last});
                    for (const Time time : Extremes) {
                        QVERIFY(std::abs(geometry.timeToX(time)) <= (1 << 30) + 5);
                        QVERIFY(std::abs(swapped.timeToRangeBarX(time)) <= (1 << 30) + 5);
                        const TimeSliderRange range{first, last};
                        zoomedRange(range, time, 1.1F);
                        zoomedRange(range, time, std::numeric_limits<float>::min());
                        scrolledRange(range, time, 1, swapped.clip);
                    }
                    for (const int x : {std::numeric_limits<int>::min(), -1, 0, 5, 19, 1 << 30,
                                        std::numeric_limits<int>::max()}) {
                        const bool isValid = first != InvalidTime && last != InvalidTime;
                        QCOMPARE(geometry.xToTime(x) != InvalidTime, isValid);
                        swapped.xToRangeBarTime(x);
                        swapped.autoScroll(x);
                        QVERIFY(geometry.clampX(x) >= 5);
                    }
                    geometry.pixelsToTime(-3.5F);
                    if (geometry.visible.length() >= 1) {
                        int count = 0;
                        TimeSliderTicks::plan(geometry).forEach(geometry.visible,
                                                                [&](Time, int) { ++count; });
                        QVERIFY(count <= 2001); // twice the range, since its length is limited
                    }
                    int x = 5;
                    for (const TimeSliderBand& band : planBands(geometry, {first, last})) {
                        QCOMPARE(band.x, x);
                        QVERIFY(band.end >= x);
                        x = band.end;
                    }
                    QCOMPARE(x, std::max(width - 5, 5));
                }
            }
        }
    }

    void timesComeBackFromTheirPixels() {
        for (const Time first : {Time(-7), Time(0), Time(86400), Time(1) << 40}) {
            for (const int frames : {1, 2, 7, 100, 250}) {
                const auto geometry =
                    makeGeometry(510, {first, first + frames - 1}, {first, first + frames - 1});
                for (Time time = first; time <= first + frames; ++time)
                    QCOMPARE(geometry.xToTime(geometry.timeToX(time)), time);
                QCOMPARE(geometry.timeToX(first + frames), 505);
                QCOMPARE(geometry.timeToRangeBarX(first + frames), 505);
                QCOMPARE(geometry.xToRangeBarTime(5).time(), first);
            }
        }
        QCOMPARE(makeGeometry(510, {0, 99}, {0, 99}).xToTime(5 + 5 * 7 + 3), 8); // rounds
    }

    void ticksFollowTheRange() {
        const auto plan = TimeSliderTicks::plan(makeGeometry(500, {0, 99}, {0, 99}));
        QCOMPARE(plan.step, 1);
        QCOMPARE(plan.pixelsPerStep, 5.0);
        QCOMPARE(plan.major, 10);
        QCOMPARE(TimeSliderTicks::plan(makeGeometry(500, {0, 100}, {})).step, 10);
        QCOMPARE(TimeSliderTicks::plan(makeGeometry(3840, {0, 99999}, {})).major, 5000);

        std::mt19937 random(7);
        for (int round = 0; round < 300; ++round) {
            const Time first = Time(random() % 40000) - 20000;
            const Time length = Time(1) << (random() % 14);
            const auto geometry =
                makeGeometry(int(random() % 4000), {first, first + Time(random()) % length}, {});
            const auto ticks = TimeSliderTicks::plan(geometry);
            Ticks visited;
            ticks.forEach(geometry.visible,
                          [&](Time time, int kind) { visited.emplace_back(time, kind); });
            QCOMPARE(visited, plainTicks(geometry, ticks));
        }
    }

    // Each tick within the range and no other, by the texts that frames really have.
    void timecodeTicksStandOnWholeSeconds() {
        TimeFormatter formatter;
        std::mt19937 random(11);
        for (int round = 0; round < 200; ++round) {
            const bool drops = round % 3 == 0;
            const Kestrel::Base::TimeBase bases[] = {
                {24u, false}, {25u, false}, {30u, true}, {60u, true}, {7u, false}};
            const Kestrel::Base::TimeBase base = drops ? bases[2 + round % 2] : bases[round % 5];
            TimecodeTicks::Rate rate;
            rate.fps = base.roundedFps();
            rate.dropped = drops ? rate.fps / 15 : 0;
            rate.start = round % 4 == 0 ? Time(random() % 500000) : 0;
            formatter.setTimeDisplay(base, true, drops, rate.start);
            const Time first = Time(random() % 2000000) - (round % 5 == 0 ? 1000000 : 0);
            const Time length = Time(1) << (random() % 16);
            const auto geometry = makeGeometry(600, {first, first + length}, {});
            const auto ticks = TimecodeTicks::plan(geometry, rate, 50);
            Time before = first;
            int majors = 0;
            ticks.forEach(geometry.visible, [&](Time time, int kind) {
                QVERIFY(time > before && time <= first + length);
                before = time;
                majors += kind == TimeSliderTicks::Major;
                const QString text = formatter.formatTime(time);
                const bool isWhole = text.endsWith("00") || (drops && text.endsWith("00;02")) ||
                                     (drops && text.endsWith("00;04"));
                if (!isWhole) {
                    QVERIFY2(ticks.step < rate.fps, qPrintable(text));
                    QCOMPARE(text.right(2).toInt() % int(ticks.step), 0);
                }
            });
            QVERIFY(majors <= 600 / 50);
            QVERIFY(ticks.major % ticks.step == 0);
        }
    }

    void playheadLabelKeepsClearOfMarks() {
        const TimeSliderMarkSpans none;
        QCOMPARE(playheadLabelLeft(500, 250, 60, none), std::optional(220));
        QCOMPARE(playheadLabelLeft(500, 0, 60, none), std::optional(0));
        QCOMPARE(playheadLabelLeft(500, 500, 60, none), std::optional(440));
        const TimeSliderMarkSpans one{{{200, 260}, {}}};
        QCOMPARE(playheadLabelLeft(500, 250, 60, one), std::optional(264));
        QCOMPARE(playheadLabelLeft(500, 210, 60, one), std::optional(136));
        QCOMPARE(playheadLabelLeft(500, 350, 60, one), std::optional(320));
        const TimeSliderMarkSpans two{{{0, 60}, {70, 130}}};
        QCOMPARE(playheadLabelLeft(500, 60, 60, two), std::optional(134));
        QCOMPARE(playheadLabelLeft(140, 60, 60, two), std::nullopt);
    }

    void labelsKeepClear() {
        TimeSliderLabels labels(makeGeometry(300, {}, {}), 50, 60);
        QVERIFY(labels.lastFits());
        QVERIFY(!labels.take(10 + 20 + 50, 40)); // runs into the first
        QVERIFY(labels.take(10 + 20 + 50 + 1, 40));
        QVERIFY(!labels.take(120, 40)); // into the one before
        QVERIFY(labels.take(130, 40));
        QVERIFY(!labels.take(300 - 10 - 20 - 60, 40)); // into the last
        QVERIFY(!TimeSliderLabels(makeGeometry(100, {}, {}), 50, 60).lastFits());
    }

    void zoomsByAFrameAtLeast() {
        const auto zoom = [](Time first, Time last, Time about, float factor) {
            const auto range = zoomedRange({first, last}, about, factor);
            return std::pair(range.first.time(), range.last.time());
        };
        QCOMPARE(zoom(0, 110, 0, 1.1F), std::pair(Time(0), Time(100)));
        QCOMPARE(zoom(0, 100, 50, 0.5F), std::pair(Time(-50), Time(150)));
        QCOMPARE(zoom(10, 12, 10, 1.1F), std::pair(Time(10), Time(11)));       // rounds to the same
        QCOMPARE(zoom(10, 12, 10, 0.9090909F), std::pair(Time(10), Time(13))); // likewise
        QCOMPARE(zoom(10, 10, 10, 1.1F), std::pair(Time(10), Time(10)));       // nothing is shorter
        QCOMPARE(zoom(10, 20, 500, 2), std::pair(Time(15), Time(20))); // about the last frame
        for (const float factor : {0.0F, -1.0F, std::nanf(""), HUGE_VALF})
            QCOMPARE(zoom(3, 9, 5, factor), std::pair(Time(3), Time(9)));
    }

    void scrollsTimesIntoView() {
        const auto first = [](int mode, Time time) {
            const TimeSliderRange range = scrolledRange({400, 500}, time, mode, {0, 999});
            return (range.last - range.first).time() == 100 ? range.first.time() : InvalidTime;
        };
        QCOMPARE(first(2, 420), 400); // inside already
        QCOMPARE(first(2, 600), 550); // to the centre
        QCOMPARE(first(1, 300), 200); // from before: to the end
        QCOMPARE(first(1, 600), 550);
        QCOMPARE(first(3, 600), 600); // from after: to the start
        QCOMPARE(first(2, 10), 0);    // not before the clip
        QCOMPARE(first(2, 995), 900); // nor beyond it
        QCOMPARE(first(2, -500), -550);
    }

    void autoScrollsOutsideOnly() {
        const auto geometry = makeGeometry(510, {0, 99}, {0, 99});
        QCOMPARE(geometry.autoScroll(-5).time(), 0);
        QCOMPARE(geometry.autoScroll(515).time(), 0);
        QCOMPARE(geometry.autoScroll(-6).time(), -4); // 20 pixels are 4 frames
        QCOMPARE(geometry.autoScroll(516).time(), 4);
        QCOMPARE(makeGeometry(510, {0, 3}, {0, 3}).autoScroll(600).time(), 1);
    }

    void markLabelsKeepClearOfTheOtherMark() {
        using Mark = std::optional<TimeSliderMarkLabels::Mark>;
        const auto plan = [](Mark in, Mark out) {
            const auto labels = TimeSliderMarkLabels::plan(200, in, out);
            return QStringLiteral("%1 %2").arg(labels.in.value_or(-1)).arg(labels.out.value_or(-1));
        };
        const auto mark = [](int at) { return Mark({at, 40}); };
        QCOMPARE(plan(mark(100), mark(120)), QStringLiteral("56 124")); // outside both
        QCOMPARE(plan(mark(44), mark(156)), QStringLiteral("0 160"));   // just so
        QCOMPARE(plan(mark(43), mark(157)), QStringLiteral("47 113"));  // no room: inside
        QCOMPARE(plan(mark(43), mark(87)), QStringLiteral("-1 91"));    // nor there
        QCOMPARE(plan(mark(150), mark(160)), QStringLiteral("106 -1"));
        QCOMPARE(plan(mark(5), {}), QStringLiteral("9 -1"));
        QCOMPARE(plan({}, mark(195)), QStringLiteral("-1 151"));
    }
};

KXUI_TEST(TimeSliderGeometryTest);
#include "TimeSliderGeometryTest.moc"
