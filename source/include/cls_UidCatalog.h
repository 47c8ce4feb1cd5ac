#pragma once

#include "VEXomu_export.h"
#include "cls_UidCatalogEntry.h"
#include "cls_UidCatalogEntryGroup.h"
#include "thr_ThreadHint.h"
#include "thr_ThreadSingleton.h"

#include <atomic>
#include <cstddef>
#include <memory>

class cls_UidCatalog;
extern template class VEXOMU_API thr_ThreadSingletonBase<cls_UidCatalog>;
extern template class VEXOMU_API thr_ThreadSingleton<cls_UidCatalog>;
VEXOMU_EXTERN_TEMPLATE(thr_ThreadHint<cls_UidCatalog>);

/// Hands out the entries behind the uids of one thread, and takes them back.
///
/// Ownership:  owns its groups. When the thread ends, groups with entries in use outlive the catalogue, on a list of the
///             process, until their last uid goes.
/// Threads:    one catalogue per thread, the last of the thread's singletons to go. A uid dropped on a foreign thread
///             while the catalogue lives waits for the catalogue's next allocation.
/// Complexity: O(1); memory is asked for once in 2048 entries. Freed entries are used again last in, first out: they are on
///             a stack, as they were when they came into use, so that taking one need not wait for what it says.
/// Errors:     AllocateEntry: std::bad_alloc.
class VEXOMU_API cls_UidCatalog : public thr_ThreadSingletonBase<cls_UidCatalog>
{
public:
    cls_UidCatalog(const cls_UidCatalog&) = delete;
    cls_UidCatalog& operator=(const cls_UidCatalog&) = delete;
    ~cls_UidCatalog();

    /// The calling thread's catalogue, made on first use.
    static cls_UidCatalog& OfThisThread();
    /// The calling thread's catalogue, or null while it has none.
    static cls_UidCatalog* FindOfThisThread() noexcept;
    /// The number of groups that outlived their catalogues, in the whole process: what keeps them is a uid that nobody
    /// released.
    static int CountOrphanedGroups();

    /// A new entry of the calling thread's catalogue, with one handle.
    static cls_UidCatalogEntry* NewEntry();
    /// Drops the only handle of an object without history on its own thread, as nearly every uid ends. False, and nothing
    /// done, for any other.
    static bool TakeBack(cls_UidCatalogEntry& entry) noexcept;

    /// A new entry with one handle.
    cls_UidCatalogEntry* AllocateEntry()
    {
        cls_UidCatalogEntry* entry = m_free[-1];
        if (entry == nullptr || m_dropped.load(std::memory_order_relaxed) != nullptr) [[unlikely]] {
            Refill();
            entry = m_free[-1];
        }
        --m_free;
        return entry;
    }
    /// Takes back an entry of this catalogue that has no handle and no history.
    void Free(cls_UidCatalogEntry* entry) noexcept
    {
        entry->InitInUse();
        *m_free++ = entry;
    }

private:
    friend class cls_UidCatalogEntry;
    friend class thr_ThreadSingleton<cls_UidCatalog>;

    cls_UidCatalog();
    static int Finalize();

    static int LowerElsewhere(cls_UidCatalogEntry& entry);
    static void FreeOrphan(cls_UidCatalogEntry& entry);

    void Refill();
    void AddGroup();
    void TakeBackDropped();
    bool RetireGroups(cls_UidCatalogEntryGroup*& unused) noexcept;

    cls_UidCatalogEntryGroup* m_groups = nullptr; // the newest one
    // The stack of free entries, each with one handle and no history: null, then the entries, of which the last is taken
    // first. There is room for all entries of the groups.
    std::unique_ptr<cls_UidCatalogEntry*[]> m_stack;
    std::size_t m_room = 0;
    std::size_t m_count = 0;                      // of entries
    cls_UidCatalogEntry* m_bottom = nullptr;      // the stack before there are groups
    cls_UidCatalogEntry** m_free = &m_bottom + 1; // behind the last
    // Entries whose last handle was dropped on another thread; written under thr_GlobalLock.
    std::atomic<cls_UidCatalogEntry*> m_dropped{nullptr};
};

inline cls_UidCatalogEntry* cls_UidCatalog::NewEntry()
{
    cls_UidCatalog* const here = thr_ThreadHint<cls_UidCatalog>::Get();
    if (here != nullptr) [[likely]] {
        return here->AllocateEntry();
    }
    return OfThisThread().AllocateEntry();
}

inline bool cls_UidCatalog::TakeBack(cls_UidCatalogEntry& entry) noexcept
{
    cls_UidCatalog* const here = thr_ThreadHint<cls_UidCatalog>::Get();
    // Only a handle can be copied: while there is just one, this one, no other thread can change the count.
    if (here != cls_UidCatalogEntryGroup::Of(&entry).m_owner.load(std::memory_order_relaxed) ||
        entry.m_word.load(std::memory_order_acquire) != 1) [[unlikely]] {
        return false;
    }
    *here->m_free++ = &entry;
    return true;
}
