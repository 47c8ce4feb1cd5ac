#pragma once

#include "VEXomu_export.h"
#include "nex_CommandException.h"
#include "uti_LabelMap.h"

/// Keys of the texts that the type errors share.
enum omu_TypeErrorExceptionEnm : int
{
    omu_MSG_ILLEGAL_TYPE = 0,
    omu_MSG_ARG = 1,
    omu_MSG_MISSING_ARGUMENTS = 2,
    omu_MSG_EXPECTED_GOT = 3,
    omu_MSG_KEYWORD_ERROR = 4,
    omu_MSG_FOUND_EXPECTING = 5,
    omu_MSG_TOO_MANY_ARGUMENTS = 6
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<omu_TypeErrorExceptionEnm>::ENTRIES[];

/// Root of the five errors about a call's arguments.
class VEXOMU_API omu_TypeErrorException : public nex_CommandException
{
public:
    using nex_CommandException::nex_CommandException;

    void Propagate() const override = 0;
    nex_Exception* Copy() const override = 0;
    std::uint32_t DynTypeId() const override;

    cow_String JournalMessage() const override = 0;
    /// "TypeError", for all five.
    cow_String PythonType() const override;

    static std::uint32_t TypeId();
    /// Must not be called: reports an assertion and returns null, for the class is abstract.
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);
};
