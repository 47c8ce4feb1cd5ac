#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_TypeErrorException.h"
#include "omu_TypeIds.h"

/// A value has a type that the operation does not take; which value and which type is not said.
class VEXOMU_API omu_GenericTypeErrorException
    : public nex_ConcreteException<omu_GenericTypeErrorException, omu_TypeErrorException,
                                   omu_TypeIdOf(omu_GenericTypeErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    cow_String JournalMessage() const override;

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "omu_GenericTypeErrorException";
    static constexpr std::tuple<> Fields() { return {}; }
};
