#include "nex_CommandException.h"

#include "obj_Stream.h"

nex_CommandException::nex_CommandException(bio_Ifilter& in) : nex_Exception(in) {}

cow_String nex_CommandException::AsString() const
{
    return JournalMessage();
}

void nex_CommandException::Propagate() const
{
    throw *this;
}

nex_Exception* nex_CommandException::Copy() const
{
    return new nex_CommandException(*this);
}

std::uint32_t nex_CommandException::DynTypeId() const
{
    return TypeId();
}

cow_String nex_CommandException::JournalMessage() const
{
    return {};
}

cow_String nex_CommandException::PythonType() const
{
    return "RuntimeError";
}

std::uint32_t nex_CommandException::TypeId()
{
    return 0x1F0003;
}

void* nex_CommandException::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<nex_CommandException>(in, place);
}

void nex_CommandException::DtorFunc(void* object)
{
    obj_Destroy<nex_CommandException>(object);
}

void nex_CommandException::ReadData(bio_Ifilter& in, void* object)
{
    nex_Exception::ReadData(in, object);
}

void nex_CommandException::WriteData(bio_Ofilter& out, const void* object)
{
    nex_Exception::WriteData(out, object);
}

void nex_CommandException::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("nex_CommandException");
    nex_Exception::PrintData(out, object);
    out.Close();
}
