#include "omu_TypeRegistryCache.h"

#include <utility>

template class omi_SingletonBase<omu_TypeRegistryCache>;
template class omi_Singleton<omu_TypeRegistryCache>;

omu_TypeRegistryCache::~omu_TypeRegistryCache()
{
    ClearCache();
}

bool omu_TypeRegistryCache::RegisterTypeName(const cow_String& name)
{
    if (IsRegistered(name)) {
        return false;
    }
    m_values.Insert(name, nullptr);
    return true;
}

void omu_TypeRegistryCache::Keep(const cow_String& name, omu_Primitive* value)
{
    RegisterTypeName(name);
    delete std::exchange(*m_values.Get(name), value);
}

const omu_Primitive* omu_TypeRegistryCache::Find(const cow_String& name) const
{
    omu_Primitive* const* const value = m_values.Find(name);
    return value != nullptr ? *value : nullptr;
}

void omu_TypeRegistryCache::ClearCache()
{
    for (const auto& [name, value] : m_values) {
        delete value;
    }
    m_values.Clear();
}
