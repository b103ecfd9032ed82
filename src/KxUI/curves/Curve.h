#pragma once

#include <KxUI/Export.h>
#include <KxUI/curves/Knot.h>

#include <array>
#include <cstddef>
#include <iosfwd>

namespace Kestrel::UI {

/** A transfer curve on the unit square: up to eight knots, sorted by x, joined by a natural cubic
    spline and extended flat at both ends. The spline is not clamped: it may overshoot 0-1 between
    knots.

    Knots closer in x than floats lie near 1 (about 6e-8) count as coincident: the spline is broken
    there, each stretch between such knots is solved by itself, and the step between them is a
    straight line. So finite knots never give an infinite value.

    A plain value, whose layout is frozen. Any number of threads may evaluate one curve that none of
    them changes. */
class KXUI_EXPORT Curve {
public:
    /** The most knots that any curve holds. */
    static constexpr int MaximumKnots = 8;

    /** A curve of `numKnots` knots, evenly spaced on the identity line. The capacity is limited to
        `MaximumKnots` and the count to the capacity. A single knot lies at 0 / 0, not a number. */
    explicit Curve(unsigned int maxKnots = MaximumKnots, unsigned int numKnots = 2);

    /** How many knots the curve has, 0 to maxKnots(). */
    int numKnots() const noexcept { return m_count; }

    /** How many knots the curve may grow to, at most `MaximumKnots`. */
    int maxKnots() const noexcept { return m_capacity; }

    /** The knot at `index`, counted from 0; a default knot outside the count. */
    Knot knot(int index) const noexcept;

    /** Replaces the knot at `index`; nothing outside the count. The caller keeps knots sorted. */
    void setKnot(int index, const Knot& knot) noexcept;

    /** Opens a place at `index` (0 to the count) by moving the knots from there up by one; the new
        knot is a copy of the old occupant, for the caller to set. One that is appended is what an
        earlier removal left there, or a default knot. Nothing for another index or a full curve. */
    void insertKnotAt(int index) noexcept;

    /** Removes the knot at `index`. A curve never drops below two knots. */
    void removeKnotAt(int index) noexcept;

    /** The curve at `x`; left of the first knot that knot's y, from the last knot on that knot's y.
        0 without knots. */
    float valueAt(float x) const noexcept;

    /** The interval that holds `x`: -1 left of the first knot, else the index of the last knot at
        or before x, searched upwards until a knot exceeds x; `numKnots() - 2` from the last knot
        on. */
    int span(float x) const noexcept;

    /** Recomputes second derivatives and interval widths. Whatever changes a knot has done so
        already. */
    void calculateCoefficients() const noexcept;

    /** Fills `out` with `size` values, unclamped: entry i is `valueAt(i / (size - 1))`. A single
        entry is the value at 0. Nothing for null. */
    void buildLUT(unsigned int size, float* out) const noexcept;

    /** The values of `buildLUT` as 16-bit codes (0-1 is 0-65535, rounded and clamped); entry i is
        stored at `out[i * stride]`. A value that is not a number is stored as 0. Nothing for
        null. */
    void buildRGBALUT(unsigned int size, unsigned short* out, int stride) const noexcept;

    /** Whether the curve has exactly two knots, each within 0.0001 of (0, 0) and (1, 1). */
    bool isIdentity() const noexcept;

    /** Equal counts and coordinates; capacity and selection do not count, and a coordinate that is
        not a number equals nothing. */
    bool operator==(const Curve& other) const noexcept;
    bool operator!=(const Curve& other) const noexcept { return !(*this == other); }

private:
    friend class Curves;

    struct Piece;

    // Table entries that are computed as floats before they are stored as codes.
    static constexpr unsigned int CodeChunk = 512;

    inline int interval(float x) const noexcept;
    inline Piece piece(int index) const noexcept;
    void solveStretch(int first, int last) const noexcept;
    void fill(unsigned int begin, unsigned int end, unsigned int size, float* out) const noexcept;
    static void storeCodes(const float* values, unsigned int count, unsigned short* out,
                           std::ptrdiff_t stride) noexcept;

    int m_count = 0;
    std::array<Knot, MaximumKnots> m_knots{};
    int m_capacity = MaximumKnots;
    mutable std::array<float, MaximumKnots> m_secondDerivatives{};
    mutable std::array<float, MaximumKnots> m_widths{};
};

/** Writes the knots as "(x, y), (x, y)", nothing for a curve without knots. Numbers take the
    stream's flags and precision, but always the classic locale. Nine digits of precision read back
    as the same floats. */
KXUI_EXPORT std::ostream& operator<<(std::ostream& stream, const Curve& curve);

/** Reads the rest of the stream: the k-th "(x, y)" becomes knot k, unselected; the count grows up
    to the capacity and never shrinks, so knots beyond those read keep their values. Text that does
    not hold two numbers between its parentheses ends the reading and sets the stream's fail bit. */
KXUI_EXPORT std::istringstream& operator>>(std::istringstream& stream, Curve& curve);

} // namespace Kestrel::UI
