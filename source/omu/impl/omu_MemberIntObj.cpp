#include "omu_MemberIntObj.h"

#include "omu_PrimString.h"

#include <utility>

omu_MemberIntObj::omu_MemberIntObj() : omu_MemberIntObj(omu_ShortcutHolder()) {}

omu_MemberIntObj::omu_MemberIntObj(const omu_Shortcut& shortcut) : omu_MemberIntObj(omu_ShortcutHolder(shortcut.Copy()))
{}

omu_MemberIntObj::omu_MemberIntObj(omu_ShortcutHolder shortcut) : m_shortcut(std::move(shortcut))
{
    static constexpr memberTable members[] = {
        {"name", "The member's name.", omu_AsGetter<&omu_MemberIntObj::Name>, nullptr},
        {},
    };
    DescribeType("BrenowMemberObject", nullptr, members);
}

omu_Primitive* omu_MemberIntObj::Copy() const
{
    return new omu_MemberIntObj(*this);
}

omu_Primitive* omu_MemberIntObj::Name()
{
    return new omu_PrimString(m_shortcut.IsNull() ? cow_String() : m_shortcut->Name());
}
