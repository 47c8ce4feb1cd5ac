#include "omu_PrimNone.h"

#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"

omu_PrimNone::omu_PrimNone(bio_Ifilter& in) : omu_Primitive(in, 'n') {}

cow_String omu_PrimNone::TypeString() const
{
    return "None";
}

cow_String omu_PrimNone::AsString(int) const
{
    return "None";
}

bool omu_PrimNone::operator==(const omu_Primitive& other) const
{
    return m_mark == other.m_mark;
}

void omu_PrimNone::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitNone(*this);
}

omu_Primitive* omu_PrimNone::Copy() const
{
    return new omu_PrimNone(*this);
}

std::uint32_t omu_PrimNone::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_PrimNone::TypeId()
{
    return omu_TypeIdOf(omu_PrimNoneRow);
}

void* omu_PrimNone::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimNone>(in, place);
}

void omu_PrimNone::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimNone>(object);
}

void omu_PrimNone::ReadData(bio_Ifilter& in, void* object)
{
    const omu_PrimNone& none = *static_cast<omu_PrimNone*>(object);
    omu_Primitive::ReadData(in, object);
    const std::uint64_t start = in.Offset();
    unsigned char mark = 0;
    in >> mark;
    if (mark != none.m_mark) {
        in.FailAt("payload of a none value that is not 0", start);
    }
}

void omu_PrimNone::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
    out << static_cast<const omu_PrimNone*>(object)->m_mark;
}

void omu_PrimNone::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimNone");
    omu_Primitive::PrintData(out, object);
    out.Field(static_cast<int>(static_cast<const omu_PrimNone*>(object)->m_mark));
    out.Close();
}
