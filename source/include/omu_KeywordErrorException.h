#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_TypeErrorException.h"
#include "omu_TypeIds.h"

/// A call has a keyword that the method does not know.
class VEXOMU_API omu_KeywordErrorException
    : public nex_ConcreteException<omu_KeywordErrorException, omu_TypeErrorException,
                                   omu_TypeIdOf(omu_KeywordErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    omu_KeywordErrorException() = default;
    omu_KeywordErrorException(const cow_String& keyword, cow_String methodName);

    /// "setValueskeyword error on size": nothing stands between the method name and the text. That is
    /// promised and must stay.
    cow_String JournalMessage() const override;

    const cow_String& Keyword() const noexcept { return m_keyword; }
    const cow_String& MethodName() const noexcept { return m_methodName; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "omu_KeywordErrorException";
    static constexpr auto Fields()
    {
        using E = omu_KeywordErrorException;
        return std::tuple(&E::m_keyword, &E::m_methodName);
    }

    cow_String m_keyword;
    cow_String m_methodName;
};
