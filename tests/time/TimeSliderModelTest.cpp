#include <support/TestRegistry.h>

#include <KxUI/time/TimeSliderModel.h>

#include <QSignalSpy>
#include <QtTest>

#include <random>

using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;
using Kestrel::UI::TimeSliderModel;

namespace {

constexpr int Modified = -1; // inOutTimesModified() in a log of signals

// The model again as one table of seven numbers, with every rule spelled out on plain values.
struct Reference {
    Time start = InvalidTime, end = InvalidTime, in = InvalidTime, out = InvalidTime;
    Time current = InvalidTime, first = InvalidTime, last = InvalidTime;
    bool lock = false;
    std::vector<int> log;

    static bool valid(Time time) { return time != InvalidTime; }

    void setMark(bool isIn, Time t, bool lockIt) {
        if (valid(t) && valid(end) && t > end)
            t = end;
        if (valid(t) && valid(start) && t < start)
            t = start;
        Time& mark = isIn ? in : out;
        Time& other = isIn ? out : in;
        if (lock && t == mark)
            return;
        mark = t;
        const bool crossed = isIn ? in > out : out < in;
        if (crossed)
            other = InvalidTime;
        lock |= lockIt && valid(t);
        log.insert(log.end(), {crossed ? 12 : isIn ? 4 : 8, Modified});
    }

    void clear(bool isIn) {
        (isIn ? in : out) = InvalidTime;
        if (!valid(in) && !valid(out))
            lock = false;
        log.insert(log.end(), {isIn ? 4 : 8, Modified});
    }

    void go(Time t) {
        if (t != current)
            log.push_back(16);
        current = t;
    }

    void setVisible(bool isFirst, Time t) {
        Time& edge = isFirst ? first : last;
        Time& other = isFirst ? last : first;
        if (edge == t)
            return;
        edge = t;
        const bool pulled = valid(t) && valid(other) && (isFirst ? t > other : t < other);
        if (pulled)
            other = t;
        log.push_back(pulled ? 192 : isFirst ? 64 : 128);
        const Time reference = isFirst ? (valid(in) ? in : start) : (valid(out) ? out : end);
        if (valid(t) && valid(reference) && (isFirst ? t > reference : t < reference))
            log.push_back(Modified);
    }

    void setTimes(Time s, Time i, Time o, Time e, Time c) {
        int flags = 0;
        const bool before = lock;
        for (auto [member, time, bit] : {std::tuple(&start, s, 1),
                                         {&in, i, 4},
                                         {&out, o, 8},
                                         {&end, e, 2},
                                         {&current, c, 16}}) {
            if (*member == time)
                continue;
            *member = time;
            flags |= bit;
            lock |= (bit & 12) != 0 && valid(time);
        }
        if (flags != 0)
            log.push_back(flags);
        if (lock != before)
            log.push_back(Modified);
    }

    Time playback(bool isStart) const {
        const Time clip = isStart ? start : end;
        const Time mark = isStart ? in : out;
        const Time edge = isStart ? first : last;
        if (lock)
            return valid(mark) ? mark : clip;
        if (!valid(edge) || !valid(start) || !valid(end))
            return clip;
        const bool inside = isStart ? edge > start && edge <= end : edge < end && edge >= start;
        return inside ? edge : clip;
    }
};

} // namespace

class TimeSliderModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void randomOperationsFollowTheReference() {
        std::mt19937 random(20240607);
        const auto pick = [&random](int n) { return int(random() % unsigned(n)); };
        const auto time = [&] { return pick(8) == 0 ? InvalidTime : Time(pick(24) - 4); };

        for (int round = 0; round < 200; ++round) {
            TimeSliderModel model;
            Reference expected;
            std::vector<int> log;
            connect(&model, &TimeSliderModel::timeChanged, this,
                    [&](TimeSliderModel::TimeFlags flags) { log.push_back(int(flags)); });
            connect(&model, &TimeSliderModel::inOutTimesModified, this,
                    [&] { log.push_back(Modified); });

            for (int step = 0; step < 150; ++step) {
                const Time t = time();
                const int operation = pick(20);
                switch (operation) {
                case 0: {
                    const Time u = time(), v = time(), w = time(), x = time();
                    model.setTimes(t, u, v, w, x);
                    expected.setTimes(t, u, v, w, x);
                    break;
                }
                case 1:
                    model.setStartTime(t);
                    expected.setTimes(t, expected.in, expected.out, expected.end, expected.current);
                    break;
                case 2:
                    model.setEndTime(t);
                    expected.setTimes(expected.start, expected.in, expected.out, t,
                                      expected.current);
                    break;
                case 3:
                    model.setCurrentTime(t);
                    expected.go(t);
                    break;
                case 4:
                case 5: {
                    const bool lock = pick(2) == 0;
                    operation == 4 ? model.setInTime(t, lock) : model.setOutTime(t, lock);
                    expected.setMark(operation == 4, t, lock);
                    break;
                }
                case 6:
                    model.markIn();
                    expected.in == expected.current
                        ? expected.clear(true)
                        : expected.setMark(true, expected.current, true);
                    break;
                case 7:
                    model.markOut();
                    expected.out == expected.current
                        ? expected.clear(false)
                        : expected.setMark(false, expected.current, true);
                    break;
                case 8:
                    model.clearIn();
                    expected.clear(true);
                    break;
                case 9:
                    model.clearOut();
                    expected.clear(false);
                    break;
                case 10:
                    model.clearInOut();
                    expected.in = expected.out = InvalidTime;
                    expected.lock = false;
                    expected.log.insert(expected.log.end(), {4, 8, Modified});
                    break;
                case 11:
                    model.setFirstVisibleTime(t);
                    expected.setVisible(true, t);
                    break;
                case 12:
                    model.setLastVisibleTime(t);
                    expected.setVisible(false, t);
                    break;
                case 13: {
                    const bool on = pick(2) == 0;
                    model.enableInOutLock(on);
                    if (on != expected.lock) {
                        if (on && expected.in == InvalidTime && expected.out == InvalidTime) {
                            expected.in = expected.start;
                            expected.out = expected.end;
                        }
                        expected.lock = on;
                        expected.log.insert(expected.log.end(), {12, Modified});
                    }
                    break;
                }
                case 14:
                    model.goToStart();
                    expected.go(expected.start);
                    break;
                case 15:
                    model.goToEnd();
                    expected.go(expected.end);
                    break;
                case 16:
                    model.goToInPoint();
                    expected.go(expected.in != InvalidTime ? expected.in : expected.start);
                    break;
                case 17:
                    model.goToOutPoint();
                    expected.go(expected.out != InvalidTime ? expected.out : expected.end);
                    break;
                case 18:
                    model.skipBackwards(7);
                    if (expected.current != InvalidTime)
                        expected.go(std::max<Time>(expected.current - 7, 0));
                    break;
                case 19:
                    model.skipForwards(7);
                    if (expected.current != InvalidTime)
                        expected.go(expected.end == InvalidTime
                                        ? expected.current + 7
                                        : std::min(expected.current + 7, expected.end));
                    break;
                }
                const auto state = [](auto... values) { return std::make_tuple(values...); };
                QVERIFY2(state(model.startTime(), model.endTime(), model.inTime(), model.outTime(),
                               model.currentTime(), model.firstVisibleTime().time(),
                               model.lastVisibleTime().time(), model.inOutLock(),
                               model.playbackStartTime(), model.playbackEndTime()) ==
                             state(expected.start, expected.end, expected.in, expected.out,
                                   expected.current, expected.first, expected.last, expected.lock,
                                   expected.playback(true), expected.playback(false)),
                         qPrintable(QStringLiteral("operation %1").arg(operation)));
                QVERIFY2(log == expected.log,
                         qPrintable(QStringLiteral("signals of operation %1").arg(operation)));
            }
        }
    }

    void playbackRange() {
        TimeSliderModel model;
        QCOMPARE(model.duration(), InvalidTime);
        model.setTimes(0, InvalidTime, InvalidTime, 100, 5);
        model.setFirstVisibleTime(20);
        model.setLastVisibleTime(50);
        QCOMPARE(model.duration(), 101);
        QCOMPARE(model.inOutDuration(), 31);
        model.setLastVisibleTime(200);
        model.setFirstVisibleTime(150);
        QCOMPARE(model.playbackStartTime(), 0);
        QCOMPARE(model.inOutDuration(), 101);
    }

    void frameStepsAreUnclampedAndAlwaysEmitted() {
        TimeSliderModel model;
        QSignalSpy changed(&model, SIGNAL(timeChanged(Kestrel::UI::TimeSliderModel::TimeFlags)));
        model.frameForwards();
        model.frameBackwards();
        model.skipBackwards(1);
        QCOMPARE(changed.count(), 0); // nowhere to step from
        model.setTimes(10, InvalidTime, InvalidTime, 20, 20);
        model.frameForwards();
        QCOMPARE(model.currentTime(), 21);
        model.setCurrentTime(Kestrel::UI::TimeSliderTime::Max);
        changed.clear();
        model.frameForwards();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(int(changed.at(0).at(0).value<TimeSliderModel::TimeFlags>()), 16);
        QCOMPARE(model.currentTime(), Kestrel::UI::TimeSliderTime::Max);
    }

    void equalKeyFramesAreNoChange() {
        TimeSliderModel model;
        QSignalSpy changed(&model, &TimeSliderModel::timeChanged);
        model.setKeyFrames(std::set<Time>{3, 8});
        model.setKeyFrames(std::set<int>{8, 3});
        QCOMPARE(changed.count(), 1);
        model.setKeyFrames(std::set<int>{3, 9});
        QCOMPARE(changed.count(), 2);
        QCOMPARE(model.keyFrames(), (std::set<Time>{3, 9}));
    }
};

KXUI_TEST(TimeSliderModelTest);
#include "TimeSliderModelTest.moc"
