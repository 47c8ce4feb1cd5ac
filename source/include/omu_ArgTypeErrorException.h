#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_TypeErrorException.h"
#include "omu_TypeIds.h"

/// A positional argument, or the item of a sequence, has the wrong type.
class VEXOMU_API omu_ArgTypeErrorException
    : public nex_ConcreteException<omu_ArgTypeErrorException, omu_TypeErrorException,
                                   omu_TypeIdOf(omu_ArgTypeErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    omu_ArgTypeErrorException() = default;
    /// `argumentNumber` counts from 1; `expected` and `found` are type names; `methodName` may be empty.
    omu_ArgTypeErrorException(int argumentNumber, cow_String expected, cow_String found, cow_String methodName);

    /// "arg3; found string, expecting int"; with a method name "setValues[2]; found ...", counting from 0.
    cow_String JournalMessage() const override;

    int ArgumentNumber() const noexcept { return m_argumentNumber; }
    const cow_String& Expected() const noexcept { return m_expected; }
    const cow_String& Found() const noexcept { return m_found; }
    const cow_String& MethodName() const noexcept { return m_methodName; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "omu_ArgTypeErrorException";
    static constexpr auto Fields()
    {
        using E = omu_ArgTypeErrorException;
        return std::tuple(&E::m_argumentNumber, &E::m_expected, &E::m_found, &E::m_methodName);
    }

    int m_argumentNumber = 0;
    cow_String m_expected;
    cow_String m_found;
    cow_String m_methodName;
};
