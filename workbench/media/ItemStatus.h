#pragma once

#include "media/FolderNames.h"

#include <cstdint>
#include <string>

namespace Kestrel::Workbench {

/** What the file system says of one listed item; sums over the files of a sequence. */
struct ItemStatus {
    std::uint64_t size = 0;
    /** The latest change of any of its files, in seconds since 1970. */
    std::int64_t modified = 0;
    bool isDirectory = false;
    bool isWritable = false;
    /** Number of files; 1 for what is no sequence. */
    std::int64_t files = 0;
    std::int64_t missing = 0;
};

/** Asks for the status of a plain item, or, with a hashed name, of all files of a sequence. Takes
    as long as the file system does. */
ItemStatus readItemStatus(const std::string& folder, const FolderNames& names,
                          const std::string& itemName, const std::string& hashedName);

} // namespace Kestrel::Workbench
