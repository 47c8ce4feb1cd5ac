#include "omu_BreNameErrorException.h"

using Messages = uti_LabelMap<omu_BreNameErrorExceptionEnm>;

template <>
const uti_LabelEntry uti_LabelMap<omu_BreNameErrorExceptionEnm>::ENTRIES[] = {
    {omu_MSG_INVALID_NAME, "omu_BreNameErrorException_MSGID_00", "invalid name"},
    {omu_MSG_INVALID_JOB_NAME, "omu_BreNameErrorException_MSGID_01", "invalid job name"},
    {omu_MSG_EMPTY_NAME, "omu_BreNameErrorException_MSGID_02", "name is empty"},
    {omu_MSG_INVALID_MODEL_NAME, "omu_BreNameErrorException_MSGID_03", "invalid model name"},
    {0, nullptr, nullptr},
};

cow_String omu_BreNameErrorException::JournalMessage() const
{
    switch (m_kind) {
    case INVALID:
        return Messages::LabelString(omu_MSG_INVALID_NAME);
    case EMPTY:
        return Messages::LabelString(omu_MSG_EMPTY_NAME);
    case INVALID_JOB:
        return Messages::LabelString(omu_MSG_INVALID_JOB_NAME);
    case INVALID_MODEL:
        return Messages::LabelString(omu_MSG_INVALID_MODEL_NAME);
    }
    return {};
}

cow_String omu_BreNameErrorException::PythonType() const
{
    return "BrenowNameError";
}
