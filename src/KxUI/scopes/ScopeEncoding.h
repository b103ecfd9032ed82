#pragma once

#include <KxUI/Export.h>
#include <KxUI/color/ColorConversions.h>

#include <functional>

namespace Kestrel::UI {

/** What the values of pixels mean as a video signal. A value; the layout of all but `transform` is
    frozen. */
struct KXUI_EXPORT ScopeEncoding {
    /** How light becomes a signal. */
    enum class Transfer {
        AsStored, ///< not at all: the stored values are the signal
        Srgb,     ///< IEC 61966-2-1
        Rec709,   ///< ITU-R BT.709 and BT.2020
        Pq,       ///< SMPTE ST 2084, ITU-R BT.2100
        Hlg       ///< ITU-R BT.2100, for greys on a display of `peakNits`
    };

    /** Applied to each channel before anything is counted, for pixels that store light. */
    Transfer transfer = Transfer::AsStored;
    /** What the signal is, if `transfer` is AsStored and it is to be read in nits: Pq or Hlg; any
        other is shown on a display of ITU-R BT.1886. */
    Transfer stored = Transfer::AsStored;
    float whiteNits = 100; ///< what light of 1.0 is in cd/m2, for Pq and Hlg
    float peakNits = 1000; ///< white of an HLG display in cd/m2
    /** Luma and chroma of the signal; Rec 709 at first. */
    RgbToYCbCrMatrix matrix = colorSpaceRgbToYCbCr(ColorSpace::Rec709);
    int bits = 10;          ///< of codes: 8, 10 or 12
    bool fullRange = false; ///< codes from the first to the last one, not of ITU-R BT.709's range

    /** Another view of the pixels, three floats each, changed in place; before `transfer`. Called by
        several worker threads at a time, at times after the scope has another one: it must own
        what it uses. If it throws, the pass ends and its result says so. */
    std::function<void(float* rgb, int pixels)> transform;

    /** What the counted values are: `transfer`, or `stored` where that is AsStored. */
    Transfer signal() const noexcept { return transfer == Transfer::AsStored ? stored : transfer; }
};

} // namespace Kestrel::UI
