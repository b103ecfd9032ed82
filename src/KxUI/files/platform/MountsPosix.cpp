#include <KxUI/files/platform/Mounts_p.h>

#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace Kestrel::UI::Platform {

std::vector<Mount> mounts() {
    const int file = ::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return {};
    std::string text;
    char buffer[4096];
    ssize_t filled = 0;
    while ((filled = ::read(file, buffer, sizeof buffer)) > 0)
        text.append(buffer, static_cast<std::size_t>(filled));
    ::close(file);
    return parseMounts(text);
}

std::uint64_t deviceNumber(std::uint32_t major, std::uint32_t minor) {
    return makedev(major, minor);
}

Mount mountOf(const std::vector<Mount>& mounts, std::string_view absolutePath) {
    Mount best{"/", {}, false, 0};
    std::size_t length = 0;
    for (const Mount& mount : mounts) {
        if (mount.point.size() > length && liesUnder(absolutePath, mount.point)) {
            best = mount;
            length = mount.point.size();
        }
    }
    return best;
}

} // namespace Kestrel::UI::Platform
