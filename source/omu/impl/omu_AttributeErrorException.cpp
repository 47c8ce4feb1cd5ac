#include "omu_AttributeErrorException.h"

#include "omu_MessageText_detail.h"

#include <utility>

using Messages = uti_LabelMap<omu_AttributeErrorExceptionEnm>;

template <>
const uti_LabelEntry uti_LabelMap<omu_AttributeErrorExceptionEnm>::ENTRIES[] = {
    {omu_MSG_READ_ONLY_ATTRIBUTES, "omu_AttributeErrorException_MSGID_00", "read-only attributes"},
    {omu_MSG_READ_ONLY_MEMBER, "omu_AttributeErrorException_MSGID_01", "%s is read-only"},
    {omu_MSG_NOT_IMPLEMENTED, "omu_AttributeErrorException_MSGID_02", "Error message not implemented yet"},
    {0, nullptr, nullptr},
};

omu_AttributeErrorException::omu_AttributeErrorException(KindEnm kind, cow_String text)
    : m_kind(kind), m_text(std::move(text))
{}

cow_String omu_AttributeErrorException::JournalMessage() const
{
    switch (m_kind) {
    case READ_ONLY_ATTRIBUTES:
        return Messages::LabelString(omu_MSG_READ_ONLY_ATTRIBUTES);
    case READ_ONLY:
        return omu_Substitute(Messages::LabelString(omu_MSG_READ_ONLY_MEMBER), m_text);
    case MESSAGE:
        return m_text;
    }
    return Messages::LabelString(omu_MSG_NOT_IMPLEMENTED);
}

cow_String omu_AttributeErrorException::PythonType() const
{
    return "AttributeError";
}
