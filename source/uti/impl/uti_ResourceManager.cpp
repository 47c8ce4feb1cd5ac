#include "uti_ResourceManager.h"

#include "thr_GlobalSingleton.h"
#include "thr_ThrSingletonRegistry.h"

template class thr_ThreadSingletonBase<uti_ResourceManager>;
template class thr_ThreadSingleton<uti_ResourceManager>;

namespace
{

constexpr auto DESTRUCT_LEVEL = static_cast<thr_ThreadObjectDestructLevel>(18);

} // namespace

uti_ResourceManager::uti_ResourceManager()
{
    thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().SetDestructLevel(&Finalize, DESTRUCT_LEVEL);
}

cow_String uti_ResourceManager::Text(const char* label, const char* defaultText) const
{
    return m_lookup ? m_lookup(label, defaultText) : cow_String(defaultText);
}

int uti_ResourceManager::Finalize()
{
    return thr_ThreadSingletonBase<uti_ResourceManager>::Finalize();
}
