#pragma once

#include "VEXomu_export.h"

/// A node of a circular, doubly linked list of objects with changes that are not stored yet.
///
/// Ownership:  a ring owns nothing; a node leaves its ring when it is destroyed. A copy starts alone, and assignment
///             leaves both rings as they are.
/// Threads:    a ring belongs to one thread.
/// Complexity: O(1) each.
class VEXOMU_API cls_PC
{
public:
    cls_PC() noexcept : m_next(this), m_previous(this) {}
    cls_PC(const cls_PC&) noexcept : cls_PC() {}
    cls_PC& operator=(const cls_PC&) noexcept { return *this; }
    virtual ~cls_PC();

    /// Writes the changes to the store. Here an assertion: a plain node has nothing to write.
    virtual void Flush() const;

    /// Puts `node` at the tail of the ring that this node heads, taking it off the ring it is on.
    void Link(cls_PC* node) noexcept;
    /// The node that follows; the node itself when it is alone.
    cls_PC* Next() const noexcept { return m_next; }

    /// Both do nothing; they are promised.
    void Check() {}
    void Display() {}

protected:
    /// Joins the neighbours and leaves this node alone.
    void Unlink() noexcept;

private:
    cls_PC* m_next;
    cls_PC* m_previous;
};
