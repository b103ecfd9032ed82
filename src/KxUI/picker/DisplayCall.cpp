#include <KxUI/picker/DisplayCall_p.h>

#include <QDebug>

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>
#include <vector>

namespace Kestrel::UI {

bool isFinite(const ColorValue& color) {
    return std::isfinite(color.red) && std::isfinite(color.green) && std::isfinite(color.blue) &&
           std::isfinite(color.alpha);
}

int eightBits(float part) {
    return part > 0.0F ? static_cast<int>(std::min(part, 1.0F) * 255.0F + 0.5F) : 0;
}

DisplayCall::DisplayCall(DisplayTransform transform) {
    static quint64 last = 0; // interface thread, as everything that shows colours
    m_shared = std::make_shared<Shared>();
    m_shared->transform = std::move(transform);
    m_shared->number = ++last;
}

const DisplayTransform& DisplayCall::transform() const {
    static const DisplayTransform none;
    return m_shared ? m_shared->transform : none;
}

bool DisplayCall::run(const ColorWheel::ColorTransform& function, float* rgb, int pixels) const {
    const std::shared_ptr<Shared> shared = m_shared; // the host may set another one meanwhile
    const std::vector<float> before(rgb, rgb + 3 * static_cast<std::ptrdiff_t>(pixels));
    const char* what = "an unknown exception";
    try {
        function(rgb, pixels);
        return true;
    } catch (const std::exception& error) {
        what = error.what();
        if (!std::exchange(shared->hasWarned, true))
            qWarning("KxUI - a display transform threw: %s", what);
    } catch (...) {
        if (!std::exchange(shared->hasWarned, true))
            qWarning("KxUI - a display transform threw %s", what);
    }
    std::copy(before.begin(), before.end(), rgb);
    return false;
}

void DisplayCall::toDisplay(float* rgb, int pixels) const {
    if (!isPlain() && pixels > 0)
        run(transform().toDisplay, rgb, pixels);
}

bool DisplayCall::fromDisplay(float* rgb, int pixels) const {
    if (isPlain() || pixels <= 0)
        return true;
    return transform().fromDisplay && run(transform().fromDisplay, rgb, pixels);
}

std::array<float, 3> DisplayCall::displayed(const ColorValue& color) const {
    std::array<float, 3> rgb{color.red, color.green, color.blue};
    toDisplay(rgb.data(), 1);
    return rgb;
}

QColor DisplayCall::shown(const ColorValue& color) const {
    const std::array<float, 3> rgb = displayed(color);
    return {eightBits(rgb[0]), eightBits(rgb[1]), eightBits(rgb[2])};
}

std::optional<ColorValue> DisplayCall::colorOf(const std::array<float, 3>& displayed,
                                               float alpha) const {
    std::array<float, 3> rgb = displayed;
    if (!fromDisplay(rgb.data(), 1))
        return {};
    const ColorValue color{rgb[0], rgb[1], rgb[2], alpha};
    return isFinite(color) ? std::optional(color) : std::nullopt;
}

ColorWheel::ColorTransform DisplayCall::function() const {
    if (isPlain())
        return {};
    return [call = *this](float* rgb, int pixels) { call.toDisplay(rgb, pixels); };
}

} // namespace Kestrel::UI
