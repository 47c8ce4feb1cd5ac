#include "omu_PrimNumber.h"

#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace
{

constexpr int MAX_DIGITS = 15;

/// Significant digits of a number in fixed notation that is no whole number.
std::ptrdiff_t DigitsOf(std::string_view text)
{
    const std::size_t first = text.find_first_not_of("-0.");
    return static_cast<std::ptrdiff_t>(text.size() - first - (text.find('.') > first ? 1 : 0));
}

/// Writes what "%.15g" does at `text`; the result is its end. The shortest digits that read back equal are much cheaper
/// to find than fifteen. Where there are no more than fifteen they are the same, since a double holds any fifteen.
char* WriteFifteenDigits(char* text, char* limit, double value)
{
    const double size = std::fabs(value);
    if (size >= 1e-4 && size < 1e15) { // where "%g" uses fixed notation
        char* const end = std::to_chars(text, limit, value, std::chars_format::fixed).ptr;
        if (DigitsOf({text, end}) <= MAX_DIGITS) {
            return end;
        }
    }
    return std::to_chars(text, limit, value, std::chars_format::general, MAX_DIGITS).ptr;
}

} // namespace

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
    if (!other.IsType('i') && !other.IsType('f')) {
        return false;
    }
    const auto& number = static_cast<const omu_PrimNumber&>(other);
    return m_value == number.m_value && m_unsigned == number.m_unsigned;
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

std::int32_t omu_PrimNumber::GetInt() const noexcept
{
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(m_value)) {
        return 0;
    }
    if (m_value <= Limits::min()) {
        return Limits::min();
    }
    return m_value >= Limits::max() ? Limits::max() : static_cast<std::int32_t>(m_value);
}

cow_String omu_PrimNumber::DoubleAsString(double value)
{
    // Whole numbers of at most 15 digits are most of what scripts show, and integers are several times faster to
    // write. Negative zero has to keep its sign.
    const bool isShortWhole =
        std::fabs(value) < 1e15 && value == std::trunc(value) && !(value == 0 && std::signbit(value));
    char text[32];
    char* const limit = text + sizeof text;
    char* end = isShortWhole ? std::to_chars(text, limit, static_cast<std::int64_t>(value)).ptr
                             : WriteFifteenDigits(text, limit, value);
    if (std::string_view(text, end).find_first_of(".e") == std::string_view::npos) {
        *end++ = '.';
        *end++ = '0';
    }
    return std::string_view(text, end);
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
