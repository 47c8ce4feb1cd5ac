#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"

/// A sequence has no such index. Made from its whole message.
class VEXOMU_API omu_IndexErrorException : public nex_ConcreteException<omu_IndexErrorException, omu_MessageException,
                                                                        omu_TypeIdOf(omu_IndexErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "IndexError".
    cow_String PythonType() const override;
};
