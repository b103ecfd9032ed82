#pragma once

#include <KxUI/scopes/ScopeWaveform.h>

#include <vector>

namespace Kestrel::UI {

/** The lowest and the highest value of each column of a waveform: the middles of bins, infinite where
    something is beyond them, and NaN where nothing is. */
struct WaveformEnvelope {
    std::vector<double> lowest;
    std::vector<double> highest;

    WaveformEnvelope() = default;
    WaveformEnvelope(const ScopeWaveform& waveform, ScopeWaveform::Channel channel);

    /** What either has reached; another one alone where the columns are not the same. */
    void unite(const WaveformEnvelope& other);
};

} // namespace Kestrel::UI
