#pragma once

#include <KxUI/scopes/ExactSums_p.h>
#include <KxUI/scopes/HalfCode_p.h>
#include <KxUI/scopes/ImageStatistics.h>
#include <KxUI/scopes/ScopeEncoding.h>
#include <KxUI/scopes/ScopeHistogram.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace Kestrel::UI {

/** What the codes of a channel stand for. */
struct CodeAxis {
    /** The code of 1.0 of codes that begin with 0; 0: the bits of half floats. */
    int unit = 0;

    bool isHalf() const noexcept { return unit == 0; }
    int count() const noexcept { return isHalf() ? HalfCode::Count : unit + 1; }
    float value(std::uint32_t code) const noexcept {
        return isHalf() ? HalfCode::value(code) : float(code) / float(unit);
    }
    friend bool operator==(const CodeAxis& a, const CodeAxis& b) noexcept {
        return a.unit == b.unit;
    }
};

/** How often each code occurs in each channel. */
class CodeCounts {
public:
    using Channel = ScopeHistogram::Channel;
    using Counts = std::vector<std::uint32_t>;

    std::array<CodeAxis, ScopeHistogram::Channels> axes;
    /** By channel; empty where it was not counted. */
    std::array<Counts, ScopeHistogram::Channels> counts;
    /** By channel, of floats that halves are too coarse for; else null. */
    std::array<std::unique_ptr<ExactSums>, ScopeHistogram::Channels> sums;
    /** By channel: whether codes are rounded values. */
    std::array<bool, ScopeHistogram::Channels> rounded{};
    std::uint64_t pixels = 0;
    std::uint64_t transparent = 0;
    std::uint64_t illegal = 0;
    std::uint64_t outsideEbuR103 = 0;
    ScopeEncoding encoding;

    /** Calls `visit(value, count)` for the finite codes that occur, from the lowest value to the
        highest. */
    template <class Visit>
    void ascend(Channel channel, Visit visit) const;

    ScopeHistogram histogram(const ValueRange& range, ScopeHistogram::Axis axis,
                             float whiteNits) const;
    double quantile(Channel channel, double p) const;
    ImageStatistics statistics() const;
};

template <class Visit>
void CodeCounts::ascend(Channel channel, Visit visit) const {
    const Counts& all = counts[channel];
    if (all.empty())
        return;
    const CodeAxis& axis = axes[channel];
    // Most codes do not occur, and whole groups of them least of all.
    constexpr std::uint32_t Group = 256;
    const auto isEmpty = [&all](std::uint32_t first) {
        const std::uint32_t* const begin = all.data() + first;
        return *begin == 0 && std::memcmp(begin, begin + 1, (Group - 1) * sizeof *begin) == 0;
    };
    const auto meet = [&](std::uint32_t code) {
        if (all[code] != 0)
            visit(axis.value(code), all[code]);
    };
    const auto rise = [&](std::uint32_t first, std::uint32_t end) {
        for (std::uint32_t code = first; code < end; ++code) {
            while (code % Group == 0 && code + Group <= end && isEmpty(code))
                code += Group;
            if (code < end)
                meet(code);
        }
    };
    if (!axis.isHalf()) {
        rise(0, std::uint32_t(axis.count()));
        return;
    }
    for (std::uint32_t code = HalfCode::Infinity - 1; code > 0; --code) {
        while (code % Group == Group - 1 && code > Group &&
               isEmpty((code | HalfCode::Sign) + 1 - Group))
            code -= Group;
        meet(code | HalfCode::Sign);
    }
    if (const std::uint64_t zeros = std::uint64_t(all[0]) + all[HalfCode::Sign])
        visit(0.0F, zeros);
    rise(1, HalfCode::Infinity);
}

} // namespace Kestrel::UI
