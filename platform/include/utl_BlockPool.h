#pragma once

#include "VEXutl_export.h"

#include <cstddef>

/// Memory for the small blocks that live and die with every scripted call: values, the representations of lists and
/// maps. A freed block is kept by the freeing thread for the next request of its size class, so that a call in a loop
/// touches the general allocator only once.
///
/// Ownership:  whoever allocates frees, with the same size; on any thread.
/// Threads:    each thread keeps its own blocks, at most MAX_KEPT_BLOCKS and 4 KiB of a size class (16, 32, ... bytes).
///             What is more, and what is left when the thread ends after its singletons are gone, goes to a store for
///             all threads, which grows by 4 KiB at a time and never shrinks: as large as what was once in use.
/// Complexity: a few loads and stores for sizes up to MAX_POOLED_BYTES; larger ones go straight to operator new.
/// Errors:     std::bad_alloc.
/// Under the sanitizers every request goes to operator new, so that they see each block's lifetime.
class VEXUTL_API utl_BlockPool
{
public:
    static constexpr std::size_t MAX_POOLED_BYTES = 512;
    static constexpr std::size_t MAX_KEPT_BLOCKS = 256;

    /// Gives at least `bytes` bytes, aligned for every ordinary type; never null.
    static void* Allocate(std::size_t bytes);
    /// Takes back what Allocate(bytes) gave; null is allowed.
    static void Free(void* block, std::size_t bytes) noexcept;
};
