#pragma once

#include "fem_Stored.h"

#include "cls_Uid.h"
#include "omu_InterfaceObj.h"
#include "omu_PrimString.h"

/// What lies under its name in a repository of its owner, and shows itself to scripts as the path that leads there.
/// `Base` is the kind of interface object that it is.
///
/// Ownership:  owned by the repository; refers to its owner, which outlives it.
/// Threads:    the thread that made it: its identity is given back there.
template <class Base> class fem_Named : public Base
{
public:
    const cow_String& Name() const noexcept { return m_name; }
    /// Its identity in the store.
    const cls_Uid& Uid() const noexcept { return m_uid; }
    /// For the repository alone, which keeps the names different.
    void SetName(const cow_String& name) { m_name = name; }

    cow_String AsString(int) const override { return Repr(); }
    /// The name of a constant stands there as text, too: it is the same key, and a journal need not define it.
    cow_String Repr() const override
    {
        return m_owner.Repr() + "." + m_member + "[" + omu_PrimString(m_name).AsString(0) + "]";
    }
    /// Null: it stays the one of its owner; scripts get references to it.
    omu_Primitive* Copy() const override { return nullptr; }

protected:
    /// `member` is the owner's, a literal, by which scripts reach the repository.
    fem_Named(const omu_InterfaceObj& owner, const char* member, const cow_String& name,
              const cls_Uid& uid = cls_Uid::AllocateUid())
        : m_owner(owner), m_member(member), m_name(name), m_uid(uid)
    {}

    omu_Primitive* GetName() { return new omu_PrimString(m_name); }

private:
    const omu_InterfaceObj& m_owner;
    const char* m_member;
    cow_String m_name;
    cls_Uid m_uid;
};
