#pragma once

#include "VEXthr_export.h"
#include "thr_GlobalSingleton.h"

#include <cstdint>
#include <mutex>
#include <vector>

/// When a class's per-thread instance is destroyed, against those of other classes: higher levels first.
enum thr_ThreadObjectDestructLevel : std::int32_t
{
    thr_DESTRUCTED_LAST = 0
};

class thr_ThrSingletonRegistry;
extern template class VEXTHR_API thr_GlobalSingleton<thr_ThrSingletonRegistry>;

/// Destroys the per-thread instances of all classes: each on its own thread, when that thread ends or asks for it.
///
/// A class is known by finalisers: functions that destroy the calling thread's instance and return 1, or return 0 when
/// it has none. The levels follow the layers, because what stands above may hold what stands below: the higher level
/// goes first. Within a level, the class first registered goes first.
///
/// Threads:    any. A finaliser is called without a lock held. Threads the library did not start are covered too; the
///             main thread's end is that of the process, so it has to ask (thr_finalize does).
/// Complexity: Register and SetDestructLevel O(classes), DestroyThreadObjects O(classes), one lock each.
/// Errors:     a thread whose end cannot be watched is reported by an assertion; its instances are not destroyed.
/// References: the library of a finaliser stays loaded from then on.
class VEXTHR_API thr_ThrSingletonRegistry
{
public:
    using Finalizer = int (*)();

    /// Makes the class known, at level thr_DESTRUCTED_LAST unless it has one, and has the calling thread's instances
    /// destroyed when that thread ends.
    void Register(Finalizer finalize);

    /// Moves a class to a level; makes it known first if need be. A class may be known by two functions of which only
    /// one has a level: the one that is called first destroys the instance.
    void SetDestructLevel(Finalizer finalize, thr_ThreadObjectDestructLevel level);

    /// Destroys the calling thread's instances; also those made meanwhile, as long as that settles.
    void DestroyThreadObjects();

private:
    friend class thr_GlobalSingleton<thr_ThrSingletonRegistry>;

    struct Entry
    {
        std::int32_t level;
        std::uint32_t order; // counts the finalisers from 1
        Finalizer finalize;

        bool operator<(const Entry& other) const noexcept;
    };

    thr_ThrSingletonRegistry() = default;

    void Add(Finalizer finalize, std::int32_t level, bool movesKnown);
    /// Replaces `entry` by the one after it; false when there is none.
    bool Next(Entry& entry);
    /// Calls each finaliser once; true when an instance went.
    bool DestroyOnce();

    std::mutex m_mutex;
    std::vector<Entry> m_entries; // guarded by m_mutex; sorted: first destroyed, first
    std::uint32_t m_lastOrder = 0;
};
