#pragma once

#include "VEXomu_export.h"
#include "cls_UidCatalog.h"
#include "cls_UidCatalogEntry.h"

/// The identity of a persistent object: a counted handle on an entry of the uid catalogue of the thread that made it.
///
/// Ownership:  copies share the entry; the last one frees it and deletes the object's history.
/// Threads:    see cls_UidCatalogEntry: release a uid on the thread that allocated it, or after that thread has ended.
/// Complexity: one pointer; everything O(1), no allocation but once in 2048 entries. Taking one and dropping a sole one
///             are inlined, which ties users to the layout of catalogue, group and entry: build them anew with these.
/// Errors:     AllocateUid and NewUid: std::bad_alloc.
/// Example:    class Part { cls_Uid m_uid = cls_Uid::AllocateUid(); };
/// Avoid for:  naming objects across sessions; that is the stored record's own business.
class VEXOMU_API cls_Uid
{
public:
    /// A uid that equals no other.
    static cls_Uid AllocateUid() { return cls_Uid(); }

    /// Another handle on `entry`, which is in use.
    explicit cls_Uid(cls_UidCatalogEntry* entry) noexcept : m_entry(entry) { m_entry->RaiseRefCnt(); }
    cls_Uid(const cls_Uid& other) noexcept : cls_Uid(other.m_entry) {}
    cls_Uid& operator=(const cls_Uid& other);
    ~cls_Uid()
    {
        if (!cls_UidCatalog::TakeBack(*m_entry)) [[unlikely]] {
            m_entry->LowerSlowly();
        }
    }

    /// Gives up the present identity for a fresh one. The entry of a sole handle is freed, history and all, before the
    /// fresh one is taken.
    void NewUid();

    cls_UidCatalogEntry* Entry() const noexcept { return m_entry; }
    /// True for handles on the same entry.
    bool operator==(const cls_Uid&) const noexcept = default;

private:
    cls_Uid() : m_entry(cls_UidCatalog::NewEntry()) {}

    cls_UidCatalogEntry* m_entry; // never null; holds one count
};
