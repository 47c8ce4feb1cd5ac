#pragma once

#include "omi_complex.h"
#include "omu_PrimArray.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"
#include "omu_PrimType.h"
#include "utl_FilePath.h"

#include <algorithm>
#include <concepts>
#include <type_traits>
#include <utility>

// How values become what kernel code asks for: by position (the tuple's Gets) and by keyword (the dictionary's Gets, and
// the keyword parameters of a call). Every conversion leaves its target as it is when the value does not fit.

/// What a target type is called when a value does not fit it; without a positional name it is the target's TypeString.
struct omu_TypeNames
{
    const char* positional;
    const char* keyword;
};

template <class T> inline constexpr omu_TypeNames omu_typeNames = {nullptr, nullptr};
template <> inline constexpr omu_TypeNames omu_typeNames<char> = {"int8", nullptr};
template <> inline constexpr omu_TypeNames omu_typeNames<short> = {"int16", nullptr};
template <> inline constexpr omu_TypeNames omu_typeNames<int> = {"int32", "number"};
template <> inline constexpr omu_TypeNames omu_typeNames<unsigned int> = {"uint32", "number"};
template <> inline constexpr omu_TypeNames omu_typeNames<float> = {"number", nullptr};
template <> inline constexpr omu_TypeNames omu_typeNames<double> = {"number", "number"};
template <> inline constexpr omu_TypeNames omu_typeNames<bool> = {"boolean", "0 or 1"};
template <> inline constexpr omu_TypeNames omu_typeNames<cow_String> = {"string", "string"};
template <> inline constexpr omu_TypeNames omu_typeNames<utl_FilePath> = {"string", "string"};
template <> inline constexpr omu_TypeNames omu_typeNames<omi_complex> = {"complex", "complex"};
template <> inline constexpr omu_TypeNames omu_typeNames<omu_PrimNone> = {nullptr, "None"};
template <> inline constexpr omu_TypeNames omu_typeNames<omu_PrimType> = {nullptr, "type"};
template <> inline constexpr omu_TypeNames omu_typeNames<omu_PrimPath> = {nullptr, "path"};
template <> inline constexpr omu_TypeNames omu_typeNames<omu_PrimTuple> = {nullptr, "tuple"};
template <> inline constexpr omu_TypeNames omu_typeNames<omu_PrimArray> = {nullptr, "omu_PrimArray"};
template <> inline constexpr omu_TypeNames omu_typeNames<omu_PrimEnumBase> = {nullptr, nullptr};
template <>
inline constexpr omu_TypeNames omu_typeNames<omu_PrimDictionary<int>> = {nullptr, "dictionary with integer keys"};
template <>
inline constexpr omu_TypeNames omu_typeNames<omu_PrimDictionary<cow_String>> = {nullptr, "dictionary with string keys"};

inline constexpr omu_TypeNames omu_SEQUENCE_OF_FLOATS = {"sequence of Floats", "sequence of Floats"};
inline constexpr omu_TypeNames omu_SEQUENCE_OF_STRINGS = {"sequence of Strings", "sequence of Strings"};
// The tuple's word for these two arrays is "Ints"; both words are promised.
inline constexpr omu_TypeNames omu_SEQUENCE_OF_INTS = {"sequence of Ints", "sequence of Integers"};

template <>
inline constexpr omu_TypeNames omu_typeNames<cow_List<int>> = {"sequence of Integers", "sequence of Integers"};
template <> inline constexpr omu_TypeNames omu_typeNames<cow_List<float>> = omu_SEQUENCE_OF_FLOATS;
template <> inline constexpr omu_TypeNames omu_typeNames<cow_List<cow_String>> = omu_SEQUENCE_OF_STRINGS;
template <> inline constexpr omu_TypeNames omu_typeNames<cow_1DArray<int>> = omu_SEQUENCE_OF_INTS;
template <> inline constexpr omu_TypeNames omu_typeNames<cow_1DArrayList<int, int>> = omu_SEQUENCE_OF_INTS;
template <> inline constexpr omu_TypeNames omu_typeNames<cow_1DArrayList<float, float>> = omu_SEQUENCE_OF_FLOATS;
template <> inline constexpr omu_TypeNames omu_typeNames<cow_1DArrayList<double, double>> = omu_SEQUENCE_OF_FLOATS;
template <>
inline constexpr omu_TypeNames omu_typeNames<cow_1DArrayList<cow_String, cow_String>> = omu_SEQUENCE_OF_STRINGS;
template <>
inline constexpr omu_TypeNames omu_typeNames<cow_2DArray<double>> = {"2D sequence of Floats", "2D sequence of Floats"};
template <>
inline constexpr omu_TypeNames omu_typeNames<cow_2DArray<cow_String>> = {"2D sequence of Strings",
                                                                         "2D sequence of Strings"};
template <>
inline constexpr omu_TypeNames omu_typeNames<cow_Map<cow_String, float>> = {"Map of string to float",
                                                                            "Map of string to float"};

/// What a keyword parameter of type T expects.
template <class T> constexpr const char* omu_KeywordTypeName()
{
    static_assert(omu_typeNames<T>.keyword != nullptr, "no keyword parameter has this type");
    return omu_typeNames<T>.keyword;
}

/// The type of a value in an error: of a sequence "sequence of Integers", "sequence of Floats" or "sequence of Strings"
/// when its items agree, otherwise the value's TypeString.
cow_String omu_ElementAwareTypeName(const omu_Primitive& value);

/// A none value for what is absent.
const omu_Primitive& omu_SharedNone();

// ---- scalars by position

inline bool omu_IsInteger(const omu_Primitive& item, omu_PrimNumber::DataTypeEnm kind)
{
    return item.IsType('i') && static_cast<const omu_PrimNumber&>(item).GetDataType() == kind;
}

template <class T, omu_PrimNumber::DataTypeEnm KIND> bool omu_ConvertInteger(const omu_Primitive& item, T& target)
{
    if (!omu_IsInteger(item, KIND)) {
        return false;
    }
    target = static_cast<T>(static_cast<const omu_PrimNumber&>(item).GetInt());
    return true;
}

inline bool omu_Convert(const omu_Primitive& item, char& target)
{
    return omu_ConvertInteger<char, omu_PrimNumber::INT8>(item, target);
}

inline bool omu_Convert(const omu_Primitive& item, short& target)
{
    return omu_ConvertInteger<short, omu_PrimNumber::INT16>(item, target);
}

inline bool omu_Convert(const omu_Primitive& item, int& target)
{
    return omu_ConvertInteger<int, omu_PrimNumber::INT32>(item, target);
}

inline bool omu_Convert(const omu_Primitive& item, unsigned int& target)
{
    if (!omu_IsInteger(item, omu_PrimNumber::UINT32)) {
        return false;
    }
    target = static_cast<const omu_PrimNumber&>(item).GetUnsigned();
    return true;
}

template <std::floating_point T> bool omu_Convert(const omu_Primitive& item, T& target)
{
    if (!item.IsType('f') && !item.IsType('i')) {
        return false;
    }
    target = static_cast<T>(static_cast<const omu_PrimNumber&>(item).GetValue());
    return true;
}

/// 0 or 1 of one of the signed kinds.
bool omu_Convert(const omu_Primitive& item, bool& target);
bool omu_Convert(const omu_Primitive& item, omi_complex& target);
bool omu_Convert(const omu_Primitive& item, utl_FilePath& target);
/// A constant with a name that the target has; for a boolean target also an integer 0 or 1.
bool omu_Convert(const omu_Primitive& item, omu_PrimEnumBase& target);

inline bool omu_Convert(const omu_Primitive& item, cow_String& target)
{
    if (!item.IsType('s')) {
        return false;
    }
    target = static_cast<const omu_PrimString&>(item).GetString();
    return true;
}

/// The type code that stands for exactly this class of values.
template <class T> inline constexpr char omu_codeOf = '\0';
template <> inline constexpr char omu_codeOf<omu_PrimNone> = 'n';
template <> inline constexpr char omu_codeOf<omu_PrimType> = 't';
template <> inline constexpr char omu_codeOf<omu_PrimPath> = 'p';
template <> inline constexpr char omu_codeOf<omu_PrimTuple> = '(';
template <> inline constexpr char omu_codeOf<omu_PrimArray> = 'o';

template <class T>
    requires(omu_codeOf<T> != '\0')
bool omu_Convert(const omu_Primitive& item, T& target)
{
    if (!item.IsType(omu_codeOf<T>)) {
        return false;
    }
    target = static_cast<const T&>(item);
    return true;
}

/// An empty dictionary does not say what its keys would be, so it is one of either kind.
template <class K> bool omu_Convert(const omu_Primitive& item, omu_PrimDictionary<K>& target)
{
    using Other = omu_PrimDictionary<std::conditional_t<std::same_as<K, int>, cow_String, int>>;
    if (!item.IsType('{')) {
        return false;
    }
    if (static_cast<const omu_PrimDictionaryBase&>(item).Kind() == target.Kind()) {
        target = static_cast<const omu_PrimDictionary<K>&>(item);
        return true;
    }
    const bool isEmpty = static_cast<const Other&>(item).Length() == 0;
    if (isEmpty) {
        target = {};
    }
    return isEmpty;
}

/// A kernel object of class `typeName` or derived from it; throws omu_AccessErrorException when it no longer exists.
bool omu_ConvertObject(const omu_Primitive& item, const char* typeName, const omu_InterfaceObj*& object);

// ---- containers from the items of a tuple

template <class C>
concept omu_SequenceTarget = requires(C items, typename C::value_type item) { items.Append(item); };

template <omu_SequenceTarget C> bool omu_ConvertItems(const omu_PrimTuple& tuple, C& target)
{
    C items;
    items.Resize(static_cast<int>(tuple.end() - tuple.begin())); // its length, without a virtual call
    typename C::value_type* next = items.Write();
    for (const omu_PrimHolder& holder : tuple) {
        const omu_Primitive* const item = holder.ConstGet();
        if (item == nullptr || !omu_Convert(*item, *next)) {
            return false;
        }
        ++next;
    }
    target = std::move(items);
    return true;
}

/// Rows of equal length.
template <class T> bool omu_ConvertItems(const omu_PrimTuple& tuple, cow_2DArray<T>& target)
{
    cow_2DArray<T> items;
    T* next = nullptr;
    for (const omu_PrimHolder& row : tuple) {
        cow_1DArray<T> converted;
        if (!row || !row->IsType('(') || !omu_ConvertItems(static_cast<const omu_PrimTuple&>(*row), converted)) {
            return false;
        }
        if (&row == tuple.begin()) {
            items = cow_2DArray<T>(tuple.Length(), converted.Length());
            next = items.Write();
        } else if (converted.Length() != items.Columns()) {
            return false;
        }
        next = std::copy(converted.begin(), converted.end(), next);
    }
    target = std::move(items);
    return true;
}

/// Pairs of key and value; of a key given twice the last value counts.
template <class K, class V> bool omu_ConvertItems(const omu_PrimTuple& tuple, cow_Map<K, V>& target)
{
    cow_Map<K, V> entries;
    for (const omu_PrimHolder& entry : tuple) {
        if (!entry || !entry->IsType('(')) {
            return false;
        }
        const auto& pair = static_cast<const omu_PrimTuple&>(*entry);
        K key{};
        V value{};
        if (pair.Length() != 2 || !pair[0] || !omu_Convert(*pair[0], key) || !pair[1] ||
            !omu_Convert(*pair[1], value)) {
            return false;
        }
        entries.Insert(std::move(key), std::move(value));
    }
    target = std::move(entries);
    return true;
}

template <class C>
concept omu_ContainerTarget = requires(const omu_PrimTuple& tuple, C& target) { omu_ConvertItems(tuple, target); };

template <omu_ContainerTarget C> bool omu_Convert(const omu_Primitive& item, C& target)
{
    return item.IsType('(') && omu_ConvertItems(static_cast<const omu_PrimTuple&>(item), target);
}

// ---- by keyword: more integers fit, and a numeric array stands for the tuple of its numbers

template <class T> bool omu_ConvertKeyword(const omu_Primitive& value, T& target)
{
    return omu_Convert(value, target);
}

template <omu_ContainerTarget C> bool omu_ConvertKeyword(const omu_Primitive& value, C& target)
{
    return value.IsType('o') ? omu_ConvertItems(omu_PrimTuple(static_cast<const omu_PrimArray&>(value)), target)
                             : omu_Convert(value, target);
}

/// Any integer, truncated.
bool omu_ConvertKeyword(const omu_Primitive& value, int& target);
/// The unsigned field of any integer.
bool omu_ConvertKeyword(const omu_Primitive& value, unsigned int& target);
/// An integer 0 or 1 of any kind.
inline bool omu_ConvertKeyword(const omu_Primitive& value, bool& target)
{
    if (!value.IsType('i')) {
        return false;
    }
    const auto& integer = static_cast<const omu_PrimNumber&>(value);
    // The dictionary's unsigned numbers have their value in the unsigned field alone.
    const double number = integer.GetDataType() == omu_PrimNumber::UINT32 ? integer.GetUnsigned() : integer.GetValue();
    if (number != 0 && number != 1) {
        return false;
    }
    target = number == 1;
    return true;
}
/// The text of a string; it dies with the value.
bool omu_ConvertKeyword(const omu_Primitive& value, const char*& target);
/// A tuple, a list, or the tuple made from a numeric array.
bool omu_ConvertKeyword(const omu_Primitive& value, omu_PrimTuple& target);
/// A kernel object of any class; throws omu_AccessErrorException when it no longer exists.
bool omu_ConvertKeyword(const omu_Primitive& value, const omu_InterfaceObj*& target);

// ---- what every Get of a tuple does

template <class T> void omu_PrimTuple::FetchPositional(T& value)
{
    const omu_Primitive* const item = ItemToTest();
    if (item != nullptr && !omu_Convert(*item, value)) {
        if constexpr (omu_typeNames<T>.positional != nullptr) {
            SetTypeError(omu_typeNames<T>.positional);
        } else {
            SetTypeError(value.TypeString());
        }
    }
    IncrementCursor();
}

template <class T> void omu_PrimTuple::FetchPositional(T& value, const char* expected)
{
    const omu_Primitive* const item = ItemToTest();
    if (item != nullptr && !omu_Convert(*item, value)) {
        SetTypeError(expected);
    }
    IncrementCursor();
}
