#include "uti_ResourceManager.h"

#include "thr_GlobalSingleton.h"
#include "thr_ThrSingletonRegistry.h"

#include <mutex>

template class thr_ThreadSingletonBase<uti_ResourceManager>;
template class thr_ThreadSingleton<uti_ResourceManager>;

namespace
{

constexpr auto DESTRUCT_LEVEL = static_cast<thr_ThreadObjectDestructLevel>(18);

/// What new threads start with.
struct ProcessLookup
{
    std::mutex mutex;
    uti_ResourceManager::Lookup lookup;
};

ProcessLookup& TheProcessLookup()
{
    static auto* const instance = new ProcessLookup; // never destroyed: threads may start until the very end
    return *instance;
}

} // namespace

uti_ResourceManager::uti_ResourceManager()
{
    thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().SetDestructLevel(&Finalize, DESTRUCT_LEVEL);
    ProcessLookup& process = TheProcessLookup();
    const std::lock_guard lock(process.mutex);
    m_lookup = process.lookup;
}

cow_String uti_ResourceManager::Text(const char* label, const char* defaultText) const
{
    return m_lookup ? m_lookup(label, defaultText) : cow_String(defaultText);
}

void uti_ResourceManager::InstallForNewThreads(Lookup lookup)
{
    ProcessLookup& process = TheProcessLookup();
    const std::lock_guard lock(process.mutex);
    process.lookup.swap(lookup);
}

int uti_ResourceManager::Finalize()
{
    return thr_ThreadSingletonBase<uti_ResourceManager>::Finalize();
}
