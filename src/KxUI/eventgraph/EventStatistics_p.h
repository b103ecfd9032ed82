#pragma once

#include <cstddef>
#include <vector>

namespace Kestrel::UI {

struct TrackIndex;

/** The distribution of a track's durations (in milliseconds) or values. */
struct EventStatistics {
    std::size_t count = 0;
    double minimum = 0;
    double mean = 0;
    double maximum = 0;
    double median = 0;
    double percentile95 = 0;
    double percentile99 = 0;
};

/** Percentiles are nearest-rank: the smallest value that at least so many percent do not exceed. */
EventStatistics statisticsOf(std::vector<double> values);

/** Of the durations of a timeline, or the values of a graph. */
EventStatistics statisticsOf(const TrackIndex& index);

} // namespace Kestrel::UI
