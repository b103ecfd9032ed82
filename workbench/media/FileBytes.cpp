#include "media/FileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace Kestrel::Workbench {

FileBytes::FileBytes(const std::string& path)
    : m_file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}

FileBytes::~FileBytes() {
    if (m_file >= 0)
        ::close(m_file);
}

std::uint64_t FileBytes::size() const {
    struct stat status {};
    return m_file >= 0 && ::fstat(m_file, &status) == 0 ? std::uint64_t(status.st_size) : 0;
}

bool FileBytes::read(std::uint64_t offset, void* to, std::size_t bytes) const {
    return readSome(offset, to, bytes) == bytes;
}

std::size_t FileBytes::readSome(std::uint64_t offset, void* to, std::size_t bytes) const {
    std::size_t done = 0;
    while (m_file >= 0 && done < bytes) {
        const ssize_t count =
            ::pread(m_file, static_cast<std::byte*>(to) + done, bytes - done, off_t(offset + done));
        if (count > 0)
            done += std::size_t(count);
        else if (count == 0 || errno != EINTR)
            break;
    }
    return done;
}

} // namespace Kestrel::Workbench
