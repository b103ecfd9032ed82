#pragma once

#include <KxUI/scopes/ScopeWaveform.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kestrel::UI {

/** Counters of neighbouring columns of a waveform, small enough to stay in the processor's cache
    while all rows of the picture pass: 16 bits each, emptied into the waveform before one can
    overflow. Sixteen bits also name any counter of a channel, so that a pixel costs one of the
    processor's writes and hardly anything else. */
class WaveformStrip {
public:
    /** The columns, at least one, whose counters can be named. */
    static int mostColumns(const ScopeWaveform& waveform);

    /** Counts columns `first` to `end` - 1 of `waveform`, whose ranges are normalized. */
    void begin(const ScopeWaveform& waveform, int first, int end);

    /** Tells that a counter may grow by `hits`, at most 65,535, before the next call. */
    void expect(std::size_t hits, ScopeWaveform& waveform);
    /** Adds one to each of the counters, which are a place and a bin. */
    void add(ScopeWaveform::Channel channel, const std::uint16_t* counters, std::size_t count);
    /** Where the counters of a column begin. */
    std::uint16_t place(ScopeWaveform::Channel channel, int column) const {
        return std::uint16_t(std::size_t(column - m_first) * m_channels[channel].stride);
    }

    /** Adds all to the waveform's own counters. */
    void empty(ScopeWaveform& waveform);

private:
    struct Channel {
        std::size_t begin = 0;
        std::size_t stride = 0; // from column to column
    };

    std::vector<std::uint16_t> m_counters; // all of them 0 before a strip begins
    std::array<Channel, ScopeWaveform::Channels> m_channels{};
    int m_first = 0;
    int m_end = 0;
    std::size_t m_most = 0; // that a counter may have reached
};

} // namespace Kestrel::UI
