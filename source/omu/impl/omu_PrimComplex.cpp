#include "omu_PrimComplex.h"

#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"

omu_PrimComplex::omu_PrimComplex(bio_Ifilter& in) : omu_Primitive(in, 'x') {}

cow_String omu_PrimComplex::TypeString() const
{
    return "complex";
}

cow_String omu_PrimComplex::AsString(int) const
{
    return cow_String(m_value.RealPart()) + "+" + cow_String(m_value.ImaginaryPart()) + "j";
}

bool omu_PrimComplex::operator==(const omu_Primitive& other) const
{
    return other.IsType('x') && m_value == static_cast<const omu_PrimComplex&>(other).m_value;
}

void omu_PrimComplex::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitComplex(*this);
}

omu_Primitive* omu_PrimComplex::Copy() const
{
    return new omu_PrimComplex(*this);
}

std::uint32_t omu_PrimComplex::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_PrimComplex::TypeId()
{
    return omu_TypeIdOf(omu_PrimComplexRow);
}

void* omu_PrimComplex::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimComplex>(in, place);
}

void omu_PrimComplex::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimComplex>(object);
}

void omu_PrimComplex::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive::ReadData(in, object);
    in >> static_cast<omu_PrimComplex*>(object)->m_value;
}

void omu_PrimComplex::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
    out << static_cast<const omu_PrimComplex*>(object)->m_value;
}

void omu_PrimComplex::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimComplex");
    omu_Primitive::PrintData(out, object);
    out.Field(static_cast<const omu_PrimComplex*>(object)->AsString(0));
    out.Close();
}
