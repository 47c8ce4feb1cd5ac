#include "omu_Module.h"

#include "cls_Module.h"
#include "omu_BackwardCompat.h"
#include "omu_SymbolicConstantTable.h"
#include "omu_TextRepr.h"
#include "omu_TypeIds.h"
#include "omu_TypeRegistryCache.h"
#include "rgx_Module.h"
#include "thr_Module.h"
#include "typ_ArchCompTable.h"
#include "uti_Module.h"
#include "utl_Module.h"

namespace
{

int users = 0;

} // namespace

void omu_initialize(int& count)
{
    if (users++ != 0) {
        return;
    }
    ++count;
    thr_initialize(count);
    utl_initialize(count);
    rgx_initialize(count);
    cls_initialize(count);
    uti_initialize(count);
    typ_ArchCompTable::InsertEntry(omu_COMPONENT, omu_ArchEntry());
}

void omu_finalize(int& count)
{
    if (users == 0 || --users != 0) {
        return;
    }
    --count;
    omi_SingletonBase<omu_TextRepr>::Finalize();
    omi_SingletonBase<omu_TypeRegistryCache>::Finalize();
    omi_SingletonBase<omu_SymbolicConstantTable>::Finalize();
    omi_SingletonBase<omu_BackwardCompat>::Finalize();
    uti_finalize(count);
    cls_finalize(count);
    rgx_finalize(count);
    utl_finalize(count);
    thr_finalize(count);
}
