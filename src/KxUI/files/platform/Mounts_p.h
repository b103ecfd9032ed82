#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::UI::Platform {

/** A file system of this process. */
struct Mount {
    std::string point; ///< where it begins: absolute, without a separator at its end but for a root
    std::string type;
    bool remote = false;      ///< a call may wait for another machine, or for another program
    std::uint64_t device = 0; ///< as EntryStatus has it, where the system says; else 0
};

/** The file systems of this process. No path is asked for it, so that no server is waited for; the
    answer may wait for the system itself, so it is for worker threads. Empty where there is no such
    table: then mountOf() goes by the path alone. */
std::vector<Mount> mounts();

/** The file system that a path lies on, by its text: a link within the path may lead to another
    one. */
Mount mountOf(const std::vector<Mount>& mounts, std::string_view absolutePath);

/** The table as the system writes it (`/proc/self/mountinfo`). */
std::vector<Mount> parseMounts(std::string_view text);

/** Whether calls to a type of file system may wait for somebody else. */
bool isRemoteType(std::string_view type);

/** Whether on this type of file system the time of a directory changes with the names in it. */
bool keepsDirectoryTimes(std::string_view type);

/** The number of a device, as the status of what lies on it has it. */
std::uint64_t deviceNumber(std::uint32_t major, std::uint32_t minor);

/** Whether a path is `directory` or lies under it, by the texts. */
bool liesUnder(std::string_view path, std::string_view directory);

} // namespace Kestrel::UI::Platform
