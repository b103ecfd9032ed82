#pragma once

#include <string>
#include <vector>

namespace Kestrel::Fuzz {

using Names = std::vector<std::string>;

/** The rules of listing and folding written down step by step, with no thought of speed. */
namespace FoldingOracle {

/** Natural order. */
void sort(Names& names, bool grouping);

/** What filename_list() makes of the names of a directory, some of which are directories. */
Names patternListing(Names names, const Names& directories);

/** What FileInfoList makes of them; a byte 1 stands before a sequence. */
Names frameNameListing(Names names, const Names& directories, bool split);

} // namespace FoldingOracle
} // namespace Kestrel::Fuzz
