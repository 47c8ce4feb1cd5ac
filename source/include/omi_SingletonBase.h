#pragma once

#include "VEXCRT.h"

/// The base of a class T that has one instance for the whole process; omi_Singleton<T> makes it.
///
/// Ownership: the instance is destroyed by Finalize only, never by the end of the program.
/// Threads:   no lock is taken: the first use and Finalize must not meet any other use. Module start-up and
///            shut-down are the places for them.
/// Errors:    a second instance is reported by an assertion and becomes the instance; the first is left to its maker.
/// Example:   class rgx_Cache;
///            extern template class VEXOMU_API omi_SingletonBase<rgx_Cache>; // before rgx_Cache is defined, so that
///            extern template class VEXOMU_API omi_Singleton<rgx_Cache>;     // all libraries share one instance
///            class VEXOMU_API rgx_Cache : public omi_SingletonBase<rgx_Cache>
///            { friend class omi_Singleton<rgx_Cache>; friend class omi_SingletonBase<rgx_Cache>; rgx_Cache(); ... };
///            In rgx_Cache.cpp: template class omi_SingletonBase<rgx_Cache>; template class omi_Singleton<rgx_Cache>;
template <class T> class omi_SingletonBase
{
public:
    omi_SingletonBase(const omi_SingletonBase&) = delete;
    omi_SingletonBase& operator=(const omi_SingletonBase&) = delete;

    /// The instance, or null while there is none.
    static T* Instance();

    /// Destroys the instance, if there is one; the next omi_Singleton<T>::Instance() makes a new one.
    static void Finalize();

protected:
    omi_SingletonBase();
    ~omi_SingletonBase();

    static T* instance;
};

template <class T> T* omi_SingletonBase<T>::instance = nullptr;

template <class T> T* omi_SingletonBase<T>::Instance()
{
    return instance;
}

template <class T> void omi_SingletonBase<T>::Finalize()
{
    delete instance;
    instance = nullptr;
}

template <class T> omi_SingletonBase<T>::omi_SingletonBase()
{
    if (instance) {
        VEXCRT::_assert("instance == 0", "source/include/omi_SingletonBase", 19);
    }
    instance = static_cast<T*>(this);
}

template <class T> omi_SingletonBase<T>::~omi_SingletonBase()
{
    if (instance == this) { // a constructor of T that throws must not leave its remains behind
        instance = nullptr;
    }
}
