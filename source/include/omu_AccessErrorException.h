#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"
#include "uti_LabelMap.h"

enum omu_AccessErrorExceptionEnm : int
{
    omu_MSG_NO_LONGER_EXISTS = 0
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<omu_AccessErrorExceptionEnm>::ENTRIES[];

/// An object no longer exists. Made from the name of the object.
class VEXOMU_API omu_AccessErrorException : public nex_ConcreteException<omu_AccessErrorException, omu_MessageException,
                                                                         omu_TypeIdOf(omu_AccessErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "<text> no longer exists".
    cow_String JournalMessage() const override;
    /// "AccessError".
    cow_String PythonType() const override;
};
