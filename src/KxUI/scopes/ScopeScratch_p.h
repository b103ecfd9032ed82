#pragma once

#include <KxUI/scopes/ExactSums_p.h>
#include <KxUI/scopes/ScopePass_p.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace Kestrel::UI {

/** What one thread counts in. */
class ScopePass::Scratch {
public:
    template <class T>
    using Pixels = std::array<T, PixelPiece::Room>;

    /** Counts the direction of chroma outside the plane, if it has one. */
    void addDirection(float cb, float cr);

    PixelPiece piece;
    // Which counters the pixels of a piece add to. First all of them are computed, then all are
    // counted: a processor waits where it reads what it has only just written.
    alignas(64) std::array<Pixels<std::uint16_t>, ScopeHistogram::Channels> valueCodes{};
    alignas(64) std::array<Pixels<std::uint16_t>, ScopeWaveform::Channels> waveformCounters{};
    alignas(64) Pixels<std::uint16_t> hueCodes{};
    alignas(64) Pixels<std::uint16_t> saturationCodes{};
    alignas(64) Pixels<std::uint32_t> vectorCells{};
    alignas(64) Pixels<std::uint32_t> solidCells{};

    WaveformStrip strip;
    std::array<std::vector<std::uint32_t>, ScopeHistogram::Channels> codes;
    std::array<std::unique_ptr<ExactSums>, ScopeHistogram::Channels> sums;
    std::vector<std::uint32_t> vectors; // by VectorSlots
    std::vector<std::uint32_t> solid;   // by SolidSlots
    std::vector<std::uint32_t> hues;    // by HueSlots, as the next
    std::vector<std::uint32_t> saturations;
    std::array<std::uint32_t, 360> outsideByDegree{};
    /** Where the pixels' columns begin in the strip, by channels with their kind of range. */
    struct Places {
        alignas(64) Pixels<std::uint16_t> luma{};
        alignas(64) Pixels<std::uint16_t> chroma{};
        // Which pixels they are of; of one row at least, if it is `known`.
        int x = 0;
        std::size_t width = 0;
        std::size_t count = 0;
        bool known = false;
    } places;
    // What is read next.
    PixelMemory next;
    std::size_t linesAtOnce = 0;
    LegalCounts legal;
    std::uint64_t pixels = 0;
    std::uint64_t transparent = 0;
};

} // namespace Kestrel::UI
