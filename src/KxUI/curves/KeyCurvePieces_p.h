#pragma once

#include <KxUI/curves/KeyCurve.h>

#include <vector>

namespace Kestrel::UI {

/** The curve from one key to the next one, a cubic of u, which goes from 0 to 1 between them. */
struct KeyCurvePiece {
    double x = 0;
    double perWidth = 0; // 1 / width; 0 for a piece too narrow to be anything but a step
    double y = 0;
    double a = 0;
    double b = 0;
    double c = 0;

    double at(double position) const noexcept {
        const double u = (position - x) * perWidth;
        return y + u * (a + u * (b + u * c));
    }
    double slopeAt(double position) const noexcept {
        const double u = (position - x) * perWidth;
        return perWidth * (a + u * (2 * b + u * 3 * c));
    }
    double startSlope() const noexcept { return perWidth * a; }
    double endSlope() const noexcept { return perWidth * (a + 2 * b + 3 * c); }

    /** Widens `range` by the values from one position to another one, both of this piece. */
    void addTo(KeyCurve::Range& range, double from, double to) const noexcept;
};

/** Pieces as a half open range of indices. */
struct KeyCurveSpan {
    std::size_t first = 0;
    std::size_t end = 0;
};

/** The pieces that have other slopes than before when the keys from `first` up to but without `end`
    were changed, put in or taken away before `first` (then `end` is `first`). */
KeyCurveSpan piecesTouched(const std::vector<KeyCurve::Key>& keys, std::size_t first,
                           std::size_t end);

/** Works out the pieces of `span`; piece i goes from key i to key i + 1. A run of natural pieces
    is wholly in the span or wholly outside. */
void calculatePieces(const std::vector<KeyCurve::Key>& keys, const KeyCurveSpan& span,
                     std::vector<KeyCurvePiece>& pieces);

} // namespace Kestrel::UI
