#include "platform/LargeBlocks.h"

#include <cstdlib> // says which library this is

#ifdef __GLIBC__
#include <malloc.h>
#endif

void keepLargeBlocksApart()
{
#ifdef __GLIBC__
    // In bytes: what glibc itself begins with. A greater one keeps what a list was decoded with
    // resident, half a megabyte of it with 1,000 events.
    constexpr int large = 128 * 1024;
    mallopt(M_MMAP_THRESHOLD, large);
#endif
}
