#include "FakeTimer.h"

#include <KxUI/eventgraph/EventAdder.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphTimerQTime.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventStopper.h>
#include <KxUI/eventgraph/EventUserDataInt.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <cmath>
#include <functional>
#include <random>

using namespace Kestrel::UI;
using namespace Kestrel::Test;
using Type = EventTrack::Type;
using TrackType = EventTrack::TrackType;

namespace {

// What a track is meant to hold, written down step by step and without any lock.
struct Reference {
    struct Capture {
        bool paused = true;
        EventGraphMode mode = EventGraphMode::Forwards;
        float duration = unlimited;
    };
    struct Event {
        int time;
        int type;
        float value;
        IEventUserData* data;
    };

    std::vector<Event> events;
    std::size_t limit = 0;
    int depth = 0, openStart = 0, duration = 0, count = 0;
    quint64 openBytes = 0, totalBytes = 0;
    double sum = 0;
    Reference* follower = nullptr;

    void append(const Capture& capture, const Event& event) {
        if (capture.mode == EventGraphMode::History) {
            if (events.size() == limit && !events.empty())
                events.erase(events.begin());
        } else if (events.size() >= limit) {
            return;
        }
        events.push_back(event);
    }

    void add(const Capture& capture, int type, IEventUserData* data, int time, bool isNow) {
        if (type == 1 && depth++ != 0)
            return;
        if (type == 1)
            openStart = time;
        if (type == 2) {
            const int left = --depth;
            depth = std::max(depth, 0);
            if (left != 0)
                return;
        }
        if (type < 0 || type > 2)
            return;
        if (follower)
            follower->follow(capture, type, time);
        if (isNow && capture.paused)
            return;
        append(capture, {time, type, 0.0f, data});
        if (type == 2) {
            duration += time - openStart;
            ++count;
        }
    }

    void follow(const Capture& capture, int type, int time) {
        if (type == 1) {
            ++depth;
            openStart = time;
            openBytes = 0;
        } else if (type == 2) {
            --depth;
            if (capture.paused)
                return;
            const int span = time - openStart;
            duration += span;
            totalBytes += openBytes;
            ++count;
            append(capture,
                   {time, 0, float(double(openBytes) * 1000.0 / (span == 0 ? 1 : span)), nullptr});
        }
    }

    void clear(const Capture& capture, int perSecond, int maximum) {
        events.clear();
        limit = capture.duration == unlimited ? std::size_t(maximum)
                                              : std::size_t(float(perSecond) * capture.duration);
        duration = count = 0;
        sum = 0;
        totalBytes = 0;
    }

    void cut(int start) {
        while (!events.empty() && events.front().time - start < 0)
            events.erase(events.begin());
    }
};

EventTrack timeline(const QString& name = "Timeline", int sortKey = 0) {
    return EventTrack(name, Qt::red, sortKey, TrackType::Timeline, 0, 1, 5000, 100, 50, nullptr);
}

// A track in a view whose clock stands.
struct Stage {
    Stage() { view.addTrack(&track); }
    FakeTimer timer;
    EventGraphView view{nullptr, &timer};
    EventTrack track = timeline();
};

// How a track leaves a view, perhaps for another.
using Leave = std::function<void(EventTrack& track, std::unique_ptr<EventGraphView>& view,
                                 EventGraphView& other)>;

} // namespace
Q_DECLARE_METATYPE(Leave)

class Recording : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void randomOperations_data() { Kestrel::Test::addSeeds(12); }
    void randomOperations() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        const auto upTo = [&](int n) { return int(random() % unsigned(n)); };

        FakeTimer timer;
        timer.now = 1000;
        EventGraphView view(nullptr, &timer);
        constexpr int perSecond = 7, maximum = 25;
        EventTrack time("t", Qt::red, 1, TrackType::Timeline, 0, 1, perSecond, maximum, 20,
                        nullptr);
        EventTrack value("v", Qt::red, 2, TrackType::Value, 0, 1, perSecond, maximum, 20, nullptr);
        EventTrack bytes("b", Qt::red, 3, TrackType::Bandwidth, 0, 1, perSecond, maximum, 20,
                         &time);
        EventTrack* const tracks[] = {&time, &value, &bytes};
        Reference references[3];
        references[0].follower = &references[2];
        Reference::Capture capture;
        int start = timer.now;
        for (EventTrack* track : tracks)
            view.addTrack(track);

        for (int step = 0; step < 3000; ++step) {
            switch (upTo(14)) {
            case 0:
                if (upTo(10) == 0) {
                    capture = {false, EventGraphMode(upTo(2)),
                               upTo(3) == 0 ? unlimited : float(1 + upTo(30)) / 8.0f};
                    view.start(capture.duration, capture.mode);
                    start = timer.now;
                    for (Reference& reference : references)
                        reference.clear(capture, perSecond, maximum);
                }
                break;
            case 1:
                if (upTo(10) == 0) {
                    view.stop();
                    capture.paused = true;
                    if (capture.mode == EventGraphMode::History && capture.duration != unlimited)
                        start = std::max(start, timer.now - int(double(capture.duration) * 1000.0));
                    for (Reference& reference : references)
                        reference.cut(start);
                    QCOMPARE(view.startTime(), start);
                    QCOMPARE(view.endTime(), timer.now.load());
                }
                break;
            case 2:
            case 3:
                timer.now += upTo(120);
                break;
            case 4: {
                const float sample = float(upTo(1000)) / 7.0f;
                value.addEvent(sample);
                if (!capture.paused) {
                    references[1].append(capture, {timer.now, 0, sample, nullptr});
                    ++references[1].count;
                    references[1].sum += double(sample);
                }
                break;
            }
            case 5: {
                const auto size = quint64(random()) << upTo(31);
                bytes.addDataSize(size);
                if (references[2].depth > 0)
                    references[2].openBytes += size;
                break;
            }
            default: {
                const int type = upTo(20) == 0 ? 3 + upTo(3) : upTo(8) == 0 ? 0 : 1 + upTo(2);
                const EventUserDataIP data(upTo(2) ? new EventUserDataInt(step) : nullptr);
                const bool isNow = upTo(4) != 0;
                const int at = isNow ? timer.now.load() : timer.now - upTo(500);
                time.addEvent(Type(type), data, isNow ? -1 : at);
                references[0].add(capture, type, data.get(), at, isNow);
                break;
            }
            }
            for (int i = 0; i < 3; ++i) {
                const auto& events = tracks[i]->events();
                const auto& expected = references[i].events;
                QCOMPARE(events.size(), expected.size());
                const bool same =
                    std::equal(events.begin(), events.end(), expected.begin(),
                               [](const EventTrack::Event& a, const Reference::Event& b) {
                                   return a.time == b.time && int(a.type) == b.type &&
                                          a.value == b.value && a.userData.get() == b.data;
                               });
                QVERIFY2(same, qPrintable(QString("track %1, step %2").arg(i).arg(step)));
                QCOMPARE(tracks[i]->hasSamples(), references[i].count != 0);
            }
            const auto text = [](const char* label, double number) {
                return label + QString::number(number, 'g', 6);
            };
            const Reference &t = references[0], &v = references[1], &b = references[2];
            QCOMPARE(time.trackTooltipText(),
                     t.count ? text(", Mean Duration=", double(t.duration) / t.count) : QString());
            QCOMPARE(value.trackTooltipText(),
                     v.count ? text(", Mean Value=", v.sum / v.count) : QString());
            QCOMPARE(bytes.trackTooltipText(),
                     b.duration
                         ? text(", Mean Bandwidth=", double(b.totalBytes) * 1000.0 / b.duration)
                         : QString());
        }
    }

    void limits() {
        const auto held = [](float seconds, int perSecond, int maximum) {
            FakeTimer timer;
            EventGraphView view(nullptr, &timer);
            EventTrack track("t", Qt::red, 0, TrackType::Value, 0, 1, perSecond, maximum, 20,
                             nullptr);
            view.addTrack(&track);
            view.start(seconds, EventGraphMode::Forwards);
            for (int i = 0; i < 64; ++i)
                track.addEvent(float(i));
            return int(track.events().size());
        };
        QCOMPARE(held(2.5f, 4, 100), 10);
        QCOMPARE(held(0.99f, 10, 100), 9); // truncated
        QCOMPARE(held(unlimited, 4, 30), 30);
        QCOMPARE(held(unlimited, 4, -5), 0);
        QCOMPARE(held(5.0f, -4, 10), 0);
        QCOMPARE(held(3.0e9f, 5000, 10), 64); // beyond int
        QCOMPARE(held(std::nanf(""), 5000, 10), 0);
    }

    // An event of its own time fills a paused history whose limit was never computed.
    void historyBeforeTheFirstClear() {
        FakeTimer timer;
        EventGraphView view(nullptr, &timer);
        view.start(2, EventGraphMode::History);
        view.stop();
        EventTrack track = timeline();
        view.addTrack(&track);
        for (int i = 0; i < 500; ++i)
            track.addEvent(Type::Sample, nullptr, i);
        QCOMPARE(track.events().size(), std::size_t(500));
    }

    // A snapshot needs no lock and stays as it is, whatever becomes of the capture.
    void snapshots() {
        EventGraphSnapshot seen;
        EventTrackSnapshot alone;
        {
            Stage stage;
            auto& [timer, view, track] = stage;
            EventTrack value(EventTrack::Options::graph("v", Qt::blue, 2, 5).at(-1).high(30));
            view.addTrack(&value);
            view.start(unlimited, EventGraphMode::Forwards);
            for (int i = 0; i < 50; ++i) {
                track.addEvent(Type::Start, nullptr, i);
                track.addEvent(Type::End, new EventUserDataInt(i), i + 2);
            }
            timer.now = 7;
            view.stop();
            seen = view.snapshot();
            alone = track.snapshot();
            track.addEvent(Type::Sample, nullptr, 9);
            track.finaliseHistory(25);
            QVERIFY(track.events().size() < 60);
        }
        QCOMPARE(seen.startTime, 0);
        QCOMPARE(seen.endTime, 7);
        QCOMPARE(seen.tracks.size(), std::size_t(2));
        const EventTrackSnapshot &first = seen.tracks[0], &second = seen.tracks[1];
        QVERIFY(first.name == "v" && first.color == QColor(Qt::blue) && first.sortKey == -1 &&
                first.type == TrackType::Value && first.minValue == 2 && first.maxValue == 5 &&
                first.graphHeight == 30 && first.events.empty() && !first.hasSamples);
        for (const EventTrackSnapshot& track : {second, alone}) {
            QCOMPARE(track.events.size(), std::size_t(100));
            QCOMPARE(track.events[31].userData->text(), QString("15 (0xf)"));
            QCOMPARE(track.tooltipText, QString(", Mean Duration=2"));
        }
    }

    void differencesWrap() {
        Stage stage;
        auto& [timer, view, track] = stage;
        timer.now = std::numeric_limits<int>::max() - 5;
        view.start(2, EventGraphMode::History);
        track.addEvent(Type::Start, nullptr);
        timer.now = std::numeric_limits<int>::min() + 14; // 20 ms later
        track.addEvent(Type::End, nullptr);
        view.stop();
        QCOMPARE(track.events().size(), std::size_t(2));
        QCOMPARE(track.trackTooltipText(), QString(", Mean Duration=20"));
    }

    void scopedRecorders() {
        Stage stage;
        auto& [timer, view, track] = stage;
        view.start(unlimited, EventGraphMode::Forwards);
        const EventUserDataIP first(new EventUserDataInt(1)), second(new EventUserDataInt(2));
        {
            EventAdder adder(&track, first, true);
            EventAdder nested(&track, nullptr, true);
            adder.setUserData(second);
        }
        QCOMPARE(track.events().front().userData.get(), first.get());
        QCOMPARE(track.events().back().userData.get(), second.get());
        {
            const EventAdder disabled(&track, first, false);
            const EventAdder nowhere(nullptr, first, true);
        }
        QCOMPARE(track.events().size(), std::size_t(2));
        track.addEvent(Type::Start, nullptr);
        { const EventStopper stopper(&track); }
        QCOMPARE(track.events().size(), std::size_t(4));
    }

    void orderAndRemoval() {
        EventTrack a = timeline("a", 5), b = timeline("b", 5), c = timeline("c", 1);
        {
            EventGraphView view;
            for (EventTrack* track : {&a, &b, &c})
                view.addTrack(track);
            QCOMPARE(view.tracks().values(), QList<EventTrack*>({&c, &b, &a}));
            view.removeTrack(&a);
            QCOMPARE(view.tracks().values(), QList<EventTrack*>({&c}));
            QVERIFY(!a.graph());
            QCOMPARE(b.graph(), &view);
            {
                EventTrack gone = timeline("d", 1);
                view.addTrack(&gone);
            }
            QVERIFY(view.tracks().isEmpty());
        }
        QVERIFY(!b.graph());
        b.addEvent(Type::Start, nullptr);

        // A track of another view moves; an assigned track is found under its old key, too.
        EventGraphView one, two;
        one.addTrack(&a);
        two.addTrack(&a);
        QVERIFY(one.tracks().isEmpty());
        {
            EventTrack d = timeline("d", 9);
            one.addTrack(&d);
            d = a;
        }
        QVERIFY(one.tracks().isEmpty());
    }

    void followersAreUnlinked() {
        FakeTimer timer;
        EventGraphView view(nullptr, &timer);
        auto time = std::make_unique<EventTrack>(timeline());
        const auto follower = [&] {
            return std::make_unique<EventTrack>("b", Qt::red, 1, TrackType::Bandwidth, 0, 1, 10, 10,
                                                20, time.get());
        };
        auto first = follower(), second = follower();
        view.addTrack(time.get());
        const EventTrack copy(*time);
        view.start(unlimited, EventGraphMode::Forwards);
        first.reset();
        const_cast<EventTrack&>(copy).addEvent(Type::Start, nullptr);
        time.reset();
        second.reset();
        const_cast<EventTrack&>(copy).addEvent(Type::End, nullptr);
        QCOMPARE(copy.events().size(), std::size_t(0));
    }

    // An activity that is open when its track leaves the view ends there, for followers too.
    void openActivitiesEndWithTheView_data() {
        const Columns<
            std::function<void(EventTrack&, std::unique_ptr<EventGraphView>&, EventGraphView&)>>
            row("leave");
        row("removed", [](auto& track, auto& view, auto&) { view->removeTrack(&track); });
        row("unset", [](auto& track, auto&, auto&) { track.setGraph(nullptr); });
        row("set", [](auto& track, auto&, auto& other) { track.setGraph(&other); });
        row("moved", [](auto& track, auto&, auto& other) { other.addTrack(&track); });
        row("view gone", [](auto&, auto& view, auto&) { view.reset(); });
    }
    void openActivitiesEndWithTheView() {
        using Leave =
            std::function<void(EventTrack&, std::unique_ptr<EventGraphView>&, EventGraphView&)>;
        QFETCH(Leave, leave);
        for (const int depth : {1, 2}) {
            for (const bool comesBack : {false, true}) {
                FakeTimer timer;
                EventGraphView other(nullptr, &timer);
                auto view = std::make_unique<EventGraphView>(nullptr, &timer);
                EventTrack track = timeline();
                EventTrack follower("b", Qt::red, 1, TrackType::Bandwidth, 0, 1, 100, 100, 20,
                                    &track);
                for (EventTrack* each : {&track, &follower})
                    view->addTrack(each);
                view->start(unlimited, EventGraphMode::Forwards);
                for (int i = 0; i < depth; ++i)
                    track.addEvent(Type::Start, nullptr);
                leave(track, view, other);
                for (int i = 0; i < depth && !comesBack; ++i)
                    track.addEvent(Type::End, nullptr);
                for (EventTrack* each : {&track, &follower})
                    other.addTrack(each);
                other.start(unlimited, EventGraphMode::Forwards);
                for (int i = 0; i < depth && comesBack; ++i)
                    track.addEvent(Type::End, nullptr);
                QVERIFY(track.events().empty());
                follower.addDataSize(7);
                track.addEvent(Type::Start, nullptr);
                follower.addDataSize(20);
                timer.now += 10;
                track.addEvent(Type::End, nullptr);
                follower.addDataSize(7);
                QCOMPARE(track.trackTooltipText(), QString(", Mean Duration=10"));
                QCOMPARE(follower.trackTooltipText(), QString(", Mean Bandwidth=2000"));
                QCOMPARE(track.events().size(), std::size_t(2));
            }
        }
    }

    // With a cost that grows with the square of the tracks this would not end.
    void manyTracksGoSoon() {
        constexpr int count = 100'000;
        EventGraphView view;
        EventTrack time = timeline();
        std::vector<std::unique_ptr<EventTrack>> tracks;
        for (int i = 0; i < count; ++i) {
            tracks.push_back(std::make_unique<EventTrack>(
                "t", Qt::red, i, i % 2 ? TrackType::Bandwidth : TrackType::Value, 0.0f, 1.0f, 1, 1,
                20, &time));
            view.addTrack(tracks.back().get());
        }
        tracks.clear();
        QVERIFY(view.tracks().isEmpty());
        time.addEvent(Type::Start, nullptr);
    }

    // Foreign destructors run outside the locks: these record, which would deadlock inside.
    void droppedDataIsReleasedOutsideTheLocks() {
        struct Recorder : IEventUserData {
            explicit Recorder(EventTrack& other, int& deathCount)
                : track(other)
                , deaths(deathCount) {}
            ~Recorder() override {
                ++deaths;
                track.addEvent(1.0f);
            }
            QString text() const override { return {}; }
            EventTrack& track;
            int& deaths;
        };
        FakeTimer timer;
        EventGraphView view(nullptr, &timer);
        EventTrack log("log", Qt::red, 9, TrackType::Value, 0, 1, 5000, 100, 20, nullptr);
        int deaths = 0;
        {
            EventTrack track("t", Qt::red, 1, TrackType::Timeline, 0, 1, 2, 2, 20, nullptr);
            view.addTrack(&log);
            view.addTrack(&track);
            view.start(1, EventGraphMode::History);
            for (int i = 0; i < 5; ++i)
                track.addEvent(Type::Sample, new Recorder(log, deaths));
            QCOMPARE(deaths, 3);
            timer.now = 5000;
            view.stop();
            QCOMPARE(deaths, 5);
            const auto refill = [&] { track.addEvent(Type::Sample, new Recorder(log, deaths), 1); };
            refill();
            track.clear();
            refill();
            view.start(1, EventGraphMode::Forwards);
            track.addEvent(Type::Sample, new Recorder(log, deaths));
            track = timeline();
            QCOMPARE(deaths, 8);
        }
        // A track and its follower may drop something at one event.
        EventTrack time("t", Qt::red, 1, TrackType::Timeline, 0, 1, 1, 1, 20, nullptr);
        EventTrack follower("b", Qt::red, 2, TrackType::Bandwidth, 0, 1, 1, 1, 20, &time);
        for (EventTrack* each : {&time, &follower})
            view.addTrack(each);
        view.start(1, EventGraphMode::History);
        time.addEvent(Type::Start, new Recorder(log, deaths));
        follower.addEvent(Type::Sample, new Recorder(log, deaths));
        time.addEvent(Type::End, nullptr);
        QCOMPARE(deaths, 10);
    }

    void signalsAndTheStopTimer() {
        EventGraphView view;
        QSignalSpy starting(&view, SIGNAL(captureStarting(bool)));
        QSignalSpy stopped(&view, SIGNAL(captureStopped()));
        EventTrack track = timeline();
        view.addTrack(&track);
        // Slots may record: no lock is held while signals are sent.
        connect(&view, &EventGraphView::captureStarting, &view,
                [&] { track.addEvent(Type::Sample, nullptr); });
        connect(&view, &EventGraphView::captureStopped, &view,
                [&] { track.addEvent(Type::Sample, nullptr); });
        view.start(0.05f, EventGraphMode::Forwards);
        QVERIFY(!view.paused());
        QTRY_COMPARE(stopped.count(), 1);
        view.start(0.05f, EventGraphMode::History);
        view.start(unlimited, EventGraphMode::Forwards);
        QTest::qWait(150);
        QCOMPARE(stopped.count(), 1);
        QCOMPARE(starting.count(), 3);
        QCOMPARE(starting.at(0).at(0).toBool(), true);
        QCOMPARE(starting.at(1).at(0).toBool(), false);
    }

    void theDefaultClockIsTheTimeOfDay() {
        EventGraphTimerQTime timer;
        const auto timeOfDay = [] { return QTime::currentTime().msecsSinceStartOfDay(); };
        const int until = timeOfDay() + 60;
        for (int after = 0; after < until;) {
            const int before = timeOfDay(), now = timer.time();
            after = timeOfDay();
            if (after < before)
                return; // midnight
            QVERIFY2(before <= now && now <= after,
                     qPrintable(QString("%1 <= %2 <= %3").arg(before).arg(now).arg(after)));
        }
    }
};

KXUI_TEST(Recording);
#include "Recording.moc"
