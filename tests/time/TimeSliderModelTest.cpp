#include <support/TestRegistry.h>

#include <KxUI/time/TimeSliderModel.h>

#include <array>
#include <functional>
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

    void setInTime(Time t, bool lockIt) { setMark(true, t, lockIt); }
    void setOutTime(Time t, bool lockIt) { setMark(false, t, lockIt); }
    void markIn() { in == current ? clearIn() : setMark(true, current, true); }
    void markOut() { out == current ? clearOut() : setMark(false, current, true); }

    void clear(bool isIn) {
        (isIn ? in : out) = InvalidTime;
        if (!valid(in) && !valid(out))
            lock = false;
        log.insert(log.end(), {isIn ? 4 : 8, Modified});
    }
    void clearIn() { clear(true); }
    void clearOut() { clear(false); }
    void clearInOut() {
        in = out = InvalidTime;
        lock = false;
        log.insert(log.end(), {4, 8, Modified});
    }

    void enableInOutLock(bool on) {
        if (on == lock)
            return;
        if (on && !valid(in) && !valid(out)) {
            in = start;
            out = end;
        }
        lock = on;
        log.insert(log.end(), {12, Modified});
    }

    void setCurrentTime(Time t) {
        if (t != current)
            log.push_back(16);
        current = t;
    }
    void goToStart() { setCurrentTime(start); }
    void goToEnd() { setCurrentTime(end); }
    void goToInPoint() { setCurrentTime(valid(in) ? in : start); }
    void goToOutPoint() { setCurrentTime(valid(out) ? out : end); }
    void skipBackwards(Time by) {
        if (valid(current))
            setCurrentTime(std::max<Time>(current - by, 0));
    }
    void skipForwards(Time by) {
        if (valid(current))
            setCurrentTime(valid(end) ? std::min(current + by, end) : current + by);
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

    void setFirstVisibleTime(Time t) { setVisible(true, t); }
    void setLastVisibleTime(Time t) { setVisible(false, t); }

    void setStartTime(Time t) { setTimes(t, in, out, end, current); }
    void setEndTime(Time t) { setTimes(start, in, out, t, current); }
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

struct Input {
    std::array<Time, 5> times;
    bool lock;
};

// What can be done with the model, and in the same words with the reference.
template <class Model>
std::vector<std::function<void()>> operations(Model& model, const Input& input) {
    const auto& times = input.times;
    const Time& t = times[0];
    return {
        [&] { model.setTimes(t, times[1], times[2], times[3], times[4]); },
        [&] { model.setStartTime(t); },
        [&] { model.setEndTime(t); },
        [&] { model.setCurrentTime(t); },
        [&] { model.setInTime(t, input.lock); },
        [&] { model.setOutTime(t, input.lock); },
        [&] { model.markIn(); },
        [&] { model.markOut(); },
        [&] { model.clearIn(); },
        [&] { model.clearOut(); },
        [&] { model.clearInOut(); },
        [&] { model.setFirstVisibleTime(t); },
        [&] { model.setLastVisibleTime(t); },
        [&] { model.enableInOutLock(input.lock); },
        [&] { model.goToStart(); },
        [&] { model.goToEnd(); },
        [&] { model.goToInPoint(); },
        [&] { model.goToOutPoint(); },
        [&] { model.skipBackwards(7); },
        [&] { model.skipForwards(7); },
    };
}

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

            Input input{};
            const auto change = operations(model, input);
            const auto expect = operations(expected, input);
            for (int step = 0; step < 150; ++step) {
                std::generate(input.times.begin(), input.times.end(), time);
                input.lock = pick(2) == 0;
                const auto operation = std::size_t(pick(int(change.size())));
                change[operation]();
                expect[operation]();
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

    void frameStepsAreUnclampedAndAlwaysEmitted() {
        TimeSliderModel model;
        QSignalSpy changed(&model, SIGNAL(timeChanged(Kestrel::UI::TimeSliderModel::TimeFlags)));
        model.frameForwards();
        QCOMPARE(changed.count(), 0); // nowhere to step from
        model.setTimes(10, InvalidTime, InvalidTime, 20, 20);
        model.frameForwards();
        QCOMPARE(model.currentTime(), 21); // beyond the clip
        model.setCurrentTime(Kestrel::UI::TimeSliderTime::Max);
        changed.clear();
        model.frameForwards();
        QCOMPARE(changed.count(), 1);
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
        QVERIFY(model.setProperty("keyFrames", QVariant::fromValue(std::set<Time>{4})));
        QCOMPARE(model.property("keyFrames").value<std::set<Time>>(), (std::set<Time>{4}));
        QCOMPARE(changed.count(), 3);
    }
};

KXUI_TEST(TimeSliderModelTest);
#include "TimeSliderModelTest.moc"
