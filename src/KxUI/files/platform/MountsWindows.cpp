#include <KxUI/files/platform/Mounts_p.h>

#include <windows.h>

namespace Kestrel::UI::Platform {
namespace {

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

// `//server/share` of a path on a server.
std::string shareOf(std::string_view path) {
    std::string share = "//";
    int separators = 0;
    for (const char c : path.substr(2)) {
        if (isSeparator(c) && ++separators == 2)
            break;
        share += isSeparator(c) ? '/' : c;
    }
    return share;
}

} // namespace

std::vector<Mount> mounts() {
    return {};
}

std::uint64_t deviceNumber(std::uint32_t, std::uint32_t) {
    return 0;
}

Mount mountOf(const std::vector<Mount>&, std::string_view absolutePath) {
    if (absolutePath.size() > 2 && isSeparator(absolutePath[0]) && isSeparator(absolutePath[1]))
        return {shareOf(absolutePath), "share", true, 0};
    if (absolutePath.size() < 2 || absolutePath[1] != ':')
        return {"/", {}, false, 0};
    const std::string drive = std::string(absolutePath.substr(0, 2)) + '/';
    return {drive, "drive", GetDriveTypeA(drive.c_str()) == DRIVE_REMOTE, 0};
}

} // namespace Kestrel::UI::Platform
