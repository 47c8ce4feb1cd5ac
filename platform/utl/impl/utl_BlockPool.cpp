#include "utl_BlockPool.h"

#include "VEXcrt_System.h"
#include "thr_GlobalSingleton.h"

#include <atomic>
#include <mutex>
#include <new>
#include <span>
#include <utility>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define UTL_PASS_THROUGH true
#elif defined(__has_feature)
#define UTL_PASS_THROUGH (__has_feature(address_sanitizer) || __has_feature(thread_sanitizer))
#else
#define UTL_PASS_THROUGH false
#endif

using utl_detail::FreeBlock;
using utl_detail::FreeList;

namespace
{
constexpr std::size_t GRAIN = 16;
constexpr std::size_t CLASSES = utl_BlockPool::MAX_POOLED_BYTES / GRAIN;
static_assert(__STDCPP_DEFAULT_NEW_ALIGNMENT__ <= GRAIN);

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

// What a thread has before lists of its own and after them: without blocks and without room, so never written.
constinit FreeList noListsYet[CLASSES];
constinit FreeList noListsAnyMore[CLASSES];
} // namespace

#if defined(_WIN32)
namespace
{
// A thread_local variable would be gone before the thread's end is told to its callbacks.
constinit std::atomic<std::uint32_t> listsIndex{TLS_OUT_OF_INDEXES};

bool SetThreadLists(FreeList* lists) noexcept
{
    if (listsIndex == TLS_OUT_OF_INDEXES) {
        const std::uint32_t index = VEXCRT::TlsAlloc();
        std::uint32_t none = TLS_OUT_OF_INDEXES;
        if (!listsIndex.compare_exchange_strong(none, index)) {
            VEXCRT::TlsFree(index); // another thread was faster
        }
    }
    return VEXCRT::TlsSetValue(listsIndex, lists);
}
} // namespace

FreeList* utl_detail::ThreadLists() noexcept
{
    void* const lists = VEXCRT::TlsGetValue(listsIndex.load(std::memory_order_relaxed));
    return lists ? static_cast<FreeList*>(lists) : noListsYet;
}
#else
constinit thread_local FreeList* utl_detail::threadLists = noListsYet;

namespace
{
bool SetThreadLists(FreeList* lists) noexcept
{
    utl_detail::threadLists = lists;
    return true;
}
} // namespace
#endif

namespace
{
void EndLists()
{
    FreeList* const lists = utl_detail::ThreadLists();
    SetThreadLists(noListsAnyMore);
    for (std::size_t sizeClass = 0; sizeClass < CLASSES; ++sizeClass) {
        for (FreeBlock* const batch : {lists[sizeClass].first, lists[sizeClass].spare}) {
            if (batch) {
                TheStore().Give(batch, sizeClass);
            }
        }
    }
    delete[] lists;
}

/// Gives the calling thread its lists; without them every block comes from the store and goes back there.
void StartLists() noexcept
{
    auto* const lists = new (std::nothrow) FreeList[CLASSES];
    if (!lists) {
        return;
    }
    for (FreeList& list : std::span(lists, CLASSES)) {
        list.room = utl_BlockPool::MAX_KEPT_BLOCKS;
    }
    if (!SetThreadLists(lists)) {
        delete[] lists;
    } else if (!VEXCRT::RunAtThreadEnd(VEXCRT::ThreadEndStep::MEMORY, &EndLists)) {
        EndLists();
    }
}

bool IsPooled(std::size_t sizeClass) noexcept
{
    return !UTL_PASS_THROUGH && sizeClass < CLASSES;
}

/// The list of the thread's own, or null when it has none; starts them if it never had any.
FreeList* OwnList(std::size_t sizeClass) noexcept
{
    if (utl_detail::ThreadLists() == noListsYet) {
        StartLists();
    }
    FreeList* const lists = utl_detail::ThreadLists();
    return lists != noListsYet && lists != noListsAnyMore ? &lists[sizeClass] : nullptr;
}

void* AllocateFromSpare(std::size_t sizeClass)
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

void FreeWithoutRoom(void* block, std::size_t sizeClass) noexcept
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

void* utl_BlockPool::AllocateOther(std::size_t bytes)
{
    const std::size_t sizeClass = SizeClass(bytes);
    return IsPooled(sizeClass) ? AllocateFromSpare(sizeClass) : ::operator new(bytes);
}

void utl_BlockPool::FreeOther(void* block, std::size_t bytes) noexcept
{
    const std::size_t sizeClass = SizeClass(bytes);
    if (!IsPooled(sizeClass)) {
        ::operator delete(block);
    } else if (block) {
        FreeWithoutRoom(block, sizeClass);
    }
}
