#include "media/platform/BackgroundThread.h"

#ifdef __linux__
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace Kestrel::Workbench {

void workInBackground() {
#ifdef __linux__
    // There the niceness is that of a thread, not of the whole program.
    const auto thread = id_t(::syscall(SYS_gettid));
    constexpr int nicer = 5;
    ::setpriority(PRIO_PROCESS, thread, nicer);
#endif
}

} // namespace Kestrel::Workbench
