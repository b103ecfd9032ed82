#include <KxUI/scopes/WaveformEnvelope_p.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Kestrel::UI {

WaveformEnvelope::WaveformEnvelope(const ScopeWaveform& waveform, ScopeWaveform::Channel channel) {
    if (!waveform.has(channel))
        return;
    constexpr double None = std::numeric_limits<double>::quiet_NaN();
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    const ValueRange& range = waveform.range(channel);
    const auto columns = std::size_t(waveform.columns);
    lowest.assign(columns, None);
    highest.assign(columns, None);
    const auto counted = [](std::uint32_t count) { return count > 0; };
    for (std::size_t i = 0; i < columns; ++i) {
        const std::uint32_t* const first = waveform.column0(channel, int(i));
        const std::uint32_t* const end = first + range.bins;
        const std::uint32_t* const low = std::find_if(first, end, counted);
        if (low != end) {
            const std::uint32_t* high = end - 1;
            while (*high == 0)
                --high;
            lowest[i] = range.center(int(low - first));
            highest[i] = range.center(int(high - first));
        }
        const bool isBelow = waveform.below[channel][i] > 0;
        const bool isAbove = waveform.above[channel][i] > 0;
        if (isBelow)
            lowest[i] = -Infinity;
        if (isAbove)
            highest[i] = Infinity;
        if (isBelow && std::isnan(highest[i]))
            highest[i] = -Infinity;
        if (isAbove && std::isnan(lowest[i]))
            lowest[i] = Infinity;
    }
}

void WaveformEnvelope::unite(const WaveformEnvelope& other) {
    if (lowest.size() != other.lowest.size()) {
        *this = other;
        return;
    }
    // What is not a number loses.
    for (std::size_t i = 0; i < lowest.size(); ++i) {
        lowest[i] = std::fmin(lowest[i], other.lowest[i]);
        highest[i] = std::fmax(highest[i], other.highest[i]);
    }
}

} // namespace Kestrel::UI
