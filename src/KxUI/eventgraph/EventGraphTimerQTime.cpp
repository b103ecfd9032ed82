#include <KxUI/eventgraph/EventGraphTimerQTime.h>

#include <KxUI/eventgraph/platform/CycleCounter_p.h>

#include <QDateTime>

#include <atomic>
#include <chrono>

namespace Kestrel::UI {
namespace {

using Nanoseconds = std::chrono::nanoseconds;

constexpr qint64 nanosecondsPerMillisecond = 1000000;
constexpr qint64 millisecondsPerDay = 86400000;

// A millisecond that was read is good until the cycle counter reaches `deadline`. The two words are
// written one after the other by whoever read the clock; the low bits of the deadline stand in
// both, so words of two different readings do not match and the clock is read anew.
constexpr int millisecondBits = 28;
constexpr quint64 checkMask = (quint64(1) << (64 - millisecondBits)) - 1;
std::atomic<quint64> deadline{0};
std::atomic<quint64> stamp{0};

// More cycles than a millisecond has on any processor: a counter that jumped (the machine slept) is
// farther off than that.
constexpr quint64 plausibleCycles = quint64(1) << 26;

// The offset of local time from UTC in seconds. Time zones change at full seconds, and a user may
// change the zone at any time, so it is asked for once in each second; asking costs microseconds.
qint64 utcOffset(qint64 second) {
    constexpr int offsetBits = 20;
    constexpr qint64 bias = qint64(1) << (offsetBits - 1);
    static std::atomic<qint64> cached{-1};
    const qint64 word = cached.load(std::memory_order_relaxed);
    if ((word >> offsetBits) == second)
        return (word & ((qint64(1) << offsetBits) - 1)) - bias;
    const qint64 offset = QDateTime::fromSecsSinceEpoch(second).offsetFromUtc();
    cached.store(second * (qint64(1) << offsetBits) + offset + bias, std::memory_order_relaxed);
    return offset;
}

// How many cycles certainly pass within `nanoseconds`, 0 while the counter's rate is not known.
// Each pair of readings is taken in the order whose delays make the rate look lower.
quint64 cyclesWithin(qint64 nanoseconds, quint64 cycles) {
    struct Origin {
        bool usable = cycleCounterIsInvariant();
        std::chrono::steady_clock::time_point time = std::chrono::steady_clock::now();
        quint64 cycles = cycleCount();
    };
    static const Origin origin;
    if (!origin.usable || cycles <= origin.cycles)
        return 0;
    const auto elapsed = Nanoseconds(std::chrono::steady_clock::now() - origin.time);
    if (elapsed < std::chrono::milliseconds(10))
        return 0;
    const double rate =
        static_cast<double>(cycles - origin.cycles) / static_cast<double>(elapsed.count());
    // The wall clock may be slewed: a tenth off is more than any time daemon does.
    return static_cast<quint64>(rate * 0.9 * static_cast<double>(nanoseconds));
}

int readClock() {
    const quint64 cycles = cycleCount();
    const qint64 now =
        std::chrono::duration_cast<Nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    const qint64 millisecond = now / nanosecondsPerMillisecond;
    const qint64 local = millisecond + utcOffset(millisecond / 1000) * 1000;
    const int timeOfDay =
        static_cast<int>((local % millisecondsPerDay + millisecondsPerDay) % millisecondsPerDay);

    const quint64 good =
        cyclesWithin(nanosecondsPerMillisecond - now % nanosecondsPerMillisecond, cycles);
    if (good > 0 && good < plausibleCycles) {
        const quint64 until = cycles + good;
        deadline.store(until, std::memory_order_relaxed);
        stamp.store((static_cast<quint64>(timeOfDay) << (64 - millisecondBits)) |
                        (until & checkMask),
                    std::memory_order_relaxed);
    }
    return timeOfDay;
}

} // namespace

IEventGraphTimer::~IEventGraphTimer() = default;

int EventGraphTimerQTime::time() {
    const quint64 until = deadline.load(std::memory_order_relaxed);
    const quint64 word = stamp.load(std::memory_order_relaxed);
    const bool oneReading = ((word ^ until) & checkMask) == 0;
    if (oneReading && until - cycleCount() - 1 < plausibleCycles)
        return static_cast<int>(word >> (64 - millisecondBits));
    return readClock();
}

} // namespace Kestrel::UI
