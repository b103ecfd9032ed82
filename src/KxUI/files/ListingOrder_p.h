#pragma once

#include <KxUI/files/FileListing.h>

#include <QStringList>

namespace Kestrel::UI {

/** What the rows of a listing are sorted by. */
enum class ListingColumn { Name, Frames, Missing, Size, Modified, Type };

/** Which items of a listing are rows, and in what order. */
struct ListingOrder {
    ListingColumn column = ListingColumn::Name;
    bool isDescending = false;
    bool foldersFirst = true;
    QStringList words; ///< that a name has to have, in any case

    bool usesStatus() const {
        return column == ListingColumn::Size || column == ListingColumn::Modified;
    }
};

/** The items that are shown, by their rows. What has no size or time yet comes last in both
    directions; what is alike stands in natural order. Any thread. */
std::vector<std::int32_t> orderedRows(const FileListing& listing, const ListingOrder& order);

} // namespace Kestrel::UI
