// What is told of two lists of rows, step by step, makes one out of the other. Bytes are keys; the
// lists stand on both sides of a bar.

#include <KxUI/files/ListingDiff_p.h>

#include <support/Require.h>

#include <algorithm>

using namespace Kestrel::Fuzz;
using namespace Kestrel::UI;

namespace {

using Keys = std::vector<std::uint64_t>;

Keys keysOf(std::string_view bytes) {
    Keys keys;
    for (const char byte : bytes)
        keys.push_back(static_cast<unsigned char>(byte));
    return keys;
}

bool hasChanged(int before, int after) {
    return (before ^ after) % 5 == 1;
}

void follow(Keys rows, const Keys& after, const ListingDiff& diff) {
    const auto isWithin = [](const Keys& keys, const ListingDiff::Rows& range) {
        return range.first >= 0 && range.count > 0 &&
               static_cast<std::size_t>(range.first + range.count) <= keys.size();
    };
    for (const auto& range : diff.removed) {
        require(isWithin(rows, range), "only rows that are there are removed");
        rows.erase(rows.begin() + range.first, rows.begin() + range.first + range.count);
    }
    for (const auto& range : diff.inserted) {
        require(isWithin(after, range) && static_cast<std::size_t>(range.first) <= rows.size(),
                "rows are inserted where they belong");
        rows.insert(rows.begin() + range.first, after.begin() + range.first,
                    after.begin() + range.first + range.count);
    }
    require(rows == after, "the steps lead from one list to the other");
}

void rearrange(const Keys& before, const Keys& after, const ListingDiff& diff) {
    require(diff.removed.empty() && diff.inserted.empty(), "all at once");
    require(diff.newRows.size() == before.size(), "each old row is told of");
    std::vector<bool> isTaken(after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        const std::int32_t row = diff.newRows[i];
        if (row < 0)
            continue;
        const auto at = static_cast<std::size_t>(row);
        require(at < after.size() && !isTaken[at], "each new row is one old row's at most");
        require(after[at] == before[i], "a row stays the item that it was");
        isTaken[at] = true;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text = textOf(data, size);
    const Keys before = keysOf(take(text, '|'));
    const Keys after = keysOf(text);
    const ListingDiff diff = diffOf(before, after, hasChanged);
    require(diff.removed.size() + diff.inserted.size() <= 64 && diff.changed.size() <= 64,
            "views are told a few things, or everything at once");
    for (const auto& range : diff.changed)
        require(range.first >= 0 && range.count > 0 &&
                    static_cast<std::size_t>(range.first + range.count) <= after.size(),
                "only rows that are there have changed");
    if (diff.isRearranged)
        rearrange(before, after, diff);
    else
        follow(before, after, diff);
    return 0;
}
