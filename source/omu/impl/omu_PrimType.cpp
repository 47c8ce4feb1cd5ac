#include "omu_PrimType.h"

#include "omu_InterfaceObj.h"
#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"

namespace
{

// In the order of omu_ObjectToDisplayTypeEnm.
constexpr const char* displayTypeWords[omu_DISPLAY_UNKNOWN] = {"None", "Part",   "Assembly", "Sketch",
                                                               "Odb",  "XYPlot", "Stub"};

} // namespace

omu_PrimType::omu_PrimType(const omu_InterfaceObj& object) : omu_Primitive('t'), m_name(object.TypeString()) {}

omu_PrimType::omu_PrimType(bio_Ifilter& in) : omu_Primitive(in, 't') {}

bool omu_PrimType::SameType(const omu_PrimType& other) const noexcept
{
    return m_name.IsEmpty() || other.m_name.IsEmpty() || m_name == other.m_name;
}

bool omu_PrimType::SameType(const omu_InterfaceObj& object) const
{
    return m_name.IsEmpty() || m_name == object.TypeString();
}

cow_String omu_PrimType::TypeString() const
{
    return m_name.IsEmpty() ? cow_String("type") : m_name + "Type";
}

cow_String omu_PrimType::AsString(int) const
{
    return m_name + "Type";
}

bool omu_PrimType::operator==(const omu_Primitive& other) const
{
    return other.IsType('t') && m_name == static_cast<const omu_PrimType&>(other).m_name;
}

void omu_PrimType::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitType(*this);
}

omu_Primitive* omu_PrimType::Copy() const
{
    return new omu_PrimType(*this);
}

std::uint32_t omu_PrimType::DynTypeId() const
{
    return TypeId();
}

cow_String omu_PrimType::ConverTypeToString(const omu_ObjectToDisplayTypeEnm& type)
{
    return type >= omu_DISPLAY_NONE && type < omu_DISPLAY_UNKNOWN ? displayTypeWords[type] : cow_String();
}

omu_ObjectToDisplayTypeEnm omu_PrimType::ConverStringToType(const cow_String& word)
{
    int type = omu_DISPLAY_NONE;
    while (type < omu_DISPLAY_UNKNOWN && word != displayTypeWords[type]) {
        ++type;
    }
    return static_cast<omu_ObjectToDisplayTypeEnm>(type);
}

std::uint32_t omu_PrimType::TypeId()
{
    return omu_TypeIdOf(omu_PrimTypeRow);
}

void* omu_PrimType::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimType>(in, place);
}

void omu_PrimType::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimType>(object);
}

void omu_PrimType::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive::ReadData(in, object);
    in >> static_cast<omu_PrimType*>(object)->m_name;
}

void omu_PrimType::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
    out << static_cast<const omu_PrimType*>(object)->m_name;
}

void omu_PrimType::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimType");
    omu_Primitive::PrintData(out, object);
    out.Field(static_cast<const omu_PrimType*>(object)->m_name);
    out.Close();
}
