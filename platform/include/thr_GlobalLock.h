#pragma once

#include "VEXthr_export.h"
#include "omi_Singleton.h"

#include <mutex>

class thr_GlobalLock;
extern template class VEXTHR_API omi_SingletonBase<thr_GlobalLock>;
extern template class VEXTHR_API omi_Singleton<thr_GlobalLock>;

/// The one lock of the process for rare, short changes of shared state. It is recursive: its holder may lock it again.
///
/// Ownership: made by thr_initialize and never destroyed, since threads may end after everything else has.
/// Avoid for: anything done often, or that calls unknown code; all of the process waits meanwhile.
class VEXTHR_API thr_GlobalLock : public omi_SingletonBase<thr_GlobalLock>
{
public:
    /// Holds the lock for as long as it lives.
    class VEXTHR_API Holder
    {
    public:
        Holder();
        ~Holder();
        Holder(const Holder&) = delete;
        Holder& operator=(const Holder&) = delete;
    };

    void Lock();
    void Unlock();

private:
    friend class omi_Singleton<thr_GlobalLock>;
    friend class omi_SingletonBase<thr_GlobalLock>;

    thr_GlobalLock() = default;
    ~thr_GlobalLock() = default;

    std::recursive_mutex m_mutex;
};
