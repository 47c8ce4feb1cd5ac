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

    /// The next entry of a chain; only while this one is not in use.
    void SetNext(cls_UidCatalogEntry* entry) noexcept
    {
        m_word.store(reinterpret_cast<std::uintptr_t>(entry), std::memory_order_relaxed);
    }
    cls_UidCatalogEntry* GetNext() const noexcept
    {
        return reinterpret_cast<cls_UidCatalogEntry*>(m_word.load(std::memory_order_relaxed));
    }

    /// The number of handles; only while the entry is in use.
    int GetRefCnt() const noexcept { return static_cast<int>(CountIn(m_word.load(std::memory_order_relaxed))); }

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
    cls_HistoryEntry& History() noexcept
    {
        m_word.fetch_or(MAY_HAVE_HISTORY, std::memory_order_relaxed);
        return m_history;
    }
    const cls_HistoryEntry& History() const noexcept { return m_history; }

private:
    friend class cls_Uid;
    friend class cls_UidCatalog;
    friend class cls_UidCatalogEntryGroup;

    // Beside the count, so that a handle that goes has one word to look at.
    static constexpr std::uintptr_t MAY_HAVE_HISTORY = ~(UINTPTR_MAX >> 1);
    static std::uintptr_t CountIn(std::uintptr_t word) noexcept { return word & ~MAY_HAVE_HISTORY; }

    cls_UidCatalogEntry() noexcept = default;

    /// Where the calling thread drops the only handle and would take a new one: keeps the entry, without its history.
    /// False, and nothing done, for an entry that is shared or not this thread's.
    bool Renew();
    int LowerSlowly();
    std::uintptr_t Lower() noexcept;
    void DeleteHistory();

    // In use: count of handles, and MAY_HAVE_HISTORY. Else address of the next entry, in a new group and among the dropped.
    std::atomic<std::uintptr_t> m_word{0};
    cls_HistoryEntry m_history;
};
