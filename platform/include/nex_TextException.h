#pragma once

#include "nex_Exception.h"

/// An exception with a text of its own: failed files, damaged streams, misused stored data.
class VEXUTL_API nex_TextException : public nex_Exception
{
public:
    nex_TextException() = default;
    explicit nex_TextException(const cow_String& text) : m_text(text) {}
    explicit nex_TextException(bio_Ifilter& in);

    cow_String AsString() const override;
    void Propagate() const override;
    nex_Exception* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    cow_String m_text;
};
