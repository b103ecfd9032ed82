#include <KxUI/files/ListingOrder_p.h>

#include <algorithm>
#include <string>

namespace Kestrel::UI {
namespace {

using Item = FileListing::Item;
using Kind = FileListing::Kind;

struct Row {
    std::int64_t value = 0;
    std::int32_t index = 0;
    std::int32_t place = 0; // folders before files, what is unknown after what is known
};

// Whether a word is the number of a frame that a sequence has a file of.
bool isFrameOf(const FileListing& listing, int index, const QString& word) {
    const Item& item = listing.item(index);
    bool isNumber = false;
    const int frame = item.kind == Kind::Sequence ? word.toInt(&isNumber) : 0;
    if (!isNumber || frame < item.first || frame > item.last)
        return false;
    const auto ranges = listing.frameRanges(index);
    return std::any_of(ranges.begin(), ranges.end(), [=](const Base::FrameRange& range) {
        return frame >= range.first && frame <= range.last &&
               (std::int64_t{frame} - range.first) % std::max(range.step, 1) == 0;
    });
}

bool hasWords(const FileListing& listing, int index, const QStringList& words) {
    if (words.isEmpty())
        return true;
    const Item& item = listing.item(index);
    const QString name = QString::fromUtf8(item.name.data(), static_cast<int>(item.name.size()));
    return std::all_of(words.begin(), words.end(), [&](const QString& word) {
        return name.contains(word, Qt::CaseInsensitive) || isFrameOf(listing, index, word);
    });
}

// The extension's first letters as a number: what sorts by kind of file.
std::int64_t typeValue(const Item& item) {
    if (item.kind == Kind::Directory)
        return -1;
    const std::size_t dot = item.name.rfind('.');
    std::uint64_t value = 0;
    for (std::size_t i = 1; i <= 7; ++i) {
        const bool isThere = dot != std::string_view::npos && dot + i < item.name.size();
        auto letter = static_cast<unsigned char>(isThere ? item.name[dot + i] : 0);
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<unsigned char>(letter - 'A' + 'a');
        value = value << 8 | letter;
    }
    return static_cast<std::int64_t>(value);
}

// False when it is not known.
bool readValue(const FileListing& listing, int index, ListingColumn column, std::int64_t& value) {
    const Item& item = listing.item(index);
    switch (column) {
    case ListingColumn::Name:
        return true;
    case ListingColumn::Frames:
        value = item.kind == Kind::Sequence ? item.frames : 0;
        return true;
    case ListingColumn::Missing:
        value = item.missing;
        return true;
    case ListingColumn::Type:
        value = typeValue(item);
        return true;
    case ListingColumn::Size:
    case ListingColumn::Modified:
        break;
    }
    const FileListing::Status status = listing.status(index);
    const bool isSize = column == ListingColumn::Size;
    value = isSize ? static_cast<std::int64_t>(status.size) : status.modified;
    return status.known == FileListing::Status::Told && !(isSize && item.kind == Kind::Directory);
}

} // namespace

std::vector<std::int32_t> orderedRows(const FileListing& listing, const ListingOrder& order) {
    std::vector<Row> rows;
    rows.reserve(static_cast<std::size_t>(listing.size()));
    for (int i = 0; i < listing.size(); ++i) {
        const Item& item = listing.item(i);
        if (!hasWords(listing, i, order.words))
            continue;
        Row row;
        row.index = i;
        const bool isKnown = readValue(listing, i, order.column, row.value);
        row.place =
            (order.foldersFirst && item.kind != Kind::Directory ? 2 : 0) + (isKnown ? 0 : 1);
        if (!isKnown)
            row.value = 0;
        rows.push_back(row);
    }
    // Items stand in natural order from the start.
    const bool byName = order.column == ListingColumn::Name;
    const auto isBefore = [&](const Row& a, const Row& b) {
        if (a.place != b.place)
            return a.place < b.place;
        if (a.value != b.value)
            return (a.value < b.value) != order.isDescending;
        return byName && order.isDescending ? a.index > b.index : a.index < b.index;
    };
    if (!std::is_sorted(rows.begin(), rows.end(), isBefore))
        std::sort(rows.begin(), rows.end(), isBefore);
    std::vector<std::int32_t> indices;
    indices.reserve(rows.size());
    for (const Row& row : rows)
        indices.push_back(row.index);
    return indices;
}

} // namespace Kestrel::UI
