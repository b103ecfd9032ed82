#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Kestrel::UI {

/** The other name of a file; paths as UTF-8 on systems whose paths are text, else bytes. */
struct FileRenaming {
    std::string from;
    std::string to;
};

/** What became of a renaming of several files. */
struct RenamingOutcome {
    int error = 0;            ///< 0 when all files have their other names, or it was stopped
    std::string path;         ///< what the error is about
    std::size_t renamed = 0;  ///< files with their other names
    std::size_t stranded = 0; ///< of them, those that could not be given their old names again
    bool isStopped = false;
};

/** Renames files in this order, all of them or none: before the first one it is seen that all are
    there and that none would replace another, and after a failure those renamed before get their
    old names again, as far as the file system allows.
    @param goesOn  called with the number of those done before each one, and now and then; false
                   stops it and takes all back */
RenamingOutcome renameFiles(const std::vector<FileRenaming>& files,
                            const std::function<bool(std::size_t done)>& goesOn);

} // namespace Kestrel::UI
