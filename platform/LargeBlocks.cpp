#include "platform/LargeBlocks.h"

#include <cstdlib> // says which library this is

#ifdef __GLIBC__
#include <malloc.h>
#endif

void keepLargeBlocksApart()
{
#ifdef __GLIBC__
    // In bytes. Smaller ones are copied within a millisecond; and to map each of them anew costs
    // more than it saves.
    constexpr int large = 4 * 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, large);
#endif
}
