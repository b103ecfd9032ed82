#include "grade/Grade.h"

#include "media/DisplayTable.h"

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

/** By ITU-R BT.709: of light, or, of signals, their luma. */
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

bool Balance::isNeutral() const {
    return *this == Balance();
}

double Balance::applied(double signal, std::size_t channel) const {
    const double slope = double(std::clamp(highlights[channel], 0.0F, MostSlope));
    const double offset = double(std::clamp(shadows[channel], -MostOffset, MostOffset));
    const double power = double(std::clamp(midtones[channel], LeastPower, MostPower));
    // Half floats may be endless, and a slope of 0 leaves nothing of that either.
    constexpr double brightest = 1e9;
    const double moved = std::min(signal, brightest) * slope + offset;
    if (moved <= 0.0)
        return 0.0;
    return power == 1.0 ? moved : std::pow(moved, power);
}

bool Balance::operator==(const Balance& other) const {
    return shadows == other.shadows && midtones == other.midtones && highlights == other.highlights;
}

bool Grade::curvesAreIdentity() const {
    for (int slot = 0; slot < Slots; ++slot) {
        if (!curves.curve(slot).isIdentity())
            return false;
    }
    return true;
}

float Grade::exposureAt(Base::Time frame) const {
    return isKeyed() ? std::clamp(float(exposureKeys.valueAt(double(frame))), -MostStops, MostStops)
                     : exposure;
}

void Grade::setExposureAt(Base::Time frame, float stops) {
    if (isKeyed())
        putExposureKey(frame, double(stops));
    else
        exposure = stops;
}

int Grade::exposureKeyAt(Base::Time frame) const {
    // A key that was put between two frames belongs to the nearer one.
    const std::size_t at = exposureKeys.firstFrom(double(frame) - 0.5);
    const bool there = at < exposureKeys.size() && exposureKeys.key(at).x < double(frame) + 0.5;
    return there ? int(at) : -1;
}

void Grade::addExposureKey(Base::Time frame) {
    if (exposureKeyAt(frame) < 0)
        putExposureKey(frame, double(exposureAt(frame)));
}

/** A new key goes on as the one before it does: its slopes follow when it is moved. */
void Grade::putExposureKey(Base::Time frame, double stops) {
    using Key = UI::KeyCurve::Key;
    const int at = exposureKeyAt(frame);
    if (at >= 0) {
        Key key = exposureKeys.key(std::size_t(at));
        key.y = stops;
        exposureKeys.setKey(std::size_t(at), key);
        return;
    }
    Key key;
    key.x = double(frame);
    key.y = stops;
    const std::size_t next = exposureKeys.firstFrom(key.x);
    const auto shape = next == 0 ? key.shape : exposureKeys.key(next - 1).shape;
    if (shape != UI::KeyCurve::Shape::Free)
        key.shape = shape;
    exposureKeys.insert(key);
}

void Grade::setExposureKeys(const UI::KeyCurve& keys) {
    if (isKeyed() && keys.isEmpty())
        exposure = exposureAt(Base::Time(std::floor(exposureKeys.key(0).x)));
    exposureKeys = keys;
}

bool Grade::isIdentity() const {
    if (!isKeyed())
        return isIdentity(exposure);
    // Slopes of their own may leave 0 between two keys that lie there.
    const auto& keys = exposureKeys.keys();
    const bool stays = std::all_of(keys.begin(), keys.end(), [](const UI::KeyCurve::Key& key) {
        return key.y == 0.0 && key.shape != UI::KeyCurve::Shape::Free;
    });
    return stays && isIdentity(0.0F);
}

bool Grade::isIdentity(float stops) const {
    const Factors factors = lightFactors(stops);
    // Far below what an 8-bit code can show.
    const bool lightStays = std::all_of(factors.begin(), factors.end(), [](float factor) {
        return std::abs(factor - 1.0F) < 0.00001F;
    });
    return lightStays && preview == NoPreview && balance.isNeutral() && curvesAreIdentity();
}

Factors Grade::lightFactors(float stops) const {
    Factors factors = gainFactors(gain);
    for (float& factor : factors)
        factor *= std::exp2(stops);
    return factors;
}

std::array<double, Grade::Slots> Grade::curveInputs(const std::array<double, 3>& light,
                                                    float stops) const {
    const Factors factors = lightFactors(stops);
    std::array<double, Slots> inputs{};
    Factors results{};
    for (std::size_t channel = 0; channel < factors.size(); ++channel) {
        const double signal = srgbSignal(light[channel] * double(factors[channel]));
        inputs[channel] = std::min(balance.applied(signal, channel), 1.0);
        results[channel] = curves.curve(int(channel)).valueAt(float(inputs[channel]));
    }
    inputs[Master] = std::clamp(double(luminance(results)), 0.0, 1.0);
    return inputs;
}

bool Grade::operator==(const Grade& other) const {
    // Keys hide the exposure that all frames would have.
    const bool sameExposure =
        exposureKeys == other.exposureKeys && (isKeyed() || exposure == other.exposure);
    return sameExposure && gain == other.gain && balance == other.balance &&
           curves == other.curves && preview == other.preview;
}

} // namespace Kestrel::Workbench
