#pragma once

#include "omi_SingletonBase.h"

/// Makes and gives out the one instance of Class; see omi_SingletonBase, which Class derives from.
template <class Class> class omi_Singleton
{
public:
    omi_Singleton() = delete;

    /// The instance, made on first use.
    static Class& Instance();

private:
    static Class& Create();
};

template <class Class> Class& omi_Singleton<Class>::Instance()
{
    Class* const instance = omi_SingletonBase<Class>::Instance();
    return instance ? *instance : Create();
}

template <class Class> Class& omi_Singleton<Class>::Create()
{
    Class* const instance = new Class;
    if (instance != omi_SingletonBase<Class>::Instance()) {
        VEXCRT::_assert("instance == omi_SingletonBase<Class>::Instance()", "source/include/omi_Singleton", 19);
    }
    return *instance;
}
