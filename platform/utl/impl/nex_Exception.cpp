#include "nex_Exception.h"

#include "VEXCRT.h"
#include "obj_Stream.h"

#include <string>

const char* nex_StdException::what() const noexcept
{
    try {
        cow_String text = static_cast<const nex_Exception*>(this)->AsString();
        if (text != m_what) { // an equal text leaves the pointer given out before valid
            m_what = std::move(text);
        }
        return m_what.AsCharPtr();
    } catch (...) {
        return "out of memory while composing an error text"; // nothing may leave a what()
    }
}

nex_Exception::nex_Exception(bio_Ifilter&) {}

cow_String nex_Exception::DeveloperReport() const
{
    cow_String report = UserReport();
    if (!m_file.IsEmpty()) {
        report += " (" + std::string(m_file.view()) + ", line " + std::to_string(m_line) + ")";
    }
    return report;
}

cow_String nex_Exception::UserReport() const
{
    return AsString();
}

cow_String nex_Exception::AsString() const
{
    return {};
}

void nex_Exception::Propagate() const
{
    throw *this;
}

nex_Exception* nex_Exception::Copy() const
{
    return new nex_Exception(*this);
}

std::uint32_t nex_Exception::DynTypeId() const
{
    return TypeId();
}

void nex_Exception::Throw(const char* file, int line)
{
    m_file = file;
    m_line = line;
    Propagate();
    VEXCRT::_assert("Propagate() throws", "platform/utl/impl/nex_Exception", __LINE__);
    std::terminate(); // the caller must not run on as if nothing had failed
}

std::uint32_t nex_Exception::TypeId()
{
    return 0x1F0001;
}

void* nex_Exception::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<nex_Exception>(in, place);
}

void nex_Exception::DtorFunc(void* object)
{
    obj_Destroy<nex_Exception>(object);
}

void nex_Exception::ReadData(bio_Ifilter& in, void* object)
{
    auto& exception = *static_cast<nex_Exception*>(object);
    in >> exception.m_file >> exception.m_line;
}

void nex_Exception::WriteData(bio_Ofilter& out, const void* object)
{
    const auto& exception = *static_cast<const nex_Exception*>(object);
    out << exception.m_file << exception.m_line;
}

void nex_Exception::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const auto& exception = *static_cast<const nex_Exception*>(object);
    out.Open("nex_Exception");
    out.Field(exception.m_file);
    out.Field(exception.m_line);
    out.Close();
}
