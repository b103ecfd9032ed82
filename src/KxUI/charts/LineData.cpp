#include <KxUI/charts/LineData_p.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace Kestrel::UI {
namespace {

constexpr int BlockBits = 5;
constexpr std::size_t Block = std::size_t(1) << BlockBits;
// Dropping points one by one leaves some behind until it is worth to move the others.
constexpr std::size_t LeastDropped = 4096;

// Four at a time: each comparison waits for the one before of its own four only.
struct FourExtents {
    void add(std::size_t lane, double lowest, double highest) {
        low[lane] = lowest < low[lane] ? lowest : low[lane];
        high[lane] = highest > high[lane] ? highest : high[lane];
    }

    std::array<double, 4> low{HUGE_VAL, HUGE_VAL, HUGE_VAL, HUGE_VAL};
    std::array<double, 4> high{-HUGE_VAL, -HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
};

// What is no finite number does not count.
void addValue(FourExtents& all, std::size_t lane, double value) {
    const bool isFinite = std::abs(value) <= std::numeric_limits<double>::max();
    all.add(lane, isFinite ? value : HUGE_VAL, isFinite ? value : -HUGE_VAL);
}

void addValues(FourExtents& all, const double* values, std::size_t count) {
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4)
        for (std::size_t lane = 0; lane < 4; ++lane)
            addValue(all, lane, values[i + lane]);
    for (; i < count; ++i)
        addValue(all, 0, values[i]);
}

void addExtents(FourExtents& all, const Extent* extents, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        all.add(i % 4, extents[i].lowest, extents[i].highest);
}

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

// Level by level, from the finest: what does not fill a block at either end is looked at one by one,
// the blocks between are what the next level is asked for.
Extent LineData::extent(std::size_t begin, std::size_t end) const {
    FourExtents all;
    std::size_t from = m_first + begin;
    std::size_t to = m_first + std::min(end, size());
    const auto add = [&](std::size_t level, std::size_t first, std::size_t last) {
        if (level == 0)
            addValues(all, m_y.data() + first, last - first);
        else
            addExtents(all, m_levels[level - 1].data() + first, last - first);
    };
    for (std::size_t level = 0; from < to; ++level) {
        const std::size_t firstBlock = (from + Block - 1) / Block;
        const std::size_t lastBlock = to / Block;
        if (level == m_levels.size() || firstBlock >= lastBlock) {
            add(level, from, to);
            break;
        }
        add(level, from, firstBlock * Block);
        add(level, lastBlock * Block, to);
        from = firstBlock;
        to = lastBlock;
    }
    Extent found;
    for (std::size_t lane = 0; lane < all.low.size(); ++lane)
        found.add(Extent{all.low[lane], all.high[lane]});
    return found;
}

std::size_t LineData::indexBytes() const {
    return std::accumulate(m_levels.begin(), m_levels.end(), std::size_t(0),
                           [](std::size_t sum, const std::vector<Extent>& level) {
                               return sum + level.size() * sizeof(Extent);
                           });
}

} // namespace Kestrel::UI
