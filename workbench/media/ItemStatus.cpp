#include "media/ItemStatus.h"

#include "media/Paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

void addFile(ItemStatus& status, const std::string& path) {
    struct stat entry {};
    if (::stat(path.c_str(), &entry) != 0)
        return;
    status.isDirectory = S_ISDIR(entry.st_mode);
    if (!status.isDirectory)
        status.size += std::uint64_t(entry.st_size);
    status.modified = std::max(status.modified, std::int64_t(entry.st_mtime));
    ++status.files;
}

} // namespace

ItemStatus readItemStatus(const std::string& folder, const FolderNames& names,
                          const std::string& itemName, const std::string& hashedName) {
    ItemStatus status;
    std::string first = joinPath(folder, itemName);
    if (hashedName.empty()) {
        addFile(status, first);
    } else {
        const Sequence sequence(QString(), folder, names.members(hashedName));
        for (const auto& member : sequence.members())
            addFile(status, joinPath(folder, member.second));
        status.missing = sequence.missingCount();
        if (!sequence.isEmpty())
            first = sequence.path(sequence.firstTime());
    }
    status.isWritable = ::access(first.c_str(), W_OK) == 0;
    return status;
}

} // namespace Kestrel::Workbench
