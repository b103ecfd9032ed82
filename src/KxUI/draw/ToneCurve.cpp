#include <KxUI/draw/ToneCurve.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {

double ToneCurve::light(double density) const noexcept {
    if (!(density > 0))
        return 0;
    const double gain = std::exp2(std::isnan(brightness) ? 0 : std::clamp(brightness, -16.0, 16.0));
    const double scaled = kind == Linear ? density * gain / 8
                                         : std::log2(1 + gain * density) / std::log2(1 + 16 * gain);
    return std::min(std::max(scaled, least > 0 ? least : 0.0), 1.0);
}

} // namespace Kestrel::UI
