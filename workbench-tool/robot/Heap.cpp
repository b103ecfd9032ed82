#include "robot/Heap.h"

#include <cstddef>

#ifdef __GLIBC__
#include <malloc.h>
#endif

// There when the program is built with AddressSanitizer, whose heap is its own.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace Kestrel::Workbench {

qint64 heapBytes() {
    if (__sanitizer_get_current_allocated_bytes)
        return qint64(__sanitizer_get_current_allocated_bytes());
#ifdef __GLIBC__
    const auto info = ::mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
#else
    return 0;
#endif
}

} // namespace Kestrel::Workbench
