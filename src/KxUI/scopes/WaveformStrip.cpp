#include <KxUI/scopes/WaveformStrip_p.h>

#include <algorithm>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr std::uint32_t LineCounters = 64 / sizeof(std::uint16_t);
constexpr std::size_t Highest = std::numeric_limits<std::uint16_t>::max();

} // namespace

void WaveformStrip::begin(const ScopeWaveform& waveform, int first, int end) {
    m_first = first;
    m_end = end;
    m_most = 0;
    std::uint32_t size = 0;
    for (int i = 0; i < ScopeWaveform::Channels; ++i) {
        const auto channel = ScopeWaveform::Channel(i);
        m_channel[std::size_t(i)] = size;
        if (waveform.has(channel))
            size += std::uint32_t(waveform.range(channel).notANumber()) + 1;
    }
    // An odd number of cache lines: columns of a picture have similar values, and with an even one
    // their counters would drive each other out of the cache.
    const std::uint32_t lines = (size + LineCounters - 1) / LineCounters;
    m_stride = (lines | 1U) * LineCounters;
    m_counters.assign(std::size_t(m_end - m_first) * m_stride, 0);
}

void WaveformStrip::expect(std::size_t hits, ScopeWaveform& waveform) {
    if (m_most + hits > Highest)
        empty(waveform);
    m_most += hits;
}

void WaveformStrip::add(ScopeWaveform::Channel channel, const std::uint16_t* bins,
                        const std::uint32_t* place, std::size_t count) {
    std::uint16_t* const counters = m_counters.data() + m_channel[channel];
    for (std::size_t i = 0; i < count; ++i)
        ++counters[place[i] + bins[i]];
}

void WaveformStrip::empty(ScopeWaveform& waveform) {
    m_most = 0;
    for (int i = 0; i < ScopeWaveform::Channels; ++i) {
        const auto channel = ScopeWaveform::Channel(i);
        if (!waveform.has(channel))
            continue;
        const ValueRange& range = waveform.range(channel);
        const auto bins = std::size_t(range.bins);
        for (int column = m_first; column < m_end; ++column) {
            std::uint16_t* const from = m_counters.data() + place(column) + m_channel[channel];
            const auto at = std::size_t(column);
            std::uint32_t* const to = waveform.counts[channel].data() + at * bins;
            for (std::size_t bin = 0; bin < bins; ++bin)
                to[bin] += from[bin];
            waveform.below[channel][at] += from[range.below()];
            waveform.above[channel][at] += from[range.above()];
            waveform.nan[channel][at] += from[range.notANumber()];
            std::fill_n(from, range.notANumber() + 1, std::uint16_t(0));
        }
    }
}

} // namespace Kestrel::UI
