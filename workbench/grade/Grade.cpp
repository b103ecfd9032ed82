#include "grade/Grade.h"

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

/** Of light, by ITU-R BT.709. */
float luminance(const Factors& color) {
    const auto& weights = UI::colorSpaceRgbToYCbCr(UI::ColorSpace::Rec709).luma;
    return weights[0] * color[0] + weights[1] * color[1] + weights[2] * color[2];
}

} // namespace

bool GainColor::operator==(const GainColor& other) const {
    return saturation == other.saturation && value == other.value &&
           (hue == other.hue || saturation == 0.0F);
}

Factors gainFactors(const GainColor& color) {
    Factors factors{};
    UI::hsvToRgb(color.hue, color.saturation, 1.0F, factors[0], factors[1], factors[2]);
    const float scale = color.value / luminance(factors);
    for (float& factor : factors)
        factor *= scale;
    return factors;
}

GainColor gainColor(const Factors& factors, const GainColor& like) {
    Factors light{};
    std::transform(factors.begin(), factors.end(), light.begin(),
                   [](float factor) { return factor > 0.0F ? factor : 0.0F; });
    GainColor color = like;
    color.value = luminance(light);
    if (color.value == 0.0F)
        return color;
    float hue = 0.0F;
    float largest = 0.0F;
    UI::rgbToHsv(light[0], light[1], light[2], hue, color.saturation, largest);
    if (color.saturation > 0.0F)
        color.hue = hue;
    return color;
}

bool Grade::curvesAreIdentity() const {
    for (int slot = 0; slot < Slots; ++slot) {
        if (!curves.curve(slot).isIdentity())
            return false;
    }
    return true;
}

bool Grade::isIdentity() const {
    const Factors factors = lightFactors();
    // Far below what an 8-bit code can show.
    const bool lightStays = std::all_of(factors.begin(), factors.end(), [](float factor) {
        return std::abs(factor - 1.0F) < 0.00001F;
    });
    return lightStays && preview == NoPreview && curvesAreIdentity();
}

Factors Grade::lightFactors() const {
    Factors factors = gainFactors(gain);
    for (float& factor : factors)
        factor *= std::exp2(exposure);
    return factors;
}

bool Grade::operator==(const Grade& other) const {
    return gain == other.gain && exposure == other.exposure && curves == other.curves &&
           preview == other.preview;
}

} // namespace Kestrel::Workbench
