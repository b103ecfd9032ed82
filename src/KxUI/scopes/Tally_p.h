#pragma once

#include <cstddef>

namespace Kestrel::UI {

/** Adds one to each of the counters that are named. Four at a time, so that the loop itself takes
    none of the time of the increments, which are bound by the one write of a cycle. */
template <class Counter, class Name>
inline void tally(Counter* counters, const Name* named, std::size_t count) {
    constexpr std::size_t Step = 4;
    std::size_t i = 0;
    for (; i + Step <= count; i += Step) {
        ++counters[named[i]];
        ++counters[named[i + 1]];
        ++counters[named[i + 2]];
        ++counters[named[i + 3]];
    }
    for (; i < count; ++i)
        ++counters[named[i]];
}

} // namespace Kestrel::UI
