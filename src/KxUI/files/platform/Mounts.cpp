#include <KxUI/files/platform/Mounts_p.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace Kestrel::UI::Platform {
namespace {

std::string_view takeField(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::string_view field = line.substr(0, line.find(' '));
    line.remove_prefix(field.size());
    return field;
}

// `8:1`
std::uint64_t deviceIn(std::string_view field) {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    const char* const end = field.data() + field.size();
    const char* const colon = std::from_chars(field.data(), end, major).ptr;
    if (colon != end)
        std::from_chars(colon + 1, end, minor);
    return deviceNumber(major, minor);
}

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

// Blanks, tabs, newlines and backslashes are written as `\040`.
std::string unescaped(std::string_view field) {
    std::string text;
    text.reserve(field.size());
    for (std::size_t at = 0; at < field.size(); ++at) {
        if (field[at] == '\\' && at + 3 < field.size() && isOctal(field[at + 1]) &&
            isOctal(field[at + 2]) && isOctal(field[at + 3])) {
            text += static_cast<char>((field[at + 1] - '0') * 64 + (field[at + 2] - '0') * 8 +
                                      (field[at + 3] - '0'));
            at += 3;
        } else {
            text += field[at];
        }
    }
    return text;
}

} // namespace

bool isRemoteType(std::string_view type) {
    static constexpr std::array<std::string_view, 23> types{
        "nfs",   "nfs4",   "cifs",  "smb3",   "smbfs",    "smb2",      "afs",   "ceph",
        "9p",    "lustre", "gpfs",  "beegfs", "panfs",    "coda",      "ncpfs", "webdav",
        "davfs", "autofs", "ocfs2", "gfs2",   "orangefs", "glusterfs", "fuse"};
    return std::find(types.begin(), types.end(), type) != types.end() ||
           type.substr(0, 5) == "fuse.";
}

bool keepsDirectoryTimes(std::string_view type) {
    static constexpr std::array<std::string_view, 16> types{
        "ext2", "ext3", "ext4", "xfs",  "btrfs", "zfs",   "f2fs",    "bcachefs",
        "jfs",  "nfs",  "nfs4", "ntfs", "ntfs3", "tmpfs", "fuseblk", "overlay"};
    return std::find(types.begin(), types.end(), type) != types.end();
}

bool liesUnder(std::string_view path, std::string_view directory) {
    if (path.substr(0, directory.size()) != directory)
        return false;
    return path.size() == directory.size() || directory.empty() || directory.back() == '/' ||
           path[directory.size()] == '/';
}

std::vector<Mount> parseMounts(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        takeField(line); // the number of the mount
        takeField(line); // and that of the one it is on
        const std::uint64_t device = deviceIn(takeField(line));
        takeField(line); // the part of the file system that is mounted
        std::string point = unescaped(takeField(line));
        // Some optional fields, then a dash, then the type.
        std::string_view field = takeField(line);
        while (!field.empty() && field != "-")
            field = takeField(line);
        const std::string_view type = takeField(line);
        if (point.empty() || type.empty())
            continue;
        // What is mounted later hides what was there.
        mounts.erase(std::remove_if(mounts.begin(), mounts.end(),
                                    [&](const Mount& each) { return each.point == point; }),
                     mounts.end());
        mounts.push_back({std::move(point), std::string(type), isRemoteType(type), device});
    }
    return mounts;
}

} // namespace Kestrel::UI::Platform
