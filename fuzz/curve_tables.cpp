// Tables of curves with any knots: finite, the same bits as single values, and what is known of the
// shape of a natural spline.

#include <KxUI/curves/Curves.h>

#include <support/Require.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

using namespace Kestrel::Fuzz;
using namespace Kestrel::UI;

namespace {

float coordinate(FuzzedDataProvider& input) {
    const auto value = input.ConsumeIntegral<std::uint16_t>();
    switch (value % 4) {
    case 0:
        return float(value / 4) / 16383.0F;
    case 1: // neighbours of a few places, down to the next float
        return std::nextafter(float(value / 256) / 255.0F, value & 4 ? 9.0F : -9.0F);
    case 2:
        return (float(value / 4) - 8192.0F) / 1024.0F;
    default: {
        const auto bits = input.ConsumeIntegral<std::uint32_t>();
        float result = 0;
        std::memcpy(&result, &bits, sizeof result);
        return result;
    }
    }
}

std::uint16_t code(float value) {
    const float scaled = value * 65535.0F + 0.5F;
    return scaled >= 65535.0F ? 65535 : scaled > 0.0F ? std::uint16_t(scaled) : 0;
}

bool sameBits(float a, float b) {
    return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b));
}

Curve curveFrom(FuzzedDataProvider& input, bool& wellFormed) {
    Knot knots[Curve::MaximumKnots];
    const int count = input.ConsumeIntegralInRange(0, Curve::MaximumKnots);
    for (int i = 0; i < count; ++i)
        knots[i] = {coordinate(input), coordinate(input), input.ConsumeBool()};
    wellFormed = std::all_of(knots, knots + count, [](const Knot& knot) {
        return std::isfinite(knot.x) && std::isfinite(knot.y);
    });
    // A host keeps its knots in order; what it gets when it does not is only not to crash.
    if (wellFormed && input.ConsumeIntegral<std::uint8_t>() < 240)
        std::stable_sort(knots, knots + count,
                         [](const Knot& a, const Knot& b) { return a.x < b.x; });
    else
        wellFormed = false;
    Curve curve(Curve::MaximumKnots, unsigned(count));
    for (int i = 0; i < count; ++i)
        curve.setKnot(i, knots[i]);
    return curve;
}

void checkShape(const Curve& curve, const std::vector<float>& table) {
    const int count = curve.numKnots();
    const Knot first = curve.knot(0), last = curve.knot(count - 1);
    for (int i = 0; i < count; ++i) {
        const Knot knot = curve.knot(i);
        const bool coincides = i + 1 < count && curve.knot(i + 1).x == knot.x;
        if (knot.x >= first.x && !coincides)
            require(curve.valueAt(knot.x) == knot.y, "a curve passes through its knots");
    }
    if (count == 2) { // a straight line
        // Rounding is absolute, not relative, next to zero.
        const float slack = 1e-6F * std::max(std::abs(first.y), std::abs(last.y)) +
                            std::numeric_limits<float>::min();
        for (std::size_t i = 1; i < table.size(); ++i)
            require(first.y <= last.y ? table[i] >= table[i - 1] - slack
                                      : table[i] <= table[i - 1] + slack,
                    "a line between two knots is monotone");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const unsigned int entries = input.ConsumeIntegralInRange(0U, 40U);
    const int stride = input.ConsumeIntegralInRange(1, 4);
    bool wellFormed = false;
    const Curve curve = curveFrom(input, wellFormed);

    std::vector<float> table(entries);
    curve.buildLUT(entries, table.data());
    for (unsigned int i = 0; i < entries; ++i) {
        const float x = entries > 1 ? float(i) / float(entries - 1) : 0.0F;
        if (wellFormed) {
            require(std::isfinite(table[i]), "finite knots give finite values");
            require(sameBits(table[i], curve.valueAt(x)), "tables hold single values");
        }
        const int span = curve.span(x);
        require(span >= -1 && span < std::max(curve.numKnots() - 1, 0), "an interval of the curve");
    }
    if (wellFormed && curve.numKnots() > 0)
        checkShape(curve, table);

    std::vector<unsigned short> codes(entries ? std::size_t(entries - 1) * std::size_t(stride) + 1
                                              : 0);
    curve.buildRGBALUT(entries, codes.data(), stride);
    Curves set(input.ConsumeIntegralInRange(0, 4), 8, 2);
    set.setCurve(input.ConsumeIntegralInRange(0, 3), curve);
    std::vector<unsigned short> colors(entries * std::size_t(4));
    set.buildRGBALUT(entries, colors.data());
    for (std::size_t i = 0; i < entries; ++i) {
        require(codes[i * std::size_t(stride)] == code(table[i]), "codes of the table");
        require(colors[4 * i + 3] == code(entries > 1 ? float(i) / float(entries - 1) : 0.0F),
                "alpha stays");
        if (set.numCurves() == 1 && !curve.isIdentity() && set.curve(0) == curve)
            require(colors[4 * i] == code(table[i]) && colors[4 * i] == colors[4 * i + 2],
                    "one curve serves all colours");
    }
    return 0;
}
