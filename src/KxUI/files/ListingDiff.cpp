#include <KxUI/files/ListingDiff_p.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

using Keys = std::vector<std::uint64_t>;
using Rows = ListingDiff::Rows;

// More of them cost views more than a look at everything.
constexpr std::size_t mostRanges = 64;
constexpr std::int32_t gone = -1;

std::vector<std::pair<std::uint64_t, std::int32_t>> sorted(const Keys& keys, std::size_t begin,
                                                           std::size_t end) {
    std::vector<std::pair<std::uint64_t, std::int32_t>> pairs;
    pairs.reserve(end - begin);
    for (std::size_t i = begin; i < end; ++i)
        pairs.emplace_back(keys[i], static_cast<std::int32_t>(i));
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

void append(std::vector<Rows>& ranges, int row) {
    if (!ranges.empty() && ranges.back().first + ranges.back().count == row)
        ++ranges.back().count;
    else
        ranges.push_back({row, 1});
}

// The new row of each old one; those that have one are marked in `isOld`.
std::vector<std::int32_t> matched(const Keys& before, const Keys& after, std::vector<bool>& isOld) {
    // Most of a folder stays as it was.
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t front = 0;
    while (front < shorter && before[front] == after[front])
        ++front;
    std::size_t back = 0;
    while (back < shorter - front &&
           before[before.size() - 1 - back] == after[after.size() - 1 - back])
        ++back;

    std::vector<std::int32_t> newRows(before.size(), gone);
    const auto match = [&](std::size_t oldRow, std::size_t newRow) {
        newRows[oldRow] = static_cast<std::int32_t>(newRow);
        isOld[newRow] = true;
    };
    for (std::size_t i = 0; i < front; ++i)
        match(i, i);
    for (std::size_t i = 1; i <= back; ++i)
        match(before.size() - i, after.size() - i);
    if (front + back == shorter)
        return newRows; // all the others came, or went
    const auto olds = sorted(before, front, before.size() - back);
    const auto news = sorted(after, front, after.size() - back);
    for (auto o = olds.begin(), n = news.begin(); o != olds.end() && n != news.end();) {
        if (o->first < n->first)
            ++o;
        else if (n->first < o->first)
            ++n;
        else
            match(static_cast<std::size_t>((o++)->second), static_cast<std::size_t>((n++)->second));
    }
    return newRows;
}

} // namespace

ListingDiff diffOf(const Keys& before, const Keys& after,
                   const std::function<bool(int before, int after)>& hasChanged) {
    std::vector<bool> isOld(after.size());
    std::vector<std::int32_t> newRows = matched(before, after, isOld);
    ListingDiff diff;
    std::int32_t last = gone;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const std::int32_t row = newRows[i];
        if (row == gone) {
            append(diff.removed, static_cast<int>(i));
            continue;
        }
        diff.isRearranged = diff.isRearranged || row < last;
        last = std::max(last, row);
    }
    std::reverse(diff.removed.begin(), diff.removed.end());
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (!isOld[i])
            append(diff.inserted, static_cast<int>(i));
    }
    std::vector<int> changed;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (newRows[i] != gone && hasChanged(static_cast<int>(i), newRows[i]))
            changed.push_back(newRows[i]);
    }
    std::sort(changed.begin(), changed.end());
    for (const int row : changed)
        append(diff.changed, row);
    if (diff.changed.size() > mostRanges)
        diff.changed = {{changed.front(), changed.back() - changed.front() + 1}};
    if (diff.removed.size() + diff.inserted.size() > mostRanges)
        diff.isRearranged = true;
    if (diff.isRearranged) {
        diff.removed.clear();
        diff.inserted.clear();
        diff.newRows = std::move(newRows);
    }
    return diff;
}

} // namespace Kestrel::UI
