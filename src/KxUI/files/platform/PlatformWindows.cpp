#include <KxUI/files/platform/Platform_p.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <direct.h>
#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <windows.h>

namespace Kestrel::UI::Platform {
namespace {

constexpr std::size_t pathLimit = 260;
constexpr UINT utf8CodePage = 65001;

std::wstring widened(std::string_view text, UINT codePage) {
    if (text.empty())
        return {};
    const int length = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), needed);
    return wide;
}

std::string narrowed(const std::wstring& wide, UINT codePage) {
    if (wide.empty())
        return {};
    const int length = static_cast<int>(wide.size());
    const int needed =
        WideCharToMultiByte(codePage, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(codePage, 0, wide.data(), length, text.data(), needed, nullptr, nullptr);
    return text;
}

// The ANSI calls below take paths of the process's code page and of limited length.
std::string ansiPath(std::string_view path) {
    std::string text = fromUtf8(path);
    if (text.size() >= pathLimit)
        text.resize(pathLimit - 1);
    return text;
}

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

EntryType entryType(DWORD attributes) {
    if (attributes & FILE_ATTRIBUTE_REPARSE_POINT)
        return EntryType::Unknown;
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? EntryType::Directory : EntryType::Other;
}

} // namespace

int readDirectory(const std::string& path, Listing& listing) {
    listing.entries.clear();
    // The path tells whether a separator is there: a byte of its converted form may only look so,
    // as the last one of a Japanese name.
    std::string filter = path.empty() ? "." : ansiPath(path);
    if (path.empty() || !isSeparator(path.back()))
        filter += '/';
    filter += '*';

    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(filter.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return static_cast<int>(GetLastError());
    do {
        listing.entries.emplace_back(listing.names.add(found.cFileName),
                                     entryType(found.dwFileAttributes));
    } while (FindNextFileA(search, &found));
    const DWORD error = GetLastError();
    FindClose(search);
    if (error == ERROR_NO_MORE_FILES)
        return 0;
    listing.entries.clear();
    return static_cast<int>(error);
}

bool queryStatus(const std::string& path, Status& status) {
    // The call knows no directory by a path that ends with a separator, unless it is a root.
    std::string_view asked = path;
    while (asked.size() > 1 && isSeparator(asked.back()) && asked[asked.size() - 2] != ':')
        asked.remove_suffix(1);
    struct _stat64i32 record {};
    if (_stat64i32(ansiPath(asked).c_str(), &record) != 0)
        return false;
    if (asked.size() < path.size() && (record.st_mode & _S_IFDIR) == 0)
        return false;
    status.mode = record.st_mode;
    status.size = static_cast<std::uint32_t>(record.st_size);
    status.accessed = record.st_atime;
    status.modified = record.st_mtime;
    status.changed = record.st_ctime;
    return true;
}

bool isWritable(const std::string& path) {
    constexpr int writePermission = 2;
    return _access(ansiPath(path).c_str(), writePermission) == 0;
}

bool isAbsolute(std::string_view path) {
    return (!path.empty() && isSeparator(path[0])) || (path.size() > 1 && path[1] == ':');
}

std::string currentDirectory() {
    std::string path(pathLimit, '\0');
    while (!_getcwd(path.data(), static_cast<int>(path.size()))) {
        if (errno != ERANGE)
            return {};
        path.resize(path.size() * 2);
    }
    path.resize(std::strlen(path.c_str()));
    return toUtf8(path);
}

std::string toUtf8(std::string_view name) {
    if (GetACP() == utf8CodePage)
        return std::string(name);
    return narrowed(widened(name, CP_ACP), CP_UTF8);
}

std::string fromUtf8(std::string_view name) {
    if (GetACP() == utf8CodePage)
        return std::string(name);
    return narrowed(widened(name, CP_UTF8), GetACP());
}

} // namespace Kestrel::UI::Platform
