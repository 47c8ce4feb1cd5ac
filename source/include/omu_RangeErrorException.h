#pragma once

#include "VEXomu_export.h"
#include "nex_CommandException.h"
#include "nex_ConcreteException.h"
#include "omu_TypeIds.h"
#include "uti_LabelMap.h"

/// Whether a range has a limit, and whether the limit itself is permitted.
enum omu_RangeQualifierEnm : int
{
    omu_NO_RANGE = 0,
    omu_INCLUSIVE = 1,
    omu_NOT_INCLUSIVE = 2
};

enum omu_RangeErrorExceptionEnm : int
{
    omu_MSG_MUST_BE_INTEGER = 0,
    omu_MSG_MUST_BE_FLOAT = 1,
    omu_MSG_IN_THE_RANGE = 2
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<omu_RangeErrorExceptionEnm>::ENTRIES[];

/// A number lies outside its permitted range. The limits are held as texts.
///
/// Example:    omu_RangeErrorException("width", 1, omu_INCLUSIVE, 10, omu_NOT_INCLUSIVE) reads
///             "width must be an Integer in the range: 1 <= width < 10".
class VEXOMU_API omu_RangeErrorException : public nex_ConcreteException<omu_RangeErrorException, nex_CommandException,
                                                                        omu_TypeIdOf(omu_RangeErrorExceptionRow)>
{
public:
    enum ValueKindEnm : int
    {
        NO_KIND = 0,
        INTEGER = 1,
        FLOAT = 2
    };

    using nex_ConcreteException::nex_ConcreteException;
    omu_RangeErrorException() = default;
    /// An integer's range. A limit with omu_NO_RANGE is held but not shown.
    omu_RangeErrorException(cow_String quantity, int lower, omu_RangeQualifierEnm lowerQualifier, int higher,
                            omu_RangeQualifierEnm higherQualifier);
    /// A float's range.
    omu_RangeErrorException(cow_String quantity, double lower, omu_RangeQualifierEnm lowerQualifier, double higher,
                            omu_RangeQualifierEnm higherQualifier);

    /// Reports an assertion when neither limit is set, and says then what kind of number is wanted.
    cow_String JournalMessage() const override;
    /// "RangeError".
    cow_String PythonType() const override;

    const cow_String& Quantity() const noexcept { return m_quantity; }
    ValueKindEnm ValueKind() const noexcept { return m_valueKind; }
    omu_RangeQualifierEnm LowerQualifier() const noexcept { return m_lowerQualifier; }
    omu_RangeQualifierEnm HigherQualifier() const noexcept { return m_higherQualifier; }

    // A limit's text is that of the number as a value (5, 5.0); a double keeps 15 digits. Read as int it is truncated
    // toward zero and, outside int, the nearest one; a text that is no number reads as 0.
    void SetLowerLimitAsInt(int limit);
    void SetLowerLimitAsDouble(double limit);
    int LowerLimitAsInt() const;
    double LowerLimitAsDouble() const;
    void SetHigherLimitAsInt(int limit);
    void SetHigherLimitAsDouble(double limit);
    int HigherLimitAsInt() const;
    double HigherLimitAsDouble() const;

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "omu_RangeErrorException";
    static constexpr auto Fields()
    {
        using E = omu_RangeErrorException;
        return std::tuple(&E::m_quantity, &E::m_valueKind, &E::m_lowerLimit, &E::m_lowerQualifier, &E::m_higherLimit,
                          &E::m_higherQualifier);
    }
    static bool IsValid(ValueKindEnm kind) noexcept { return kind >= NO_KIND && kind <= FLOAT; }
    static bool IsValid(omu_RangeQualifierEnm qualifier) noexcept
    {
        return qualifier >= omu_NO_RANGE && qualifier <= omu_NOT_INCLUSIVE;
    }

    /// What kind of number is wanted, with a blank at its end.
    cow_String Requirement() const;

    cow_String m_quantity;
    ValueKindEnm m_valueKind = NO_KIND;
    cow_String m_lowerLimit;
    omu_RangeQualifierEnm m_lowerQualifier = omu_NO_RANGE;
    cow_String m_higherLimit;
    omu_RangeQualifierEnm m_higherQualifier = omu_NO_RANGE;
};
