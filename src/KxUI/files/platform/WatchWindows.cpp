#include <KxUI/files/platform/Watch_p.h>

#include <windows.h>

namespace Kestrel::UI::Platform {

// Not watched here: who wants to know asks for the directory's time now and then.
int watchDirectory(const std::string&, std::function<void()>, std::int64_t&) {
    return ERROR_NOT_SUPPORTED;
}

void unwatchDirectory(std::int64_t) {}

} // namespace Kestrel::UI::Platform
