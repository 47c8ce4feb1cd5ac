#include "omu_PrimNumber.h"

#include "omu_PrimVisitor.h"
#include "omu_Text_detail.h"
#include "omu_TypeIds.h"

#include <cmath>
#include <string>

omu_PrimNumber::omu_PrimNumber(bio_Ifilter& in) : omu_Primitive(in, 'i'), m_unsigned(0), m_kind(INT32), m_value(0) {}

cow_String omu_PrimNumber::TypeString() const
{
    return "number";
}

cow_String omu_PrimNumber::AsString(int) const
{
    if (IsType('f')) {
        return DoubleAsString(m_value);
    }
    return m_kind == UINT32 ? cow_String(m_unsigned) : cow_String(GetInt());
}

bool omu_PrimNumber::operator==(const omu_Primitive& other) const
{
    return (other.IsType('i') || other.IsType('f')) && Equals(static_cast<const omu_PrimNumber&>(other));
}

void omu_PrimNumber::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitNumber(*this);
}

omu_Primitive* omu_PrimNumber::Copy() const
{
    return new omu_PrimNumber(*this);
}

std::uint32_t omu_PrimNumber::DynTypeId() const
{
    return TypeId();
}

std::int32_t omu_PrimNumber::NearestInt() const noexcept
{
    using Limits = std::numeric_limits<std::int32_t>;
    return std::isnan(m_value) ? 0 : m_value < 0 ? Limits::min() : Limits::max();
}

cow_String omu_PrimNumber::DoubleAsString(double value)
{
    std::string text;
    omu_AppendDouble(text, value);
    return std::string_view(text);
}

std::uint32_t omu_PrimNumber::TypeId()
{
    return omu_TypeIdOf(omu_PrimNumberRow);
}

void* omu_PrimNumber::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimNumber>(in, place);
}

void omu_PrimNumber::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimNumber>(object);
}

void omu_PrimNumber::ReadData(bio_Ifilter& in, void* object)
{
    auto& number = *static_cast<omu_PrimNumber*>(object);
    const std::uint64_t start = in.Offset();
    ReadTypeCode(in, number, "if");
    std::int32_t kind = 0;
    in >> number.m_value >> number.m_unsigned >> kind;
    number.m_kind = static_cast<DataTypeEnm>(kind);
    if (kind < INT8 || kind > UINT32 || IsFloating(number.m_kind) != number.IsType('f')) {
        in.FailAt("kind of number that does not fit its type code", start);
    }
}

void omu_PrimNumber::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
    const auto& number = *static_cast<const omu_PrimNumber*>(object);
    out << number.m_value << number.m_unsigned << static_cast<std::int32_t>(number.m_kind);
}

void omu_PrimNumber::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const auto& number = *static_cast<const omu_PrimNumber*>(object);
    out.Open("omu_PrimNumber");
    omu_Primitive::PrintData(out, object);
    out.Field(number.m_value);
    out.Field(number.m_unsigned);
    out.Field(static_cast<int>(number.m_kind));
    out.Close();
}
