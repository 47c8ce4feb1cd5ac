#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_TypeErrorException.h"
#include "omu_TypeIds.h"

/// A call has too many arguments, or too few.
class VEXOMU_API omu_ArgNumberErrorException
    : public nex_ConcreteException<omu_ArgNumberErrorException, omu_TypeErrorException,
                                   omu_TypeIdOf(omu_ArgNumberErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    omu_ArgNumberErrorException() = default;
    omu_ArgNumberErrorException(int expected, int given, cow_String methodName);

    /// "setValues; too many arguments; expected 2, got 3". Too many is strictly more than expected.
    cow_String JournalMessage() const override;

    int Expected() const noexcept { return m_expected; }
    int Given() const noexcept { return m_given; }
    const cow_String& MethodName() const noexcept { return m_methodName; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "omu_ArgNumberErrorException";
    static constexpr auto Fields()
    {
        using E = omu_ArgNumberErrorException;
        return std::tuple(&E::m_expected, &E::m_given, &E::m_methodName);
    }

    int m_expected = 0;
    int m_given = 0;
    cow_String m_methodName;
};
