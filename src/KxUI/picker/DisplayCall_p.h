#pragma once

#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayTransform.h>

#include <QColor>

#include <array>
#include <memory>
#include <optional>

namespace Kestrel::UI {

/** Whether all four are numbers. */
bool isFinite(const ColorValue& color);

/** The code of a part of a colour, limited to 0-1, in eight bits; 0 for what is not a number. */
int eightBits(float part);

/** A host's display transform as the parts of a picker call it: what it throws is told once, in the
    log, and leaves the colours as they were. Copies share the functions. */
class DisplayCall {
public:
    /** Shows colours as they are. */
    DisplayCall() = default;
    explicit DisplayCall(DisplayTransform transform);

    const DisplayTransform& transform() const;
    /** Whether colours are shown as they are. */
    bool isPlain() const { return !transform().toDisplay; }
    /** Whether colours can come back from the screen. */
    bool isInvertible() const { return isPlain() || transform().fromDisplay; }
    /** Tells this transform from all others, for caches. */
    quint64 number() const { return m_shared ? m_shared->number : 0; }

    /** In place, as DisplayTransform says. */
    void toDisplay(float* rgb, int pixels) const;
    /** The same back. False where there is no way back: the colours are as they were. */
    bool fromDisplay(float* rgb, int pixels) const;

    /** What the screen shows of a colour, without limits. */
    std::array<float, 3> displayed(const ColorValue& color) const;
    /** The same for painting, opaque. */
    QColor shown(const ColorValue& color) const;
    /** The colour that the screen shows by these three; null without a way back, or where it leads
        to no numbers. */
    std::optional<ColorValue> colorOf(const std::array<float, 3>& displayed, float alpha) const;

    /** As the colour wheel takes it; empty where colours are shown as they are. */
    ColorWheel::ColorTransform function() const;

private:
    struct Shared {
        DisplayTransform transform;
        quint64 number = 0;
        bool hasWarned = false;
    };

    bool run(const ColorWheel::ColorTransform& function, float* rgb, int pixels) const;

    std::shared_ptr<Shared> m_shared;
};

} // namespace Kestrel::UI
