#pragma once

#include "VEXomu_export.h"
#include "cow_Map.h"
#include "omi_Singleton.h"
#include "omu_Primitive.h"

class omu_TypeRegistryCache;
extern template class VEXOMU_API omi_SingletonBase<omu_TypeRegistryCache>;
extern template class VEXOMU_API omi_Singleton<omu_TypeRegistryCache>;

/// The type names exposed to scripts, and beside each name a value that the application may keep there.
///
/// Ownership:  owns the values.
/// Threads:    filled at start-up by one thread; reading is safe from any thread afterwards.
/// Complexity: O(log names).
/// References: what Find() returns dies with the next Keep() under its name and with the cache.
class VEXOMU_API omu_TypeRegistryCache : public omi_SingletonBase<omu_TypeRegistryCache>
{
public:
    /// Adds `name` without a value; false, and nothing changes, when it is registered already.
    bool RegisterTypeName(const cow_String& name);
    bool IsRegistered(const cow_String& name) const { return m_values.IsMember(name); }

    /// Takes over `value` (may be null) as what is kept under `name`, and deletes what was kept there before.
    void Keep(const cow_String& name, omu_Primitive* value);
    /// What is kept under `name`; null when nothing is.
    const omu_Primitive* Find(const cow_String& name) const;

private:
    friend class omi_Singleton<omu_TypeRegistryCache>;
    friend class omi_SingletonBase<omu_TypeRegistryCache>;
    omu_TypeRegistryCache() = default;
    ~omu_TypeRegistryCache();

    void ClearCache();

    cow_Map<cow_String, omu_Primitive*> m_values; // owned; null: the name alone
};
