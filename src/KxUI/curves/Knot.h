#pragma once

namespace Kestrel::UI {

/** One point that a `Curve` passes through. Coordinates are nominally in 0-1. A plain
    value; its layout is frozen. */
struct Knot {
    float x = 0.0F; ///< where it is; knots are sorted by it
    float y = 0.0F; ///< the curve's value there

    /** Whether an editor shows the knot as selected; no part of the curve's shape. */
    bool selected = false;
};

} // namespace Kestrel::UI
