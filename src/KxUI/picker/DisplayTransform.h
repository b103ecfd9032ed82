#pragma once

#include <KxUI/color/ColorWheel.h>

#include <QString>

namespace Kestrel::UI {

/** How colours of the host's working space reach the screen, and come back. Without functions they
    are shown as they are. A plain value, whose layout is frozen. */
struct DisplayTransform {
    /** Turns `pixels` colours, three floats each, into what the screen is to show, nominally 0-1, in
        place. Called while painting, on the interface thread, for many pixels at a time. One that
        throws leaves the colours as they are. */
    ColorWheel::ColorTransform toDisplay;
    /** Its inverse, for colours that come from the screen, from palettes and as codes; without it
        such colours can be shown but not taken. */
    ColorWheel::ColorTransform fromDisplay;
    /** What the screen's space is called, as the user is told it: "sRGB - Display". */
    QString name;
};

} // namespace Kestrel::UI
