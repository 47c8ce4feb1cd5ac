#include "omu_SymbolicConstantData.h"

#include "VEXCRT.h"

omu_SymbolicConstantData::omu_SymbolicConstantData(unsigned int id)
{
    if (id != 0) {
        VEXCRT::_assert("omu_SymbolicConstantData() _id argument must be 0\n",
                        "source/omu/impl/omu_SymbolicConstantData", __LINE__);
    }
}
