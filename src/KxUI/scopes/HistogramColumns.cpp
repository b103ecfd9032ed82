#include <KxUI/scopes/HistogramColumns_p.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace Kestrel::UI {

CodePlaces::CodePlaces(CodeAxis codes, ScopeHistogram::Axis axis, float whiteNits)
    : m_codes(codes)
    , m_axis(axis)
    , m_whiteNits(whiteNits) {
    if (codes.isHalf()) {
        for (std::uint32_t code = HalfCode::Infinity - 1; code > 0; --code)
            m_order.push_back(code | HalfCode::Sign);
        for (std::uint32_t code = 0; code < HalfCode::Infinity; ++code)
            m_order.push_back(code);
    } else {
        for (int code = 0; code < codes.count(); ++code)
            m_order.push_back(std::uint32_t(code));
    }
    const auto place = [&](double value) {
        return ScopeHistogram::position(axis, float(value), whiteNits);
    };
    const auto value = [&](std::size_t i) { return double(codes.value(m_order[i])); };
    const std::size_t last = m_order.size() - 1;
    m_ends.reserve(m_order.size());
    m_middles.reserve(m_order.size());
    for (std::size_t i = 0; i <= last; ++i) {
        const double above = i < last ? value(i + 1) : 2 * value(i) - value(i - 1);
        m_middles.push_back(place(value(i)));
        m_ends.push_back(place((value(i) + above) / 2));
    }
    m_begin = place(value(0) - (value(1) - value(0)) / 2);
}

bool CodePlaces::isOf(CodeAxis codes, ScopeHistogram::Axis axis, float whiteNits) const {
    return m_codes == codes && m_axis == axis && m_whiteNits == whiteNits;
}

std::vector<float> CodePlaces::columns(const CodeCounts::Counts& counts, double lower, double upper,
                                       int columns) const {
    std::vector<float> result(std::size_t(std::max(columns, 0)));
    if (result.empty() || counts.size() != std::size_t(m_codes.count()) || !(upper > lower))
        return result;
    const double scale = columns / (upper - lower);
    const auto first = std::upper_bound(m_ends.begin(), m_ends.end(), float(lower));
    for (auto i = std::size_t(first - m_ends.begin()); i < m_ends.size(); ++i) {
        const double start = (double(i == 0 ? m_begin : m_ends[i - 1]) - lower) * scale;
        const double end = (double(m_ends[i]) - lower) * scale;
        if (start >= columns)
            break;
        const std::uint32_t zero = m_codes.isHalf() && m_order[i] == 0 ? counts[HalfCode::Sign] : 0;
        const double count = double(counts[m_order[i]]) + double(zero);
        if (count == 0)
            continue;
        const double width = end - start;
        const int from = std::max(int(std::floor(start)), 0);
        const int to = std::min(int(std::floor(end)), columns - 1);
        if (from == to || !(width > 0)) {
            const double seen =
                width > 0 ? (std::min(end, double(columns)) - std::max(start, 0.0)) / width : 1;
            result[std::size_t(from)] += float(count * seen);
            continue;
        }
        for (int column = from; column <= to; ++column) {
            const double part = std::min(end, column + 1.0) - std::max(start, double(column));
            result[std::size_t(column)] += float(count * std::max(part, 0.0) / width);
        }
    }
    return result;
}

std::uint64_t CodePlaces::count(const CodeCounts::Counts& counts, double lower,
                                double upper) const {
    if (counts.size() != std::size_t(m_codes.count()))
        return 0;
    std::uint64_t sum = 0;
    const auto first = std::lower_bound(m_middles.begin(), m_middles.end(), float(lower));
    for (auto i = std::size_t(first - m_middles.begin());
         i < m_middles.size() && double(m_middles[i]) < upper; ++i) {
        sum += counts[m_order[i]];
        if (m_codes.isHalf() && m_order[i] == 0)
            sum += counts[HalfCode::Sign];
    }
    return sum;
}

float referenceHeight(const std::vector<float>& columns, int black, int white) {
    float inner = 0;
    float all = 0;
    const int last = int(columns.size()) - 1;
    for (int i = 0; i <= last; ++i) {
        const float height = columns[std::size_t(i)];
        all = std::max(all, height);
        // A code between two columns falls into both.
        if (i != 0 && i != last && std::abs(i - black) > 1 && std::abs(i - white) > 1)
            inner = std::max(inner, height);
    }
    return inner > 0 ? inner : all;
}

} // namespace Kestrel::UI
