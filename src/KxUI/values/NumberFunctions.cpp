#include <KxUI/values/NumberFunctions_p.h>

#include <cmath>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr double Degree = Pi / 180.0;

// Sine and cosine of up to an eighth of a turn.
double smallSine(double degrees) {
    return std::fabs(degrees) == 30.0 ? degrees / 60.0 : std::sin(degrees * Degree);
}
double smallCosine(double degrees) {
    return std::cos(degrees * Degree);
}

double sineOfQuarters(double degrees, int quarters) {
    int turned = 0;
    const double rest = std::remquo(degrees, 90.0, &turned);
    switch (static_cast<unsigned>(turned + quarters) % 4) {
    case 0:
        return smallSine(rest);
    case 1:
        return smallCosine(rest);
    case 2:
        return -smallSine(rest);
    default:
        return -smallCosine(rest);
    }
}

double sine(double degrees) {
    return sineOfQuarters(degrees, 0);
}
double cosine(double degrees) {
    return sineOfQuarters(degrees, 1);
}
double tangent(double degrees) {
    const double across = cosine(degrees);
    return across == 0.0 ? std::numeric_limits<double>::quiet_NaN() : sine(degrees) / across;
}

constexpr NumberFunction functions[] = {
    {"abs", [](double a) { return std::fabs(a); }, nullptr},
    {"min", nullptr, [](double a, double b) { return b < a ? b : a; }},
    {"max", nullptr, [](double a, double b) { return a < b ? b : a; }},
    {"floor", [](double a) { return std::floor(a); }, nullptr},
    {"ceil", [](double a) { return std::ceil(a); }, nullptr},
    {"round", [](double a) { return std::round(a); }, nullptr},
    {"sqrt", [](double a) { return std::sqrt(a); }, nullptr},
    {"exp", [](double a) { return std::exp(a); }, nullptr},
    {"ln", [](double a) { return std::log(a); }, nullptr},
    {"log10", [](double a) { return std::log10(a); }, nullptr},
    {"log2", [](double a) { return std::log2(a); }, nullptr},
    {"sin", sine, nullptr},
    {"cos", cosine, nullptr},
    {"tan", tangent, nullptr},
    {"asin", [](double a) { return std::asin(a) / Degree; }, nullptr},
    {"acos", [](double a) { return std::acos(a) / Degree; }, nullptr},
    {"atan", [](double a) { return std::atan(a) / Degree; }, nullptr},
    {"stops", [](double a) { return std::exp2(a); }, nullptr},
};

} // namespace

const NumberFunction* numberFunction(std::string_view name) {
    for (const NumberFunction& function : functions) {
        if (function.name == name)
            return &function;
    }
    return nullptr;
}

} // namespace Kestrel::UI
