#pragma once

#include <KxUI/color/ColorConversions.h>
#include <KxUI/curves/Curves.h>

#include <array>

namespace Kestrel::Workbench {

/** A gain as the place on a colour wheel. The colour shifts light towards its hue, a grey keeps its
    luminance; the value is the gain of the luminance. */
struct GainColor {
    /** 0-1, of no meaning where the saturation is 0. */
    float hue = 0.0F;
    float saturation = 0.0F;
    float value = 1.0F;

    bool operator==(const GainColor& other) const;
};

/** Factors of red, green and blue light. */
using Factors = std::array<float, 3>;

Factors gainFactors(const GainColor& color);

/** The colour of these gains, negative ones counted as 0. Where they tell no hue or saturation,
    those of `like` stay. */
GainColor gainColor(const Factors& factors, const GainColor& like = {});

/** What a user does to the look of a shot. Gain and exposure act on light; the curves act on what
    the screen would show of it, 0-1; the preview comes last. A plain value. */
struct Grade {
    enum Slot { Red, Green, Blue, Master, Slots };
    static constexpr int NoPreview = -1;
    /** A hundred times the light. */
    static constexpr float MostStops = 6.6438562F;

    GainColor gain;
    /** In stops, within +-MostStops: each doubles the light. */
    float exposure = 0.0F;
    /** Red, green and blue, and the master that is applied to their results. */
    UI::Curves curves{Slots, UI::Curve::MaximumKnots, 2};
    /** The YCbCr option that the picture is stored with and read back, or NoPreview. */
    int preview = NoPreview;

    bool curvesAreIdentity() const;

    /** Whether every frame stays as it is. */
    bool isIdentity() const;

    /** Gain and exposure together. */
    Factors lightFactors() const;

    bool operator==(const Grade& other) const;
    bool operator!=(const Grade& other) const { return !(*this == other); }
};

} // namespace Kestrel::Workbench
