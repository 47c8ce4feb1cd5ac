#include "omu_PrimExpr.h"

#include "VEXCRT.h"
#include "omu_TypeIds.h"

omu_PrimExpr::omu_PrimExpr(bio_Ifilter& in) : omu_Primitive(in, 'e') {}

cow_String omu_PrimExpr::TypeString() const
{
    return "expression";
}

cow_String omu_PrimExpr::AsString(int) const
{
    return m_text;
}

bool omu_PrimExpr::operator==(const omu_Primitive& other) const
{
    return other.IsType('e') && m_text == static_cast<const omu_PrimExpr&>(other).m_text;
}

void omu_PrimExpr::Accept(omu_PrimVisitor*) const
{
    VEXCRT::_assert("Expressions should not be seen after execution by python", "source/omu/impl/omu_PrimExpr",
                    __LINE__);
}

omu_Primitive* omu_PrimExpr::Copy() const
{
    return new omu_PrimExpr(*this);
}

std::uint32_t omu_PrimExpr::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_PrimExpr::TypeId()
{
    return omu_TypeIdOf(omu_PrimExprRow);
}

void* omu_PrimExpr::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimExpr>(in, place);
}

void omu_PrimExpr::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimExpr>(object);
}

void omu_PrimExpr::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive::ReadData(in, object);
    in >> static_cast<omu_PrimExpr*>(object)->m_text;
}

void omu_PrimExpr::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
    out << static_cast<const omu_PrimExpr*>(object)->m_text;
}

void omu_PrimExpr::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimExpr");
    omu_Primitive::PrintData(out, object);
    out.Field(static_cast<const omu_PrimExpr*>(object)->m_text);
    out.Close();
}
