#include <KxUI/picker/TrackBallGeometry_p.h>

#include <QtMath>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <tuple>

namespace Kestrel::UI {
namespace {

constexpr double ThirdOfATurn = 2.0 * M_PI / 3.0;
// Some units in the last place of a float.
constexpr double FloatNoise = 4.0 * static_cast<double>(FLT_EPSILON);

constexpr double Margin = 2.0; // for the frame of the focus
constexpr double RingPart = 0.13;
constexpr double NarrowRing = 7.0;
constexpr double WideRing = 16.0;
constexpr double Gap = 3.0; // between ball and ring

// Exact for three equal numbers.
double mean(const std::array<double, 3>& x) {
    return x[0] + ((x[1] - x[0]) + (x[2] - x[0])) / 3.0;
}

// As far as floats go. A gain that came down to 0 could not be a gain again.
double limited(double factor, bool isOffset) {
    constexpr auto Most = static_cast<double>(FLT_MAX);
    constexpr auto Least = static_cast<double>(FLT_MIN);
    return std::clamp(factor, isOffset ? -Most : Least, Most);
}

double dot(const QPointF& a, const QPointF& b) {
    return a.x() * b.x() + a.y() * b.y();
}

} // namespace

std::array<QPointF, 3> TrackBallScale::directions() const {
    std::array<QPointF, 3> units;
    for (std::size_t channel = 0; channel < units.size(); ++channel) {
        const double angle = rotation + ThirdOfATurn * static_cast<double>(channel);
        units[channel] = {std::cos(angle), std::sin(angle)};
    }
    return units;
}

TrackBallPose TrackBallScale::poseOf(const std::array<double, 3>& factors) const {
    TrackBallPose pose;
    pose.isOffset = isOffset(*std::min_element(factors.begin(), factors.end()));
    std::array<double, 3> parts = factors;
    if (!pose.isOffset) {
        for (double& part : parts)
            part = std::log2(part);
    }
    const double middle = mean(parts);
    const bool areEqual = factors[0] == factors[1] && factors[0] == factors[2];
    if (pose.isOffset || areEqual)
        pose.master = mean(factors);
    else
        pose.master = std::exp2(middle);
    const std::array<QPointF, 3> units = directions();
    for (std::size_t channel = 0; channel < parts.size(); ++channel)
        pose.balance += units[channel] * ((parts[channel] - middle) / range * (2.0 / 3.0));
    if (areEqual)
        pose.balance = QPointF();
    return pose;
}

std::array<double, 3> TrackBallScale::factorsOf(const TrackBallPose& pose) const {
    std::array<double, 3> factors{};
    const std::array<QPointF, 3> units = directions();
    for (std::size_t channel = 0; channel < factors.size(); ++channel) {
        const double part = range * dot(pose.balance, units[channel]);
        factors[channel] = pose.isOffset ? pose.master + part : pose.master * std::exp2(part);
    }
    return factors;
}

TrackBallValue TrackBallScale::valueOf(const QVector3D& factors) const {
    const std::array<double, 3> exact{static_cast<double>(factors.x()),
                                      static_cast<double>(factors.y()),
                                      static_cast<double>(factors.z())};
    TrackBallPose pose = poseOf(exact);
    double largest = std::fabs(neutral);
    for (const double factor : exact)
        largest = std::max(largest, std::fabs(factor));
    if (std::fabs(pose.master - neutral) <= FloatNoise * largest)
        pose.master = neutral;
    return {factors, pose};
}

TrackBallValue TrackBallScale::valueOf(const TrackBallPose& pose) const {
    const std::array<double, 3> exact = factorsOf(pose);
    std::array<float, 3> rounded{};
    bool areHeld = true;
    for (std::size_t channel = 0; channel < exact.size(); ++channel) {
        const double held = limited(exact[channel], pose.isOffset);
        areHeld = areHeld && held == exact[channel];
        rounded[channel] = static_cast<float>(held);
    }
    const QVector3D factors(rounded[0], rounded[1], rounded[2]);
    return areHeld ? TrackBallValue{factors, pose} : valueOf(factors);
}

TrackBallValue TrackBallScale::neutralValue() const {
    return valueOf(TrackBallPose{{}, neutral, isOffset(neutral)});
}

double TrackBallScale::masterAfter(const TrackBallPose& pose, double steps) const {
    return limited(pose.isOffset ? pose.master + range * steps : pose.master * std::exp2(steps),
                   pose.isOffset);
}

double TrackBallScale::stepsTo(const TrackBallPose& pose) const {
    if (!pose.isOffset && neutral > 0.0)
        return std::log2(pose.master / neutral);
    return (pose.master - neutral) / range;
}

bool operator==(const TrackBallScale& a, const TrackBallScale& b) {
    return std::tie(a.mode, a.range, a.neutral, a.rotation) ==
           std::tie(b.mode, b.range, b.neutral, b.rotation);
}

TrackBallGeometry TrackBallGeometry::of(const QSizeF& size, double titleHeight) {
    TrackBallGeometry geometry;
    geometry.title = QRectF(0.0, 0.0, size.width(), titleHeight);
    const QSizeF room(size.width(), size.height() - titleHeight);
    const double outer = std::min(room.width(), room.height()) / 2.0 - Margin;
    const double ring = std::clamp(outer * RingPart, NarrowRing, WideRing);
    geometry.centre = QPointF(room.width() / 2.0, titleHeight + room.height() / 2.0);
    geometry.ringOuter = outer;
    geometry.ringInner = outer - ring;
    geometry.ball = geometry.ringInner - Gap;
    return geometry;
}

TrackBallGeometry::Part TrackBallGeometry::partAt(const QPointF& point) const {
    const double distance = std::hypot(point.x() - centre.x(), point.y() - centre.y());
    if (!isUsable() || distance > ringOuter + Margin)
        return Nowhere;
    return distance > ball ? Ring : Ball;
}

bool TrackBallGeometry::isBeyond(const QPointF& balance) {
    constexpr double Slack = 1e-6; // a host's rim may be a rounded one
    return std::hypot(balance.x(), balance.y()) > 1.0 + Slack;
}

QPointF TrackBallGeometry::markerOf(const QPointF& balance) const {
    const double scale = reach() / std::max(std::hypot(balance.x(), balance.y()), 1.0);
    return {centre.x() + balance.x() * scale, centre.y() - balance.y() * scale};
}

double TrackBallGeometry::angleAt(const QPointF& point) const {
    return std::atan2(point.x() - centre.x(), centre.y() - point.y());
}

double TrackBallGeometry::angleOf(double steps) {
    return std::clamp(steps / RingSpan, -1.0, 1.0) * RingTurn;
}

QPointF TrackBallGeometry::onRing(double angle, double radius) const {
    return {centre.x() + radius * std::sin(angle), centre.y() - radius * std::cos(angle)};
}

bool operator==(const TrackBallGeometry& a, const TrackBallGeometry& b) {
    const auto fields = [](const TrackBallGeometry& each) {
        return std::array<double, 6>{each.title.height(), each.centre.x(), each.centre.y(),
                                     each.ball,           each.ringInner,  each.ringOuter};
    };
    return fields(a) == fields(b);
}

} // namespace Kestrel::UI
