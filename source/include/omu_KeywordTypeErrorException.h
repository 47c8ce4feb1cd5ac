#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_TypeErrorException.h"
#include "omu_TypeIds.h"

/// A keyword argument has the wrong type.
class VEXOMU_API omu_KeywordTypeErrorException
    : public nex_ConcreteException<omu_KeywordTypeErrorException, omu_TypeErrorException,
                                   omu_TypeIdOf(omu_KeywordTypeErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    omu_KeywordTypeErrorException() = default;
    /// `expected` and `found` are type names; `methodName` may be empty.
    omu_KeywordTypeErrorException(cow_String keyword, cow_String expected, cow_String found, cow_String methodName);

    /// "name; found int, expecting string"; with a method name "Part['name']; found ...".
    cow_String JournalMessage() const override;

    const cow_String& Keyword() const noexcept { return m_keyword; }
    const cow_String& Expected() const noexcept { return m_expected; }
    const cow_String& Found() const noexcept { return m_found; }
    const cow_String& MethodName() const noexcept { return m_methodName; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "omu_KeywordTypeErrorException";
    static constexpr auto Fields()
    {
        using E = omu_KeywordTypeErrorException;
        return std::tuple(&E::m_keyword, &E::m_expected, &E::m_found, &E::m_methodName);
    }

    cow_String m_keyword;
    cow_String m_expected;
    cow_String m_found;
    cow_String m_methodName;
};
