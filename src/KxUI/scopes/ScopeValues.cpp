#include <KxUI/scopes/ScopeValues.h>

#include <KxUI/scopes/CodeCounts_p.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

ScopeValues::ScopeValues() = default;

ScopeValues::ScopeValues(std::shared_ptr<const CodeCounts> counts)
    : m_counts(std::move(counts)) {}

ScopeValues::~ScopeValues() = default;
ScopeValues::ScopeValues(const ScopeValues&) = default;
ScopeValues& ScopeValues::operator=(const ScopeValues&) = default;
ScopeValues::ScopeValues(ScopeValues&&) noexcept = default;
ScopeValues& ScopeValues::operator=(ScopeValues&&) noexcept = default;

bool ScopeValues::isEmpty() const noexcept {
    return !m_counts || m_counts->pixels == 0;
}

bool ScopeValues::has(ScopeHistogram::Channel channel) const noexcept {
    return m_counts && !m_counts->counts[channel].empty();
}

std::uint64_t ScopeValues::pixels() const noexcept {
    return m_counts ? m_counts->pixels : 0;
}

ScopeHistogram ScopeValues::histogram(const ValueRange& range, ScopeHistogram::Axis axis,
                                      float whiteNits) const {
    if (m_counts)
        return m_counts->histogram(range, axis, whiteNits);
    ScopeHistogram empty;
    empty.range = range.normalized();
    empty.axis = axis;
    return empty;
}

double ScopeValues::quantile(ScopeHistogram::Channel channel, double p) const {
    return m_counts ? m_counts->quantile(channel, p) : 0;
}

ValueRange ScopeValues::fittingRange(int bins) const {
    bool any = false;
    ValueRange range{0, 1, bins};
    for (int i = 0; m_counts && i < ScopeHistogram::Channels; ++i) {
        if (i == ScopeHistogram::Alpha)
            continue;
        m_counts->ascend(ScopeHistogram::Channel(i), [&](float value, std::uint64_t) {
            range.lower = any ? std::min(range.lower, value) : value;
            range.upper = any ? std::max(range.upper, value) : value;
            any = true;
        });
    }
    return range.normalized();
}

ImageStatistics ScopeValues::statistics() const {
    return m_counts ? m_counts->statistics() : ImageStatistics();
}

} // namespace Kestrel::UI
