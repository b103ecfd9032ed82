#include <KxUI/scopes/CodeCounts_p.h>

#include <KxUI/scopes/CountingKernels_p.h>
#include <KxUI/scopes/Transfer_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Channel = ScopeHistogram::Channel;

// What halves have beside numbers.
struct Specials {
    std::uint64_t nan = 0;
    std::uint64_t positiveInfinity = 0;
    std::uint64_t negativeInfinity = 0;
};

Specials specials(const CodeCounts& counts, Channel channel) {
    if (counts.counts[channel].empty() || !counts.axes[channel].isHalf())
        return {};
    const auto& all = counts.counts[channel];
    // What only became infinite by being rounded is finite.
    const ExactSums* const exact = counts.sums[channel].get();
    return {all[HalfCode::NotANumber], all[HalfCode::Infinity] - (exact ? exact->tooHigh() : 0),
            all[HalfCode::Infinity | HalfCode::Sign] - (exact ? exact->tooLow() : 0)};
}

std::uint64_t finiteCount(const CodeCounts& counts, Channel channel) {
    std::uint64_t finite = 0;
    counts.ascend(channel, [&finite](float, std::uint64_t count) { finite += count; });
    return finite;
}

// Walks to given shares of the values in ascending order.
class Ranks {
public:
    explicit Ranks(std::uint64_t count)
        : m_count(count) {}

    // The value that `rank` (1 to count) values lie at or below of.
    std::uint64_t rank(double p) const noexcept {
        const double wanted = std::ceil(std::clamp(p, 0.0, 1.0) * double(m_count));
        return std::clamp<std::uint64_t>(std::uint64_t(wanted), 1,
                                         std::max<std::uint64_t>(m_count, 1));
    }

private:
    std::uint64_t m_count;
};

// Figures of the values as their codes have them.
ChannelStatistics ofCodes(const CodeCounts& counts, Channel channel) {
    ChannelStatistics result;
    double sum = 0;
    counts.ascend(channel, [&](float value, std::uint64_t count) {
        if (result.finite == 0)
            result.minimum = double(value);
        result.maximum = double(value);
        result.finite += count;
        result.below += value < 0 ? count : 0;
        result.above += value > 1 ? count : 0;
        result.withinEbuR103 += value >= EbuR103Lower && value <= EbuR103Upper ? count : 0;
        ++result.distinct;
        sum += double(value) * double(count);
    });
    if (result.finite == 0)
        return result;
    result.mean = sum / double(result.finite);
    const Ranks ranks(result.finite);
    struct Target {
        std::uint64_t rank;
        double* value;
    };
    const std::array<Target, 3> targets{{{ranks.rank(0.01), &result.low},
                                         {ranks.rank(0.5), &result.median},
                                         {ranks.rank(0.99), &result.high}}};
    double squares = 0;
    std::uint64_t passed = 0;
    counts.ascend(channel, [&](float value, std::uint64_t count) {
        for (const Target& target : targets) {
            if (passed < target.rank && target.rank <= passed + count)
                *target.value = double(value);
        }
        passed += count;
        const double distance = double(value) - result.mean;
        squares += distance * distance * double(count);
    });
    result.deviation = std::sqrt(squares / double(result.finite));
    return result;
}

ChannelStatistics ofChannel(const CodeCounts& counts, Channel channel) {
    if (counts.counts[channel].empty())
        return {};
    ChannelStatistics result = ofCodes(counts, channel);
    const Specials none = specials(counts, channel);
    result.counted = true;
    result.rounded = counts.rounded[channel];
    result.nan = none.nan;
    result.positiveInfinity = none.positiveInfinity;
    result.negativeInfinity = none.negativeInfinity;
    const ExactSums* const exact = counts.sums[channel].get();
    if (!exact || exact->count() == 0)
        return result;
    result.finite = exact->count();
    result.below = exact->below();
    result.above = exact->above();
    result.withinEbuR103 = exact->withinEbuR103();
    result.minimum = double(exact->minimum());
    result.maximum = double(exact->maximum());
    result.mean = exact->mean();
    result.deviation = exact->deviation();
    return result;
}

void addLight(const CodeCounts& counts, ImageStatistics& statistics) {
    constexpr double Level = 0.99995;
    const std::uint64_t finite = finiteCount(counts, ScopeHistogram::Largest);
    if (finite == 0)
        return;
    const auto nits = [&counts](double value) {
        return std::max(nitsOfSignal(counts.encoding, value), 0.0);
    };
    double sum = 0;
    double highest = 0;
    counts.ascend(ScopeHistogram::Largest, [&](float value, std::uint64_t count) {
        sum += nits(double(value)) * double(count);
        highest = double(value);
    });
    statistics.maxCll = nits(highest);
    statistics.frameAverage = sum / double(finite);
    statistics.level99995 = nits(counts.quantile(ScopeHistogram::Largest, Level));
}

} // namespace

ScopeHistogram CodeCounts::histogram(const ValueRange& wanted, ScopeHistogram::Axis kind,
                                     float whiteNits) const {
    ScopeHistogram result;
    result.range = wanted.normalized();
    result.axis = kind;
    result.pixels = pixels;
    const ValueRange& range = result.range;
    for (int i = 0; i < ScopeHistogram::Channels; ++i) {
        const auto channel = Channel(i);
        if (counts[channel].empty())
            continue;
        std::vector<std::uint32_t>& bins = result.bins[channel];
        bins.resize(std::size_t(range.bins));
        ascend(channel, [&](float value, std::uint64_t count) {
            const float place = kind == ScopeHistogram::Axis::Linear
                                    ? value
                                    : ScopeHistogram::position(kind, value, whiteNits);
            const int bin = range.binOf(place);
            if (bin < range.bins)
                bins[std::size_t(bin)] += std::uint32_t(count);
            else if (bin == range.below())
                result.below[channel] += count;
            else if (bin == range.above())
                result.above[channel] += count;
        });
        // What only became infinite by being rounded is finite.
        if (const ExactSums* const exact = sums[channel].get()) {
            result.below[channel] += exact->tooLow();
            result.above[channel] += exact->tooHigh();
        }
        const Specials none = specials(*this, channel);
        result.nan[channel] = none.nan;
        result.positiveInfinity[channel] = none.positiveInfinity;
        result.negativeInfinity[channel] = none.negativeInfinity;
    }
    return result;
}

double CodeCounts::quantile(Channel channel, double p) const {
    const std::uint64_t finite = finiteCount(*this, channel);
    const std::uint64_t rank = Ranks(finite).rank(p);
    double found = 0;
    std::uint64_t passed = 0;
    ascend(channel, [&](float value, std::uint64_t count) {
        if (passed < rank && rank <= passed + count)
            found = double(value);
        passed += count;
    });
    return found;
}

ImageStatistics CodeCounts::statistics() const {
    ImageStatistics result;
    for (int i = 0; i < ScopeHistogram::Channels; ++i)
        result.channels[std::size_t(i)] = ofChannel(*this, Channel(i));
    result.pixels = pixels;
    result.transparent = transparent;
    result.illegal = illegal;
    result.outsideEbuR103 = outsideEbuR103;
    addLight(*this, result);
    return result;
}

} // namespace Kestrel::UI
