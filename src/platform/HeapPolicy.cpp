#include "HeapPolicy.h"

#include <malloc.h>

void HeapPolicy::returnLargeBlocks() {
#ifdef __GLIBC__
    constexpr int largeBlock = 512 << 10;
    constexpr int heaps = 2;
    ::mallopt(M_MMAP_THRESHOLD, largeBlock);
    ::mallopt(M_ARENA_MAX, heaps);
#endif
}
