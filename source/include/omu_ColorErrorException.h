#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "omu_MessageException.h"
#include "omu_TypeIds.h"
#include "uti_LabelMap.h"

enum omu_ColorErrorExceptionEnm : int
{
    omu_MSG_NO_COLOR = 0
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<omu_ColorErrorExceptionEnm>::ENTRIES[];

/// A text names no colour. Made from that text.
class VEXOMU_API omu_ColorErrorException : public nex_ConcreteException<omu_ColorErrorException, omu_MessageException,
                                                                        omu_TypeIdOf(omu_ColorErrorExceptionRow)>
{
public:
    using nex_ConcreteException::nex_ConcreteException;

    /// "<text> is not a valid color name.".
    cow_String JournalMessage() const override;
    /// "ColorError".
    cow_String PythonType() const override;
};
