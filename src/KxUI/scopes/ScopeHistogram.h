#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ValueRange.h>

#include <array>
#include <cstdint>
#include <vector>

namespace Kestrel::UI {

/** How often the values of each channel occur. Made of a `ScopeValues`, for any range, without
    another look at the pixels. A plain value. */
struct KXUI_EXPORT ScopeHistogram {
    /** What is counted; the numbers are part of saved states. */
    enum Channel {
        Red,     ///< the signal's red
        Green,   ///< its green
        Blue,    ///< its blue
        Alpha,   ///< of layouts that store it
        Luma,    ///< by the matrix of the encoding
        Largest, ///< the largest of red, green and blue
        Channels ///< how many there are
    };

    /** What is spread evenly over the bins; `range` is in its units. */
    enum class Axis {
        Linear, ///< the value
        /** sign(v) log2(1 + |v| 1024): stops, with room for 0 and below. */
        SymmetricLog,
        Srgb,   ///< the signal that the value would be as light, by IEC 61966-2-1
        Rec709, ///< likewise by ITU-R BT.709
        Pq,     ///< likewise by SMPTE ST 2084, where 1.0 is `whiteNits`
    };

    /** Where a value lies on an axis; any thread. */
    static float position(Axis axis, float value, float whiteNits = 100) noexcept;
    /** The value there; any thread. */
    static float valueAt(Axis axis, float position, float whiteNits = 100) noexcept;

    ValueRange range;         ///< on the axis
    Axis axis = Axis::Linear; ///< see there
    /** By channel; empty where the channel was not counted. */
    std::array<std::vector<std::uint32_t>, Channels> bins;
    std::array<std::uint64_t, Channels> below{};            ///< finite values below the range
    std::array<std::uint64_t, Channels> above{};            ///< finite values above the range
    std::array<std::uint64_t, Channels> nan{};              ///< what is no number
    std::array<std::uint64_t, Channels> positiveInfinity{}; ///< of each channel, as all of these
    std::array<std::uint64_t, Channels> negativeInfinity{}; ///< likewise
    std::uint64_t pixels = 0;                               ///< that were counted

    /** Whether the channel was counted. */
    bool has(Channel channel) const noexcept { return !bins[channel].empty(); }
    /** The largest count of the channel; without the first and the last bin, unless `withEdges`,
        since the black or the white of a border would flatten the curve. */
    std::uint32_t peak(Channel channel, bool withEdges = false) const noexcept;
};

} // namespace Kestrel::UI
