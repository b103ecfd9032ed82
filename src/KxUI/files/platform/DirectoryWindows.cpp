#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>
#include <sys/stat.h>
#include <windows.h>

namespace Kestrel::UI::Platform {
namespace {

// A name or a path in the process's code page, as the calls of this backend take them.
std::string filterOf(const std::string& path) {
    std::string filter = fromUtf8(path.empty() ? "." : path);
    if (path.empty() || (path.back() != '/' && path.back() != '\\'))
        filter += '/';
    return filter += '*';
}

EntryType entryType(DWORD attributes) {
    if (attributes & FILE_ATTRIBUTE_REPARSE_POINT)
        return EntryType::Unknown;
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? EntryType::Directory : EntryType::Other;
}

// From tenths of microseconds since 1601 to seconds since 1970.
std::int64_t secondsOf(const FILETIME& time) {
    constexpr std::int64_t yearsBetween = 11644473600;
    const auto ticks = (std::int64_t{time.dwHighDateTime} << 32) + time.dwLowDateTime;
    return ticks == 0 ? 0 : ticks / 10000000 - yearsBetween;
}

int statusOf(const std::string& path, EntryStatus& status) {
    WIN32_FILE_ATTRIBUTE_DATA told;
    status = {};
    if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &told))
        return static_cast<int>(GetLastError());
    const bool isDirectory = (told.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    status.mode = isDirectory ? _S_IFDIR : _S_IFREG;
    status.size = (std::uint64_t{told.nFileSizeHigh} << 32) + told.nFileSizeLow;
    status.accessed = secondsOf(told.ftLastAccessTime);
    status.modified = secondsOf(told.ftLastWriteTime);
    status.nanoseconds = std::int64_t{told.ftLastWriteTime.dwLowDateTime} % 10000000 * 100;
    status.changed = secondsOf(told.ftCreationTime);
    status.isLink = (told.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return 0;
}

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

// The part of a path that `..` does not lead out of: a drive, or a server and its share.
std::size_t rootLength(std::string_view path) {
    if (path.size() > 1 && path[1] == ':')
        return 2;
    if (path.size() < 2 || !isSeparator(path[0]) || !isSeparator(path[1]))
        return 0;
    const std::size_t server = path.find_first_of("/\\", 2);
    return server == std::string_view::npos
               ? path.size()
               : std::min(path.find_first_of("/\\", server + 1), path.size());
}

} // namespace

Failure failureOf(int error) {
    switch (error) {
    case ERROR_SUCCESS:
        return Failure::None;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_INVALID_DRIVE:
        return Failure::NotFound;
    case ERROR_DIRECTORY:
        return Failure::NotADirectory;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        return Failure::Denied;
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_NETNAME_DELETED:
    case ERROR_NETWORK_UNREACHABLE:
    case ERROR_HOST_UNREACHABLE:
    case ERROR_SEM_TIMEOUT:
    case ERROR_NOT_READY:
        return Failure::Unreachable;
    case ERROR_CANT_RESOLVE_FILENAME:
        return Failure::LinkLoop;
    case ERROR_TOO_MANY_OPEN_FILES:
        return Failure::TooManyOpenFiles;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
        return Failure::OutOfMemory;
    case ERROR_FILENAME_EXCED_RANGE:
        return Failure::NameTooLong;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
    case ERROR_DIR_NOT_EMPTY:
        return Failure::Exists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return Failure::DiskFull;
    case ERROR_WRITE_PROTECT:
        return Failure::ReadOnly;
    case ERROR_NOT_SAME_DEVICE:
        return Failure::OtherDisk;
    default:
        return Failure::Other;
    }
}

int errorOf(Failure failure) {
    for (const int error :
         {ERROR_SUCCESS, ERROR_FILE_NOT_FOUND, ERROR_DIRECTORY, ERROR_ACCESS_DENIED,
          ERROR_BAD_NETPATH, ERROR_CANT_RESOLVE_FILENAME, ERROR_TOO_MANY_OPEN_FILES,
          ERROR_NOT_ENOUGH_MEMORY, ERROR_FILENAME_EXCED_RANGE, ERROR_ALREADY_EXISTS,
          ERROR_DISK_FULL, ERROR_WRITE_PROTECT, ERROR_NOT_SAME_DEVICE}) {
        if (failureOf(error) == failure)
            return error;
    }
    return ERROR_READ_FAULT;
}

DirectoryHandle::~DirectoryHandle() {
    close();
}

// The search begins here, so that a directory which cannot be read is known at once. Its first
// entry is the directory itself, or a file in the root of a drive: it is found once more by the
// search that reads.
int DirectoryHandle::open(const std::string& path) {
    close();
    WIN32_FIND_DATAA first;
    const HANDLE search = FindFirstFileA(filterOf(path).c_str(), &first);
    if (search == INVALID_HANDLE_VALUE)
        return static_cast<int>(GetLastError());
    FindClose(search);
    m_path = path.empty() ? "." : path;
    m_handle = 0;
    return 0;
}

void DirectoryHandle::close() {
    m_handle = -1;
}

int DirectoryHandle::status(EntryStatus& status) const {
    return statusOf(fromUtf8(m_path), status);
}

int readDirectory(DirectoryHandle& directory, Listing& listing, ReadProgress& progress) {
    constexpr std::size_t blockSize = 1024;
    WIN32_FIND_DATAA found;
    // Without the short names, and in large helpings from a server.
    const HANDLE search =
        FindFirstFileExA(filterOf(directory.m_path).c_str(), FindExInfoBasic, &found,
                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE)
        return static_cast<int>(GetLastError());
    bool goesOn = true;
    do {
        listing.entries.emplace_back(listing.names.add(found.cFileName),
                                     entryType(found.dwFileAttributes));
        listing.statuses.push_back({(std::uint64_t{found.nFileSizeHigh} << 32) + found.nFileSizeLow,
                                    secondsOf(found.ftLastWriteTime)});
        if (listing.entries.size() % blockSize == 0)
            goesOn = progress.block(listing);
    } while (goesOn && FindNextFileA(search, &found));
    const DWORD error = goesOn ? GetLastError() : ERROR_NO_MORE_FILES;
    FindClose(search);
    if (error != ERROR_NO_MORE_FILES)
        return static_cast<int>(error);
    if (goesOn)
        progress.block(listing);
    return 0;
}

int queryStatusAt(const DirectoryHandle& directory, const char* name, bool, EntryStatus& status) {
    return statusOf(fromUtf8(joinedPath(directory.m_path, "")) + name, status);
}

int queryPath(const std::string& path, EntryStatus& status) {
    return statusOf(fromUtf8(path), status);
}

bool backslashSeparates() {
    return true;
}

std::string cleanPath(std::string_view path) {
    std::string clean(path.substr(0, rootLength(path)));
    const std::size_t root = clean.size();
    path.remove_prefix(root);
    while (!path.empty()) {
        const std::string_view component = path.substr(0, path.find_first_of("/\\"));
        path.remove_prefix(std::min(component.size() + 1, path.size()));
        if (component == "..")
            clean.resize(std::max(root, std::min(clean.rfind('/'), clean.size())));
        else if (!component.empty() && component != ".")
            clean.append("/").append(component);
    }
    return clean.size() == root ? clean + '/' : clean;
}

} // namespace Kestrel::UI::Platform
