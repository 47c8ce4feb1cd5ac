#include "omu_ArgNumberErrorException.h"

#include "omu_MessageText_detail.h"

#include <utility>

using Messages = uti_LabelMap<omu_TypeErrorExceptionEnm>;

omu_ArgNumberErrorException::omu_ArgNumberErrorException(int expected, int given, cow_String methodName)
    : m_expected(expected), m_given(given), m_methodName(std::move(methodName))
{}

cow_String omu_ArgNumberErrorException::JournalMessage() const
{
    cow_String message = m_methodName;
    if (!message.IsEmpty()) {
        message += "; ";
    }
    message += Messages::LabelString(m_expected < m_given ? omu_MSG_TOO_MANY_ARGUMENTS : omu_MSG_MISSING_ARGUMENTS);
    message += omu_Substitute(Messages::LabelString(omu_MSG_EXPECTED_GOT), cow_String(m_expected), cow_String(m_given));
    return message;
}
