#include "omu_Primitive.h"

#include "VEXCRT.h"
#include "omu_TypeIds.h"
#include "typ_ArchCompTable.h"

#include <string_view>

cow_String omu_Primitive::TypeString() const
{
    return "primitive";
}

std::uint32_t omu_Primitive::DynTypeId() const
{
    return TypeId();
}

bool omu_Primitive::IsA(std::uint32_t typeId) const
{
    return typ_ArchCompTable::IsParent(DynTypeId(), typeId);
}

std::uint32_t omu_Primitive::TypeId()
{
    return omu_TypeIdOf(omu_PrimitiveRow);
}

void* omu_Primitive::CtorFunc(bio_Ifilter&, void*)
{
    VEXCRT::_assert("omu_Primitive::CtorFunc(): Illegal call to abstract class constructor.",
                    "source/omu/impl/omu_Primitive", __LINE__);
    return nullptr;
}

void omu_Primitive::DtorFunc(void* object)
{
    obj_Destroy<omu_Primitive>(object);
}

void omu_Primitive::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive& value = *static_cast<omu_Primitive*>(object);
    const char ownCode[] = {value.m_typeCode, '\0'};
    ReadTypeCode(in, value, ownCode);
}

void omu_Primitive::ReadTypeCode(bio_Ifilter& in, omu_Primitive& value, const char* allowedCodes)
{
    const std::uint64_t start = in.Offset();
    char code = '\0';
    in >> code;
    if (std::string_view(allowedCodes).find(code) == std::string_view::npos) {
        in.FailAt("type code of another class", start);
    }
    value.m_typeCode = code;
}

void omu_Primitive::WriteData(bio_Ofilter& out, const void* object)
{
    out << static_cast<const omu_Primitive*>(object)->m_typeCode;
}

void omu_Primitive::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_Primitive");
    out.Field(static_cast<const omu_Primitive*>(object)->m_typeCode);
    out.Close();
}
