#include "uti_SystemException.h"

#include "VEXcrt_System.h"

#include <utility>

uti_SystemException::uti_SystemException(cow_String function, int errorNumber, cow_String fileName)
    : m_function(std::move(function)), m_errorNumber(errorNumber), m_fileName(std::move(fileName))
{}

cow_String uti_SystemException::AsString() const
{
    return "IOError: " + m_fileName + ": " + VEXCRT::ErrorText(m_errorNumber);
}
