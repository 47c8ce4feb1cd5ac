#include "rgx_Module.h"

#include "rgx_ReCompileCache.h"

namespace
{

int users = 0;

} // namespace

void rgx_initialize(int& count)
{
    if (users++ == 0) {
        ++count;
        omi_Singleton<rgx_ReCompileCache>::Instance();
    }
}

void rgx_finalize(int& count)
{
    if (users != 0 && --users == 0) {
        --count;
        omi_SingletonBase<rgx_ReCompileCache>::Finalize();
    }
}
