#include <KxUI/color/ColorWheelGeometry_p.h>

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double TwoPi = 2.0 * M_PI;
constexpr double MaximumPan = 1.9;
constexpr double LeastZoom = 1.0 / 8.0;
constexpr double MostZoom = 64.0;

constexpr double WidgetMargin = 2.0; // pixels of the diameter, and then of the radius
constexpr double ValueRing = 16.0;   // pixels from the disc to the outer edge of a value ring
constexpr double ValueRingGap = 4.0; // and to its inner edge
constexpr double SquareDisc = 0.8;   // of the outer radius, what lies within the ring of hues
constexpr double EmbeddedDisc = 0.83;
constexpr double PlainDisc = 0.9;
constexpr double RingGap = 0.35; // of what is left beside the disc

QPointF direction(double angle) {
    return {std::cos(angle), std::sin(angle)};
}

} // namespace

float wrappedUnit(float x) {
    if (!std::isfinite(x))
        return 0.0F;
    float wrapped = std::fmod(x, 1.0F);
    if (wrapped < 0.0F)
        wrapped += 1.0F;
    // A tiny negative number rounds to 1, and -1 leaves a negative zero.
    return wrapped > 0.0F && wrapped < 1.0F ? wrapped : 0.0F;
}

float clampedUnit(double x) {
    return x > 0.0 ? static_cast<float>(std::min(x, 1.0)) : 0.0F;
}

ColorWheelGeometry ColorWheelGeometry::of(const QSizeF& size, ColorWheel::DisplayMode mode,
                                          double zoom, const QPointF& pan, double hueRotation) {
    ColorWheelGeometry geometry;
    geometry.mode = mode;
    geometry.height = size.height();
    geometry.rotation = std::isfinite(hueRotation) ? hueRotation : 0.0;
    const double diameter = std::min(size.width(), size.height()) - WidgetMargin;
    geometry.outer = zoom * diameter * 0.5 - WidgetMargin;
    if (mode == ColorWheel::ValueRingWheel) {
        geometry.outer -= zoom * ValueRing;
        geometry.disc = geometry.outer;
        geometry.ringInner = geometry.disc + zoom * ValueRingGap;
        geometry.ringOuter = geometry.disc + zoom * ValueRing;
    } else if (mode == ColorWheel::SquareWheel) {
        geometry.disc = SquareDisc * geometry.outer;
        geometry.halfSquare = (geometry.disc - WidgetMargin) / M_SQRT2;
        geometry.ringInner = geometry.disc;
        geometry.ringOuter = geometry.outer;
    } else {
        geometry.disc =
            (mode == ColorWheel::EmbeddedWheel ? EmbeddedDisc : PlainDisc) * geometry.outer;
        geometry.ringInner = geometry.disc + RingGap * (geometry.outer - geometry.disc);
        geometry.ringOuter = geometry.outer;
    }
    geometry.centre =
        QPointF(size.width() / 2.0, size.height() / 2.0) + pan * std::max(geometry.disc, 0.0);
    return geometry;
}

bool ColorWheelGeometry::isUsable() const {
    return disc >= 1.0 && (mode != ColorWheel::SquareWheel || halfSquare >= 1.0);
}

float ColorWheelGeometry::hueAt(const QPointF& point) const {
    return wrappedUnit(static_cast<float>((std::atan2(point.y(), point.x()) - rotation) / TwoPi));
}

QPointF ColorWheelGeometry::hueDirection(float hue) const {
    return direction(TwoPi * static_cast<double>(wrappedUnit(hue)) + rotation);
}

float ColorWheelGeometry::ringValueAt(const QPointF& point) {
    const float turn = wrappedUnit(static_cast<float>(std::atan2(point.y(), point.x()) / TwoPi));
    const float value = (1.0F - turn) + 0.25F;
    return value > 1.0F ? value - 1.0F : value;
}

QPointF ColorWheelGeometry::ringDirection(float value) {
    return direction(TwoPi * (1.25 - static_cast<double>(clampedUnit(static_cast<double>(value)))));
}

QPointF ColorWheelGeometry::markerOf(const Hsv& color) const {
    const double saturation =
        static_cast<double>(clampedUnit(static_cast<double>(color.saturation)));
    if (mode != ColorWheel::SquareWheel)
        return hueDirection(color.hue) * (saturation * disc);
    const double value = static_cast<double>(clampedUnit(static_cast<double>(color.value)));
    return QPointF(saturation - 0.5, value - 0.5) * (2.0 * halfSquare);
}

QLineF ColorWheelGeometry::ringMarkerOf(const Hsv& color, float ringValue) const {
    const QPointF way =
        mode == ColorWheel::ValueRingWheel ? ringDirection(ringValue) : hueDirection(color.hue);
    return {way * ringInner, way * ringOuter};
}

QPointF ColorWheelGeometry::toWidget(const QPointF& point) const {
    return {centre.x() + point.x(), height - (centre.y() + point.y())};
}

QRectF ColorWheelGeometry::square() const {
    return {toWidget({-halfSquare, halfSquare}), QSizeF(2.0 * halfSquare, 2.0 * halfSquare)};
}

bool operator==(const ColorWheelGeometry& a, const ColorWheelGeometry& b) {
    const auto fields = [](const ColorWheelGeometry& each) {
        return std::array<double, 9>{each.centre.x(), each.centre.y(), each.height,
                                     each.rotation,   each.disc,       each.outer,
                                     each.ringInner,  each.ringOuter,  each.halfSquare};
    };
    return a.mode == b.mode && fields(a) == fields(b);
}

QPointF panForZoom(const QPointF& pan, const QPointF& fromMiddle, double oldDisc, double newDisc) {
    return limitedPan(fromMiddle / newDisc - fromMiddle / oldDisc + pan);
}

QPointF limitedPan(const QPointF& pan) {
    return {std::clamp(pan.x(), -MaximumPan, MaximumPan),
            std::clamp(pan.y(), -MaximumPan, MaximumPan)};
}

float limitedZoom(double zoom) {
    return static_cast<float>(std::clamp(zoom, LeastZoom, MostZoom));
}

} // namespace Kestrel::UI
