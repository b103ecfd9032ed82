#include <KxUI/kit/platform/LibraryFile_p.h>

#include <string>

#include <windows.h>

namespace Kestrel::UI {

std::filesystem::path libraryFile() {
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<const wchar_t*>(&libraryFile), &module))
        return {};
    std::wstring name(32768, L'\0'); // the longest that there is
    name.resize(GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

} // namespace Kestrel::UI
