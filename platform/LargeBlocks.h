#pragma once

/// Has the allocator keep each large block of memory as a mapping of its own, which grows without
/// being copied: a reply of dozens of megabytes does so on the main thread. Left alone, glibc gives
/// that up for blocks as large as one that was freed before. For the beginning of main(); elsewhere
/// than with glibc it does nothing.
void keepLargeBlocksApart();
