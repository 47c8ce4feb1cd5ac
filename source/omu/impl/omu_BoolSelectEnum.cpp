#include "omu_BoolSelectEnum.h"

template <> const omu_EnumRow<omu_BoolSelectEnum>* omu_EnumTable<omu_BoolSelectEnum, 1>()
{
    static constexpr omu_EnumRow<omu_BoolSelectEnum> rows[] = {
        {"REPLACE", omu_SELECT_REPLACE},
        {"UNION", omu_SELECT_UNION},
        {"INTERSECTION", omu_SELECT_INTERSECTION},
        {"DIFFERENCE", omu_SELECT_DIFFERENCE},
        {"SYMMETRIC_DIFFERENCE", omu_SELECT_SYMMETRIC_DIFFERENCE},
        {nullptr, omu_SELECT_REPLACE},
    };
    return rows;
}

template class omu_PrimEnum<omu_BoolSelectEnum, 1>;
