#pragma once

#include <KxUI/files/FileListing.h>

#include <memory>
#include <string_view>

namespace Kestrel::UI {

/** Whether a folder has a folder of this name, shown or not. */
bool hasFolder(const FileListing& listing, std::string_view name);

/** What a folder has by a name that somebody typed, though its listing does not show it: it is
    hidden, or of another kind than the filter wants. A listing of that alone: one file or folder, or
    the frames of a pattern as a sequence. Null for nothing. No disk is asked. */
std::shared_ptr<const FileListing> unshownFiles(const FileListing& listing, std::string_view name);

} // namespace Kestrel::UI
