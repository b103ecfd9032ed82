#include <KxUI/scopes/WaveformStrip_p.h>

#include <KxUI/scopes/CountingKernels_p.h>
#include <KxUI/scopes/Tally_p.h>

#include <algorithm>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr std::size_t LineCounters = 64 / sizeof(std::uint16_t);
constexpr std::size_t Highest = std::numeric_limits<std::uint16_t>::max();

// An odd number of cache lines: columns of a picture have similar values, and with an even one their
// counters would drive each other out of the cache.
std::size_t strideOf(const ValueRange& range) {
    const std::size_t size = std::size_t(range.notANumber()) + 1;
    return (((size + LineCounters - 1) / LineCounters) | 1U) * LineCounters;
}

} // namespace

int WaveformStrip::mostColumns(const ScopeWaveform& waveform) {
    return int((Highest + 1) / std::max(strideOf(waveform.luma), strideOf(waveform.chroma)));
}

void WaveformStrip::begin(const ScopeWaveform& waveform, int first, int end) {
    m_first = first;
    m_end = end;
    m_most = 0;
    std::size_t size = 0;
    for (int i = 0; i < ScopeWaveform::Channels; ++i) {
        const auto channel = ScopeWaveform::Channel(i);
        m_channels[channel] = {size, strideOf(waveform.range(channel))};
        if (waveform.has(channel))
            size += std::size_t(m_end - m_first) * m_channels[channel].stride;
    }
    m_counters.assign(size, 0);
}

void WaveformStrip::expect(std::size_t hits, ScopeWaveform& waveform) {
    if (m_most + hits > Highest)
        empty(waveform);
    m_most += hits;
}

void WaveformStrip::add(ScopeWaveform::Channel channel, const std::uint16_t* counters,
                        std::size_t count) {
    tally(m_counters.data() + m_channels[channel].begin, counters, count);
}

void WaveformStrip::empty(ScopeWaveform& waveform) {
    m_most = 0;
    const auto& addCounters = countingKernels().addCounters;
    for (int i = 0; i < ScopeWaveform::Channels; ++i) {
        const auto channel = ScopeWaveform::Channel(i);
        if (!waveform.has(channel))
            continue;
        const ValueRange& range = waveform.range(channel);
        const auto bins = std::size_t(range.bins);
        for (int column = m_first; column < m_end; ++column) {
            std::uint16_t* const from =
                m_counters.data() + m_channels[channel].begin + place(channel, column);
            const auto at = std::size_t(column);
            addCounters(from, bins, waveform.counts[channel].data() + at * bins);
            waveform.below[channel][at] += from[range.below()];
            waveform.above[channel][at] += from[range.above()];
            waveform.nan[channel][at] += from[range.notANumber()];
            std::fill_n(from, range.notANumber() + 1, std::uint16_t(0));
        }
    }
}

} // namespace Kestrel::UI
