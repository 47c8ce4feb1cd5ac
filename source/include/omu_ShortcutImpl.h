#pragma once

#include "omu_ObjectRef.h"
#include "omu_Shortcut.h"

#include <optional>

/// A shortcut to a kernel object, which it notices to be gone. While the object lives it is in the model.
///
/// Ownership:  refers to the object, never keeps it alive; copies share name and path.
class VEXOMU_API omu_ShortcutImpl final : public omu_Shortcut
{
public:
    /// `target` may be null: the object is not there (yet).
    omu_ShortcutImpl(const cow_String& name, const cow_String& path, omu_InterfaceObj* target);

    bool HasValue() const override;
    cow_String Name() const override;
    cow_String Path() const override;
    bool InModel() const override;
    omu_Shortcut* Copy() const override;

private:
    cow_String m_name;
    cow_String m_path;
    std::optional<omu_ObjectRef> m_target;
};
