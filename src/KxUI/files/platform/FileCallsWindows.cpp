#include <KxUI/files/platform/FileCalls_p.h>

#include <io.h>
#include <windows.h>

namespace Kestrel::UI::Platform {
namespace {

int lastError() {
    return static_cast<int>(GetLastError());
}

} // namespace

Access queryAccess(const std::string& path) {
    constexpr int write = 2;
    constexpr int read = 4;
    const std::string name = fromUtf8(path);
    return {_access(name.c_str(), read) == 0, _access(name.c_str(), write) == 0};
}

int makeDirectory(const std::string& path) {
    return CreateDirectoryA(fromUtf8(path).c_str(), nullptr) ? 0 : lastError();
}

int renameToNew(const std::string& from, const std::string& to) {
    return MoveFileExA(fromUtf8(from).c_str(), fromUtf8(to).c_str(), 0) ? 0 : lastError();
}

} // namespace Kestrel::UI::Platform
