#pragma once

#include "omu_PrimEnum.h"

/// How newly selected items combine with those selected before; as a constant "REPLACE", "UNION", "INTERSECTION",
/// "DIFFERENCE", "SYMMETRIC_DIFFERENCE".
enum omu_BoolSelectEnum : int
{
    omu_SELECT_REPLACE = 0,
    omu_SELECT_UNION = 1,
    omu_SELECT_INTERSECTION = 2,
    omu_SELECT_DIFFERENCE = 3,          ///< those selected before without the new ones
    omu_SELECT_SYMMETRIC_DIFFERENCE = 4 ///< those that are in exactly one of the two
};

template <> VEXOMU_API const omu_EnumRow<omu_BoolSelectEnum>* omu_EnumTable<omu_BoolSelectEnum, 1>();
VEXOMU_EXTERN_TEMPLATE(omu_PrimEnum<omu_BoolSelectEnum, 1>);
