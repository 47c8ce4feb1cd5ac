#include "omu_MessageException.h"

#include "omu_AccessErrorException.h"
#include "omu_ColorErrorException.h"
#include "omu_FontErrorException.h"
#include "omu_IndexErrorException.h"
#include "omu_KeyErrorException.h"
#include "omu_MessageText_detail.h"
#include "omu_NameErrorException.h"
#include "omu_OverflowErrorException.h"
#include "omu_ValueErrorException.h"
#include "omu_ZeroDivisionErrorException.h"

#include <utility>

omu_MessageException::omu_MessageException(cow_String text, cow_String subject)
    : m_text(std::move(text)), m_subject(std::move(subject))
{}

cow_String omu_MessageException::JournalMessage() const
{
    return m_text;
}

cow_String omu_ValueErrorException::PythonType() const
{
    return "ValueError";
}

cow_String omu_KeyErrorException::PythonType() const
{
    return "KeyError";
}

cow_String omu_IndexErrorException::PythonType() const
{
    return "IndexError";
}

cow_String omu_NameErrorException::PythonType() const
{
    return "NameError";
}

cow_String omu_ZeroDivisionErrorException::PythonType() const
{
    return "ZeroDivisionError";
}

cow_String omu_OverflowErrorException::PythonType() const
{
    return "OverflowError";
}

template <>
const uti_LabelEntry uti_LabelMap<omu_AccessErrorExceptionEnm>::ENTRIES[] = {
    {omu_MSG_NO_LONGER_EXISTS, "omu_AccessErrorException_MSGID_00", "%s no longer exists"},
    {0, nullptr, nullptr},
};

cow_String omu_AccessErrorException::JournalMessage() const
{
    return omu_Substitute(uti_LabelMap<omu_AccessErrorExceptionEnm>::LabelString(omu_MSG_NO_LONGER_EXISTS), Text());
}

cow_String omu_AccessErrorException::PythonType() const
{
    return "AccessError";
}

template <>
const uti_LabelEntry uti_LabelMap<omu_ColorErrorExceptionEnm>::ENTRIES[] = {
    {omu_MSG_NO_COLOR, "omu_ColorErrorException_MSGID_00", "%s is not a valid color name."},
    {0, nullptr, nullptr},
};

cow_String omu_ColorErrorException::JournalMessage() const
{
    return omu_Substitute(uti_LabelMap<omu_ColorErrorExceptionEnm>::LabelString(omu_MSG_NO_COLOR), Text());
}

cow_String omu_ColorErrorException::PythonType() const
{
    return "ColorError";
}

template <>
const uti_LabelEntry uti_LabelMap<omu_FontErrorExceptionEnm>::ENTRIES[] = {
    {omu_MSG_NO_FONT, "omu_FontErrorException_MSGID_00", "%s is not a valid font."},
    {0, nullptr, nullptr},
};

cow_String omu_FontErrorException::JournalMessage() const
{
    return omu_Substitute(uti_LabelMap<omu_FontErrorExceptionEnm>::LabelString(omu_MSG_NO_FONT), Text());
}

cow_String omu_FontErrorException::PythonType() const
{
    return "FontError";
}
