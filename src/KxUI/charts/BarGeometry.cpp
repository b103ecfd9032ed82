#include <KxUI/charts/BarGeometry_p.h>

#include <KxUI/kit/Crisp_p.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Kestrel::UI {
namespace {

constexpr double GapOfSlot = 0.2;

double valueOf(const std::vector<double>& row, int category) {
    const double value =
        category >= 0 && category < int(row.size()) ? row[std::size_t(category)] : 0;
    return std::isfinite(value) ? value : 0;
}

bool hasValue(const std::vector<double>& row, int category) {
    return category < int(row.size()) && std::isfinite(row[std::size_t(category)]);
}

// What a category's values are divided by. A hundredth part first: sums of the largest doubles stay
// finite.
double wholeOf(const std::vector<std::vector<double>>& values, int category) {
    double sum = 0;
    for (const std::vector<double>& row : values)
        sum += std::abs(valueOf(row, category)) / 100;
    return sum > 0 ? sum : 1;
}

double shownValue(const BarRules& rules, const std::vector<double>& row, int category) {
    const double value = valueOf(row, category);
    return rules.arrangement == BarChart::Percent ? value / wholeOf(rules.values, category) / 100
                                                  : value;
}

class Arranger {
public:
    explicit Arranger(const BarRules& rules)
        : m_rules(rules) {}

    std::vector<Bar> make() {
        const double slot = std::abs(m_rules.places.pixel(1) - m_rules.places.pixel(0));
        const double thick = slot * (1 - GapOfSlot);
        const auto series = double(m_rules.values.size());
        const bool isGrouped = m_rules.arrangement == BarChart::Grouped;
        for (std::size_t place = 0; place < m_rules.order.size(); ++place) {
            const double first = m_rules.places.pixel(double(place)) - thick / 2;
            m_positive = 0;
            m_negative = 0;
            for (std::size_t i = 0; i < m_rules.values.size(); ++i) {
                const double part = isGrouped ? thick / series : thick;
                const double start = isGrouped ? first + part * double(i) : first;
                add(int(i), int(place), start, start + part, isGrouped);
            }
        }
        return std::move(m_bars);
    }

private:
    void add(int series, int slot, double from, double to, bool isGrouped) {
        const int category = m_rules.order[std::size_t(slot)];
        const std::vector<double>& row = m_rules.values[std::size_t(series)];
        if (!hasValue(row, category))
            return;
        const double value = shownValue(m_rules, row, category);
        double& sum = value < 0 ? m_negative : m_positive;
        const double begin = isGrouped ? 0 : sum;
        sum += value;
        const double end = isGrouped ? value : sum;
        m_bars.push_back({series, slot, category, row[std::size_t(category)],
                          rectOf(from, to, groundOf(begin), groundOf(end), value)});
    }

    double groundOf(double value) const {
        const AxisScale& scale = m_rules.scale;
        return scale.pixel(std::clamp(value, scale.lower, scale.upper));
    }

    // From `begin` to `end` along the values, between `from` and `to` across.
    QRectF rectOf(double from, double to, double begin, double end, double value) const {
        const auto snap = [this](double x) { return onPixels(x, m_rules.ratio); };
        const double hair = 1 / m_rules.ratio;
        from = snap(from);
        to = std::max(snap(to), from + hair);
        begin = snap(begin);
        end = snap(end);
        const bool isForward = (m_rules.scale.length > 0) == (value > 0);
        if (value != 0 && begin == end)
            end += isForward ? hair : -hair;
        const QRectF rect = m_rules.areLying ? QRectF(QPointF(begin, from), QPointF(end, to))
                                             : QRectF(QPointF(from, begin), QPointF(to, end));
        return rect.normalized();
    }

    const BarRules& m_rules;
    std::vector<Bar> m_bars;
    double m_positive = 0;
    double m_negative = 0;
};

int longest(const std::vector<std::vector<double>>& values) {
    std::size_t count = 0;
    for (const std::vector<double>& row : values)
        count = std::max(count, row.size());
    return int(count);
}

} // namespace

std::vector<Bar> arrangeBars(const BarRules& rules) {
    return Arranger(rules).make();
}

BarRange rangeOfBars(const std::vector<std::vector<double>>& values,
                     BarChart::Arrangement arrangement) {
    BarRange range;
    BarRules rules;
    rules.values = values;
    rules.arrangement = arrangement;
    for (int category = 0; category < longest(values); ++category) {
        double positive = 0;
        double negative = 0;
        for (const std::vector<double>& row : values) {
            const double value = shownValue(rules, row, category);
            double& sum = value < 0 ? negative : positive;
            const bool isGrouped = arrangement == BarChart::Grouped;
            sum =
                isGrouped ? (value < 0 ? std::min(sum, value) : std::max(sum, value)) : sum + value;
        }
        range.lowest = std::min(range.lowest, negative);
        range.highest = std::max(range.highest, positive);
    }
    return range;
}

std::vector<int> orderOfBars(const std::vector<std::vector<double>>& values, int categories,
                             bool isSorted) {
    std::vector<int> order(std::size_t(std::max(categories, longest(values))));
    std::iota(order.begin(), order.end(), 0);
    if (!isSorted)
        return order;
    std::vector<double> sums(order.size());
    for (const int category : order)
        for (const std::vector<double>& row : values)
            sums[std::size_t(category)] += valueOf(row, category);
    std::stable_sort(order.begin(), order.end(),
                     [&sums](int a, int b) { return sums[std::size_t(a)] > sums[std::size_t(b)]; });
    return order;
}

} // namespace Kestrel::UI
