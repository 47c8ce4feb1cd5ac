#include "nex_TextException.h"

#include "obj_Stream.h"

nex_TextException::nex_TextException(bio_Ifilter& in) : nex_Exception(in) {}

cow_String nex_TextException::AsString() const
{
    return m_text;
}

void nex_TextException::Propagate() const
{
    throw *this;
}

nex_Exception* nex_TextException::Copy() const
{
    return new nex_TextException(*this);
}

std::uint32_t nex_TextException::DynTypeId() const
{
    return TypeId();
}

std::uint32_t nex_TextException::TypeId()
{
    return 0x1F0002;
}

void* nex_TextException::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<nex_TextException>(in, place);
}

void nex_TextException::DtorFunc(void* object)
{
    obj_Destroy<nex_TextException>(object);
}

void nex_TextException::ReadData(bio_Ifilter& in, void* object)
{
    nex_Exception::ReadData(in, object);
    in >> static_cast<nex_TextException*>(object)->m_text;
}

void nex_TextException::WriteData(bio_Ofilter& out, const void* object)
{
    nex_Exception::WriteData(out, object);
    out << static_cast<const nex_TextException*>(object)->m_text;
}

void nex_TextException::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("nex_TextException");
    nex_Exception::PrintData(out, object);
    out.Field(static_cast<const nex_TextException*>(object)->m_text);
    out.Close();
}
