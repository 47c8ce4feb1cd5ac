#include "omu_PrimString.h"

#include "omu_PrimEnumBase.h"
#include "omu_PrimNumber.h"
#include "omu_PrimVisitor.h"
#include "omu_Text_detail.h"
#include "omu_TypeIds.h"

#include <string>

omu_PrimString::omu_PrimString(const omu_PrimEnumBase& constant) : omu_PrimString(constant.GetString()) {}

omu_PrimString::omu_PrimString(int value) : omu_PrimString(cow_String(value)) {}

omu_PrimString::omu_PrimString(unsigned int value) : omu_PrimString(cow_String(value)) {}

omu_PrimString::omu_PrimString(double value) : omu_PrimString(omu_PrimNumber::DoubleAsString(value)) {}

omu_PrimString::omu_PrimString(bio_Ifilter& in) : omu_Primitive(in, 's') {}

omu_PrimString* omu_PrimString::Slice(int from, int to) const
{
    return new omu_PrimString(m_text.Substring(from, to));
}

void omu_PrimString::Concat(const omu_PrimString& other)
{
    m_text.Append(other.m_text);
}

cow_String omu_PrimString::TypeString() const
{
    return "string";
}

cow_String omu_PrimString::AsString(int) const
{
    std::string quoted;
    omu_AppendQuoted(quoted, m_text);
    return std::string_view(quoted);
}

bool omu_PrimString::operator==(const omu_Primitive& other) const
{
    return other.IsType('s') && m_text == static_cast<const omu_PrimString&>(other).m_text;
}

void omu_PrimString::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitString(*this);
}

omu_Primitive* omu_PrimString::Copy() const
{
    return new omu_PrimString(*this);
}

std::uint32_t omu_PrimString::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_PrimString::TypeId()
{
    return omu_TypeIdOf(omu_PrimStringRow);
}

void* omu_PrimString::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimString>(in, place);
}

void omu_PrimString::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimString>(object);
}

void omu_PrimString::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive::ReadData(in, object);
    in >> static_cast<omu_PrimString*>(object)->m_text;
}

void omu_PrimString::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
    out << static_cast<const omu_PrimString*>(object)->m_text;
}

void omu_PrimString::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimString");
    omu_Primitive::PrintData(out, object);
    out.Field(static_cast<const omu_PrimString*>(object)->m_text);
    out.Close();
}
