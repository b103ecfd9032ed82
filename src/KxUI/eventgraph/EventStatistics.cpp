#include <KxUI/eventgraph/EventStatistics_p.h>

#include <KxUI/eventgraph/TrackIndex_p.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Kestrel::UI {

EventStatistics statisticsOf(std::vector<double> values) {
    EventStatistics result;
    result.count = values.size();
    if (values.empty())
        return result;
    const double count = static_cast<double>(values.size());
    const auto percentile = [&](double percent) {
        const double rank = std::ceil(percent / 100.0 * count);
        const auto nth = values.begin() + static_cast<std::ptrdiff_t>(std::max(rank, 1.0)) - 1;
        std::nth_element(values.begin(), nth, values.end());
        return *nth;
    };
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    result.minimum = *low;
    result.maximum = *high;
    result.mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
    result.median = percentile(50);
    result.percentile95 = percentile(95);
    result.percentile99 = percentile(99);
    return result;
}

EventStatistics statisticsOf(const TrackIndex& index) {
    std::vector<double> values;
    values.reserve(index.spans.size() + index.samples.size());
    for (const TrackIndex::Span& span : index.spans)
        values.push_back(static_cast<double>(span.end) - span.start);
    for (const TrackIndex::Sample& sample : index.samples)
        values.push_back(static_cast<double>(sample.value));
    return statisticsOf(std::move(values));
}

} // namespace Kestrel::UI
