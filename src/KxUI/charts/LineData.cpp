#include <KxUI/charts/LineData_p.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Kestrel::UI {
namespace {

constexpr int BlockBits = 5;
constexpr std::size_t Block = std::size_t(1) << BlockBits;
// Dropping points one by one leaves some behind until it is worth to move the others.
constexpr std::size_t LeastDropped = 4096;

} // namespace

void Extent::add(double value) {
    if (std::isfinite(value)) {
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
    }
}

void Extent::add(const Extent& other) {
    lowest = std::min(lowest, other.lowest);
    highest = std::max(highest, other.highest);
}

void LineData::assign(std::vector<double> x, std::vector<double> y) {
    const std::size_t size = std::min(x.size(), y.size());
    x.resize(size);
    y.resize(size);
    const bool isFinite =
        std::all_of(x.begin(), x.end(), [](double v) { return std::isfinite(v); });
    if (!isFinite || !std::is_sorted(x.begin(), x.end())) {
        std::vector<std::size_t> order;
        for (std::size_t i = 0; i < size; ++i)
            if (std::isfinite(x[i]))
                order.push_back(i);
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return x[a] < x[b]; });
        const auto ordered = [&order](const std::vector<double>& from) {
            std::vector<double> to;
            to.reserve(order.size());
            for (const std::size_t i : order)
                to.push_back(from[i]);
            return to;
        };
        x = ordered(x);
        y = ordered(y);
    }
    m_x = std::move(x);
    m_y = std::move(y);
    m_first = 0;
    limit();
    rebuild();
}

bool LineData::append(double x, double y) {
    if (!std::isfinite(x) || (size() > 0 && x < m_x.back()))
        return false;
    m_x.push_back(x);
    m_y.push_back(y);
    raise(m_y.size() - 1, y);
    limit();
    return true;
}

void LineData::setCapacity(std::size_t capacity) {
    m_capacity = capacity;
    limit();
}

void LineData::limit() {
    if (m_capacity > 0 && size() > m_capacity)
        m_first = m_y.size() - m_capacity;
    if (m_first < LeastDropped || m_first < size() / 4)
        return;
    const auto end = std::ptrdiff_t(m_first);
    m_x.erase(m_x.begin(), m_x.begin() + end);
    m_y.erase(m_y.begin(), m_y.begin() + end);
    m_first = 0;
    rebuild();
}

void LineData::rebuild() {
    m_levels.clear();
    std::vector<Extent> level((m_y.size() + Block - 1) / Block);
    for (std::size_t i = 0; i < m_y.size(); ++i)
        level[i / Block].add(m_y[i]);
    while (!level.empty()) {
        m_levels.push_back(std::move(level));
        const std::vector<Extent>& below = m_levels.back();
        level = std::vector<Extent>(below.size() > 1 ? (below.size() + Block - 1) / Block : 0);
        for (std::size_t i = 0; i < below.size() && !level.empty(); ++i)
            level[i / Block].add(below[i]);
    }
}

void LineData::raise(std::size_t index, double value) {
    for (std::size_t level = 0;; ++level) {
        index /= Block;
        if (level == m_levels.size()) {
            m_levels.emplace_back();
            // What a new level begins with: all that is below it so far.
            if (level > 0)
                for (const Extent& each : m_levels[level - 1]) {
                    if (m_levels[level].empty())
                        m_levels[level].emplace_back();
                    m_levels[level].back().add(each);
                }
        }
        if (index >= m_levels[level].size())
            m_levels[level].resize(index + 1);
        m_levels[level][index].add(value);
        if (m_levels[level].size() == 1)
            return;
    }
}

std::size_t LineData::firstFrom(double x, std::size_t hint) const {
    const auto begin = m_x.begin() + std::ptrdiff_t(m_first);
    std::size_t from = std::min(hint, size());
    std::size_t step = 1;
    std::size_t to = from;
    while (to < size() && begin[std::ptrdiff_t(to)] < x) {
        from = to + 1;
        to = std::min(size(), to + step);
        step *= 2;
    }
    return std::size_t(
        std::lower_bound(begin + std::ptrdiff_t(from), begin + std::ptrdiff_t(to), x) - begin);
}

std::size_t LineData::firstNear(double x, std::size_t from, std::size_t guess) const {
    const auto begin = m_x.begin() + std::ptrdiff_t(m_first);
    std::size_t end = std::clamp(guess, from, size());
    if (end == from || begin[std::ptrdiff_t(end - 1)] < x)
        return firstFrom(x, end);
    // The answer is at most `end` - 1: backwards, by steps that double.
    std::size_t step = 1;
    std::size_t low = end - 1;
    while (low > from && !(begin[std::ptrdiff_t(low - 1)] < x)) {
        end = low;
        low = low - from > step ? low - step : from;
        step *= 2;
    }
    return std::size_t(
        std::lower_bound(begin + std::ptrdiff_t(low), begin + std::ptrdiff_t(end), x) - begin);
}

Extent LineData::extent(std::size_t begin, std::size_t end) const {
    Extent found;
    std::size_t i = m_first + begin;
    const std::size_t last = m_first + std::min(end, size());
    while (i < last) {
        std::size_t level = 0;
        std::size_t reach = 1;
        while (level < m_levels.size() && i % (reach * Block) == 0 && i + reach * Block <= last) {
            reach *= Block;
            ++level;
        }
        if (level == 0)
            found.add(m_y[i]);
        else
            found.add(m_levels[level - 1][i / reach]);
        i += reach;
    }
    return found;
}

std::size_t LineData::indexBytes() const {
    return std::accumulate(m_levels.begin(), m_levels.end(), std::size_t(0),
                           [](std::size_t sum, const std::vector<Extent>& level) {
                               return sum + level.size() * sizeof(Extent);
                           });
}

} // namespace Kestrel::UI
