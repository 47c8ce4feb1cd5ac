#pragma once

#include "omu_InterfaceObj.h"
#include "omu_Shortcut.h"

/// A named member of a model, reached through a shortcut; scripts read its name.
///
/// Ownership:  shares the shortcut with copies.
/// Threads:    the thread of the kernel object.
class VEXOMU_API omu_MemberIntObj : public omu_InterfaceObj
{
public:
    /// Without a shortcut; its name is empty.
    omu_MemberIntObj();
    explicit omu_MemberIntObj(const omu_Shortcut& shortcut);

    omu_Primitive* Copy() const override;

    /// The member's name as a string value, which the caller owns.
    omu_Primitive* Name();
    /// Null when there is none.
    const omu_Shortcut* Shortcut() const noexcept { return m_shortcut.ConstGet(); }

private:
    explicit omu_MemberIntObj(omu_ShortcutHolder shortcut);

    omu_ShortcutHolder m_shortcut;
};
