#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace Kestrel::UI::Platform {
namespace {

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

int descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

void store(const struct stat& record, EntryStatus& status) {
    status.mode = record.st_mode;
    status.size = static_cast<std::uint64_t>(record.st_size);
    status.accessed = record.st_atime;
    status.modified = record.st_mtime;
    status.nanoseconds = record.st_mtim.tv_nsec;
    status.changed = record.st_ctime;
    status.device = record.st_dev;
}

// Without a trip to the server when its answer is at hand; what knows no statx is asked the old
// way.
int statOf(int directory, const char* name, bool follow, bool cached, EntryStatus& status) {
    static std::atomic<bool> hasStatx{true};
    const int link = follow ? 0 : AT_SYMLINK_NOFOLLOW;
    if (cached && hasStatx.load(std::memory_order_relaxed)) {
        struct statx record {};
        const int flags = link | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
        if (::statx(directory, name, flags, STATX_BASIC_STATS, &record) == 0) {
            status.mode = record.stx_mode;
            status.size = record.stx_size;
            status.accessed = record.stx_atime.tv_sec;
            status.modified = record.stx_mtime.tv_sec;
            status.nanoseconds = record.stx_mtime.tv_nsec;
            status.changed = record.stx_ctime.tv_sec;
            status.device = makedev(record.stx_dev_major, record.stx_dev_minor);
            return 0;
        }
        if (errno != ENOSYS && errno != EINVAL && errno != EPERM)
            return errno;
        if (errno == ENOSYS)
            hasStatx.store(false, std::memory_order_relaxed);
    }
    struct stat record {};
    if (::fstatat(directory, name, &record, link | AT_NO_AUTOMOUNT) != 0)
        return errno;
    store(record, status);
    return 0;
}

} // namespace

Failure failureOf(int error) {
    switch (error) {
    case 0:
        return Failure::None;
    case ENOENT:
        return Failure::NotFound;
    case ENOTDIR:
        return Failure::NotADirectory;
    case EACCES:
    case EPERM:
        return Failure::Denied;
    case ETIMEDOUT:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ENOTCONN:
    case ECONNREFUSED:
    case ENETUNREACH:
        return Failure::Unreachable;
    case ESTALE:
        return Failure::Stale;
    case ELOOP:
        return Failure::LinkLoop;
    case EMFILE:
    case ENFILE:
        return Failure::TooManyOpenFiles;
    case ENOMEM:
        return Failure::OutOfMemory;
    case ENAMETOOLONG:
        return Failure::NameTooLong;
    case EEXIST:
    case ENOTEMPTY:
        return Failure::Exists;
    case ENOSPC:
    case EDQUOT:
        return Failure::DiskFull;
    case EROFS:
        return Failure::ReadOnly;
    case EXDEV:
        return Failure::OtherDisk;
    default:
        return Failure::Other;
    }
}

int errorOf(Failure failure) {
    for (const int error : {0, ENOENT, ENOTDIR, EACCES, ETIMEDOUT, ESTALE, ELOOP, EMFILE, ENOMEM,
                            ENAMETOOLONG, EEXIST, ENOSPC, EROFS, EXDEV}) {
        if (failureOf(error) == failure)
            return error;
    }
    return EIO;
}

DirectoryHandle::~DirectoryHandle() {
    close();
}

int DirectoryHandle::open(const std::string& path) {
    close();
    // A pipe in the place of the directory must not be waited for.
    do
        m_handle = ::open(path.empty() ? "." : path.c_str(),
                          O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    while (m_handle < 0 && errno == EINTR);
    return m_handle < 0 ? errno : 0;
}

void DirectoryHandle::close() {
    if (isOpen())
        ::close(descriptor(m_handle));
    m_handle = -1;
}

int DirectoryHandle::status(EntryStatus& status) const {
    struct stat record {};
    if (::fstat(descriptor(m_handle), &record) != 0)
        return errno;
    store(record, status);
    return 0;
}

int readDirectory(DirectoryHandle& directory, Listing& listing, ReadProgress& progress) {
    constexpr std::size_t bufferSize = 64 * 1024;
    const std::unique_ptr<char[]> buffer(new char[bufferSize]);
    for (;;) {
        const ssize_t filled =
            ::getdents64(descriptor(directory.m_handle), buffer.get(), bufferSize);
        if (filled < 0 && errno == EINTR)
            continue;
        if (filled <= 0)
            return filled < 0 ? errno : 0;
        for (ssize_t at = 0; at < filled;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer.get() + at);
            listing.entries.emplace_back(listing.names.add(entry->d_name),
                                         entryType(entry->d_type));
            at += entry->d_reclen;
        }
        if (!progress.block(listing))
            return 0;
    }
}

int queryStatusAt(const DirectoryHandle& directory, const char* name, bool cached,
                  EntryStatus& status) {
    const int at = descriptor(directory.m_handle);
    status = {};
    if (const int error = statOf(at, name, false, cached, status); error != 0)
        return error;
    if (!S_ISLNK(status.mode))
        return 0;
    EntryStatus target;
    target.isLink = status.isLink = true;
    if (const int error = statOf(at, name, true, cached, target); error == 0)
        status = target;
    else if (error == ENOENT || error == ENOTDIR || error == ELOOP)
        status.isBrokenLink = true;
    else
        return error;
    return 0;
}

int queryPath(const std::string& path, EntryStatus& status) {
    status = {};
    struct stat record {};
    if (::lstat(path.c_str(), &record) != 0)
        return errno;
    store(record, status);
    const bool isLink = S_ISLNK(record.st_mode);
    status.isLink = isLink;
    // A directory may be a place to be mounted: following it sees to that.
    if (!isLink && !S_ISDIR(record.st_mode))
        return 0;
    if (::stat(path.c_str(), &record) == 0)
        store(record, status);
    else if (isLink && (errno == ENOENT || errno == ENOTDIR || errno == ELOOP))
        status.isBrokenLink = true;
    else
        return errno;
    return 0;
}

bool backslashSeparates() {
    return false;
}

std::string cleanPath(std::string_view path) {
    std::string clean;
    while (!path.empty()) {
        const std::string_view component = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(component.size() + 1, path.size()));
        if (component == "..")
            clean.resize(std::min(clean.rfind('/'), clean.size()));
        else if (!component.empty() && component != ".")
            clean.append("/").append(component);
    }
    return clean.empty() ? "/" : clean;
}

} // namespace Kestrel::UI::Platform
