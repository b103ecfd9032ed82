#include <KxUI/time/TimeSliderGeometry_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Base::Time;

TimeSliderTime atMost(TimeSliderTime time, TimeSliderTime limit) {
    return time > limit ? limit : time;
}

TimeSliderTime atLeast(TimeSliderTime time, TimeSliderTime limit) {
    return time < limit ? limit : time;
}

bool canZoom(const TimeSliderRange& range, TimeSliderTime centre, float factor) {
    return range.isValid() && centre.isValid() && factor > 0 && std::isfinite(factor);
}

} // namespace

TimeSliderRange zoomedRangeByRounding(const TimeSliderRange& range, TimeSliderTime centre,
                                      float factor) {
    if (!canZoom(range, centre, factor))
        return range;
    const TimeSliderTime kept = atMost(atLeast(centre, range.first), range.last);
    return {kept + (range.first - kept) / factor, kept + (range.last - kept) / factor};
}

TimeSliderRange zoomedRange(const TimeSliderRange& range, TimeSliderTime centre, float factor) {
    TimeSliderRange zoomed = zoomedRangeByRounding(range, centre, factor);
    if (!canZoom(range, centre, factor))
        return zoomed;
    const TimeSliderTime kept = atMost(atLeast(centre, range.first), range.last);
    const TimeSliderTime after = zoomed.last - kept;
    if (after == range.last - kept) {
        if (factor < 1)
            zoomed.last += 1;
        else if (factor > 1 && after >= 1)
            zoomed.last -= 1;
    }
    return zoomed;
}

TimeSliderRange scrolledRange(const TimeSliderRange& range, TimeSliderTime time, int mode,
                              const TimeSliderRange& clip) {
    if (!range.isValid() || !time.isValid() || range.contains(time))
        return range;
    const TimeSliderTime span = range.last - range.first;
    TimeSliderTime first = time - span / 2;
    if (time < range.first && mode == 1)
        first = time - span;
    else if (time > range.last && mode == 3)
        first = time;
    if (clip.contains(time))
        first = atLeast(atMost(first, clip.last + 1 - span), clip.first);
    return {first, first + span};
}

Time TimeSliderGeometry::xToTime(int x) const {
    if (!visible.isValid())
        return Base::InvalidTime;
    if (innerWidth() == 0)
        return visible.first.time();
    const float share =
        static_cast<float>(std::int64_t{x} - Margin) / static_cast<float>(innerWidth());
    const float offset = visible.length().toFloat() * share + 0.5F;
    return (visible.first + TimeSliderTime::truncated(offset)).time();
}

int TimeSliderGeometry::clampX(int x) const {
    return std::max(std::min(x, width - Margin), Margin);
}

TimeSliderTime TimeSliderGeometry::pixelsToTime(float pixels) const {
    if (innerWidth() == 0)
        return 0;
    return visible.length() * (pixels / static_cast<float>(innerWidth()));
}

int TimeSliderGeometry::timeToRangeBarX(TimeSliderTime time) const {
    if (!hasClip() || !time.isValid())
        return Margin;
    const double pixels = static_cast<double>((time - clip.first).time()) * innerWidth() /
                          static_cast<double>(clip.length().time());
    constexpr double farAway{TimeSliderMapping::FarAway};
    return Margin + static_cast<int>(std::clamp(pixels, -farAway, farAway));
}

TimeSliderTime TimeSliderGeometry::xToRangeBarTime(int x) const {
    if (!hasClip() || innerWidth() == 0)
        return clip.first;
    const double framesPerPixel = static_cast<double>(clip.length().time()) / innerWidth();
    return clip.first +
           Base::truncatedTime(framesPerPixel * static_cast<double>(std::int64_t{x} - Margin));
}

TimeSliderTime TimeSliderGeometry::autoScroll(int x) const {
    if (x >= -Margin && x <= width + Margin)
        return 0;
    const TimeSliderTime step = atLeast(pixelsToTime(20), 1);
    return x < Margin ? TimeSliderTime(0) - step : step;
}

std::array<TimeSliderBand, 5> planBands(const TimeSliderGeometry& geometry,
                                        const TimeSliderRange& playback) {
    const int left = TimeSliderGeometry::Margin;
    const int right = std::max(geometry.width - left, left);
    const auto limited = [](int x, int low, int high) { return std::max(low, std::min(x, high)); };
    const auto end = [&](const TimeSliderRange& range) {
        return geometry.timeToX((range.last + 1).time());
    };
    const int clipX = limited(geometry.timeToX(geometry.clip.first.time()), left, right);
    const int clipEnd = limited(end(geometry.clip), clipX, right);
    const int playX = limited(geometry.timeToX(playback.first.time()), clipX, clipEnd);
    const int playEnd = limited(end(playback), playX, clipEnd);
    return {{{left, clipX, TimeSliderBand::Outside},
             {clipX, playX, TimeSliderBand::Clip},
             {playX, playEnd, TimeSliderBand::Playback},
             {playEnd, clipEnd, TimeSliderBand::Clip},
             {clipEnd, right, TimeSliderBand::Outside}}};
}

TimeSliderTicks TimeSliderTicks::plan(const TimeSliderGeometry& geometry) {
    TimeSliderTicks ticks;
    const Time length = geometry.visible.length().time();
    // At most 100 steps in view; a step as long as the range is always enough.
    while (ticks.step < (length - 1) / 100 + 1)
        ticks.step *= 10;
    ticks.pixelsPerStep = static_cast<double>(geometry.width) * static_cast<double>(ticks.step) /
                          static_cast<double>(length);
    ticks.major = ticks.step * (ticks.pixelsPerStep <= 20 ? 10 : 5);
    return ticks;
}

} // namespace Kestrel::UI
