#include "thr_GlobalLock.h"

template class omi_SingletonBase<thr_GlobalLock>;
template class omi_Singleton<thr_GlobalLock>;

void thr_GlobalLock::Lock()
{
    m_mutex.lock();
}

void thr_GlobalLock::Unlock()
{
    m_mutex.unlock();
}

thr_GlobalLock::Holder::Holder()
{
    omi_Singleton<thr_GlobalLock>::Instance().Lock();
}

thr_GlobalLock::Holder::~Holder()
{
    omi_Singleton<thr_GlobalLock>::Instance().Unlock();
}
