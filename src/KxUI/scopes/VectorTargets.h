#pragma once

#include <KxUI/Export.h>
#include <KxUI/color/ColorConversions.h>

#include <array>

namespace Kestrel::UI {

/** Where one of the six colours of colour bars lies in the plane of chroma. A plain value; its layout
    is frozen. */
struct VectorTarget {
    const char* name; ///< "R", "Yl", "G", "Cy", "B" or "Mg"; lives as long as the process
    float luma;       ///< of the signal
    float cb;         ///< to the right
    float cr;         ///< upwards
};

/** Red, yellow, green, cyan, blue and magenta with components of `level` (1: bars of 100 %, 0.75: of
    75 %) and 0, by the matrix. Any thread, as what follows. */
KXUI_EXPORT std::array<VectorTarget, 6> vectorTargets(const RgbToYCbCrMatrix& matrix,
                                                      float level) noexcept;

/** The length of the longest of them. */
KXUI_EXPORT float vectorReach(const RgbToYCbCrMatrix& matrix, float level = 1) noexcept;

/** The directions of NTSC's I and Q (FCC 73.682: 33 degrees from V and U) in the plane of Cb and Cr of the
    matrix, by its own B - Y and R - Y; in degrees counter-clockwise from +Cb. */
struct VectorAxes {
    double i; ///< of +I
    double q; ///< of +Q
};

/** The axes in a matrix's plane of Cb and Cr. */
KXUI_EXPORT VectorAxes vectorAxes(const RgbToYCbCrMatrix& matrix) noexcept;

} // namespace Kestrel::UI
