#pragma once

#include <KxUI/base/Time.h>
#include <KxUI/color/ColorConversions.h>
#include <KxUI/curves/Curves.h>
#include <KxUI/curves/KeyCurve.h>

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

/** Three balances of a signal whose black is 0 and whose white is 1, each a number for red, green
    and blue, by the formula of the ASC CDL: out = (in * slope + offset) ^ power, with 0 for what is
    below black before the power is taken. A plain value. */
struct Balance {
    static constexpr float MostOffset = 1.0F;
    static constexpr float LeastPower = 0.1F;
    static constexpr float MostPower = 10.0F;
    static constexpr float MostSlope = 16.0F;

    /** Offsets, within +-MostOffset: they move black most of what the eye sees. */
    Factors shadows{{0.0F, 0.0F, 0.0F}};
    /** Powers, LeastPower to MostPower: they bend what lies between black and white, which stay.
        Below 1 is lighter. */
    Factors midtones{{1.0F, 1.0F, 1.0F}};
    /** Slopes, 0 to MostSlope: they move white, black stays. */
    Factors highlights{{1.0F, 1.0F, 1.0F}};

    /** Whether every signal stays as it is. */
    bool isNeutral() const;

    /** What becomes of a signal, 0 or more, in a channel: 0 red, 1 green, 2 blue. Numbers out of
        their ranges count as the nearest one inside. */
    double applied(double signal, std::size_t channel) const;

    bool operator==(const Balance& other) const;
    bool operator!=(const Balance& other) const { return !(*this == other); }
};

/** What a user does to the look of a shot. Gain and exposure act on light; the balance and then the
    curves act on what the screen would show of it, 0-1; the preview comes last. A plain value. */
struct Grade {
    enum Slot { Red, Green, Blue, Master, Slots };
    static constexpr int NoPreview = -1;
    /** A hundred times the light. */
    static constexpr float MostStops = 6.6438562F;

    GainColor gain;
    /** In stops, within +-MostStops: each doubles the light. Of every frame, unless there are
        keys. */
    float exposure = 0.0F;
    /** The exposure over the frames of the shot; without keys it is the same all along. */
    UI::KeyCurve exposureKeys;
    Balance balance;
    /** Red, green and blue, and the master that is applied to their results. */
    UI::Curves curves{Slots, UI::Curve::MaximumKnots, 2};
    /** The YCbCr option that the picture is stored with and read back, or NoPreview. */
    int preview = NoPreview;

    bool curvesAreIdentity() const;

    /** Whether the exposure goes by keys. */
    bool isKeyed() const { return !exposureKeys.isEmpty(); }

    /** The exposure of a frame, in stops, within +-MostStops. */
    float exposureAt(Base::Time frame) const;

    /** Sets the exposure of all frames, or, where there are keys, the key at `frame`, which is made
        if it is not there yet. */
    void setExposureAt(Base::Time frame, float stops);

    /** The index of the key at a frame; -1 without one. */
    int exposureKeyAt(Base::Time frame) const;

    /** Keeps the exposure that a frame has by a key there. */
    void addExposureKey(Base::Time frame);

    /** Replaces the keys. Where none are left, all frames get the exposure of the first key of
        before. */
    void setExposureKeys(const UI::KeyCurve& keys);

    /** Whether every frame stays as it is. */
    bool isIdentity() const;

    /** The same of a frame with that exposure. */
    bool isIdentity(float stops) const;

    /** Gain and an exposure together. */
    Factors lightFactors(float stops) const;

    /** What comes to each curve of such light, in signals of 0-1: to the master the luma of what the
        other ones make of it. */
    std::array<double, Slots> curveInputs(const std::array<double, 3>& light, float stops) const;

    bool operator==(const Grade& other) const;
    bool operator!=(const Grade& other) const { return !(*this == other); }

private:
    void putExposureKey(Base::Time frame, double stops);
};

} // namespace Kestrel::Workbench
