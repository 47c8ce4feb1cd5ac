#include "uti_CmdFailedException.h"

template <>
const uti_LabelEntry uti_LabelMap<uti_CmdFailedExceptionEnm>::ENTRIES[] = {
    {uti_CmdFailed, "uti_CmdFailed", "the command failed"},
    {0, nullptr, nullptr},
};

cow_String uti_CmdFailedException::AsString() const
{
    return uti_LabelMap<uti_CmdFailedExceptionEnm>::ResourceName(m_reason);
}
