#pragma once

#include "VEXomu_export.h"

/// A node of a circular, doubly linked list: what a storage engine hangs on an object to remember a change of it. The
/// head of each ring stands in the object's catalogue entry.
///
/// Ownership:  a ring owns nothing; the entries on an object are deleted with the object's last uid. A derived class
///             unlinks itself in its destructor: this one cannot, since the head dies without a ring to leave.
/// Threads:    a ring belongs to one thread.
/// Complexity: O(1) each.
class VEXOMU_API cls_HistoryEntry
{
public:
    cls_HistoryEntry() noexcept { Init(); }
    cls_HistoryEntry(const cls_HistoryEntry&) = delete;
    cls_HistoryEntry& operator=(const cls_HistoryEntry&) = delete;
    virtual ~cls_HistoryEntry();

    /// Links the entry to itself, whatever it was linked to before; the former neighbours are not told.
    void Init() noexcept
    {
        m_next = this;
        m_previous = this;
    }
    /// The entry that follows; the entry itself when it is alone.
    cls_HistoryEntry* Next() const noexcept { return m_next; }

protected:
    /// Inserts this entry, which is alone, immediately before `before`.
    void Link(cls_HistoryEntry* before) noexcept;
    /// Joins the neighbours and leaves this entry alone.
    void UnLink() noexcept;

private:
    cls_HistoryEntry* m_next;
    cls_HistoryEntry* m_previous;
};
