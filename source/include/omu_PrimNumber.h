#pragma once

#include "omu_Primitive.h"

#include <limits>

/// A script's integer or floating number; also the element kind of numeric arrays.
///
/// Type code 'i' goes with the integer kinds, 'f' with the floating ones. The value is held as a double in every case;
/// the exact value of the uint32 kind is in the unsigned field.
class VEXOMU_API omu_PrimNumber : public omu_Primitive
{
public:
    enum DataTypeEnm : std::int32_t
    {
        INT8 = 0,
        INT16 = 1,
        INT32 = 2,
        REAL32 = 3,
        REAL64 = 4,
        UINT32 = 5
    };

    explicit omu_PrimNumber(int value) noexcept : omu_PrimNumber(INT32, value, 0) {}
    explicit omu_PrimNumber(unsigned int value) noexcept : omu_PrimNumber(UINT32, value, value) {}
    explicit omu_PrimNumber(float value) noexcept : omu_PrimNumber(REAL32, static_cast<double>(value), 0) {}
    explicit omu_PrimNumber(double value) noexcept : omu_PrimNumber(REAL64, value, 0) {}
    /// An integer of the 8- or 16-bit kind (the value is not checked against the kind's range).
    omu_PrimNumber(int value, DataTypeEnm kind) noexcept : omu_PrimNumber(kind, value, 0) {}
    /// The fields as given; the type code follows from the kind.
    omu_PrimNumber(DataTypeEnm kind, double value, std::uint32_t unsignedValue) noexcept
        : omu_Primitive(IsFloating(kind) ? 'f' : 'i'), m_unsigned(unsignedValue), m_kind(kind), m_value(value)
    {}
    explicit omu_PrimNumber(bio_Ifilter& in);
    omu_PrimNumber(const omu_PrimNumber&) = default;
    omu_PrimNumber& operator=(const omu_PrimNumber&) = default;

    /// "number".
    cow_String TypeString() const override;
    /// The integer, or the floating value as "%.15g" writes it in the C locale with ".0" after a whole number.
    cow_String AsString(int depth) const override;
    /// Equal values and equal unsigned fields, whatever the kinds; NaN equals nothing. Only a number equals a number.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    /// What operator== says of two numbers, without a virtual call.
    bool Equals(const omu_PrimNumber& other) const noexcept
    {
        return m_value == other.m_value && m_unsigned == other.m_unsigned;
    }

    double GetValue() const noexcept { return m_value; }
    std::uint32_t GetUnsigned() const noexcept { return m_unsigned; }
    DataTypeEnm GetDataType() const noexcept { return m_kind; }
    /// The value truncated toward zero to 32 bits; outside their range the nearest limit, 0 for NaN.
    std::int32_t GetInt() const noexcept
    {
        using Limits = std::numeric_limits<std::int32_t>;
        return m_value > Limits::min() && m_value < Limits::max() ? static_cast<std::int32_t>(m_value) : NearestInt();
    }

    static constexpr bool IsFloating(DataTypeEnm kind) noexcept { return kind == REAL32 || kind == REAL64; }
    /// The text of a floating number, as AsString gives it for REAL64.
    static cow_String DoubleAsString(double value);

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, value, unsigned value, kind.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    std::int32_t NearestInt() const noexcept;

    // Beside the root's count, so that a number is 32 bytes.
    std::uint32_t m_unsigned;
    DataTypeEnm m_kind; // agrees with the type code
    double m_value;
};
