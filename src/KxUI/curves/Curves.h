#pragma once

#include <KxUI/Export.h>
#include <KxUI/curves/Curve.h>

#include <array>
#include <iosfwd>

namespace Kestrel::UI {

/** Up to four curves that grade one image. A plain value, whose layout is frozen; threads
    as for `Curve`.

    What the slots mean: a single curve serves red, green and blue alike; otherwise slots 0, 1 and 2
    serve red, green and blue, and slot 3 is a master that is applied to the results of those
    three. A channel without a curve, and alpha always, is left as it is. */
class KXUI_EXPORT Curves {
public:
    /** The slots of every object. */
    static constexpr int MaximumCurves = 4;

    /** No curves in use; every slot holds the identity with room for eight knots. */
    Curves() = default;

    /** `numCurves` (limited to 0-4) curves in use; all four slots become
        `Curve(maxKnots, numKnots)`. */
    Curves(int numCurves, unsigned int maxKnots, unsigned int numKnots);

    /** How many curves are in use, 0 to `MaximumCurves`: those in the slots from 0 on. */
    int numCurves() const noexcept { return m_count; }

    /** The curve in a slot, in use or not; `slot` is limited to 0-3. */
    const Curve& curve(int slot) const noexcept;

    /** Replaces the curve in a slot; nothing outside 0 to `numCurves() - 1`. */
    void setCurve(int slot, const Curve& curve) noexcept;

    /** Takes the next slot into use; nothing when all four are. */
    void addCurve(const Curve& curve) noexcept;

    /** Fills `size` entries of four codes each (red, green, blue, alpha), scaled as in
        `Curve::buildRGBALUT`. Nothing for null. */
    void buildRGBALUT(unsigned int size, unsigned short* out) const noexcept;

    /** Same count, and the curves in use are equal. */
    bool operator==(const Curves& other) const noexcept;
    bool operator!=(const Curves& other) const noexcept { return !(*this == other); }

private:
    friend KXUI_EXPORT std::istringstream& operator>>(std::istringstream& stream, Curves& curves);

    int m_count = 0;
    std::array<Curve, MaximumCurves> m_curves;
};

/** Writes the curves in use as "[curve], [curve]". */
KXUI_EXPORT std::ostream& operator<<(std::ostream& stream, const Curves& curves);

/** Reads the rest of the stream: each bracketed group goes into the next slot by the rule of
    `Curve`. The count grows with the groups, never shrinks, and a fifth group is not read. */
KXUI_EXPORT std::istringstream& operator>>(std::istringstream& stream, Curves& curves);

} // namespace Kestrel::UI
