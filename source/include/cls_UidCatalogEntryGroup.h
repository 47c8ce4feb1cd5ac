#pragma once

#include "VEXomu_export.h"
#include "cls_UidCatalogEntry.h"

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>

class cls_UidCatalog;

/// One pool of catalogue entries, and the catalogue they belong to.
///
/// Ownership:  made by new; owns its entries and the groups made before it. An entry finds its group by its address,
///             which is why a group stands at a multiple of a power of two that is no smaller than the group.
/// Threads:    belongs to its catalogue's thread; owner and count of uses change under thr_GlobalLock.
class VEXOMU_API cls_UidCatalogEntryGroup
{
public:
    static constexpr int ENTRIES = 2048;

    /// Every entry is free and names the one after it, the last one none.
    explicit cls_UidCatalogEntryGroup(cls_UidCatalogEntryGroup* previous) noexcept;
    cls_UidCatalogEntryGroup(const cls_UidCatalogEntryGroup&) = delete;
    cls_UidCatalogEntryGroup& operator=(const cls_UidCatalogEntryGroup&) = delete;
    /// Deletes the previous groups first.
    ~cls_UidCatalogEntryGroup();

    cls_UidCatalogEntry* First() noexcept { return m_entries; }
    /// The group in which `entry` stands.
    static cls_UidCatalogEntryGroup& Of(const cls_UidCatalogEntry* entry) noexcept;
    /// The catalogue that hands out the entries; null once it is gone.
    cls_UidCatalog* Owner() const noexcept
    {
        void* const owner = m_owner.load(std::memory_order_relaxed);
        return owner != this ? static_cast<cls_UidCatalog*>(owner) : nullptr;
    }

    static void* operator new(std::size_t bytes);
    static void operator delete(void* block) noexcept;

private:
    friend class cls_UidCatalog;

    cls_UidCatalogEntryGroup* m_previous;
    std::atomic<void*> m_owner{this}; // or the group itself: never null, as the catalogue of a thread without one is
    int m_inUse = 0;                  // counted only when the catalogue is gone
    cls_UidCatalogEntry m_entries[ENTRIES];
};

inline cls_UidCatalogEntryGroup& cls_UidCatalogEntryGroup::Of(const cls_UidCatalogEntry* entry) noexcept
{
    constexpr std::uintptr_t ALIGNMENT = std::bit_ceil(sizeof(cls_UidCatalogEntryGroup));
    return *reinterpret_cast<cls_UidCatalogEntryGroup*>(reinterpret_cast<std::uintptr_t>(entry) & ~(ALIGNMENT - 1));
}
