#include "omu_ArgTypeErrorException.h"

#include "omu_MessageText_detail.h"

#include <string>
#include <utility>

using Messages = uti_LabelMap<omu_TypeErrorExceptionEnm>;

omu_ArgTypeErrorException::omu_ArgTypeErrorException(int argumentNumber, cow_String expected, cow_String found,
                                                     cow_String methodName)
    : m_argumentNumber(argumentNumber), m_expected(std::move(expected)), m_found(std::move(found)),
      m_methodName(std::move(methodName))
{}

cow_String omu_ArgTypeErrorException::JournalMessage() const
{
    cow_String message;
    if (m_methodName.IsEmpty()) {
        message = Messages::LabelString(omu_MSG_ARG) + cow_String(m_argumentNumber);
    } else {
        // 64 bits: a stream may hold any number, also the one that has no predecessor.
        message = m_methodName + "[" + std::to_string(std::int64_t{m_argumentNumber} - 1) + "]";
    }
    message += omu_Substitute(Messages::LabelString(omu_MSG_FOUND_EXPECTING), m_found, m_expected);
    return message;
}
