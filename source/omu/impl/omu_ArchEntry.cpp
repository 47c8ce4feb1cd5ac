#include "omu_AccessErrorException.h"
#include "omu_ArgNumberErrorException.h"
#include "omu_ArgTypeErrorException.h"
#include "omu_AttributeErrorException.h"
#include "omu_BreNameErrorException.h"
#include "omu_ColorErrorException.h"
#include "omu_FontErrorException.h"
#include "omu_GenericTypeErrorException.h"
#include "omu_IndexErrorException.h"
#include "omu_KeyErrorException.h"
#include "omu_KeywordErrorException.h"
#include "omu_KeywordTypeErrorException.h"
#include "omu_Module.h"
#include "omu_NameErrorException.h"
#include "omu_OverflowErrorException.h"
#include "omu_PrimArray.h"
#include "omu_PrimBool.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimExpr.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"
#include "omu_PrimType.h"
#include "omu_PrimWrapper.h"
#include "omu_QueryPathMsg.h"
#include "omu_RangeErrorException.h"
#include "omu_TypeErrorException.h"
#include "omu_TypeIds.h"
#include "omu_ValueErrorException.h"
#include "omu_ZeroDivisionErrorException.h"

#include <iterator>

namespace
{

constexpr std::uint32_t COMMAND = 0x1F0003; // nex_CommandException
constexpr std::uint32_t TYPE_ERROR = omu_TypeIdOf(omu_TypeErrorExceptionRow);
constexpr std::uint32_t PRIMITIVE = omu_TypeIdOf(omu_PrimitiveRow);
constexpr std::uint32_t DICTIONARY = omu_TypeIdOf(omu_PrimDictionaryBaseRow);
constexpr std::uint32_t TUPLE = omu_TypeIdOf(omu_PrimTupleRow);
constexpr std::uint32_t SEQUENCE = omu_TypeIdOf(omu_PrimSequenceRow);
constexpr std::uint32_t CONSTANT = omu_TypeIdOf(omu_PrimEnumBaseRow);

template <class C> constexpr typ_Entry Error(const char* name, std::uint32_t parent = COMMAND)
{
    return typ_EntryOf<C>(typ_EXCEPTION, name, parent);
}

template <class C> constexpr typ_Entry Value(const char* name, std::uint32_t parent = PRIMITIVE)
{
    return typ_EntryOf<C>(typ_VALUE, name, parent);
}

template <class C> constexpr typ_Entry AbstractValue(const char* name, std::uint32_t parent)
{
    return typ_EntryOf<C>(typ_VALUE, name, parent, /*isAbstract=*/true);
}

// In the order of omu_TypeRowEnm.
constexpr typ_Entry rows[] = {
    {},
    typ_EntryOf<omu_TypeErrorException>(typ_EXCEPTION, "omu_TypeErrorException", COMMAND, /*isAbstract=*/true),
    Error<omu_KeywordTypeErrorException>("omu_KeywordTypeErrorException", TYPE_ERROR),
    Error<omu_ArgTypeErrorException>("omu_ArgTypeErrorException", TYPE_ERROR),
    Error<omu_ArgNumberErrorException>("omu_ArgNumberErrorException", TYPE_ERROR),
    Error<omu_KeywordErrorException>("omu_KeywordErrorException", TYPE_ERROR),
    Error<omu_AttributeErrorException>("omu_AttributeErrorException"),
    Error<omu_KeyErrorException>("omu_KeyErrorException"),
    Error<omu_IndexErrorException>("omu_IndexErrorException"),
    Error<omu_RangeErrorException>("omu_RangeErrorException"),
    Error<omu_ValueErrorException>("omu_ValueErrorException"),
    Error<omu_OverflowErrorException>("omu_OverflowErrorException"),
    Error<omu_NameErrorException>("omu_NameErrorException"),
    Error<omu_ZeroDivisionErrorException>("omu_ZeroDivisionErrorException"),
    Error<omu_ColorErrorException>("omu_ColorErrorException"),
    Error<omu_FontErrorException>("omu_FontErrorException"),
    Error<omu_AccessErrorException>("omu_AccessErrorException"),
    AbstractValue<omu_Primitive>("omu_Primitive", typ_ROOT),
    AbstractValue<omu_PrimDictionaryBase>("omu_PrimDictionaryBase", PRIMITIVE),
    Value<omu_PrimDictionary<int>>("omu_PrimIntDictionary", DICTIONARY),
    Value<omu_PrimDictionary<cow_String>>("omu_PrimStrDictionary", DICTIONARY),
    Value<omu_PrimList>("omu_PrimList", TUPLE),
    Value<omu_PrimNumber>("omu_PrimNumber"),
    Value<omu_PrimPath>("omu_PrimPath"),
    Value<omu_PrimString>("omu_PrimString"),
    Value<omu_PrimTuple>("omu_PrimTuple", SEQUENCE),
    Value<omu_PrimExpr>("omu_PrimExpr"),
    Value<omu_PrimEnumBase>("omu_PrimEnumBase"),
    Value<omu_QueryPathMsg>("omu_QueryPathMsg", typ_ROOT),
    Value<omu_PrimNone>("omu_PrimNone"),
    Value<omu_PrimWrapper>("omu_PrimWrapper"),
    Value<omu_PrimType>("omu_PrimType"),
    AbstractValue<omu_PrimSequence>("omu_PrimSequence", PRIMITIVE),
    Value<omu_PrimArray>("omu_PrimArray", SEQUENCE),
    Value<omu_PrimComplex>("omu_PrimComplex"),
    Error<omu_BreNameErrorException>("omu_BreNameErrorException"),
    Error<omu_GenericTypeErrorException>("omu_GenericTypeErrorException", TYPE_ERROR),
    Value<omu_PrimBool<2>>("omu_OnOffConst", CONSTANT),
    Value<omu_PrimBool<1>>("omu_TrueFalseConst", CONSTANT),
    {.kind = typ_VALUE, .name = "omu_YesNoConst", .parent = CONSTANT}, // an identity without functions
};
static_assert(std::size(rows) == omu_YesNoConstRow + 1);

} // namespace

typ_ArchCompEntry omu_ArchEntry()
{
    return {.rows = rows, .count = std::size(rows)};
}
