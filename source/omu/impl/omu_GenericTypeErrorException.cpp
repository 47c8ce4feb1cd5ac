#include "omu_GenericTypeErrorException.h"

cow_String omu_GenericTypeErrorException::JournalMessage() const
{
    return uti_LabelMap<omu_TypeErrorExceptionEnm>::LabelString(omu_MSG_ILLEGAL_TYPE);
}
