#pragma once

#include "omu_PrimEnum.h"

// The symbolic constants of the kernel: an enumeration, its names, and the value that scripts see.

enum class fem_Substance
{
    STEEL,
    ALUMINUM,
    TITANIUM
};

enum class fem_Procedure
{
    STATIC,
    FREQUENCY
};

template <> inline const omu_EnumRow<fem_Substance>* omu_EnumTable<fem_Substance, 1>()
{
    static constexpr omu_EnumRow<fem_Substance> rows[] = {{"STEEL", fem_Substance::STEEL},
                                                          {"ALUMINUM", fem_Substance::ALUMINUM},
                                                          {"TITANIUM", fem_Substance::TITANIUM},
                                                          {nullptr, {}}};
    return rows;
}

template <> inline const omu_EnumRow<fem_Procedure>* omu_EnumTable<fem_Procedure, 1>()
{
    static constexpr omu_EnumRow<fem_Procedure> rows[] = {
        {"STATIC", fem_Procedure::STATIC}, {"FREQUENCY", fem_Procedure::FREQUENCY}, {nullptr, {}}};
    return rows;
}

using fem_SubstanceConstant = omu_PrimEnum<fem_Substance, 1>;
using fem_ProcedureConstant = omu_PrimEnum<fem_Procedure, 1>;
