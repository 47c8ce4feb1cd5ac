#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"
#include "uti_LabelMap.h"

enum omu_FontErrorExceptionEnm : int
{
    omu_MSG_NO_FONT = 0
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<omu_FontErrorExceptionEnm>::ENTRIES[];

/// A text names no font. Made from that text.
class VEXOMU_API omu_FontErrorException : public nex_ConcreteException<omu_FontErrorException, omu_MessageException,
                                                                       omu_TypeIdOf(omu_FontErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "<text> is not a valid font.".
    cow_String JournalMessage() const override;
    /// "FontError".
    cow_String PythonType() const override;
};
