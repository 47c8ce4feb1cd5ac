#pragma once

#include "nex_Exception.h"

/// Root of the errors that a user's command can cause; each names the script language's own category for it.
class VEXUTL_API nex_CommandException : public nex_Exception
{
public:
    nex_CommandException() = default;
    explicit nex_CommandException(bio_Ifilter& in);

    /// JournalMessage().
    cow_String AsString() const override;
    void Propagate() const override;
    nex_Exception* Copy() const override;
    std::uint32_t DynTypeId() const override;

    /// The text shown to the script user; empty in the root.
    virtual cow_String JournalMessage() const;
    /// The script language's error category; "RuntimeError" in the root.
    virtual cow_String PythonType() const;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);
};
