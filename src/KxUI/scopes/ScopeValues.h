#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ImageStatistics.h>
#include <KxUI/scopes/ScopeHistogram.h>

#include <cstdint>
#include <memory>

namespace Kestrel::UI {

class CodeCounts;

/** How often each value occurs in each channel: by the code of integer sources, by half float
    otherwise. Histograms of any range and figures come from it without another look at the pixels.
    A value that is cheap to copy. Any thread. */
class KXUI_EXPORT ScopeValues {
public:
    /** Nothing counted. */
    ScopeValues();
    /** These counts; for the library. */
    explicit ScopeValues(std::shared_ptr<const CodeCounts> counts);
    ~ScopeValues();
    /** Copies share their counts. */
    ScopeValues(const ScopeValues&);
    ScopeValues& operator=(const ScopeValues&);
    ScopeValues(ScopeValues&&) noexcept;
    ScopeValues& operator=(ScopeValues&&) noexcept;

    /** Whether nothing was counted: no picture, no part of it, or nobody asked. */
    bool isEmpty() const noexcept;
    /** Whether the channel was counted. */
    bool has(ScopeHistogram::Channel channel) const noexcept;
    /** Pixels that were counted. */
    std::uint64_t pixels() const noexcept;

    /** The counts in `range`, on `axis`, whose units `range` is in. */
    ScopeHistogram histogram(const ValueRange& range,
                             ScopeHistogram::Axis axis = ScopeHistogram::Axis::Linear,
                             float whiteNits = 100) const;
    /** The smallest finite value that at least the share `p` (0-1) of the finite ones does not
        exceed; 0 without any. */
    double quantile(ScopeHistogram::Channel channel, double p) const;
    /** The smallest and the largest finite value of all channels but alpha, widened where they are
        the same; 0 to 1 without any. */
    ValueRange fittingRange(int bins) const;
    /** Computed at each call, in a fraction of a millisecond. */
    ImageStatistics statistics() const;

    /** The counts themselves, for the library. */
    const CodeCounts* counts() const noexcept { return m_counts.get(); }

private:
    std::shared_ptr<const CodeCounts> m_counts;
};

} // namespace Kestrel::UI
