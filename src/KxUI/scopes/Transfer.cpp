#include <KxUI/scopes/Transfer_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

template <class Curve>
double odd(double x, Curve curve) noexcept {
    return x < 0 ? -curve(-x) : curve(x);
}

namespace Rec709 {
constexpr double Alpha = 1.09929682680944;
constexpr double Beta = 0.018053968510807;
} // namespace Rec709

namespace Pq {
constexpr double M1 = 2610.0 / 16384;
constexpr double M2 = 128 * 2523.0 / 4096;
constexpr double C1 = 3424.0 / 4096;
constexpr double C2 = 32 * 2413.0 / 4096;
constexpr double C3 = 32 * 2392.0 / 4096;
constexpr double Peak = 10000;
} // namespace Pq

namespace Hlg {
constexpr double A = 0.17883277;
constexpr double B = 1 - 4 * A;
constexpr double C = 0.559910729529562; // 0.5 - A ln(4 A)

double gamma(double peakNits) noexcept {
    return 1.2 + 0.42 * std::log10(std::clamp(peakNits, 100.0, 10000.0) / 1000);
}
} // namespace Hlg

constexpr double DisplayWhite = 100;
constexpr double DisplayGamma = 2.4;

double positive(float value, double otherwise) noexcept {
    return value > 0 && std::isfinite(value) ? double(value) : otherwise;
}

} // namespace

double srgbSignal(double light) noexcept {
    return odd(light, [](double x) {
        return x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
    });
}

double srgbLight(double signal) noexcept {
    return odd(signal, [](double x) {
        return x <= 0.0031308 * 12.92 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
    });
}

double rec709Signal(double light) noexcept {
    using namespace Rec709;
    return odd(light, [](double x) {
        return x < Beta ? 4.5 * x : Alpha * std::pow(x, 0.45) - (Alpha - 1);
    });
}

double rec709Light(double signal) noexcept {
    using namespace Rec709;
    return odd(signal, [](double x) {
        return x < 4.5 * Beta ? x / 4.5 : std::pow((x + (Alpha - 1)) / Alpha, 1 / 0.45);
    });
}

double pqSignal(double nits) noexcept {
    using namespace Pq;
    return odd(nits, [](double x) {
        if (std::isinf(x))
            return x;
        const double power = std::pow(x / Peak, M1);
        return std::pow((C1 + C2 * power) / (1 + C3 * power), M2);
    });
}

double pqNits(double signal) noexcept {
    using namespace Pq;
    return odd(signal, [](double x) {
        const double root = std::pow(x, 1 / M2);
        const double below = C2 - C3 * root;
        // The curve ends where its denominator does, at about twice the signal of its peak.
        if (!(below > 0))
            return std::isnan(x) ? x : HUGE_VAL;
        return Peak * std::pow(std::max(root - C1, 0.0) / below, 1 / M1);
    });
}

double hlgSignal(double sceneLight) noexcept {
    using namespace Hlg;
    return odd(sceneLight, [](double x) {
        return x <= 1.0 / 12 ? std::sqrt(3 * x) : A * std::log(12 * x - B) + C;
    });
}

double hlgSceneLight(double signal) noexcept {
    using namespace Hlg;
    return odd(signal,
               [](double x) { return x <= 0.5 ? x * x / 3 : (std::exp((x - C) / A) + B) / 12; });
}

double hlgSignalOfNits(double nits, double peakNits) noexcept {
    return hlgSignal(odd(
        nits, [peakNits](double x) { return std::pow(x / peakNits, 1 / Hlg::gamma(peakNits)); }));
}

double hlgNits(double signal, double peakNits) noexcept {
    return odd(hlgSceneLight(signal),
               [peakNits](double x) { return peakNits * std::pow(x, Hlg::gamma(peakNits)); });
}

double displayNits(double signal) noexcept {
    return odd(signal, [](double x) { return DisplayWhite * std::pow(x, DisplayGamma); });
}

double displaySignal(double nits) noexcept {
    return odd(nits, [](double x) { return std::pow(x / DisplayWhite, 1 / DisplayGamma); });
}

double signalOfLight(const ScopeEncoding& encoding, double light) noexcept {
    using Transfer = ScopeEncoding::Transfer;
    const double white = positive(encoding.whiteNits, 100);
    switch (encoding.transfer) {
    case Transfer::AsStored:
        break;
    case Transfer::Srgb:
        return srgbSignal(light);
    case Transfer::Rec709:
        return rec709Signal(light);
    case Transfer::Pq:
        return pqSignal(light * white);
    case Transfer::Hlg:
        return hlgSignalOfNits(light * white, positive(encoding.peakNits, 1000));
    }
    return light;
}

double lightOfSignal(const ScopeEncoding& encoding, double signal) noexcept {
    using Transfer = ScopeEncoding::Transfer;
    const double white = positive(encoding.whiteNits, 100);
    switch (encoding.signal()) {
    case Transfer::AsStored:
        break;
    case Transfer::Srgb:
        return srgbLight(signal);
    case Transfer::Rec709:
        return rec709Light(signal);
    case Transfer::Pq:
        return pqNits(signal) / white;
    case Transfer::Hlg:
        return hlgNits(signal, positive(encoding.peakNits, 1000)) / white;
    }
    return signal;
}

double nitsOfSignal(const ScopeEncoding& encoding, double signal) noexcept {
    using Transfer = ScopeEncoding::Transfer;
    switch (encoding.signal()) {
    case Transfer::Pq:
        return pqNits(signal);
    case Transfer::Hlg:
        return hlgNits(signal, positive(encoding.peakNits, 1000));
    default:
        return displayNits(signal);
    }
}

double signalOfNits(const ScopeEncoding& encoding, double nits) noexcept {
    switch (encoding.signal()) {
    case ScopeEncoding::Transfer::Pq:
        return pqSignal(nits);
    case ScopeEncoding::Transfer::Hlg:
        return hlgSignalOfNits(nits, positive(encoding.peakNits, 1000));
    default:
        return displaySignal(nits);
    }
}

} // namespace Kestrel::UI
