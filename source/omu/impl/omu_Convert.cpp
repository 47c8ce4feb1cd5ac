#include "omu_Convert_detail.h"

#include "omu_InterfaceObj.h"
#include "omu_PrimBool.h"

#include <algorithm>
#include <string_view>

namespace
{

/// Sets a constant of the boolean flavour `Inst`; false for any other constant.
template <int Inst> bool SetBool(omu_PrimEnumBase& target, bool value)
{
    return target.DynTypeId() == omu_PrimBool<Inst>::TypeId() &&
           static_cast<omu_PrimBool<Inst>&>(target).SetValue(value);
}

template <class Test> bool AllItems(const omu_PrimTuple& tuple, Test test)
{
    return std::all_of(tuple.begin(), tuple.end(), [&](const omu_PrimHolder& item) { return item && test(*item); });
}

/// The common name of a tuple's items; null when they do not agree.
const char* ItemsName(const omu_PrimTuple& tuple)
{
    if (tuple.Length() == 0) {
        return nullptr;
    }
    if (AllItems(tuple, [](const omu_Primitive& item) { return item.IsType('s'); })) {
        return omu_SEQUENCE_OF_STRINGS.keyword;
    }
    if (AllItems(tuple, [](const omu_Primitive& item) { return item.IsType('i'); })) {
        return omu_SEQUENCE_OF_INTS.keyword;
    }
    const auto isNumber = [](const omu_Primitive& item) { return item.IsType('i') || item.IsType('f'); };
    return AllItems(tuple, isNumber) ? omu_SEQUENCE_OF_FLOATS.keyword : nullptr;
}

const char* ItemsName(const omu_PrimArray& array)
{
    if (array.ConstGetNumDimensions() != 1 || array.Length() == 0) {
        return nullptr;
    }
    return array.ConstGetPrimNumberType() == omu_PrimNumber::INT32 ? omu_SEQUENCE_OF_INTS.keyword
                                                                   : omu_SEQUENCE_OF_FLOATS.keyword;
}

} // namespace

cow_String omu_ElementAwareTypeName(const omu_Primitive& value)
{
    const char* const name = value.IsType('(')   ? ItemsName(static_cast<const omu_PrimTuple&>(value))
                             : value.IsType('o') ? ItemsName(static_cast<const omu_PrimArray&>(value))
                                                 : nullptr;
    return name != nullptr ? cow_String(name) : value.TypeString();
}

const omu_Primitive& omu_SharedNone()
{
    static const omu_PrimNone none;
    return none;
}

bool omu_Convert(const omu_Primitive& item, bool& target)
{
    return !omu_IsInteger(item, omu_PrimNumber::UINT32) && omu_ConvertKeyword(item, target);
}

bool omu_Convert(const omu_Primitive& item, omi_complex& target)
{
    if (!item.IsType('x')) {
        return false;
    }
    target = static_cast<const omu_PrimComplex&>(item).GetValue();
    return true;
}

bool omu_Convert(const omu_Primitive& item, utl_FilePath& target)
{
    if (!item.IsType('s')) {
        return false;
    }
    target = utl_FilePath(static_cast<const omu_PrimString&>(item).GetString());
    return true;
}

bool omu_Convert(const omu_Primitive& item, omu_PrimEnumBase& target)
{
    if (item.IsType('c')) {
        const cow_String& name = static_cast<const omu_PrimEnumBase&>(item).GetString();
        // A zero byte would end the name too early.
        return !name.Contains(std::string_view("\0", 1)) && target.SetValue(name.AsCharPtr());
    }
    bool value = false;
    return omu_ConvertKeyword(item, value) && (SetBool<1>(target, value) || SetBool<2>(target, value));
}

bool omu_ConvertObject(const omu_Primitive& item, const char* typeName, const omu_InterfaceObj*& object)
{
    if (!item.IsType('<')) {
        return false;
    }
    const omu_InterfaceObj& found = static_cast<const omu_InterfaceObj&>(item).Resolve();
    if (!found.IsA(typeName)) {
        return false;
    }
    object = &found;
    return true;
}

bool omu_ConvertKeyword(const omu_Primitive& value, int& target)
{
    if (!value.IsType('i')) {
        return false;
    }
    target = static_cast<const omu_PrimNumber&>(value).GetInt();
    return true;
}

bool omu_ConvertKeyword(const omu_Primitive& value, unsigned int& target)
{
    if (!value.IsType('i')) {
        return false;
    }
    target = static_cast<const omu_PrimNumber&>(value).GetUnsigned();
    return true;
}

bool omu_ConvertKeyword(const omu_Primitive& value, const char*& target)
{
    if (!value.IsType('s')) {
        return false;
    }
    target = static_cast<const omu_PrimString&>(value).AsCharPtr();
    return true;
}

bool omu_ConvertKeyword(const omu_Primitive& value, omu_PrimTuple& target)
{
    if (value.IsType('o')) {
        target = omu_PrimTuple(static_cast<const omu_PrimArray&>(value));
        return true;
    }
    return omu_Convert(value, target);
}

bool omu_ConvertKeyword(const omu_Primitive& value, const omu_InterfaceObj*& target)
{
    if (!value.IsType('<')) {
        return false;
    }
    target = &static_cast<const omu_InterfaceObj&>(value).Resolve();
    return true;
}
