#pragma once

#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/StatusTable_p.h>

#include <memory>
#include <string>
#include <vector>

namespace Kestrel::Test {

/** The listing of a folder that was never on a disk. Names that end in a slash are folders; "a.1-3.x"
    is written as the frames `a.0001.x` to `a.0003.x`. */
inline std::shared_ptr<const UI::FileListing>
listingOf(const std::vector<std::string>& names, bool fold = true,
          UI::FileListing::State state = UI::FileListing::State::Complete) {
    auto all = std::make_shared<UI::Platform::Listing>();
    auto raw = std::make_shared<UI::RawEntries>();
    for (const std::string& each : names) {
        const bool isFolder = each.back() == '/';
        const std::string_view name(each.data(), each.size() - (isFolder ? 1 : 0));
        const std::string_view kept = all->names.add(name);
        all->entries.emplace_back(kept, isFolder ? UI::Platform::EntryType::Directory
                                                 : UI::Platform::EntryType::Other);
    }
    raw->directory = "/shots";
    raw->entries = all->entries;
    raw->names = std::move(all);
    UI::ListingSettings settings;
    settings.fold = fold;
    return UI::ListingData::listing(UI::makeListing(raw, settings),
                                    std::make_shared<UI::StatusTable>(), state, 0);
}

/** The names of frames, with as many digits at least. */
inline void addFrames(std::vector<std::string>& names, const std::string& before, int first,
                      int last, const std::string& after, std::size_t digits = 4) {
    for (int frame = first; frame <= last; ++frame) {
        const std::string number = std::to_string(frame);
        const std::size_t zeros = digits > number.size() ? digits - number.size() : 0;
        names.push_back(before + std::string(zeros, '0') + number + after);
    }
}

} // namespace Kestrel::Test
