#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeHistogram.h>

#include <array>
#include <cstdint>

namespace Kestrel::UI {

/** Figures of a channel. A plain value; its layout is frozen. */
struct KXUI_EXPORT ChannelStatistics {
    bool counted = false;               ///< whether the channel was looked at
    bool rounded = false;               ///< `median`, `low`, `high` are rounded to half floats
    std::uint64_t finite = 0;           ///< values
    std::uint64_t nan = 0;              ///< what is not a number
    std::uint64_t positiveInfinity = 0; ///< of these
    std::uint64_t negativeInfinity = 0; ///< of these
    std::uint64_t below = 0;            ///< finite values below 0
    std::uint64_t above = 0;            ///< finite values above 1
    std::uint64_t withinEbuR103 = 0;    ///< values of -44/876 to 920/876, see `outsideEbuR103`
    double minimum = 0;                 ///< of finite values, as all that follows; 0 without any
    double maximum = 0;                 ///< the largest finite value
    double mean = 0;                    ///< their mean
    double deviation = 0;               ///< of the whole population
    double median = 0;                  ///< the smallest value that at least half do not exceed
    double low = 0;                     ///< likewise 1 %
    double high = 0;                    ///< likewise 99 %
    std::uint32_t distinct = 0;         ///< values that differ, by code or by half float

    /** All values, also those that are no number. */
    std::uint64_t all() const noexcept {
        return finite + nan + positiveInfinity + negativeInfinity;
    }
    /** The share (0-1) of values within 0 to 1; 0 without any. */
    double legalShare() const noexcept { return share(finite - below - above); }
    /** The share (0-1) within the preferred range of EBU R 103; 0 without any. */
    double ebuR103Share() const noexcept { return share(withinEbuR103); }
    /** So many of all values, 0-1; 0 without any. */
    double share(std::uint64_t count) const noexcept {
        return all() > 0 ? double(count) / double(all()) : 0;
    }
};

/** Figures of the counted pixels of an image. A plain value; its layout is frozen. */
struct KXUI_EXPORT ImageStatistics {
    std::array<ChannelStatistics, ScopeHistogram::Channels> channels; ///< by channel
    std::uint64_t pixels = 0;                                         ///< that were counted
    std::uint64_t transparent = 0;                                    ///< that their alpha left out
    /** Pixels with red, green, blue or luma outside 0 to 1, or not a number. */
    std::uint64_t illegal = 0;
    /** The same for -44/876 to 920/876, the preferred range of EBU R 103, which 1 % of a picture may
        leave. */
    std::uint64_t outsideEbuR103 = 0;
    double maxCll = 0;       ///< the largest component in cd/m2, by CTA-861.3
    double frameAverage = 0; ///< the mean of the pixels' largest components in cd/m2, by CTA-861.3
    double level99995 = 0;   ///< what 99.995 % of these do not exceed, in cd/m2

    /** Whether at most 1 % of the pixels leave the range of EBU R 103. */
    bool meetsEbuR103() const noexcept { return outsideEbuR103 * 100 <= pixels; }
};

} // namespace Kestrel::UI
