#include <KxUI/values/SliderGeometry_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {

SliderGeometry SliderGeometry::of(const SliderRange& range, const SliderRoom& room) {
    SliderGeometry geometry;
    geometry.orientation = room.orientation;
    geometry.handleAlong = room.handleAlong;
    geometry.planAlong(range, room);
    geometry.planAcross(room);
    return geometry;
}

double SliderGeometry::widestLabel(const SliderRoom& room) const {
    double widest = 0.0;
    const int digits = ticks.ticks.empty() ? 6 : ticks.digits(scale);
    for (const SliderTick& tick : ticks.ticks) {
        if (tick.isLong)
            widest = std::max(widest, room.labelWidth(room.labelText(tick.value, digits)));
    }
    return std::ceil(widest);
}

void SliderGeometry::planAlong(const SliderRange& range, const SliderRoom& room) {
    const double whole = isHorizontal() ? room.size.width() : room.size.height();
    double label = isHorizontal() ? 0.0 : room.labelHeight;
    // The width of the labels decides how many there are, and these how wide they are.
    for (int attempt = 0; attempt < 4; ++attempt) {
        const double overhang =
            room.hasLabels ? std::max(0.0, std::ceil(label / 2.0 - room.endAlong)) : 0.0;
        const double end = room.endAlong + overhang;
        const double length = std::max(0.0, whole - 2.0 * end);
        scale = {range.minimum, range.maximum, range.exponent, room.forward ? end : end + length,
                 room.forward ? length : -length};
        const double extent = length + 2.0 * room.endAlong;
        slider = isHorizontal() ? QRectF(overhang, 0.0, extent, room.thickness)
                                : QRectF(0.0, overhang, room.thickness, extent);
        ticks = {};
        if (!room.hasTicks)
            return;
        SliderTickSpacing spacing;
        spacing.smallest = range.grid;
        spacing.longTicks = std::max(LongTickDistance, room.hasLabels ? 1.5 * label : 0.0);
        ticks = SliderTicks::of(scale, spacing);
        if (room.hasLabels && ticks.longCount() < 2) { // one number says little
            spacing.longTicks = label + LeastLabelGap;
            ticks = SliderTicks::of(scale, spacing);
        }
        if (!room.hasLabels || !isHorizontal() || widestLabel(room) <= label)
            return;
        label = widestLabel(room);
    }
}

void SliderGeometry::planAcross(const SliderRoom& room) {
    const double widest = room.hasLabels ? widestLabel(room) : 0.0;
    const double labelAcross = isHorizontal() ? room.labelHeight : widest;
    across = room.thickness;
    if (room.hasTicks)
        across += TickGap + LongTickLength;
    if (room.hasLabels)
        across += LabelGap + labelAcross;
    const double whole = isHorizontal() ? room.size.height() : room.size.width();
    const double free = std::max(0.0, std::floor((whole - across) / 2.0));
    const bool mirrored = room.mirrored && !isHorizontal();
    const auto placed = [&](double from, double extent) {
        return mirrored ? whole - free - from - extent : free + from;
    };
    if (isHorizontal())
        slider.moveTop(placed(0.0, room.thickness));
    else
        slider.moveLeft(placed(0.0, room.thickness));
    tickDirection = mirrored ? -1.0 : 1.0;
    tickStart = placed(room.thickness + TickGap, 0.0);
    if (!room.hasLabels)
        return;
    const double labelStart =
        placed(room.thickness + TickGap + LongTickLength + LabelGap, labelAcross);
    const int digits = ticks.ticks.empty() ? 6 : ticks.digits(scale);
    for (const SliderTick& tick : ticks.ticks) {
        if (!tick.isLong)
            continue;
        const QString text = room.labelText(tick.value, digits);
        const double width = std::ceil(room.labelWidth(text));
        const double middle = std::floor(tick.pixel);
        const QRectF place =
            isHorizontal()
                ? QRectF(middle - std::floor(width / 2.0), labelStart, width, room.labelHeight)
                : QRectF(mirrored ? labelStart + labelAcross - width : labelStart,
                         middle - std::floor(room.labelHeight / 2.0), width, room.labelHeight);
        labels.push_back({place, text});
    }
}

QRectF SliderGeometry::handle(double value) const {
    const double from = scale.pixelOf(value) - handleAlong / 2.0;
    return isHorizontal() ? QRectF(from, slider.y(), handleAlong, slider.height())
                          : QRectF(slider.x(), from, slider.width(), handleAlong);
}

QRectF SliderGeometry::tick(const SliderTick& tick) const {
    const double length = tick.isLong ? LongTickLength : TickLength;
    const double from = tickDirection > 0.0 ? tickStart : tickStart - length;
    return isHorizontal() ? QRectF(tick.pixel, from, 0.0, length)
                          : QRectF(from, tick.pixel, length, 0.0);
}

} // namespace Kestrel::UI
