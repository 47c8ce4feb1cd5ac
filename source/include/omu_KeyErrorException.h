#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"

/// A mapping has no such key. Made from its whole message.
class VEXOMU_API omu_KeyErrorException
    : public nex_ConcreteException<omu_KeyErrorException, omu_MessageException, omu_TypeIdOf(omu_KeyErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "KeyError".
    cow_String PythonType() const override;
};
