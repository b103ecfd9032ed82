#include <KxUI/files/platform/DetachedThread_p.h>

#include <system_error>
#include <thread>
#include <windows.h>

namespace Kestrel::UI::Platform {

bool startDetached(std::function<void()> work) {
    try {
        std::thread(std::move(work)).detach();
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void pinLibrary() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCSTR>(&pinLibrary), &module);
}

} // namespace Kestrel::UI::Platform
