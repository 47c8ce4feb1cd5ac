#pragma once

#include "VEXutl_export.h"

#include <cstddef>

/// Memory for the small blocks that live and die with every scripted call: values, the representations of lists and
/// maps. A freed block is kept by the freeing thread for the next request of its size class, so that a call in a loop
/// touches the general allocator only once.
///
/// Ownership:  whoever allocates frees, with the same size; on any thread.
/// Threads:    each thread keeps its own blocks; they go back to the general allocator when the thread ends, after the
///             thread's singletons are gone. Each size class keeps at most a stated number of blocks.
/// Complexity: a few loads and stores for sizes up to MAX_POOLED_BYTES; larger ones go straight to operator new.
/// Errors:     std::bad_alloc.
/// Under the sanitizers every request goes to operator new, so that they see each block's lifetime.
class VEXUTL_API utl_BlockPool
{
public:
    static constexpr std::size_t MAX_POOLED_BYTES = 256;

    static void* Allocate(std::size_t bytes);
    static void Free(void* block, std::size_t bytes) noexcept;
};
