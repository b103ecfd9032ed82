#include <KxUI/files/platform/FileCalls_p.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Kestrel::UI::Platform {
namespace {

// Whether both names are the same entry, as where capitals do not tell names apart.
bool isSameEntry(const char* from, const char* to) {
    struct stat a {};
    struct stat b {};
    return ::lstat(from, &a) == 0 && ::lstat(to, &b) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino && (S_ISDIR(a.st_mode) || a.st_nlink == 1);
}

// For file systems that cannot refuse to replace: a second name fails when it is there.
int renameByLink(const char* from, const char* to) {
    if (::link(from, to) != 0)
        return errno;
    if (::unlink(from) == 0)
        return 0;
    const int error = errno;
    ::unlink(to);
    return error;
}

// What is made between the question and the renaming is lost; these file systems leave no other way.
int renameByAsking(const char* from, const char* to) {
    struct stat there {};
    if (::lstat(to, &there) == 0)
        return EEXIST;
    if (errno != ENOENT)
        return errno;
    return ::rename(from, to) == 0 ? 0 : errno;
}

} // namespace

Access queryAccess(const std::string& path) {
    const auto may = [&](int mode) {
        return ::faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
    };
    return {may(R_OK), may(W_OK)};
}

int makeDirectory(const std::string& path) {
    constexpr mode_t all = 0777; // less what the process's mask takes away
    return ::mkdir(path.c_str(), all) == 0 ? 0 : errno;
}

int renameToNew(const std::string& from, const std::string& to) {
    const char* const source = from.c_str();
    const char* const target = to.c_str();
    if (::renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE) == 0)
        return 0;
    int error = errno;
    if (error == EINVAL || error == ENOSYS || error == ENOTSUP)
        error = renameByLink(source, target);
    if (error == EPERM || error == ENOTSUP || error == EMLINK || error == ENOSYS)
        error = renameByAsking(source, target); // a directory, or where files have one name only
    if (error == EEXIST && isSameEntry(source, target))
        return ::rename(source, target) == 0 ? 0 : errno;
    return error;
}

} // namespace Kestrel::UI::Platform
