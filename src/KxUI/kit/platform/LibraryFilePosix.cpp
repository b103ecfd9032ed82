#include <KxUI/kit/platform/LibraryFile_p.h>

#include <dlfcn.h>

namespace Kestrel::UI {

std::filesystem::path libraryFile() {
    Dl_info info;
    if (!dladdr(reinterpret_cast<const void*>(&libraryFile), &info) || !info.dli_fname)
        return {};
    // Without links, which may lead here from anywhere.
    std::error_code error;
    const std::filesystem::path file = std::filesystem::canonical(info.dli_fname, error);
    return error ? std::filesystem::path() : file;
}

} // namespace Kestrel::UI
