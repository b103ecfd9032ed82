#include <KxUI/values/LogSliderTicks_p.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace Kestrel::UI {
namespace {

constexpr int MarkSpacing = 4; // pixels

} // namespace

double LogScale::valueAt(int position) const {
    return std::pow(10.0, static_cast<double>(position) / precision);
}

int LogScale::positionOf(double value) const {
    const double clamped = std::min(std::max(value, minReal), maxReal);
    return static_cast<int>(std::log10(clamped) * precision);
}

int LogScale::nearestTo(double value) const {
    const double clamped = std::min(std::max(value, minReal), maxReal);
    return static_cast<int>(std::lround(std::log10(clamped) * precision));
}

int LogScale::tickPosition(double value, int origin, int length) const {
    const double first = static_cast<double>(minExp) * precision;
    const double last = static_cast<double>(maxExp) * precision;
    return static_cast<int>((positionOf(value) - first) / (last - first) * length) + origin;
}

DecadeFlags thinnedDecade(const DecadeFlags& flags, const DecadePixels& pixels, double spacing) {
    const auto apart = [&](std::size_t a, std::size_t b) {
        return std::abs(pixels[a - 1] - pixels[b - 1]) > spacing;
    };

    DecadeFlags kept{};
    const auto keep = [&](std::size_t tick, bool fits) {
        kept[tick - 1] = fits && flags[tick - 1];
        return kept[tick - 1];
    };
    kept[0] = kept[9] = true;
    if (!keep(5, apart(1, 10)))
        return kept;
    const bool three = keep(3, apart(1, 5));
    const bool seven = keep(7, apart(5, 10));
    if (three) {
        keep(2, apart(1, 3));
        keep(4, apart(3, 5));
    }
    if (seven) {
        keep(6, apart(5, 7));
        if (keep(8, apart(7, 10)))
            keep(9, apart(8, 10));
    }
    return kept;
}

DecadeFlags preprocessTicks(const DecadeFlags& flags, const LogScale& scale, int length,
                            int spacing) {
    const double unit = std::pow(10.0, scale.minExp);
    DecadePixels pixels{};
    for (int tick = 1; tick <= 10; ++tick)
        pixels[static_cast<std::size_t>(tick - 1)] = scale.tickPosition(tick * unit, 0, length);
    return thinnedDecade(flags, pixels, spacing);
}

std::vector<LogTick> planTicks(const LogScale& scale, int origin, int length,
                               const std::vector<int>& labelSpacing) {
    DecadeFlags all;
    all.fill(true);
    const DecadeFlags marks = preprocessTicks(all, scale, length, MarkSpacing);

    std::vector<LogTick> ticks;
    for (int decade = scale.minExp; decade < scale.maxExp; ++decade) {
        const auto index = static_cast<std::size_t>(decade - scale.minExp);
        const DecadeFlags labels = preprocessTicks(all, scale, length, labelSpacing[index]);
        const double unit = std::pow(10.0, decade);
        // The tenth tick is the first one of the next decade.
        const int last = decade + 1 == scale.maxExp ? 10 : 9;
        for (int number = 1; number <= last; ++number) {
            const auto flag = static_cast<std::size_t>(number - 1);
            LogTick tick;
            tick.wholePower = number == 1 || number == 10;
            tick.value = number == 10 ? std::pow(10.0, decade + 1) : number * unit;
            tick.pixel = scale.tickPosition(tick.value, origin, length);
            tick.marked = marks[flag];
            tick.labelled = labels[flag];
            if (!tick.marked && !tick.labelled)
                continue;
            if (!ticks.empty() && ticks.back().pixel == tick.pixel) {
                // A whole power is the one worth keeping.
                if (!tick.wholePower || ticks.back().wholePower)
                    continue;
                ticks.pop_back();
            }
            ticks.push_back(tick);
        }
    }
    return ticks;
}

} // namespace Kestrel::UI
