#pragma once

#include <KxUI/base/FrameRange.h>
#include <KxUI/files/FileListing.h>
#include <KxUI/files/FileNames.h>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace Kestrel::UI {

/** What a listing says would be lost when a name is written over. */
struct ReplacedFiles {
    bool isFolder = false;                ///< a folder has the name: nothing can be written
    std::int64_t count = 0;               ///< files that exist
    std::vector<Base::FrameRange> frames; ///< those of a sequence, in order; empty for a file
};

/** Of one file. */
ReplacedFiles replacedByFile(const FileListing& listing, std::string_view name);

/** Of a sequence: the files of frames that have the very names that would be written, whether they
    are shown or not.
    @param written  the frames that will be written; without them, all that exist count */
ReplacedFiles replacedBySequence(const FileListing& listing, const FileNames::Pattern& pattern,
                                 const std::optional<Base::FrameRange>& written);

/** The sequences of a listing that a name with a place for the frame means, in any number of digits;
    those with as many digits as the name come first. */
std::vector<int> sequencesOf(const FileListing& listing, const FileNames::Pattern& pattern);

} // namespace Kestrel::UI
