#include "play/PlaybackClock.h"

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

constexpr std::uint64_t second = 1000000000;

} // namespace

PlaybackClock::Position PlaybackClock::at(std::int64_t nowNs) const {
    const auto elapsed = std::uint64_t(std::max<std::int64_t>(nowNs - startNs, 0));
    // Whole seconds and the rest apart: the product of all three would not fit.
    const std::uint64_t whole = elapsed / second * numerator;
    const std::uint64_t rest = whole % denominator * second + elapsed % second * numerator;
    Position position;
    position.ticks = whole / denominator + rest / (denominator * second);

    const std::uint64_t length = std::uint64_t(last) - std::uint64_t(first) + 1;
    const std::uint64_t before = direction > 0 ? std::uint64_t(origin) - std::uint64_t(first)
                                               : std::uint64_t(last) - std::uint64_t(origin);
    std::uint64_t offset = before + position.ticks * stride;
    position.direction = direction;
    if (offset >= length) {
        switch (repeat) {
        case Repeat::Once:
            position.ended = true;
            offset = length - 1;
            break;
        case Repeat::Loop:
            offset %= length;
            break;
        case Repeat::Bounce:
            // There and back again; the frames at the ends are shown once a turn.
            offset = length == 1 ? 0 : offset % (2 * (length - 1));
            if (offset >= length) {
                offset = 2 * (length - 1) - offset;
                position.direction = -direction;
            }
            break;
        }
    }
    position.time = direction > 0 ? Base::Time(std::uint64_t(first) + offset)
                                  : Base::Time(std::uint64_t(last) - offset);
    return position;
}

std::int64_t PlaybackClock::momentOf(std::uint64_t ticks) const {
    const std::uint64_t scaled = ticks * denominator;
    const std::uint64_t rest = scaled % numerator * second;
    // Rounded up: at this moment at() has reached the tick.
    return startNs + std::int64_t(scaled / numerator * second + (rest + numerator - 1) / numerator);
}

} // namespace Kestrel::Workbench
