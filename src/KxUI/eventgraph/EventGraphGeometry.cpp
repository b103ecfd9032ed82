#include <KxUI/eventgraph/EventGraphGeometry_p.h>

#include <KxUI/eventgraph/CaptureState_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// Far more than any capture needs, and far from where floats end.
constexpr int lowestLevel = -4 * 30;
constexpr int highestLevel = 4 * 30;

// Beyond any widget, and far enough from the ends of int to calculate with.
constexpr int farthest = 1 << 28;

float scaleOfLevel(int level) {
    return std::exp2(static_cast<float>(std::clamp(level, lowestLevel, highestLevel)) / 4.0f);
}

int highestLevelFor(double span, int pixels) {
    const double level = std::floor(4.0 * std::log2(std::max(pixels, 1) / std::max(span, 1.0)));
    int result = std::clamp(truncated(level), lowestLevel, highestLevel);
    // The rounding of logarithm and power must not cost a pixel.
    while (result > lowestLevel && span * static_cast<double>(scaleOfLevel(result)) > pixels)
        --result;
    return result;
}

} // namespace

int TimeScale::x(int time) const {
    const double offset = static_cast<double>(time) * static_cast<double>(pixelsPerMs);
    return std::clamp(truncated(offset), -farthest, farthest) + nameColumnWidth;
}

double TimeScale::time(double x) const {
    return (x - nameColumnWidth) / static_cast<double>(pixelsPerMs);
}

float zoomed(float pixelsPerMs, int wheelDelta, int span) {
    const int level = truncated(std::round(4.0 * std::log2(static_cast<double>(pixelsPerMs))));
    const int wanted = std::clamp(level, lowestLevel, highestLevel) + wheelDelta / 120;
    const int highest = highestLevelFor(std::max(span, 800), largestExtent - nameColumnWidth);
    return scaleOfLevel(std::min(wanted, highest));
}

float fittingScale(double span, int pixels) {
    return scaleOfLevel(highestLevelFor(span, pixels));
}

int scrollAfterZoom(int cursorX, int scroll, float oldScale, float newScale, int hintWidth,
                    int parentWidth) {
    const int x = std::max(cursorX, nameColumnWidth);
    const double time = TimeScale{oldScale}.time(x);
    const int cursorInParent = x - scroll;
    const qint64 wanted =
        qint64(truncated(time * static_cast<double>(newScale))) - cursorInParent + nameColumnWidth;
    return static_cast<int>(std::clamp<qint64>(wanted, 0, std::max(hintWidth - parentWidth, 0)));
}

QSize viewSize(int span, float pixelsPerMs, qint64 rowsHeight) {
    const int width =
        truncated(static_cast<double>(std::max(span, 800)) * static_cast<double>(pixelsPerMs) +
                  nameColumnWidth);
    return {std::min(width, largestExtent),
            static_cast<int>(std::clamp<qint64>(rowsHeight, 500, largestExtent))};
}

int graphY(float value, float minValue, float maxValue, int height, int bottom) {
    const double range = static_cast<double>(maxValue) - static_cast<double>(minValue);
    const double part = (static_cast<double>(value) - static_cast<double>(minValue)) / range;
    const int offset = std::clamp(truncated(part * height), -largestExtent, largestExtent);
    return bottom - offset;
}

double tickStep(float pixelsPerMs, int pixels) {
    const double least = std::max(pixels / static_cast<double>(pixelsPerMs), 1.0);
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least)
            return factor * power;
    }
    return 10.0 * power;
}

} // namespace Kestrel::UI
