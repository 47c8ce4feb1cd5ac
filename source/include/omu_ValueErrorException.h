#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"

/// An argument has the right type but a value that makes no sense. Made from its whole message.
class VEXOMU_API omu_ValueErrorException : public nex_ConcreteException<omu_ValueErrorException, omu_MessageException,
                                                                        omu_TypeIdOf(omu_ValueErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "ValueError".
    cow_String PythonType() const override;
};
