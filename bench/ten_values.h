#pragma once

#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimTuple.h"

/// Ten mixed values; the same as the peers'.
inline omu_PrimTuple TenValues(int seed)
{
    omu_PrimTuple values(10);
    values.Put(seed);
    values.Put(0.5 + seed);
    values.Put("short");
    values.Put("a text that is too long to be kept in place");
    values.Put(omu_PrimNone());
    values.Put(1);
    values.Put(seed + 1000);
    omu_PrimTuple pair(2);
    pair.Put(seed);
    pair.Put(seed + 1);
    values.Put(pair);
    omu_PrimList list(3);
    list.Put(0.1);
    list.Put(0.2);
    list.Put(0.3);
    values.Put(list);
    values.Put(1e-3 * seed);
    return values;
}
