#include <KxUI/progress/TimeToGo.h>
#include <KxUI/progress/TimeToGo_p.h>

#include <support/Plain.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <deque>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace Kestrel::UI;

namespace {

/** When how much of a piece of work was done: one step at each of these times. */
struct Trace {
    const char* name;
    std::vector<double> steps;

    double end() const { return steps.back(); }
};

Trace evenly(const char* name, int count, const std::function<double(int)>& pause) {
    Trace trace{name, {}};
    double now = 0;
    for (int i = 0; i < count; ++i)
        trace.steps.push_back(now += pause(i));
    return trace;
}

std::vector<Trace> traces(unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> spread(0.8, 1.2);
    std::lognormal_distribution<double> network(0, 0.5);
    double chunk = 0;
    return {evenly("constant", 1200, [](int) { return 0.5; }),
            evenly("slower after half", 600, [](int i) { return i < 300 ? 0.5 : 1.5; }),
            // What is decoded at once, and then read again.
            evenly("bursts", 30 * 30, [](int i) { return i % 30 == 0 ? 24.1 : 0.1; }),
            evenly("frames of 90 s", 60, [&](int) { return 90 * spread(random); }),
            // Before it nobody can know, so it comes after a third.
            evenly("a stall", 480, [](int i) { return i == 160 ? 60 : 0.5; }),
            evenly("a cached tenth", 2400, [](int i) { return i < 240 ? 0.07 : 0.5; }),
            evenly("network", 600, [&](int i) {
                if (i % 10 == 0)
                    chunk = network(random);
                return 0.5 * chunk;
            })};
}

/** What somebody says at a time of what is done, each second. */
using Estimator = std::function<double(double now, double done, double total)>;

/** As task lists of programs do: all of the time by all of the work. */
Estimator elapsedAverage() {
    return [](double now, double done, double total) { return now / done * (total - done); };
}

/** The average of the last ten seconds. */
Estimator window() {
    return [past = std::deque<std::pair<double, double>>()](double now, double done,
                                                            double total) mutable {
        past.emplace_back(now, done);
        while (now - past.front().first > 10)
            past.pop_front();
        const double rate = (done - past.front().second) / std::max(1e-9, now - past.front().first);
        return rate > 0 ? (total - done) / rate : 1e6;
    };
}

/** An exponential average with weight 0.3 for each update. */
Estimator updateAverage() {
    return [work = 0.0, time = 0.0, last = 0.0, at = 0.0](double now, double done,
                                                          double total) mutable {
        if (done > last) {
            work = 0.3 * (done - last) + 0.7 * work;
            time = 0.3 * (now - at) + 0.7 * time;
            last = done;
            at = now;
        }
        return work > 0 ? (total - done) * time / work : 1e6;
    };
}

/** An exponential average over 15 s, twice. */
Estimator doubleAverage() {
    return [first = 0.0, second = 0.0, last = 0.0, at = 0.0](double now, double done,
                                                             double total) mutable {
        const double span = std::max(1e-9, now - at);
        const double fade = std::pow(0.1, span / 15);
        first = first * fade + (done - last) / span * (1 - fade);
        second = second * fade + first * (1 - fade);
        last = done;
        at = now;
        const double whole = 1 - std::pow(0.1, now / 15);
        return second > 0 ? (total - done) * whole / second : 1e6;
    };
}

struct Error {
    double median = 0;
    double most = 0;      ///< but for one in twenty
    double upsAnHour = 0; ///< times that the number grew
    double hidden = 0;    ///< share of the time without a number
};

Error errorOf(std::vector<double> errors, int ups, int hidden, double seconds) {
    Error error;
    std::sort(errors.begin(), errors.end());
    error.median = errors[errors.size() / 2];
    error.most = errors[errors.size() * 95 / 100];
    error.upsAnHour = ups * 3600 / seconds;
    error.hidden = hidden / seconds;
    return error;
}

/** Goes through a trace; `shown` gives the number to show, or a negative one. */
Error run(const Trace& trace, const std::function<void(double, double)>& report,
          const std::function<double(double)>& shown) {
    std::vector<double> errors;
    int ups = 0;
    int hidden = 0;
    double before = 0;
    std::size_t done = 0;
    for (double now = 1; now < trace.end(); now += 1) {
        while (trace.steps[done] <= now) {
            ++done;
            report(trace.steps[done - 1], double(done));
        }
        const double said = shown(now);
        hidden += said < 0 ? 1 : 0;
        if (said < 0)
            continue;
        ups += before > 0 && said > 1.1 * before + 5 ? 1 : 0;
        before = said;
        const double left = trace.end() - now;
        if (now > 0.05 * trace.end() && left > 1)
            errors.push_back(std::fabs(std::log2(std::max(said, 1.0) / left)));
    }
    return errorOf(errors, ups, hidden, trace.end());
}

Error ours(const Trace& trace) {
    TimeToGo time;
    time.start(0, double(trace.steps.size()));
    return run(
        trace, [&](double now, double done) { time.report(now, done); },
        [&](double now) { return time.shown(now).value_or(-1); });
}

Error theirs(const Trace& trace, const Estimator& estimator) {
    double done = 0;
    CalmTime calm;
    Estimator own = estimator;
    return run(
        trace, [&](double, double now) { done = now; },
        [&](double now) {
            return done > 0 ? calm.follow(own(now, done, double(trace.steps.size())), 1) : -1;
        });
}

bool isFine(const std::optional<double>& seconds) {
    return !seconds || (*seconds >= 0 && *seconds <= 99.0 * 24 * 3600);
}

} // namespace

// No kind of work leads it far astray, as each of the usual ways is by one or another.
KXUI_PLAIN_TEST(TimeToGoTest, isNeverFarOut) {
    const std::vector<std::pair<const char*, std::function<Estimator()>>> peers{
        {"elapsed average", elapsedAverage},
        {"update average", updateAverage},
        {"window", window},
        {"double average", doubleAverage}};
    constexpr unsigned seeds = 5;
    double worst = 0;
    std::vector<double> worstPeers(peers.size());
    for (std::size_t kind = 0; kind < traces(1).size(); ++kind) {
        Error error;
        std::vector<double> medians(peers.size());
        for (unsigned seed = 1; seed <= seeds; ++seed) {
            const Trace trace = traces(seed)[kind];
            const Error one = ours(trace);
            error.median += one.median / seeds;
            error.most += one.most / seeds;
            error.upsAnHour += one.upsAnHour / seeds;
            error.hidden += one.hidden / seeds;
            for (std::size_t i = 0; i < peers.size(); ++i)
                medians[i] += theirs(trace, peers[i].second()).median / seeds;
        }
        const std::string name = traces(1)[kind].name;
        std::printf("%-18s median %.2f, 95 %% %.2f, ups %.0f, hidden %.2f;", name.c_str(),
                    error.median, error.most, error.upsAnHour, error.hidden);
        worst = std::max(worst, error.median);
        for (std::size_t i = 0; i < peers.size(); ++i) {
            worstPeers[i] = std::max(worstPeers[i], medians[i]);
            std::printf(" %s %.2f", peers[i].first, medians[i]);
        }
        std::printf("\n");
        CHECK(error.median <= 0.35);
        CHECK(error.most <= 1.6);
        CHECK(error.upsAnHour <= 30);
        // A silence that is not usual is told as such.
        CHECK(error.hidden <= (name == "a stall" ? 0.2 : 0.1));
    }
    std::printf("worst median: ours %.2f", worst);
    for (std::size_t i = 0; i < peers.size(); ++i) {
        std::printf(", %s %.2f", peers[i].first, worstPeers[i]);
        CHECK(worst < worstPeers[i]);
    }
    std::printf("\n");
    CHECK(ours(traces(1)[0]).upsAnHour == 0);
}

// Clocks that jump, totals that change, work that is done again: a number or none, never nonsense.
KXUI_PLAIN_TEST(TimeToGoTest, staysFiniteWhateverIsReported) {
    std::mt19937 random(11);
    const double odd[] = {0,
                          -1,
                          1e308,
                          -1e308,
                          std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::infinity()};
    for (int round = 0; round < 300; ++round) {
        TimeToGo time;
        double now = double(random() % 1000) - 500;
        time.start(now, double(random() % 1000));
        for (int i = 0; i < 200; ++i) {
            const double value = random() % 20 == 0 ? odd[random() % 6] : double(random() % 1200);
            now = random() % 50 == 0 ? value : now + double(random() % 4000) / 1000;
            switch (random() % 8) {
            case 0:
                time.pause(now);
                break;
            case 1:
                time.resume(now);
                break;
            case 2:
                time.setTotal(now, value);
                break;
            case 3:
                time.hint(value);
                break;
            default:
                time.report(now, value);
            }
            CHECK(isFine(time.estimate(now)));
            CHECK(isFine(time.shown(now)));
            CHECK(time.silence(now) >= 0);
        }
    }
}

KXUI_PLAIN_TEST(TimeToGoTest, knowsWhenToBeSilent) {
    TimeToGo time;
    time.start(100, 100);
    CHECK(!time.estimate(101));
    for (int i = 1; i <= 30; ++i) {
        time.report(100 + i, i);
        CHECK(time.shown(100 + i).has_value() == (i >= 3));
    }
    CHECK(std::fabs(*time.shown(130) - 70) < 1);
    // A silence that is not usual, and one that is a pause.
    CHECK(!time.isStalled(139) && time.isStalled(141));
    CHECK(!time.shown(141) && time.silence(141) == 11);
    time.pause(141);
    CHECK(!time.isStalled(1000));
    time.resume(1000);
    time.report(1001, 31);
    CHECK(!time.isStalled(1002) && time.shown(1002));
    CHECK(std::fabs(*time.estimate(1002) - 80) < 30);
    // A new total shows at once.
    const double before = *time.shown(1003);
    time.setTotal(1003, 1000);
    CHECK(*time.shown(1003) > 5 * before);
    time.setTotal(1003, 0);
    CHECK(!time.estimate(1003));
    // Once it was silent for long, that is usual here.
    TimeToGo bursts;
    bursts.start(0, 100);
    bursts.report(24, 10);
    bursts.report(24.1, 20);
    CHECK(!bursts.isStalled(50));
}

KXUI_PLAIN_TEST(TimeToGoTest, believesAnEarlierRunAtFirst) {
    TimeToGo time;
    time.hint(600);
    time.start(0, 100);
    CHECK(std::fabs(*time.shown(1) - 599) < 1);
    for (int i = 1; i <= 10; ++i)
        time.report(i, i);
    // Half of the fifth is done, so both count.
    CHECK(std::fabs(*time.estimate(10) - (0.5 * 90 + 0.5 * 590)) < 2);
    for (int i = 11; i <= 30; ++i)
        time.report(i, i);
    CHECK(std::fabs(*time.estimate(30) - 70) < 1);
}

// What is measured in does not matter.
KXUI_PLAIN_TEST(TimeToGoTest, hasNoUnitOfWork) {
    TimeToGo frames;
    TimeToGo bytes;
    frames.start(0, 50);
    bytes.start(1e6, 50e12);
    std::mt19937 random(5);
    double now = 0;
    for (int i = 1; i < 50; ++i) {
        now += double(random() % 5000) / 1000;
        frames.report(now, i);
        bytes.report(1e6 + now, i * 1e12);
        const auto a = frames.shown(now);
        const auto b = bytes.shown(1e6 + now);
        CHECK(a.has_value() == b.has_value());
        CHECK(!a || std::fabs(*a - *b) < 1e-3 * (1 + *a));
    }
}
