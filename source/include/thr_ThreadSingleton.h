#pragma once

#include "thr_ThrSingletonRegistry.h"
#include "thr_ThreadSingletonBase.h"

/// Makes and gives out the calling thread's instance of Class; see thr_ThreadSingletonBase, which Class derives from.
template <class Class> class thr_ThreadSingleton
{
public:
    thr_ThreadSingleton() = delete;

    /// The calling thread's instance, made on first use.
    static Class& Instance();

private:
    static Class& Create();
};

template <class Class> Class& thr_ThreadSingleton<Class>::Instance()
{
    Class* const instance = thr_ThreadSingletonBase<Class>::Instance();
    return instance ? *instance : Create();
}

template <class Class> Class& thr_ThreadSingleton<Class>::Create()
{
    thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().Register(&thr_ThreadSingletonBase<Class>::Finalize);
    Class* const instance = new Class;
    if (instance != thr_ThreadSingletonBase<Class>::Instance()) {
        VEXCRT::_assert("instance == thr_ThreadSingletonBase<Class>::Instance()", "source/include/thr_ThreadSingleton",
                        26);
    }
    return *instance;
}
