#include "thr_Module.h"

#include "thr_GlobalLock.h"
#include "thr_ThrSingletonRegistry.h"

namespace
{
int users = 0;
} // namespace

void thr_initialize(int& count)
{
    if (users++ == 0) {
        ++count;
        omi_Singleton<thr_GlobalLock>::Instance();
    }
}

void thr_finalize(int& count)
{
    if (users == 0) {
        return;
    }
    if (--users == 0) {
        --count;
        thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().DestroyThreadObjects();
    }
}
