#pragma once

#include "VEXomu_export.h"
#include "cow_ArrayCOW.h"
#include "cow_String.h"
#include "thr_RefCount.h"

/// A named handle to an object of a model, which may be there or not. The order of the virtual operations is promised.
///
/// Ownership:  a value; holders share it (omu_ShortcutHolder).
/// Threads:    as the object it names.
class VEXOMU_API omu_Shortcut
{
public:
    virtual ~omu_Shortcut() = default;

    /// Whether it was given an object to refer to.
    virtual bool HasValue() const = 0;
    virtual cow_String Name() const = 0;
    /// Where scripts find the object.
    virtual cow_String Path() const = 0;
    /// Whether the object is still part of its model.
    virtual bool InModel() const = 0;
    /// A new shortcut that the caller owns.
    virtual omu_Shortcut* Copy() const = 0;

    /// Equal when their paths are: they lead a script to the same object.
    friend bool operator==(const omu_Shortcut& left, const omu_Shortcut& right) { return left.Path() == right.Path(); }

    // What cow_ArrayCOW needs of an object that carries its own count.
    void CowRaise() const noexcept { m_holders.Raise(); }
    bool CowLower() const noexcept { return m_holders.Lower(); }
    bool CowIsUnique() const noexcept { return m_holders.IsUnique(); }

protected:
    omu_Shortcut() noexcept = default;
    omu_Shortcut(const omu_Shortcut&) noexcept {}
    omu_Shortcut& operator=(const omu_Shortcut&) noexcept { return *this; }

private:
    mutable thr_RefCount m_holders{0};
};

using omu_ShortcutHolder = cow_ArrayCOW<omu_Shortcut>;
