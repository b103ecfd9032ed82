#pragma once

#include <chrono>
#include <string>

namespace Kestrel::Workbench {

/** \file
    Paths as the bytes of the file system. */

/** A folder's path and a name in it as one path. */
std::string joinPath(const std::string& folder, const std::string& name);

/** The folder that a path lies in; "/" for the root itself. */
std::string parentFolder(const std::string& path);

/** The last part of a path. */
std::string fileNameOf(const std::string& path);

/** The absolute form of a path as a user writes it: `~` for the home folder, relative to the
    current folder, without `.`, `..` and a closing slash. */
std::string absolutePath(const std::string& path);

/** Whether there is nothing of this path, for sure: not where the disk does not answer in time. */
bool isMissing(const std::string& path, std::chrono::milliseconds patience);

/** Whether there is a folder of this path. Takes as long as the disk does. */
bool isFolder(const std::string& path);

} // namespace Kestrel::Workbench
