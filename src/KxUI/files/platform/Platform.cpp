#include <KxUI/files/platform/Platform_p.h>

#include <cstdlib>

namespace Kestrel::UI::Platform {

std::string joinedPath(const std::string& directory, std::string_view name) {
    std::string path = directory;
    if (!path.empty() && path.back() != '/')
        path += '/';
    return path += toUtf8(name);
}

std::string absolutePath(const std::string& path) {
    return isAbsolute(path) ? path : joinedPath(currentDirectory(), fromUtf8(path));
}

std::string homeDirectory() {
    const char* const home = std::getenv("HOME");
    return home ? toUtf8(home) : std::string();
}

bool isDirectory(const std::string& path, const Entry& entry) {
    if (entry.type != EntryType::Unknown)
        return entry.type == EntryType::Directory;
    Status status;
    return queryStatus(joinedPath(path, entry.view()), status) && status.isDirectory();
}

} // namespace Kestrel::UI::Platform
