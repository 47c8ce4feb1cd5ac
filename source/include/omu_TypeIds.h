#pragma once

#include <cstdint>

/// Rows of this library's persistable classes in the run-time type tables. The numbers stand in streams: they
/// never change, and new rows go to the end.
enum omu_TypeRowEnm : std::uint32_t
{
    omu_TypeErrorExceptionRow = 1,
    omu_KeywordTypeErrorExceptionRow = 2,
    omu_ArgTypeErrorExceptionRow = 3,
    omu_ArgNumberErrorExceptionRow = 4,
    omu_KeywordErrorExceptionRow = 5,
    omu_AttributeErrorExceptionRow = 6,
    omu_KeyErrorExceptionRow = 7,
    omu_IndexErrorExceptionRow = 8,
    omu_RangeErrorExceptionRow = 9,
    omu_ValueErrorExceptionRow = 10,
    omu_OverflowErrorExceptionRow = 11,
    omu_NameErrorExceptionRow = 12,
    omu_ZeroDivisionErrorExceptionRow = 13,
    omu_ColorErrorExceptionRow = 14,
    omu_FontErrorExceptionRow = 15,
    omu_AccessErrorExceptionRow = 16,
    omu_PrimitiveRow = 17,
    omu_PrimDictionaryBaseRow = 18,
    omu_PrimIntDictionaryRow = 19,
    omu_PrimStrDictionaryRow = 20,
    omu_PrimListRow = 21,
    omu_PrimNumberRow = 22,
    omu_PrimPathRow = 23,
    omu_PrimStringRow = 24,
    omu_PrimTupleRow = 25,
    omu_PrimExprRow = 26,
    omu_PrimEnumBaseRow = 27,
    omu_QueryPathMsgRow = 28,
    omu_PrimNoneRow = 29,
    omu_PrimWrapperRow = 30,
    omu_PrimTypeRow = 31,
    omu_PrimSequenceRow = 32,
    omu_PrimArrayRow = 33,
    omu_PrimComplexRow = 34,
    omu_BreNameErrorExceptionRow = 35,
    omu_GenericTypeErrorExceptionRow = 36,
    omu_OnOffConstRow = 37,
    omu_TrueFalseConstRow = 38,
    omu_YesNoConstRow = 39
};

/// This library's component in the run-time type tables.
inline constexpr std::uint32_t omu_COMPONENT = 19;

constexpr std::uint32_t omu_TypeIdOf(omu_TypeRowEnm row) noexcept
{
    return (omu_COMPONENT << 16) + row;
}
