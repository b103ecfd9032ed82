#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeEncoding.h>
#include <KxUI/scopes/ScopeHues.h>
#include <KxUI/scopes/ScopeImage.h>
#include <KxUI/scopes/ScopeSolid.h>
#include <KxUI/scopes/ScopeValues.h>
#include <KxUI/scopes/ScopeVectors.h>
#include <KxUI/scopes/ScopeWaveform.h>

#include <cstdint>
#include <string>

namespace Kestrel::UI {

/** What is to be counted of an image. A value. */
struct KXUI_EXPORT ScopeRequest {
    /** What a pass may count; the numbers are part of saved states. */
    enum Part {
        Values = 1,                                     ///< for histograms and statistics
        Waveform = 2,                                   ///< by `waveform`
        Vectors = 4,                                    ///< by `vectors`
        Solid = 8,                                      ///< by `solid`
        AllParts = Values | Waveform | Vectors | Solid, ///< what is counted unless asked for more
        Hues = 16                                       ///< hues and saturations
    };
    /** Bits of channels of `values`. */
    static constexpr int RgbValues =
        1 << ScopeHistogram::Red | 1 << ScopeHistogram::Green | 1 << ScopeHistogram::Blue;
    static constexpr int AllValues = (1 << ScopeHistogram::Channels) - 1;

    int parts = AllParts;   ///< bits of Part
    ScopeEncoding encoding; ///< what values mean
    bool wholeFrame = true; ///< `region` is not looked at
    ScopeRegion region;     ///< full-frame pixels; what lies outside the image is not there
    int values = AllValues; ///< bits of `1 << ScopeHistogram::Channel`
    WaveformRange waveform; ///< see there
    VectorRange vectors;    ///< see there
    ValueRange solid{-0.1F, 1.1F, 32}; ///< of each edge, at most ScopeSolid::MostCells bins
    int rowStep = 1;                   ///< of so many rows one is counted, that many times
};

/** What a pass over an image has counted. A value that nobody changes once it is there. */
struct KXUI_EXPORT ScopeResult {
    std::uint64_t serial = 0;   ///< of ScopeModel's request
    int parts = 0;              ///< bits of ScopeRequest::Part: what was counted
    ScopeRegion region;         ///< what was counted, in full-frame pixels; empty: nothing
    int proxy = 1;              ///< of the image
    int rowStep = 1;            ///< of the request
    ScopeEncoding encoding;     ///< of the request
    ScopeValues values;         ///< for histograms
    ImageStatistics statistics; ///< of `values`
    ScopeWaveform waveform;     ///< empty if not asked for, as what follows
    ScopeVectors vectors;       ///< likewise
    ScopeSolid solid;           ///< likewise
    ScopeHues hues;             ///< likewise
    std::string error;          ///< what the transform threw; the rest is empty then
};

/** Counts in the caller's thread, and in `threads - 1` more that end before it returns. The result
    does not depend on their number, nor on the processor. What the encoding's transform throws gets
    through to the caller. */
KXUI_EXPORT ScopeResult countScopes(const ScopeImage& image, const ScopeRequest& request,
                                    int threads = 1);

} // namespace Kestrel::UI
