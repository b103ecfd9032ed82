#include <KxUI/progress/TimeToGo.h>

#include <KxUI/progress/TimeToGo_p.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

// The values come from simulations of even, slowing, bursting, coarse, halting, cached and noisy
// work, in which no other set had a smaller worst error.
constexpr double halfLifeFloor = 15; // seconds
constexpr double halfLifeGaps = 6;
constexpr double halfLifeShare = 0.15; // of the time that has passed
constexpr double longestHalfLives = 0.5;
constexpr double followRate = 0.05; // a second
constexpr double gatherTime = 0.25; // seconds: reports closer together are one
constexpr double farthest = 99.0 * 24 * 3600;

// Beyond thirty thousand years a clock is broken, and differences are too coarse.
bool isTime(double seconds) {
    return std::fabs(seconds) < 1e12;
}

// The mean of 2^-u for u from 0 to x: what work that was spread over x half-lives weighs.
double meanWeight(double x) {
    return x < 1e-6 ? 1 : (1 - std::exp2(-x)) / (x * std::log(2.0));
}

} // namespace

double CalmTime::follow(double estimate, double dt) {
    if (std::exchange(m_isNew, false)) {
        m_counted = m_shown = estimate;
        m_wrongFor = 0;
        return m_shown;
    }
    m_counted = std::max(0.0, m_counted - dt);
    const double error = estimate - m_counted;
    const bool isWrong = std::fabs(error) > std::max(0.5 * m_counted, 20.0);
    m_wrongFor = isWrong ? m_wrongFor + dt : 0;
    if (m_wrongFor >= 8) {
        m_counted = estimate;
        m_wrongFor = 0;
    } else {
        m_counted = std::max(0.0, m_counted + error * (1 - std::pow(1 - followRate, dt)));
    }
    if (m_counted <= m_shown || m_counted > 1.15 * m_shown + 3)
        m_shown = m_counted;
    return m_shown;
}

struct TimeToGo::Private {
    double total = 0;
    double expected = 0; ///< by an earlier run; 0 for none

    // The clock, without pauses.
    double last = 0; ///< the latest time that was given
    double begun = 0;
    double paused = 0; ///< for how long all in all
    double pausedAt = 0;
    bool isPaused = false;

    // What was reported. Counted are reports that are not gathered with the next one.
    double done = 0;
    int reports = 0;
    double reportedAt = 0;
    double longestGap = 0;
    double countedDone = 0;
    double countedAt = 0;
    int counted = 0;
    double gap = 0; ///< the usual one
    double work = 0;
    double time = 0; ///< weighted as the work

    CalmTime calm;
    double shownAt = -1; ///< when shown() was called last; -1 before

    double clock(Seconds now) {
        last = isTime(now) ? std::max(last, now) : last;
        return elapsed(last);
    }
    double elapsed(Seconds now) const {
        const double latest = isTime(now) ? std::max(last, now) : last;
        return (isPaused ? pausedAt : latest) - begun - paused;
    }
    double halfLife(double elapsed) const {
        return std::max({halfLifeFloor, halfLifeGaps * gap, halfLifeShare * elapsed});
    }
    void count(double now);
    double rate(double now) const;
};

void TimeToGo::Private::count(double now) {
    const double span = now - countedAt;
    const double steps = done - countedDone;
    if (counted == 0 && now < gatherTime) {
        // Was done before anybody looked: nobody knows how fast.
        countedAt = now;
        countedDone = done;
        return;
    }
    if (steps <= 0 || (counted > 0 && span < gatherTime) || span <= 0)
        return;
    ++counted;
    const double half = halfLife(now);
    // One long silence counts as no more than a few usual ones.
    const double weighed =
        counted > 3 ? std::min(span, std::max(longestHalfLives * half, 4 * gap)) : span;
    gap = counted == 1 ? span : gap + 0.2 * (span - gap);
    const double fade = std::exp2(-weighed / half);
    const double weight = meanWeight(weighed / half);
    work = work * fade + steps * weight;
    time = time * fade + weighed * weight;
    countedAt = now;
    countedDone = done;
}

double TimeToGo::Private::rate(double now) const {
    const double half = halfLife(now);
    const double longest = std::max(longestHalfLives * half, 4 * gap);
    // Silence beyond what is usual lowers the rate, but not without end.
    const double silent = std::max(0.0, std::min(now - countedAt, longest) - 1.5 * gap);
    const double fade = std::exp2(-silent / half);
    return work * fade / (time * fade + silent * meanWeight(silent / half));
}

TimeToGo::TimeToGo()
    : d(std::make_unique<Private>()) {}

TimeToGo::TimeToGo(const TimeToGo& other)
    : d(std::make_unique<Private>(*other.d)) {}

TimeToGo& TimeToGo::operator=(const TimeToGo& other) {
    *d = *other.d;
    return *this;
}

TimeToGo::~TimeToGo() = default;

void TimeToGo::start(Seconds now, double total) {
    const double expected = d->expected;
    *d = Private();
    d->expected = expected;
    d->total = total;
    d->begun = d->last = isTime(now) ? now : 0;
}

void TimeToGo::report(Seconds now, double done) {
    const double at = d->clock(now);
    if (!std::isfinite(done) || done == d->done)
        return;
    if (done < d->done) {
        // Something is done again; how fast that goes is known.
        d->done = d->countedDone = done;
        d->countedAt = at;
        d->reportedAt = at;
        return;
    }
    d->done = done;
    ++d->reports;
    d->longestGap = std::max(d->longestGap, at - d->reportedAt);
    d->reportedAt = at;
    d->count(at);
}

void TimeToGo::pause(Seconds now) {
    d->clock(now);
    if (std::exchange(d->isPaused, true))
        return;
    d->pausedAt = d->last;
}

void TimeToGo::resume(Seconds now) {
    d->clock(now);
    if (!std::exchange(d->isPaused, false))
        return;
    d->paused += d->last - d->pausedAt;
}

void TimeToGo::setTotal(Seconds now, double total) {
    d->clock(now);
    if (total == d->total)
        return;
    d->total = total;
    d->calm.restart();
}

void TimeToGo::hint(Seconds expected) {
    d->expected = std::isfinite(expected) ? std::max(0.0, expected) : 0;
}

std::optional<TimeToGo::Seconds> TimeToGo::estimate(Seconds now) const {
    const double at = d->elapsed(now);
    const double byHint = d->expected - at;
    if (!(d->total > 0))
        return {};
    if (d->counted == 0)
        return byHint > 0 && byHint <= farthest ? std::optional<Seconds>(byHint) : std::nullopt;
    const double rate = d->rate(at);
    // What was presumably done since the last report lets the number fall between reports.
    const double credit = std::min(at - d->countedAt, d->gap) * rate;
    const double done = std::max(d->countedDone + credit, d->done);
    double seconds = std::max(0.0, d->total - done) / rate;
    if (d->expected > 0) {
        const double share = std::min(1.0, std::max(0.0, d->done / d->total) / 0.2);
        seconds = share * seconds + (1 - share) * std::max(0.0, byHint);
    }
    if (!(seconds <= farthest))
        return {};
    return seconds;
}

std::optional<TimeToGo::Seconds> TimeToGo::shown(Seconds now) {
    const double at = d->clock(now);
    const auto seconds = estimate(now);
    const bool isEarly = d->expected <= 0 && (at < 2 || d->reports < 3);
    if (!seconds || isEarly) {
        d->shownAt = at;
        d->calm.restart();
        return {};
    }
    const double calmed = d->calm.follow(*seconds, d->shownAt < 0 ? 0 : at - d->shownAt);
    d->shownAt = at;
    if (isStalled(now))
        return {};
    return calmed;
}

bool TimeToGo::isStalled(Seconds now) const {
    return !d->isPaused && silence(now) > std::max({10.0, 4 * d->gap, 1.5 * d->longestGap});
}

TimeToGo::Seconds TimeToGo::silence(Seconds now) const {
    return std::max(0.0, d->elapsed(now) - d->reportedAt);
}

} // namespace Kestrel::UI
