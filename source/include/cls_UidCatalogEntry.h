#pragma once

#include "VEXomu_export.h"
#include "cls_HistoryEntry.h"
#include "thr_RefCount.h"

#include <atomic>
#include <cstdint>

/// What a uid points to: the count of its handles and the head of the object's history.
///
/// Ownership:  stands in a cls_UidCatalogEntryGroup and is free or in use; deletes the history when the last handle goes.
/// Threads:    handles may be copied on any thread. Each is to be dropped on the thread whose catalogue made the entry:
///             elsewhere the drop is reported as an assertion, and the last one leaves entry and history to the owner.
///             After the owner's catalogue is gone, any thread may drop handles.
/// Complexity: O(1), no locked instruction for a sole handle or a process of one thread; a lock on foreign threads.
/// Avoid for:  identities; hold a cls_Uid.
class VEXOMU_API cls_UidCatalogEntry
{
public:
    cls_UidCatalogEntry(const cls_UidCatalogEntry&) = delete;
    cls_UidCatalogEntry& operator=(const cls_UidCatalogEntry&) = delete;

    /// Takes the entry into use: one handle, no history.
    void InitInUse() noexcept
    {
        m_word.store(1, std::memory_order_relaxed);
        m_history.Init();
    }

    /// The next free entry; only while this one is free.
    void SetNext(cls_UidCatalogEntry* entry) noexcept
    {
        m_word.store(reinterpret_cast<std::uintptr_t>(entry), std::memory_order_relaxed);
    }
    cls_UidCatalogEntry* GetNext() const noexcept
    {
        return reinterpret_cast<cls_UidCatalogEntry*>(m_word.load(std::memory_order_relaxed));
    }

    /// The number of handles; only while the entry is in use.
    int GetRefCnt() const noexcept { return static_cast<int>(m_word.load(std::memory_order_relaxed)); }

    void RaiseRefCnt() noexcept
    {
        if (thr_IsSingleThreaded()) {
            m_word.store(m_word.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        } else {
            m_word.fetch_add(1, std::memory_order_relaxed);
        }
    }
    /// Drops a handle and returns how many are left. The last one deletes the history in the order of the ring, then
    /// frees the entry.
    int LowerRefCnt();

    /// The head of the object's history: entries of the storage engine link themselves before it.
    cls_HistoryEntry& History() noexcept { return m_history; }
    const cls_HistoryEntry& History() const noexcept { return m_history; }

private:
    friend class cls_Uid;
    friend class cls_UidCatalog;
    friend class cls_UidCatalogEntryGroup;

    cls_UidCatalogEntry() noexcept = default;

    /// Where the calling thread drops the only handle and would take a new one: keeps the entry, without its history.
    /// False, and nothing done, for an entry that is shared or not this thread's.
    bool Renew();
    int LowerSlowly();
    std::uintptr_t Lower() noexcept;
    void DeleteHistory();

    std::atomic<std::uintptr_t> m_word{0}; // in use: count of handles; free: address of the next free entry
    cls_HistoryEntry m_history;
};
