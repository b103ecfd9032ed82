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
    /** Counts the direction of chroma outside the plane, if it has one. */
    void addDirection(float cb, float cr);

    PixelPiece piece;
    WaveformStrip strip;
    std::array<std::vector<std::uint32_t>, ScopeHistogram::Channels> codes;
    std::array<std::unique_ptr<ExactSums>, ScopeHistogram::Channels> sums;
    std::vector<std::uint32_t> vectors; // by VectorSlots
    std::vector<std::uint32_t> solid;   // by SolidSlots
    std::vector<std::uint32_t> hues;    // by HueSlots, as the next
    std::vector<std::uint32_t> saturations;
    std::array<std::uint32_t, 360> outsideByDegree{};
    std::array<std::uint32_t, PixelPiece::Room> cells{};
    std::array<std::uint32_t, PixelPiece::Room> places{};
    // Which pixels `places` is of; -1: none.
    int placesBegin = -1;
    std::size_t placesCount = 0;
    LegalCounts legal;
    std::uint64_t pixels = 0;
    std::uint64_t transparent = 0;
};

} // namespace Kestrel::UI
