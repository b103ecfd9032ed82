#include <KxUI/scopes/VectorTargets.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double Degrees = 180 / 3.14159265358979323846;
constexpr double AxesTurn = 33; // of I and Q against V and U

// The NTSC system's weights of B - Y and R - Y.
constexpr double UWeight = 0.492111;
constexpr double VWeight = 0.877283;

double dot(const std::array<float, 3>& row, const std::array<double, 3>& rgb) noexcept {
    return double(row[0]) * rgb[0] + double(row[1]) * rgb[1] + double(row[2]) * rgb[2];
}

// The direction in the plane of chroma of the B - Y and R - Y that lie at `degrees` in that of U and V.
double direction(const RgbToYCbCrMatrix& matrix, double degrees) noexcept {
    const double blueLessLuma = std::cos(degrees / Degrees) / UWeight;
    const double redLessLuma = std::sin(degrees / Degrees) / VWeight;
    const double angle = std::atan2(redLessLuma / (1 - double(matrix.luma[0])),
                                    blueLessLuma / (1 - double(matrix.luma[2]))) *
                         Degrees;
    return angle < 0 ? angle + 360 : angle;
}

} // namespace

std::array<VectorTarget, 6> vectorTargets(const RgbToYCbCrMatrix& matrix, float level) noexcept {
    struct Bar {
        const char* name;
        std::array<float, 3> rgb;
    };
    constexpr std::array<Bar, 6> Bars{{{"R", {1, 0, 0}},
                                       {"Yl", {1, 1, 0}},
                                       {"G", {0, 1, 0}},
                                       {"Cy", {0, 1, 1}},
                                       {"B", {0, 0, 1}},
                                       {"Mg", {1, 0, 1}}}};
    std::array<VectorTarget, 6> targets{};
    for (std::size_t i = 0; i < Bars.size(); ++i) {
        const std::array<double, 3> rgb{double(Bars[i].rgb[0] * level),
                                        double(Bars[i].rgb[1] * level),
                                        double(Bars[i].rgb[2] * level)};
        targets[i] = {Bars[i].name, float(dot(matrix.luma, rgb)), float(dot(matrix.cb, rgb)),
                      float(dot(matrix.cr, rgb))};
    }
    return targets;
}

float vectorReach(const RgbToYCbCrMatrix& matrix, float level) noexcept {
    float longest = 0;
    for (const VectorTarget& target : vectorTargets(matrix, level))
        longest = std::max(longest, std::hypot(target.cb, target.cr));
    return longest;
}

VectorAxes vectorAxes(const RgbToYCbCrMatrix& matrix) noexcept {
    return {direction(matrix, 90 + AxesTurn), direction(matrix, AxesTurn)};
}

} // namespace Kestrel::UI
