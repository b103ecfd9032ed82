#include <KxUI/browse/UnshownFiles_p.h>

#include <KxUI/files/FileNames.h>
#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/StatusTable_p.h>

#include <algorithm>

namespace Kestrel::UI {

bool hasFolder(const FileListing& listing, std::string_view name) {
    const auto& all = ListingData::of(listing)->raw;
    return all && std::any_of(all->entries.begin(), all->entries.end(), [&](const auto& entry) {
               return entry.type == Platform::EntryType::Directory && entry.view() == name;
           });
}

std::shared_ptr<const FileListing> unshownFiles(const FileListing& listing, std::string_view name) {
    const auto& all = ListingData::of(listing)->raw;
    if (!all)
        return nullptr;
    RawEntries found{all->directory, all->names, {}};
    const auto take = [&](const auto& isWanted) {
        std::copy_if(all->entries.begin(), all->entries.end(), std::back_inserter(found.entries),
                     isWanted);
    };
    take([&](const Platform::Entry& entry) { return entry.view() == name; });
    const auto pattern = FileNames::patternOf(name);
    if (found.entries.empty() && pattern) {
        take([&](const Platform::Entry& entry) {
            const auto frame = FrameNameRules().frameOf(entry.view());
            return frame && frame->front() == pattern->before && frame->back() == pattern->after;
        });
    }
    if (found.entries.empty())
        return nullptr;
    ListingSettings settings;
    settings.showHidden = true;
    return ListingData::listing(
        makeListing(std::make_shared<const RawEntries>(std::move(found)), settings),
        ListingData::statusOf(listing), listing.state(), listing.error());
}

} // namespace Kestrel::UI
