#include "omu_PrimArray.h"

#include "VEXCRT.h"

#include <algorithm>
#include <cstdio>
#include <limits>

using Kind = omu_PrimNumber::DataTypeEnm;

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_PrimArray";

const omu_PrimNumber* AsNumber(const omu_Primitive* value)
{
    return value != nullptr && (value->IsType('i') || value->IsType('f')) ? static_cast<const omu_PrimNumber*>(value)
                                                                          : nullptr;
}

const omu_PrimSequence* AsSequence(const omu_Primitive* value)
{
    return value != nullptr && (value->IsType('(') || value->IsType('o')) ? static_cast<const omu_PrimSequence*>(value)
                                                                          : nullptr;
}

template <class... Args> cow_String Format(const char* format, Args... args)
{
    char text[128];
    std::snprintf(text, sizeof text, format, args...);
    return text;
}

/// Finds the shape by following the first items down, then checks all others against it.
class ShapeReader
{
public:
    ShapeReader(cow_1DArray<int>& dimensions, cow_String& message) : m_dimensions(dimensions), m_message(message) {}

    bool Read(const omu_PrimSequence& sequence)
    {
        ReadFirstItems(&sequence, m_dimensions);
        return CheckItems(sequence, 0) && CheckUnsigned();
    }

    /// REAL64 when there is no number.
    Kind Type() const noexcept { return m_hasType ? m_type : omu_PrimNumber::REAL64; }

private:
    static constexpr int NO_TYPE = -1;

    bool Refuse(const cow_String& message)
    {
        m_message = message;
        return false;
    }

    static void ReadFirstItems(const omu_PrimSequence* sequence, cow_1DArray<int>& dimensions)
    {
        dimensions.Clear();
        while (sequence != nullptr) {
            const int length = sequence->Length();
            dimensions.Append(length);
            sequence = length > 0 ? AsSequence(sequence->Index(0)) : nullptr;
        }
    }

    bool CheckItems(const omu_PrimSequence& sequence, int level)
    {
        const int length = sequence.Length();
        for (int i = 0; i < length; ++i) {
            const omu_Primitive* const child = sequence.Index(i);
            const omu_PrimNumber* const number = AsNumber(child);
            const omu_PrimSequence* const nested = AsSequence(child);
            if (number == nullptr && nested == nullptr) {
                return Refuse("Child not PrimSequence or PrimNumber");
            }
            ReadFirstItems(nested, m_childDimensions);
            if (!CheckDimensions(level + 1, i)) {
                return false;
            }
            if (!(number != nullptr ? AddNumber(*number) : CheckItems(*nested, level + 1))) {
                return false;
            }
        }
        return true;
    }

    /// Compares the dimensions of child `i` with those wanted from `level` on.
    bool CheckDimensions(int level, int i)
    {
        const int wanted = m_dimensions.Length() - level;
        if (m_childDimensions.Length() != wanted) {
            return Refuse(
                Format("different num dims in child. nd=%d, ndTemp=%d, i=%d", wanted, m_childDimensions.Length(), i));
        }
        for (int j = 0; j < wanted; ++j) {
            if (m_childDimensions[j] != m_dimensions[level + j]) {
                return Refuse(Format("different dims in child. dimThis=%d, j=%d", m_childDimensions[j], j));
            }
        }
        return true;
    }

    bool AddNumber(const omu_PrimNumber& number)
    {
        Kind kind = number.GetDataType();
        if (kind < omu_PrimNumber::INT8 || kind > omu_PrimNumber::UINT32) {
            return Refuse(Format("Items. tc==NO_TYPE. pn.DT=%d, tc=%d", static_cast<int>(kind),
                                 m_hasType ? static_cast<int>(m_type) : NO_TYPE));
        }
        m_greatestUnsigned = std::max(m_greatestUnsigned, number.GetUnsigned());
        if (!omu_PrimNumber::IsFloating(kind)) {
            kind = omu_PrimNumber::INT32; // the one integer kind of arrays
        }
        m_type = m_hasType ? widestType(m_type, kind) : kind;
        m_hasType = true;
        return true;
    }

    bool CheckUnsigned()
    {
        constexpr std::uint32_t GREATEST = std::numeric_limits<std::int32_t>::max();
        return Type() != omu_PrimNumber::INT32 || m_greatestUnsigned <= GREATEST || Refuse("Could not fit type");
    }

    cow_1DArray<int>& m_dimensions;
    cow_String& m_message;
    cow_1DArray<int> m_childDimensions; // of the child at hand
    bool m_hasType = false;
    Kind m_type = omu_PrimNumber::INT32; // meaningless without m_hasType
    std::uint32_t m_greatestUnsigned = 0;
};

/// Writes nested numbers one after the other.
class ValueWriter
{
public:
    ValueWriter(Kind type, void* address, cow_String& message)
        : m_type(type), m_next(static_cast<unsigned char*>(address)), m_message(message)
    {}

    bool Write(const omu_PrimSequence& sequence, std::span<const int> dimensions)
    {
        if (dimensions.empty() || sequence.Length() != dimensions.front()) {
            return Refuse("PrimArray Sequence not same shape as new PrimArray data", __LINE__);
        }
        const bool isLast = dimensions.size() == 1;
        for (int i = 0; i < dimensions.front(); ++i) {
            const omu_Primitive* const child = sequence.Index(i);
            const omu_PrimNumber* const number = AsNumber(child);
            const omu_PrimSequence* const nested = AsSequence(child);
            if (isLast ? number == nullptr : nested == nullptr) {
                return Refuse("PrimArray something wrong in the sequence", __LINE__);
            }
            if (isLast) {
                putPrimNumberAtPtr(*number, m_type, m_next);
                m_next += m_type == omu_PrimNumber::REAL64 ? sizeof(double) : sizeof(float);
            } else if (!Write(*nested, dimensions.subspan(1))) {
                return false;
            }
        }
        return true;
    }

private:
    bool Refuse(const char* message, int line)
    {
        VEXCRT::_assert(message, SOURCE, line);
        m_message = message;
        return false;
    }

    Kind m_type;
    unsigned char* m_next;
    cow_String& m_message;
};

} // namespace

bool getDimensionsFromSequence(const omu_PrimSequence& sequence, cow_1DArray<int>& dimensions, Kind& type,
                               cow_String& message)
{
    ShapeReader reader(dimensions, message);
    const bool isArray = reader.Read(sequence);
    type = reader.Type();
    return isArray;
}

bool copyValuesFromSequence(const omu_PrimSequence& sequence, std::span<const int> dimensions, Kind type, void* address,
                            cow_String& message)
{
    return ValueWriter(type, address, message).Write(sequence, dimensions);
}
