#pragma once

#include <QColor>

#include <array>
#include <cstdint>

namespace Kestrel::UI {

/** How often the values of a channel occur, as a `CurveView` shows them behind its curves. A plain
    value, whose layout is frozen. */
struct CurveHistogram {
    /** How many parts of equal width the values are counted in. */
    static constexpr int Bins = 256;

    /** The counts; any unit, since the largest of all channels fills the height. */
    std::array<std::uint32_t, Bins> counts{};
    /** Where the first bin begins and the last one ends along x. */
    double from = 0;
    double to = 1;
    /** What it is drawn in, dimmed; the palette's text where it is not valid. */
    QColor color;
};

} // namespace Kestrel::UI
