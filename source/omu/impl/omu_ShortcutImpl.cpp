#include "omu_ShortcutImpl.h"

omu_ShortcutImpl::omu_ShortcutImpl(const cow_String& name, const cow_String& path, omu_InterfaceObj* target)
    : m_name(name), m_path(path)
{
    if (target != nullptr) {
        m_target.emplace(*target);
    }
}

bool omu_ShortcutImpl::HasValue() const
{
    return m_target.has_value();
}

cow_String omu_ShortcutImpl::Name() const
{
    return m_name;
}

cow_String omu_ShortcutImpl::Path() const
{
    return m_path;
}

bool omu_ShortcutImpl::InModel() const
{
    return m_target.has_value() && m_target->IsAlive();
}

omu_Shortcut* omu_ShortcutImpl::Copy() const
{
    return new omu_ShortcutImpl(*this);
}
