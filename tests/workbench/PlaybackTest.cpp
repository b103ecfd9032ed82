#include <support/TestRegistry.h>

#include "app/CommandLine.h"
#include "media/FrameCache.h"
#include "play/FrameRate.h"
#include "play/PlaybackClock.h"
#include "play/RateMeter.h"

#include <limits>
#include <random>

using namespace Kestrel::Workbench;
using Kestrel::Base::Time;

namespace {

constexpr std::int64_t second = 1'000'000'000;

FramePtr frameOf(Time time, int bytes, Frame::State state = Frame::State::Ready) {
    auto frame = std::make_shared<Frame>();
    frame->time = time;
    frame->state = state;
    frame->image = QImage(bytes / 4, 1, QImage::Format_RGB32);
    return frame;
}

} // namespace

/** Time and memory of playback, as values. */
class PlaybackTest : public QObject {
    Q_OBJECT

private slots:
    void clockKeepsTheRate() {
        using Rate = std::pair<std::uint64_t, std::uint64_t>;
        for (const auto& [numerator, denominator] :
             {Rate(24, 1), Rate(30000, 1001), Rate(1, 10), Rate(1000, 1)}) {
            PlaybackClock clock;
            clock.numerator = numerator;
            clock.denominator = denominator;
            clock.startNs = 12345;
            clock.last = std::numeric_limits<int>::max();
            for (const std::uint64_t tick : {1ULL, 2ULL, 1001ULL, 86400ULL, 86400ULL * 1000}) {
                const std::int64_t moment = clock.momentOf(tick);
                QCOMPARE(clock.at(moment).ticks, tick);
                QCOMPARE(clock.at(moment - 1).ticks, tick - 1);
                QCOMPARE(clock.at(moment).time, Time(tick));
            }
            QCOMPARE(clock.at(0).ticks, std::uint64_t(0));
        }
    }

    void clockStaysInRange() {
        PlaybackClock clock;
        clock.numerator = 10;
        clock.first = -5;
        clock.last = 4;
        clock.origin = 3;
        const auto timeAt = [&clock](double seconds) {
            return clock.at(std::int64_t(seconds * 1e9)).time;
        };
        QCOMPARE(timeAt(0.1), Time(4));
        QCOMPARE(timeAt(0.2), Time(-5));
        QCOMPARE(timeAt(1.0), Time(3));
        clock.direction = -1;
        QCOMPARE(timeAt(0.8), Time(-5));
        QCOMPARE(timeAt(0.9), Time(4));
        clock.repeat = PlaybackClock::Repeat::Once;
        QVERIFY(!clock.at(8 * second / 10).ended);
        QVERIFY(clock.at(9 * second / 10).ended);
        QCOMPARE(timeAt(100.0), Time(-5));
        clock.first = clock.last = clock.origin;
        clock.repeat = PlaybackClock::Repeat::Loop;
        QCOMPARE(timeAt(7.7), clock.origin);
    }

    void clockBounces() {
        PlaybackClock clock;
        clock.numerator = 1;
        clock.first = 10;
        clock.last = 13;
        clock.origin = 12;
        clock.repeat = PlaybackClock::Repeat::Bounce;
        QString times;
        QString directions;
        for (int seconds = 0; seconds < 9; ++seconds) {
            const auto position = clock.at(seconds * second);
            QVERIFY(!position.ended);
            times += QString::number(position.time - 10);
            directions += QLatin1Char(position.direction > 0 ? '>' : '<');
        }
        QCOMPARE(times, QStringLiteral("232101232"));
        QCOMPARE(directions, QStringLiteral(">><<>>>><"));
        clock.direction = -1;
        clock.origin = 11;
        QCOMPARE(clock.at(2 * second).time, Time(11));
        QCOMPARE(clock.at(2 * second).direction, 1);
        clock.first = clock.last = clock.origin;
        QCOMPARE(clock.at(5 * second).time, Time(11));
    }

    void meter() {
        RateMeter meter;
        QCOMPARE(meter.rate(0), 0.0);
        // 24 frames a second, of which every third is not shown in time and one of those late.
        for (std::uint64_t tick = 1; tick <= 48; ++tick)
            meter.reached(tick, tick % 3 != 0, std::int64_t(tick) * second / 24);
        QCOMPARE(meter.dropped(), std::uint64_t(16));
        QVERIFY(std::abs(meter.rate(2 * second) - 16.0) < 0.7);
        meter.shownLate(2 * second);
        meter.shownLate(2 * second);
        QCOMPARE(meter.dropped(), std::uint64_t(15));
        meter.restart();
        meter.reached(1, true, 2 * second + 1);
        meter.reached(11, true, 2 * second + 2);
        QCOMPARE(meter.dropped(), std::uint64_t(24));
        QCOMPARE(meter.rate(10 * second), 0.0);
    }

    void orderNamesTheNearestFirst() {
        PlayOrder order;
        order.first = 10;
        order.last = 20;
        order.playhead = 18;
        QCOMPARE(order.next(4), (std::vector<Time>{18, 19, 17, 20}));
        order.direction = 1;
        QCOMPARE(order.next(5), (std::vector<Time>{18, 19, 20, 10, 11}));
        order.direction = -1;
        QCOMPARE(order.next(3), (std::vector<Time>{18, 17, 16}));
        order.stride = 4; // what the clock passes, over the end as well
        QCOMPARE(order.next(6), (std::vector<Time>{18, 14, 10, 17, 13, 20}));
        order.direction = 1;
        PlaybackClock clock;
        clock.numerator = 1;
        clock.first = order.first;
        clock.last = order.last;
        clock.origin = order.playhead;
        clock.stride = order.stride;
        const auto times = order.next(7);
        for (std::size_t tick = 0; tick < times.size(); ++tick)
            QCOMPARE(clock.at(std::int64_t(tick) * second).time, times[tick]);
        order.stride = 1;
        for (const int direction : {-1, 0, 1}) {
            order.direction = direction;
            const std::vector<Time> all = order.next(1000);
            QCOMPARE(all.size(), std::size_t(11));
            for (std::size_t i = 1; i < all.size(); ++i)
                QVERIFY(order.distance(all[i - 1]) <= order.distance(all[i]));
        }
        order.direction = 1;
        QVERIFY(order.distance(9) > order.distance(17));
    }

    // Against a plain search for the frame that is needed last, over random moves.
    void cacheKeepsWhatIsNeededFirst() {
        std::mt19937 random(7);
        FrameCache cache(20000);
        std::map<Time, std::size_t> kept;
        PlayOrder order;
        order.last = 60;
        for (int step = 0; step < 4000; ++step) {
            order.playhead = Time(random() % 61);
            order.direction = int(random() % 3) - 1;
            const auto frame = frameOf(Time(random() % 61), 400 + int(random() % 3000));
            const auto outcome = cache.insert(frame, order);
            kept.erase(frame->time);
            for (const Time evicted : outcome.evicted) {
                for (const auto& other : kept)
                    QVERIFY(order.distance(evicted) >= order.distance(other.first));
                QVERIFY(order.distance(evicted) > order.distance(frame->time));
                QCOMPARE(kept.erase(evicted), std::size_t(1));
            }
            if (outcome.stored)
                kept[frame->time] = frame->cost();
            std::size_t bytes = 0;
            for (const auto& [time, cost] : kept) {
                bytes += cost;
                QVERIFY(cache.find(time));
            }
            QCOMPARE(cache.bytes(), bytes);
            QCOMPARE(cache.count(), kept.size());
            QVERIFY(bytes <= cache.capacity());
        }
        QVERIFY(!cache.insert(frameOf(1, 40000), order).stored);
    }

    void cacheFindsTheNearestPicture() {
        FrameCache cache(100000);
        const PlayOrder order;
        QVERIFY(!cache.nearestPicture(3));
        for (const Time time : {10, 20, 30})
            cache.insert(frameOf(time, 400), order);
        cache.insert(frameOf(24, 4, Frame::State::Unreadable), order);
        QCOMPARE(cache.nearestPicture(24)->time, Time(20));
        QCOMPARE(cache.nearestPicture(26)->time, Time(30));
        QCOMPARE(cache.nearestPicture(25)->time, Time(20));
        QCOMPARE(cache.nearestPicture(-100)->time, Time(10));
        QCOMPARE(cache.nearestPicture(100)->time, Time(30));
        QCOMPARE(cache.pictureTimes(), (std::vector<Time>{10, 20, 30}));
    }

    void frameRates() {
        QCOMPARE(parseFrameRate("24")->numerator(), std::uint64_t(24));
        QCOMPARE(parseFrameRate("30000/1001")->denominator(), std::uint64_t(1001));
        QCOMPARE(parseFrameRate("29.97")->numerator(), std::uint64_t(30000));
        for (const char* bad : {"", "x", "0", "-24", "24/0", "1/2/3", "1e9", "nan", "24/x"})
            QVERIFY2(!parseFrameRate(QString::fromLatin1(bad)), bad);
        QCOMPARE(formatFrameRate(24.0), QStringLiteral("24"));
        QCOMPARE(formatFrameRate(29.97003), QStringLiteral("29.97"));
    }

    void commandLine() {
        const auto parse = [](const QStringList& arguments) {
            return parseCommandLine(QStringList{QStringLiteral("kxui-workbench")} + arguments);
        };
        const CommandLine line = parse({"a", "--fps", "30000/1001", "b", "--palette", "light"});
        QCOMPARE(line.paths, (QStringList{"a", "b"}));
        QCOMPARE(line.timeBase.numerator(), std::uint64_t(30000));
        QVERIFY(!line.darkPalette);
        for (const QStringList& bad :
             {QStringList{"--fps", "fast"}, QStringList{"--fps"}, QStringList{"--palette", "pink"},
              QStringList{"--cache", "0"}, QStringList{"--unknown"}}) {
            QCOMPARE(parse(bad).action, CommandLine::Action::Refuse);
            QVERIFY(!parse(bad).text.isEmpty());
        }
    }
};

KXUI_TEST(PlaybackTest);
#include "PlaybackTest.moc"
