#include "uti_XypException.h"

#include <utility>

template <>
const uti_LabelEntry uti_LabelMap<uti_XypExceptionEnm, 1>::ENTRIES[] = {
    {uti_XYP_FAILED, "uti_XypException_MSGID_00", "operation on X-Y data failed"},
    {uti_XYP_NO_DATA, "uti_XypException_MSGID_01", "X-Y data is empty"},
    {uti_XYP_LENGTHS_DIFFER, "uti_XypException_MSGID_02", "X-Y data differ in length"},
    {uti_XYP_X_NOT_INCREASING, "uti_XypException_MSGID_03", "X values do not increase"},
    {uti_XYP_UNITS_DIFFER, "uti_XypException_MSGID_04", "X-Y data differ in their quantities"},
    {uti_XYP_NOT_A_NUMBER, "uti_XypException_MSGID_05", "X-Y data hold a value that is not a number"},
    {0, nullptr, nullptr},
};

uti_XypException::uti_XypException(uti_XypExceptionEnm reason, cow_String function)
    : m_reason(reason), m_function(std::move(function))
{}

cow_String uti_XypException::JournalMessage() const
{
    cow_String message = m_function;
    if (!message.IsEmpty()) {
        message += ": ";
    }
    message += uti_LabelMap<uti_XypExceptionEnm, 1>::LabelString(m_reason);
    return message;
}

cow_String uti_XypException::PythonType() const
{
    return "XypError";
}
