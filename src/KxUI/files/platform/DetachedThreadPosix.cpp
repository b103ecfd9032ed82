#include <KxUI/files/platform/DetachedThread_p.h>

#include <csignal>
#include <dlfcn.h>
#include <pthread.h>
#include <system_error>
#include <thread>

namespace Kestrel::UI::Platform {

bool startDetached(std::function<void()> work) {
    // A thread begins with the signals of its maker.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    bool started = true;
    try {
        std::thread(std::move(work)).detach();
    } catch (const std::system_error&) {
        started = false;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return started;
}

void pinLibrary() {
    Dl_info where;
    if (dladdr(reinterpret_cast<const void*>(&pinLibrary), &where) == 0 || !where.dli_fname)
        return;
    // Not to be unloaded any more, and not looked for on the disk: it is there. A handle for good.
    static_cast<void>(dlopen(where.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE));
}

} // namespace Kestrel::UI::Platform
