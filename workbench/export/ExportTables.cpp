#include "export/ExportTables.h"

#include "media/DisplayTable.h"

#include <half.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr unsigned int curveEntries = 65536;
constexpr double mostCode = 65535.0;

std::uint16_t code16(double signal) {
    // The first test also catches what is not a number.
    return signal > 0.0 ? std::uint16_t(std::lround(std::min(signal, 1.0) * mostCode)) : 0;
}

std::uint16_t halfBits(double light) {
    // Beyond the largest half lies infinity, which no other program expects of a picture.
    const double most = double(HALF_MAX);
    return half(float(std::isfinite(light) ? std::clamp(light, -most, most) : light)).bits();
}

/** What balance and curves make of light. */
class Look {
public:
    explicit Look(const Grade& grade)
        : m_balance(grade.balance)
        , m_isBalanced(!grade.balance.isNeutral()) {
        if (grade.curvesAreIdentity())
            return;
        m_curves.resize(std::size_t(curveEntries) * 4);
        grade.curves.buildRGBALUT(curveEntries, m_curves.data());
    }

    bool isNeutral() const { return !m_isBalanced && m_curves.empty(); }

    std::uint16_t code(ExportFormat target, double light, std::size_t channel) const {
        if (target == ExportFormat::Exr && isNeutral())
            return halfBits(light);
        double signal = srgbSignal(light);
        if (m_isBalanced)
            signal = m_balance.applied(signal, channel);
        if (!m_curves.empty())
            signal = double(m_curves[std::size_t(code16(signal)) * 4 + channel]) / mostCode;
        switch (target) {
        case ExportFormat::Exr:
            return halfBits(srgbLight(signal));
        case ExportFormat::Png16:
            return code16(signal);
        case ExportFormat::Png8:
            break;
        }
        return screenCode(signal);
    }

private:
    Balance m_balance;
    bool m_isBalanced;
    /** From each signal, in 65,535ths, four codes; empty where the curves change nothing. */
    std::vector<unsigned short> m_curves;
};

} // namespace

ExportTables::ExportTables(const Grade& grade, const SampleFormat& format, float stops,
                           ExportFormat target)
    : m_format(format)
    , m_stops(stops) {
    const Look look(grade);
    const Factors factors = grade.lightFactors(stops);
    const std::size_t entries = format.type == SampleFormat::Type::Byte ? 256 : 65536;
    std::vector<double> light(entries);
    for (std::size_t i = 0; i < entries; ++i)
        light[i] = lightOf(format, std::uint16_t(i));
    for (std::size_t channel = 0; channel < m_table.size(); ++channel) {
        m_table[channel].resize(entries);
        for (std::size_t i = 0; i < entries; ++i)
            m_table[channel][i] = look.code(target, light[i] * double(factors[channel]), channel);
    }
}

} // namespace Kestrel::Workbench
