#include "thr_ThrSingletonRegistry.h"

#include "VEXCRT.h"
#include "VEXcrt_System.h"

#include <algorithm>
#include <limits>

template class thr_GlobalSingleton<thr_ThrSingletonRegistry>;

namespace
{
constexpr int MAX_PASSES = 8;
constexpr char SOURCE[] = "platform/thr/impl/thr_ThrSingletonRegistry";

void EndThread()
{
    thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().DestroyThreadObjects();
}
} // namespace

void thr_ThrSingletonRegistry::Register(Finalizer finalize)
{
    Add(finalize, thr_DESTRUCTED_LAST, /*movesKnown=*/false);
    if (!VEXCRT::RunAtThreadEnd(VEXCRT::ThreadEndStep::SINGLETONS, &EndThread)) {
        VEXCRT::_assert("VEXCRT::RunAtThreadEnd(SINGLETONS, &EndThread)", SOURCE, __LINE__);
    }
}

void thr_ThrSingletonRegistry::SetDestructLevel(Finalizer finalize, thr_ThreadObjectDestructLevel level)
{
    Add(finalize, level, /*movesKnown=*/true);
}

void thr_ThrSingletonRegistry::DestroyThreadObjects()
{
    for (int pass = 0; pass < MAX_PASSES; ++pass) {
        if (!DestroyOnce()) {
            return;
        }
    }
    VEXCRT::_assert("per-thread instances stop making each other anew", SOURCE, __LINE__);
}

bool thr_ThrSingletonRegistry::Entry::operator<(const Entry& other) const noexcept
{
    return level != other.level ? level > other.level : order < other.order;
}

void thr_ThrSingletonRegistry::Add(Finalizer finalize, std::int32_t level, bool movesKnown)
{
    {
        const std::lock_guard lock(m_mutex);
        const auto known = std::find_if(m_entries.begin(), m_entries.end(),
                                        [finalize](const Entry& entry) { return entry.finalize == finalize; });
        if (known != m_entries.end()) {
            if (movesKnown && known->level != level) {
                known->level = level;
                std::sort(m_entries.begin(), m_entries.end());
            }
            return;
        }
        const Entry entry{level, ++m_lastOrder, finalize};
        m_entries.insert(std::upper_bound(m_entries.begin(), m_entries.end(), entry), entry);
    }
    // Without the lock: the system's loader has one of its own, and may call code that registers.
    VEXCRT::KeepLoaded(reinterpret_cast<const void*>(finalize));
}

bool thr_ThrSingletonRegistry::Next(Entry& entry)
{
    const std::lock_guard lock(m_mutex);
    const auto next = std::upper_bound(m_entries.begin(), m_entries.end(), entry);
    if (next == m_entries.end()) {
        return false;
    }
    entry = *next;
    return true;
}

bool thr_ThrSingletonRegistry::DestroyOnce()
{
    bool isAnyDestroyed = false;
    for (Entry entry{std::numeric_limits<std::int32_t>::max(), 0, nullptr}; Next(entry);) {
        isAnyDestroyed |= entry.finalize() != 0;
    }
    return isAnyDestroyed;
}
