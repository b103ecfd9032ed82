#pragma once

#include <string_view>

namespace Kestrel::UI {

constexpr double Pi = 3.14159265358979323846;

/** A function that may be typed: of one number, or folded over any number of them. */
struct NumberFunction {
    std::string_view name;
    double (*one)(double);
    double (*many)(double, double);
};

/** The function of that name; null where there is none. Angles are degrees, and whole quarters of a
    turn give whole results. */
const NumberFunction* numberFunction(std::string_view name);

} // namespace Kestrel::UI
