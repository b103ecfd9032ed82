#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace Kestrel::UI {

/** What turns the rows of one listing into those of another, told so that views follow it row by
    row: first what is removed, from the back, then what is inserted, from the front; no row number
    is wrong in between. */
struct ListingDiff {
    struct Rows {
        int first = 0;
        int count = 0;
    };

    std::vector<Rows> removed;  ///< old rows, the last ones first
    std::vector<Rows> inserted; ///< new rows, the first ones first
    std::vector<Rows> changed;  ///< new rows of the same items

    /** Rows have moved, or there would be too many ranges: everything is rearranged at once, and
        newRows has the new row for each old one, -1 for what is gone. Then there are no ranges but
        those of changed. */
    bool isRearranged = false;
    std::vector<std::int32_t> newRows;
};

/** Compares rows by the keys of their items. `hasChanged(before, after)` is asked about the rows of
    each item that stays. Keys should differ; the second item of a key is another one. */
ListingDiff diffOf(const std::vector<std::uint64_t>& before,
                   const std::vector<std::uint64_t>& after,
                   const std::function<bool(int before, int after)>& hasChanged);

} // namespace Kestrel::UI
