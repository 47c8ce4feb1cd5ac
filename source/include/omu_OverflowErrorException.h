#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"

/// A result is too large for its type. Made from its whole message.
class VEXOMU_API omu_OverflowErrorException
    : public nex_ConcreteException<omu_OverflowErrorException, omu_MessageException,
                                   omu_TypeIdOf(omu_OverflowErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "OverflowError".
    cow_String PythonType() const override;
};
