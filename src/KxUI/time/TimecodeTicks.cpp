#include <KxUI/time/TimecodeTicks_p.h>

#include <KxUI/time/TimeSliderLabels_p.h>

#include <cmath>
#include <vector>

namespace Kestrel::UI {
namespace {

using Base::Time;

/** Distances that ticks may have, in labels: those that a second can be divided into, and whole
    seconds that minutes and hours can. */
std::vector<Time> distancesOf(Time fps) {
    std::vector<Time> distances;
    for (Time part = 1; part < fps; ++part) {
        if (fps % part == 0)
            distances.push_back(part);
    }
    for (const Time seconds :
         {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 21600, 43200, 86400})
        distances.push_back(seconds * fps);
    return distances;
}

} // namespace

bool TimecodeTicks::Rate::isLeftOut(Time label) const {
    const Time magnitude = label < 0 ? -label : label;
    return magnitude % (60 * fps) < dropped && magnitude / (60 * fps) % 10 != 0;
}

Time TimecodeTicks::Rate::frameOf(Time label) const {
    if (label < 0)
        return -(Rate{fps, dropped, 0}.frameOf(-label)) - start;
    const Time minutes = label / (60 * fps);
    const Time present = isLeftOut(label) ? minutes * 60 * fps + dropped : label;
    return present - dropped * (minutes - minutes / 10) - start;
}

Time TimecodeTicks::Rate::labelBefore(Time frame) const {
    const Time count = frame + start;
    const Time tenMinutes = 600 * fps - 9 * dropped;
    // Negative labels mirror positive ones: the farthest that it can be there.
    const Time tens = count / tenMinutes - (count < 0 ? 1 : 0);
    return count + 9 * dropped * tens;
}

bool TimecodeTicks::canCount(const TimeSliderRange& visible, const Rate& rate) {
    constexpr Time most = Time{1} << 52;
    const auto isSmall = [](Time time) { return time > -most && time < most; };
    return rate.fps >= 1 && visible.isValid() && isSmall(visible.first.time()) &&
           isSmall(visible.last.time()) && isSmall(rate.start);
}

TimecodeTicks TimecodeTicks::plan(const TimeSliderGeometry& geometry, const Rate& rate,
                                  int labelWidth) {
    constexpr double closest = 5;
    constexpr Time mostTicks = 900;
    const Time length = geometry.visible.length().time();
    const double pixels = double(geometry.width) / double(length);
    const double room = labelWidth + 3.0 * TimeSliderLabels::Gap;
    TimecodeTicks ticks;
    ticks.rate = rate;
    const std::vector<Time> distances = distancesOf(rate.fps);
    const Time day = distances.back();
    // Beyond days there are no timecodes that differ; days go on by tens.
    Time major = day;
    while (double(major) * pixels < room)
        major *= 10;
    for (const Time distance : distances) {
        if (double(distance) * pixels >= room) {
            major = distance;
            break;
        }
    }
    ticks.major = major;
    ticks.step = major;
    for (const Time distance : distances) {
        if (major % distance == 0 && double(distance) * pixels >= closest &&
            length / distance <= mostTicks) {
            ticks.step = std::min(distance, major);
            break;
        }
    }
    return ticks;
}

} // namespace Kestrel::UI
