#include "omu_KeywordErrorException.h"

#include "omu_MessageText_detail.h"

#include <utility>

omu_KeywordErrorException::omu_KeywordErrorException(const cow_String& keyword, cow_String methodName)
    : m_keyword(keyword), m_methodName(std::move(methodName))
{}

cow_String omu_KeywordErrorException::JournalMessage() const
{
    return m_methodName +
           omu_Substitute(uti_LabelMap<omu_TypeErrorExceptionEnm>::LabelString(omu_MSG_KEYWORD_ERROR), m_keyword);
}
