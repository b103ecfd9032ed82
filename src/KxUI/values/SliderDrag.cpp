#include <KxUI/values/SliderDrag_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

std::optional<double> nearestPoint(const SliderScene& scene, double pixel, double within) {
    std::optional<double> nearest;
    if (!scene.snapPoints)
        return nearest;
    for (const double point : *scene.snapPoints) {
        const double distance = std::fabs(scene.scale.pixelOf(point) - pixel);
        if (distance <= within) {
            within = distance;
            nearest = point;
        }
    }
    return nearest;
}

double editable(const SliderScene& scene, double part) {
    return scene.scale.clamped(onGrid(scene.scale.valueOf(part), scene.grid));
}

bool isNear(const SliderScene& scene, const std::optional<double>& point, double pixel) {
    return point && std::fabs(scene.scale.pixelOf(*point) - pixel) <= SliderDrag::SnapLeave;
}

} // namespace

void SliderDrag::anchor(const SliderScene& scene, double pixel) {
    m_anchorPixel = pixel;
    m_anchorValue = scene.value;
    m_anchorPart = scene.scale.partOf(scene.value);
    m_snap.reset();
    m_beside = nearestPoint(scene, scene.scale.pixelOfPart(m_anchorPart), SnapLeave);
}

void SliderDrag::grip(const SliderScene& scene, const SliderInput& input) {
    m_active = true;
    m_snapping = true;
    m_factor = input.factor;
    m_lastPixel = input.pixel;
    anchor(scene, input.pixel);
}

std::optional<double> SliderDrag::jump(const SliderScene& scene, const SliderInput& input) {
    grip(scene, input);
    m_beside.reset();
    m_anchorPart = scene.scale.partAt(input.pixel);
    m_anchorValue = editable(scene, m_anchorPart);
    return shown(scene, m_anchorPart, !input.snapsOtherwise);
}

void SliderDrag::rebase(const SliderScene& scene) {
    if (m_active)
        anchor(scene, m_lastPixel);
}

std::optional<double> SliderDrag::move(const SliderScene& scene, const SliderInput& input) {
    if (input.factor != m_factor) {
        m_factor = input.factor;
        anchor(scene, m_lastPixel);
    }
    m_lastPixel = input.pixel;
    const double moved = scene.scale.length == 0.0
                             ? 0.0
                             : (input.pixel - m_anchorPixel) / scene.scale.length * m_factor;
    double part = m_anchorPart + moved;
    const bool plain = m_factor == 1.0;
    if (!plain && (part < 0.0 || part > 1.0)) {
        part = std::clamp(part, 0.0, 1.0);
        m_anchorPixel = input.pixel;
        m_anchorPart = part;
        m_anchorValue = editable(scene, part);
    }
    return shown(scene, part, m_factor >= 1.0 && m_snapping != input.snapsOtherwise);
}

std::optional<double> SliderDrag::snapped(const SliderScene& scene, double pixel) {
    if (isNear(scene, m_snap, pixel))
        return m_snap;
    m_snap.reset();
    if (!isNear(scene, m_beside, pixel))
        m_beside.reset();
    const std::optional<double> point = nearestPoint(scene, pixel, SnapEnter);
    if (point && point != m_beside)
        m_snap = point;
    return m_snap;
}

std::optional<double> SliderDrag::shown(const SliderScene& scene, double part, bool snaps) {
    const SliderScale& scale = scene.scale;
    const double within = std::clamp(part, 0.0, 1.0);
    double value = part == m_anchorPart ? m_anchorValue : editable(scene, within);
    if (!snaps)
        m_snap.reset();
    else if (const auto point = snapped(scene, scale.pixelOfPart(within)))
        value = *point;
    // What lies outside the range stays until the handle leaves the end that it stands at.
    if (scale.clamped(value) == scale.clamped(scene.value))
        return std::nullopt;
    return value;
}

} // namespace Kestrel::UI
