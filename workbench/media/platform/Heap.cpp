#include "media/platform/Heap.h"

#include <cstdlib> // says which C library this is

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Kestrel::Workbench {

void setUpHeap() {
#ifdef __GLIBC__
    // Left to itself, the heap raises this limit up to 32 MiB when a large block is freed, puts the
    // next ones between small ones, and keeps what was freed below them.
    constexpr int largeBlock = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, largeBlock);
#endif
}

} // namespace Kestrel::Workbench
