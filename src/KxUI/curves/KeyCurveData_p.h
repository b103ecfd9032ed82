#pragma once

#include <KxUI/curves/KeyCurvePieces_p.h>

#include <vector>

namespace Kestrel::UI {

/** What copies of a curve share. There is a piece for every two keys that follow each other. */
struct KeyCurve::Data {
    std::vector<Key> keys;
    std::vector<KeyCurvePiece> pieces;
    Beyond before = Beyond::Hold;
    Beyond after = Beyond::Hold;

    double firstX() const { return keys.front().x; }
    double lastX() const { return keys.back().x; }
    double length() const { return lastX() - firstX(); }

    /** The piece that holds `x`, which lies between the first key and the last one. `hint` is where
        the search begins. */
    std::size_t pieceAt(double x, std::size_t hint) const noexcept;
    std::size_t pieceAt(double x) const noexcept;

    /** What lies at `x`: a place among the keys, or the straight line beyond them. */
    struct Place {
        double x = 0;      // between the first key and the last one
        double along = 0;  // from there on, on the line with the slope at the end
        double slope = 0;  // of that line
        bool back = false; // seen in a mirror
    };
    Place place(double x) const noexcept;
    double valueAt(double x, std::size_t& hint) const noexcept;

    /** The extremes between two places among the keys. Behind a step at the last key there is that
        key's own value; where the curve repeats, the first key's takes its place. */
    Range rangeInside(double from, double to, bool withLastKey = true) const noexcept;
    /** The extremes between two places on one side of the keys, where the curve repeats. */
    Range rangeBeyond(bool mirrored, double from, double to) const noexcept;
};

} // namespace Kestrel::UI
