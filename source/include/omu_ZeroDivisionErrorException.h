#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"

/// A division by zero. Made from its whole message.
class VEXOMU_API omu_ZeroDivisionErrorException
    : public nex_ConcreteException<omu_ZeroDivisionErrorException, omu_MessageException,
                                   omu_TypeIdOf(omu_ZeroDivisionErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "ZeroDivisionError".
    cow_String PythonType() const override;
};
