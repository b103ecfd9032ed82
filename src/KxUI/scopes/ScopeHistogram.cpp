#include <KxUI/scopes/ScopeHistogram.h>

#include <KxUI/scopes/Transfer_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// Values below 1/1024 are spread evenly, so that 0 has a place.
constexpr double LinearParts = 1024;

} // namespace

float ScopeHistogram::position(Axis axis, float value, float whiteNits) noexcept {
    const auto x = double(value);
    switch (axis) {
    case Axis::Linear:
        break;
    case Axis::SymmetricLog:
        return float(std::copysign(std::log2(1 + std::fabs(x) * LinearParts), x));
    case Axis::Srgb:
        return float(srgbSignal(x));
    case Axis::Rec709:
        return float(rec709Signal(x));
    case Axis::Pq:
        return float(pqSignal(x * double(whiteNits)));
    }
    return value;
}

float ScopeHistogram::valueAt(Axis axis, float position, float whiteNits) noexcept {
    const auto x = double(position);
    switch (axis) {
    case Axis::Linear:
        break;
    case Axis::SymmetricLog:
        return float(std::copysign((std::exp2(std::fabs(x)) - 1) / LinearParts, x));
    case Axis::Srgb:
        return float(srgbLight(x));
    case Axis::Rec709:
        return float(rec709Light(x));
    case Axis::Pq:
        return float(pqNits(x) / double(whiteNits));
    }
    return position;
}

std::uint32_t ScopeHistogram::peak(Channel channel, bool withEdges) const noexcept {
    const auto& all = bins[channel];
    const std::ptrdiff_t edge = withEdges || all.size() < 3 ? 0 : 1;
    if (all.empty())
        return 0;
    return *std::max_element(all.begin() + edge, all.end() - edge);
}

} // namespace Kestrel::UI
