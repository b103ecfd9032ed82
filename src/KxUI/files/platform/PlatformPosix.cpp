#include <KxUI/files/platform/Platform_p.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Kestrel::UI::Platform {
namespace {

// A backslash is a legal byte of a name here, so a path is tried as it stands first; only when
// there is no such file do backslashes separate.
template <class Call>
auto tryBothSeparators(const std::string& path, Call call) {
    const auto result = call(path.c_str());
    if (result >= 0 || errno != ENOENT || path.find('\\') == std::string::npos)
        return result;
    std::string slashed = path;
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
    return call(slashed.c_str());
}

EntryType entryType(unsigned char type) {
    switch (type) {
    case DT_DIR:
        return EntryType::Directory;
    case DT_LNK:
    case DT_UNKNOWN:
        return EntryType::Unknown;
    default:
        return EntryType::Other;
    }
}

} // namespace

int readDirectory(const std::string& path, Listing& listing) {
    listing.entries.clear();
    const int directory = tryBothSeparators(path.empty() ? "." : path, [](const char* each) {
        return ::open(each, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    });
    if (directory < 0)
        return errno;

    // Straight from the kernel in large helpings: it names the type of each entry, so that no
    // regular file needs a status call.
    constexpr std::size_t bufferSize = 64 * 1024;
    const std::unique_ptr<char[]> buffer(new char[bufferSize]);
    int error = 0;
    for (;;) {
        const ssize_t filled = ::getdents64(directory, buffer.get(), bufferSize);
        if (filled < 0 && errno == EINTR)
            continue;
        if (filled <= 0) {
            error = filled < 0 ? errno : 0;
            break;
        }
        for (ssize_t at = 0; at < filled;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer.get() + at);
            listing.entries.emplace_back(listing.names.add(entry->d_name),
                                         entryType(entry->d_type));
            at += entry->d_reclen;
        }
    }
    ::close(directory);
    if (error != 0)
        listing.entries.clear();
    return error;
}

bool queryStatus(const std::string& path, Status& status) {
    struct stat record {};
    if (tryBothSeparators(path, [&](const char* each) { return ::stat(each, &record); }) < 0)
        return false;
    status.mode = record.st_mode;
    status.size = static_cast<std::uint64_t>(record.st_size);
    status.accessed = record.st_atime;
    status.modified = record.st_mtime;
    status.changed = record.st_ctime;
    return true;
}

bool isWritable(const std::string& path) {
    return tryBothSeparators(path, [](const char* each) { return ::access(each, W_OK); }) == 0;
}

bool isAbsolute(std::string_view path) {
    return !path.empty() && path.front() == '/';
}

std::string currentDirectory() {
    std::string path(256, '\0');
    while (!::getcwd(path.data(), path.size())) {
        if (errno != ERANGE)
            return {};
        path.resize(path.size() * 2);
    }
    path.resize(path.find('\0'));
    return path;
}

std::string toUtf8(std::string_view name) {
    return std::string(name);
}

std::string fromUtf8(std::string_view name) {
    return std::string(name);
}

} // namespace Kestrel::UI::Platform
