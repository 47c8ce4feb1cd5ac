#include "utl_BlockPool.h"

#include "VEXcrt_System.h"

#include <atomic>
#include <new>
#include <utility>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define UTL_PASS_THROUGH true
#elif defined(__has_feature)
#define UTL_PASS_THROUGH (__has_feature(address_sanitizer) || __has_feature(thread_sanitizer))
#else
#define UTL_PASS_THROUGH false
#endif

namespace
{
constexpr std::size_t GRAIN = 16;
constexpr std::size_t CLASSES = utl_BlockPool::MAX_POOLED_BYTES / GRAIN;
static_assert(__STDCPP_DEFAULT_NEW_ALIGNMENT__ <= GRAIN);

struct FreeBlock
{
    FreeBlock* next;
};

struct FreeList
{
    FreeBlock* first = nullptr;
    std::size_t room = 0; // how many more blocks it may keep
};

struct Pool
{
    FreeList lists[CLASSES];
};

// What a thread has before its own pool and after it: without blocks and without room, so never written.
constinit Pool noPoolYet;
constinit Pool noPoolAnyMore;

#if defined(_WIN32)
// A thread_local variable would be gone before the thread's end is told to its callbacks.
constinit std::atomic<std::uint32_t> poolIndex{TLS_OUT_OF_INDEXES};

inline Pool& Current() noexcept
{
    void* const pool = VEXCRT::TlsGetValue(poolIndex.load(std::memory_order_relaxed));
    return pool ? *static_cast<Pool*>(pool) : noPoolYet;
}

bool SetCurrent(Pool& pool) noexcept
{
    if (poolIndex == TLS_OUT_OF_INDEXES) {
        const std::uint32_t index = VEXCRT::TlsAlloc();
        std::uint32_t none = TLS_OUT_OF_INDEXES;
        if (!poolIndex.compare_exchange_strong(none, index)) {
            VEXCRT::TlsFree(index); // another thread was faster
        }
    }
    return VEXCRT::TlsSetValue(poolIndex, &pool);
}
#else
[[gnu::tls_model("initial-exec")]] constinit thread_local Pool* current = &noPoolYet;

inline Pool& Current() noexcept
{
    return *current;
}

bool SetCurrent(Pool& pool) noexcept
{
    current = &pool;
    return true;
}
#endif

void EndPool()
{
    Pool& pool = Current();
    SetCurrent(noPoolAnyMore);
    for (const FreeList& list : pool.lists) {
        for (FreeBlock* block = list.first; block;) {
            ::operator delete(std::exchange(block, block->next));
        }
    }
    delete &pool;
}

/// Gives the calling thread its pool; without one every block goes back to the general allocator.
void StartPool() noexcept
{
    Pool* const pool = new (std::nothrow) Pool;
    if (!pool) {
        return;
    }
    for (FreeList& list : pool->lists) {
        list.room = utl_BlockPool::MAX_KEPT_BLOCKS;
    }
    if (!SetCurrent(*pool)) {
        delete pool;
    } else if (!VEXCRT::RunAtThreadEnd(VEXCRT::ThreadEndStep::MEMORY, &EndPool)) {
        EndPool();
    }
}

inline bool IsPooled(std::size_t sizeClass) noexcept
{
    return !UTL_PASS_THROUGH && sizeClass < CLASSES;
}

// Wraps around for no bytes at all, which is no class either.
inline std::size_t SizeClass(std::size_t bytes) noexcept
{
    return (bytes - 1) / GRAIN;
}

[[gnu::noinline]] void FreeWithoutRoom(void* block, std::size_t sizeClass) noexcept
{
    if (&Current() == &noPoolYet) {
        StartPool();
    }
    FreeList& list = Current().lists[sizeClass];
    if (list.room == 0) {
        ::operator delete(block);
        return;
    }
    --list.room;
    list.first = new (block) FreeBlock{list.first};
}
} // namespace

void* utl_BlockPool::Allocate(std::size_t bytes)
{
    const std::size_t sizeClass = SizeClass(bytes);
    if (!IsPooled(sizeClass)) {
        return ::operator new(bytes);
    }
    FreeList& list = Current().lists[sizeClass];
    FreeBlock* const block = list.first;
    if (!block) {
        return ::operator new((sizeClass + 1) * GRAIN);
    }
    list.first = block->next;
    ++list.room;
    return block;
}

void utl_BlockPool::Free(void* block, std::size_t bytes) noexcept
{
    const std::size_t sizeClass = SizeClass(bytes);
    if (!IsPooled(sizeClass)) {
        ::operator delete(block);
        return;
    }
    if (!block) {
        return;
    }
    FreeList& list = Current().lists[sizeClass];
    if (list.room == 0) {
        FreeWithoutRoom(block, sizeClass);
        return;
    }
    --list.room;
    list.first = new (block) FreeBlock{list.first};
}
