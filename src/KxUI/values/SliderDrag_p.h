#pragma once

#include <KxUI/values/SliderScale_p.h>

#include <optional>
#include <vector>

namespace Kestrel::UI {

/** What a drag needs to know about the slider at the time of an input. */
struct SliderScene {
    SliderScale scale;
    double value = 0.0; ///< as it is; it may lie outside the range
    double grid = 0.0;
    const std::vector<double>* snapPoints = nullptr; ///< within the range; null: none
};

/** A press or a movement, plainly. */
struct SliderInput {
    double pixel = 0.0;          ///< along the groove
    double factor = 1.0;         ///< how many times as far as the mouse the handle goes
    bool snapsOtherwise = false; ///< snaps where it would not, and the other way round
};

/** The drag of a slider's handle. At the plain factor the handle stays under the mouse, also after
    the mouse was beyond an end; at others it follows relatively and turns back at once. Another
    factor takes a new start from where both are, so the value never jumps. Answers with the value
    to show, or nothing where that is as it was. */
class SliderDrag {
public:
    /** Pixels from a snap point at which the value goes there, and at which it leaves again. */
    static constexpr double SnapEnter = 6.0;
    static constexpr double SnapLeave = 12.0;

    bool isActive() const { return m_active; }

    /** Takes hold of the handle where it is. */
    void grip(const SliderScene& scene, const SliderInput& input);
    /** Brings the handle under the mouse and takes hold of it. */
    std::optional<double> jump(const SliderScene& scene, const SliderInput& input);
    std::optional<double> move(const SliderScene& scene, const SliderInput& input);
    /** Goes on from what the scene shows: the host, or the range, has changed it. */
    void rebase(const SliderScene& scene);
    void end() { m_active = false; }

    void toggleSnapping() { m_snapping = !m_snapping; }

private:
    void anchor(const SliderScene& scene, double pixel);
    std::optional<double> snapped(const SliderScene& scene, double pixel);
    std::optional<double> shown(const SliderScene& scene, double part, bool snaps);

    bool m_active = false;
    bool m_snapping = true;
    double m_factor = 1.0;
    double m_anchorPixel = 0.0;
    double m_anchorPart = 0.0;
    double m_anchorValue = 0.0;
    double m_lastPixel = 0.0;
    std::optional<double> m_snap; ///< the point that holds the value
    std::optional<double>
        m_beside; ///< the point by which the drag began; it holds nothing until left
};

} // namespace Kestrel::UI
