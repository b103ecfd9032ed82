#pragma once

#include <support/FoldingOracle.h>

namespace Kestrel::Fuzz {

/** Stands in for the file system of the library: every path is in this one directory, whose entries
    are found by the last component. */
struct MemoryDirectory {
    Names names; ///< "." and ".." included
    Names directories;

    /** Becomes the directory of all paths. An entry that ends with / is a directory, with > a link
        to one, with < a link to a file; the marks are no part of the names. */
    explicit MemoryDirectory(const Names& entries);
};

} // namespace Kestrel::Fuzz
