#pragma once

#include <KxUI/picker/DisplayTransform.h>

#include <cmath>

namespace Kestrel::Test {

/** A screen of a plain power, for both signs. */
inline UI::DisplayTransform gammaTransform(float gamma = 2.4F) {
    const auto power = [](float exponent) {
        return [exponent](float* rgb, int pixels) {
            for (int i = 0; i < 3 * pixels; ++i)
                rgb[i] = std::copysign(std::pow(std::fabs(rgb[i]), exponent), rgb[i]);
        };
    };
    return {power(1.0F / gamma), power(gamma), QStringLiteral("Gamma")};
}

/** Shows the opposite of each colour. */
inline UI::DisplayTransform inverseTransform() {
    const auto opposite = [](float* rgb, int pixels) {
        for (int i = 0; i < 3 * pixels; ++i)
            rgb[i] = 1.0F - rgb[i];
    };
    return {opposite, opposite, QStringLiteral("Inverse")};
}

} // namespace Kestrel::Test
