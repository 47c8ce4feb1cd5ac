#include "utl_BlockPool.h"

#include "VEXcrt_System.h"
#include "thr_GlobalSingleton.h"

#include <atomic>
#include <mutex>
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

/// The first block of a batch: a list of blocks that no thread keeps.
struct Batch : FreeBlock
{
    Batch* nextBatch;
};
static_assert(sizeof(Batch) <= GRAIN);

// Blocks come and go between threads, and from the general allocator, as lists of about this many bytes.
constexpr std::size_t BATCH_BYTES = 4096;

constexpr std::size_t BlockBytes(std::size_t sizeClass) noexcept
{
    return (sizeClass + 1) * GRAIN;
}

constexpr std::size_t BatchBlocks(std::size_t sizeClass) noexcept
{
    return BATCH_BYTES / BlockBytes(sizeClass);
}

/// The blocks that no thread keeps, for all threads, to the end of the last one.
class Store
{
public:
    void Give(FreeBlock* blocks, std::size_t sizeClass) noexcept
    {
        FreeBlock* const others = blocks->next;
        const std::lock_guard lock(m_mutex);
        m_batches[sizeClass] = new (blocks) Batch{{others}, m_batches[sizeClass]};
    }
    /// A list of blocks, never empty; new ones when none are left.
    FreeBlock* Take(std::size_t sizeClass)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (Batch* const batch = m_batches[sizeClass]) {
                m_batches[sizeClass] = batch->nextBatch;
                return batch;
            }
        }
        const std::size_t bytes = BlockBytes(sizeClass);
        auto* const memory = static_cast<std::byte*>(::operator new(BatchBlocks(sizeClass) * bytes));
        FreeBlock* first = nullptr;
        for (std::size_t i = BatchBlocks(sizeClass); i-- != 0;) {
            first = new (memory + i * bytes) FreeBlock{first};
        }
        return first;
    }

private:
    std::mutex m_mutex;
    Batch* m_batches[CLASSES] = {};
};

Store& TheStore()
{
    return thr_GlobalSingleton<Store>::Instance();
}

struct FreeList
{
    FreeBlock* first = nullptr;
    std::size_t room = 0; // how many more blocks it may keep there
    FreeBlock* spare = nullptr;
    std::size_t spareCount = 0; // at least as many as are in `spare`; as many as make a batch go to the store
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
    for (std::size_t sizeClass = 0; sizeClass < CLASSES; ++sizeClass) {
        for (FreeBlock* const batch : {pool.lists[sizeClass].first, pool.lists[sizeClass].spare}) {
            if (batch) {
                TheStore().Give(batch, sizeClass);
            }
        }
    }
    delete &pool;
}

/// Gives the calling thread its pool; without one every block comes from the store and goes back there.
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

/// The list of the thread's own pool, or null when it has none; starts one if it never had.
FreeList* OwnList(std::size_t sizeClass) noexcept
{
    if (&Current() == &noPoolYet) {
        StartPool();
    }
    const bool isOwn = &Current() != &noPoolYet && &Current() != &noPoolAnyMore;
    return isOwn ? &Current().lists[sizeClass] : nullptr;
}

[[gnu::noinline]] void* AllocateFromSpare(std::size_t sizeClass)
{
    FreeList* const list = OwnList(sizeClass);
    if (!list) {
        FreeBlock* const block = TheStore().Take(sizeClass);
        if (block->next) {
            TheStore().Give(block->next, sizeClass);
        }
        return block;
    }
    if (!list->spare) {
        list->spare = TheStore().Take(sizeClass);
        list->spareCount = BatchBlocks(sizeClass);
    }
    FreeBlock* const block = list->spare;
    list->spare = block->next;
    list->spareCount -= list->spareCount != 0;
    return block;
}

[[gnu::noinline]] void FreeWithoutRoom(void* block, std::size_t sizeClass) noexcept
{
    FreeList* const list = OwnList(sizeClass);
    if (!list) {
        TheStore().Give(new (block) FreeBlock{nullptr}, sizeClass);
    } else if (list->room != 0) {
        --list->room;
        list->first = new (block) FreeBlock{list->first};
    } else {
        list->spare = new (block) FreeBlock{list->spare};
        if (++list->spareCount >= BatchBlocks(sizeClass)) {
            TheStore().Give(std::exchange(list->spare, nullptr), sizeClass);
            list->spareCount = 0;
        }
    }
}
} // namespace

// Defined for users of the DLL who bind references to them.
constexpr std::size_t utl_BlockPool::MAX_POOLED_BYTES;
constexpr std::size_t utl_BlockPool::MAX_KEPT_BLOCKS;

void* utl_BlockPool::Allocate(std::size_t bytes)
{
    const std::size_t sizeClass = SizeClass(bytes);
    if (!IsPooled(sizeClass)) {
        return ::operator new(bytes);
    }
    FreeList& list = Current().lists[sizeClass];
    FreeBlock* const block = list.first;
    if (!block) {
        return AllocateFromSpare(sizeClass);
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
