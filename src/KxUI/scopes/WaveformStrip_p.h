#pragma once

#include <KxUI/scopes/ScopeWaveform.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kestrel::UI {

/** Counters of neighbouring columns of a waveform, small enough to stay in the processor's cache
    while all rows of the picture pass: 16 bits each, emptied into the waveform before one can
    overflow. */
class WaveformStrip {
public:
    /** Counts columns `first` to `end` - 1 of `waveform`, whose ranges are normalized. A pixel
        column adds at most `hitsInRow` to a counter while a row passes. */
    void begin(const ScopeWaveform& waveform, int first, int end);

    /** Tells that a counter may grow by `hits`, at most 65,535, before the next call. */
    void expect(std::size_t hits, ScopeWaveform& waveform);
    /** For each of `count` bins, adds one to it in the column that `place` says. */
    void add(ScopeWaveform::Channel channel, const std::uint16_t* bins, const std::uint32_t* place,
             std::size_t count);
    /** Where the counters of a column are. */
    std::uint32_t place(int column) const { return std::uint32_t(column - m_first) * m_stride; }

    /** Adds all to the waveform's own counters. */
    void empty(ScopeWaveform& waveform);

private:
    std::vector<std::uint16_t> m_counters;
    std::array<std::uint32_t, ScopeWaveform::Channels> m_channel{};
    std::uint32_t m_stride = 0;
    int m_first = 0;
    int m_end = 0;
    std::size_t m_most = 0; // that a counter may have reached
};

} // namespace Kestrel::UI
