#pragma once

#include "VEXutl_export.h"

#include <cstddef>
#include <new>

namespace utl_detail
{
struct FreeBlock
{
    FreeBlock* next;
};

/// What a thread keeps of one size class.
struct FreeList
{
    FreeBlock* first = nullptr;
    std::size_t room = 0; // how many more blocks it may keep there
    FreeBlock* spare = nullptr;
    std::size_t spareCount = 0; // at least as many as are in `spare`; as many as make a batch go to the store
};

// The calling thread's lists, one for each class; never null.
#if defined(__ELF__)
[[gnu::tls_model("initial-exec")]] extern constinit thread_local VEXUTL_API FreeList* threadLists;
inline FreeList* ThreadLists() noexcept
{
    return threadLists;
}
#else
// No other library can use a thread's variable of a DLL.
VEXUTL_API FreeList* ThreadLists() noexcept;
#endif
} // namespace utl_detail

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
    static inline void* Allocate(std::size_t bytes);
    /// Takes back what Allocate(bytes) gave; null is allowed.
    static inline void Free(void* block, std::size_t bytes) noexcept;

private:
    static constexpr std::size_t GRAIN = 16;

    // Wraps around for no bytes at all, which is no class either.
    static std::size_t SizeClass(std::size_t bytes) noexcept { return (bytes - 1) / GRAIN; }
    // What the first list of the class cannot do.
    static void* AllocateOther(std::size_t bytes);
    static void FreeOther(void* block, std::size_t bytes) noexcept;
};

inline void* utl_BlockPool::Allocate(std::size_t bytes)
{
    const std::size_t sizeClass = SizeClass(bytes);
    if (sizeClass < MAX_POOLED_BYTES / GRAIN) {
        utl_detail::FreeList& list = utl_detail::ThreadLists()[sizeClass];
        if (utl_detail::FreeBlock* const block = list.first) {
            list.first = block->next;
            ++list.room;
            return block;
        }
    }
    return AllocateOther(bytes);
}

inline void utl_BlockPool::Free(void* block, std::size_t bytes) noexcept
{
    const std::size_t sizeClass = SizeClass(bytes);
    if (sizeClass < MAX_POOLED_BYTES / GRAIN && block != nullptr) {
        utl_detail::FreeList& list = utl_detail::ThreadLists()[sizeClass];
        if (list.room != 0) {
            --list.room;
            list.first = ::new (block) utl_detail::FreeBlock{list.first};
            return;
        }
    }
    FreeOther(block, bytes);
}
