#pragma once

/// Gives T one instance for the whole process, made on first use and never destroyed: for what threads still need when
/// they end after the program's own objects are gone.
///
/// Threads: any number may make the first use at once.
/// Example: extern template class VEXTHR_API thr_GlobalSingleton<thr_X>; in thr_X.h, before thr_X; the same without
///          `extern` and VEXTHR_API in thr_X.cpp. T keeps its constructor private and befriends the template.
/// Avoid for: what has to be destroyed or made anew; omi_Singleton can.
template <class T> class thr_GlobalSingleton
{
public:
    thr_GlobalSingleton() = delete;

    static T& Instance();
};

template <class T> T& thr_GlobalSingleton<T>::Instance()
{
    static T* const instance = new T;
    return *instance;
}
