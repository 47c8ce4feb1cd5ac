#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"

/// A name is not known. Made from its whole message.
class VEXOMU_API omu_NameErrorException : public nex_ConcreteException<omu_NameErrorException, omu_MessageException,
                                                                       omu_TypeIdOf(omu_NameErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "NameError".
    cow_String PythonType() const override;
};
