#pragma once

#include "VEXomu_export.h"
#include "cls_UidCatalogEntry.h"
#include "cls_UidCatalogEntryGroup.h"
#include "thr_ThreadHint.h"
#include "thr_ThreadSingleton.h"

#include <atomic>

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
/// Complexity: O(1); memory is asked for once in 2048 entries. Freed entries are used again last in, first out.
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
        if (m_free == nullptr || m_dropped.load(std::memory_order_relaxed) != nullptr) {
            Refill();
        }
        cls_UidCatalogEntry* const entry = m_free;
        m_free = entry->GetNext();
        entry->InitInUse();
        return entry;
    }
    /// Takes back an entry of this catalogue that has no handle and no history.
    void Free(cls_UidCatalogEntry* entry) noexcept
    {
        entry->SetNext(m_free);
        m_free = entry;
    }

private:
    friend class cls_UidCatalogEntry;
    friend class thr_ThreadSingleton<cls_UidCatalog>;

    cls_UidCatalog();
    static int Finalize();

    static int LowerElsewhere(cls_UidCatalogEntry& entry);
    static void FreeOrphan(cls_UidCatalogEntry& entry);

    void Refill();
    void TakeBackDropped();
    bool RetireGroups(cls_UidCatalogEntryGroup*& unused) noexcept;

    cls_UidCatalogEntryGroup* m_groups = nullptr; // the newest one
    cls_UidCatalogEntry* m_free = nullptr;
    // Entries whose last handle was dropped on another thread; written under thr_GlobalLock.
    std::atomic<cls_UidCatalogEntry*> m_dropped{nullptr};
};

inline cls_UidCatalogEntry* cls_UidCatalog::NewEntry()
{
    cls_UidCatalog* const here = thr_ThreadHint<cls_UidCatalog>::Get();
    return (here != nullptr ? *here : OfThisThread()).AllocateEntry();
}

inline bool cls_UidCatalog::TakeBack(cls_UidCatalogEntry& entry) noexcept
{
    cls_UidCatalog* const here = thr_ThreadHint<cls_UidCatalog>::Get();
    // Only a handle can be copied: while there is just one, this one, no other thread can change the count.
    if (here == nullptr || here != cls_UidCatalogEntryGroup::Of(&entry).Owner() ||
        entry.m_word.load(std::memory_order_acquire) != 1 || entry.m_history.Next() != &entry.m_history) {
        return false;
    }
    here->Free(&entry);
    return true;
}
