#include "omu_KeywordTypeErrorException.h"

#include "omu_MessageText_detail.h"

#include <utility>

omu_KeywordTypeErrorException::omu_KeywordTypeErrorException(cow_String keyword, cow_String expected, cow_String found,
                                                             cow_String methodName)
    : m_keyword(std::move(keyword)), m_expected(std::move(expected)), m_found(std::move(found)),
      m_methodName(std::move(methodName))
{}

cow_String omu_KeywordTypeErrorException::JournalMessage() const
{
    cow_String message = m_methodName.IsEmpty() ? m_keyword : m_methodName + "['" + m_keyword + "']";
    message += omu_Substitute(uti_LabelMap<omu_TypeErrorExceptionEnm>::LabelString(omu_MSG_FOUND_EXPECTING), m_found,
                              m_expected);
    return message;
}
