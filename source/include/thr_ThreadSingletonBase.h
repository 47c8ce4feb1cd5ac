#pragma once

#include "VEXCRT.h"
#include "VEXcrt_System.h"
#include "thr_GlobalLock.h"

#include <atomic>
#include <cstdint>

template <class Class> class thr_ThreadSingleton;

/// The base of a class T that has one instance for each thread; thr_ThreadSingleton<T> makes it.
///
/// Ownership:  each instance belongs to its thread, and goes when that thread ends or calls Finalize.
/// Threads:    any; no two threads meet in one instance. Only making and destroying one takes a lock.
/// Complexity: finding the instance is a few loads and one call.
/// Errors:     a second instance on a thread is reported by an assertion and becomes the thread's instance. When no
///             slot is left, that is reported too; an instance made then works, but is neither found again nor
///             destroyed.
/// Example:    class VEXOMU_API uti_Names : public thr_ThreadSingletonBase<uti_Names> with a private constructor that
///             calls SetDestructLevel(&uti_Names::Finalize, level) of the registry; the template lines as shown at
///             omi_SingletonBase, here for thr_ThreadSingletonBase and thr_ThreadSingleton.
template <class T> class thr_ThreadSingletonBase
{
public:
    thr_ThreadSingletonBase(const thr_ThreadSingletonBase&) = delete;
    thr_ThreadSingletonBase& operator=(const thr_ThreadSingletonBase&) = delete;

    /// Destroys the calling thread's instance; 1 if there was one, else 0.
    static int Finalize();

protected:
    thr_ThreadSingletonBase();
    ~thr_ThreadSingletonBase();

    /// The calling thread's instance, or null while it has none.
    static T* Instance();

    // Both change only under the process-wide lock, and are read without it. The index is reserved while the count is
    // above zero.
    static std::atomic<std::uint32_t> instanceTlsIndex;
    static std::atomic<std::int32_t> refCount; // instances, of all threads

private:
    friend class thr_ThreadSingleton<T>;
};

template <class T> std::atomic<std::uint32_t> thr_ThreadSingletonBase<T>::instanceTlsIndex{TLS_OUT_OF_INDEXES};

template <class T> std::atomic<std::int32_t> thr_ThreadSingletonBase<T>::refCount{0};

template <class T> int thr_ThreadSingletonBase<T>::Finalize()
{
    T* const instance = Instance();
    delete instance;
    return instance != nullptr;
}

template <class T> thr_ThreadSingletonBase<T>::thr_ThreadSingletonBase()
{
    {
        const thr_GlobalLock::Holder lock;
        if (instanceTlsIndex == TLS_OUT_OF_INDEXES) {
            instanceTlsIndex = VEXCRT::TlsAlloc();
        }
        ++refCount;
    }
    if (VEXCRT::TlsGetValue(instanceTlsIndex)) {
        VEXCRT::_assert("TlsGetValue(instanceTlsIndex) == NULL", "source/include/thr_ThreadSingletonBase", 170);
    }
    if (!VEXCRT::TlsSetValue(instanceTlsIndex, this)) {
        VEXCRT::_assert("TlsSetValue(instanceTlsIndex, this)", "source/include/thr_ThreadSingletonBase", __LINE__);
    }
}

// Here and not in Finalize, so that a constructor of T that throws leaves nothing behind.
template <class T> thr_ThreadSingletonBase<T>::~thr_ThreadSingletonBase()
{
    if (VEXCRT::TlsGetValue(instanceTlsIndex) == this) {
        VEXCRT::TlsSetValue(instanceTlsIndex, nullptr);
    }
    const thr_GlobalLock::Holder lock;
    if (--refCount == 0) {
        VEXCRT::TlsFree(instanceTlsIndex);
        instanceTlsIndex = TLS_OUT_OF_INDEXES;
    }
}

template <class T> T* thr_ThreadSingletonBase<T>::Instance()
{
    // A thread that has an instance keeps the index reserved; one that has none finds null at the index that belongs to
    // the count. An older index, which acquire rules out, may meanwhile be that of another class.
    return refCount.load(std::memory_order_acquire) < 1
               ? nullptr
               : static_cast<T*>(static_cast<thr_ThreadSingletonBase*>(
                     VEXCRT::TlsGetValue(instanceTlsIndex.load(std::memory_order_relaxed))));
}
