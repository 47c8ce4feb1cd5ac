#pragma once

#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_2DArray.h"
#include "cow_List.h"
#include "cow_Map.h"
#include "omu_PrimDictionaryBase.h"
#include "omu_PrimHolder.h"

#include <concepts>
#include <utility>

class omi_complex;
class omu_InterfaceObj;
class omu_PrimArray;
class omu_PrimEnumBase;
class omu_PrimNone;
class omu_PrimPath;
class omu_PrimTuple;
class omu_PrimType;
class utl_FilePath;

// What a dictionary, or a keyword of a call, holds for a value.

inline omu_PrimHolder omu_Hold(int value)
{
    return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, value);
}
/// The number's unsigned field alone carries the value: got as an int it is 0.
inline omu_PrimHolder omu_Hold(unsigned int value)
{
    return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, omu_PrimNumber::UINT32, 0.0, value);
}
inline omu_PrimHolder omu_Hold(double value)
{
    return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, value);
}
inline omu_PrimHolder omu_Hold(const cow_String& value)
{
    return omu_PrimHolder(std::in_place_type<omu_PrimString>, value);
}
inline omu_PrimHolder omu_Hold(const char* value)
{
    return omu_Hold(cow_String(value));
}
VEXOMU_API omu_PrimHolder omu_Hold(const omi_complex& value);
VEXOMU_API omu_PrimHolder omu_Hold(const utl_FilePath& value);
VEXOMU_API omu_PrimHolder omu_Hold(const cow_List<cow_String>& values);
/// A copy of any other value: path, expression, tuple, array, constant, none, type, dictionary ...
inline omu_PrimHolder omu_Hold(const omu_Primitive& value)
{
    return omu_PrimHolder::CopyOf(value);
}
/// The value itself, shared; none for a null holder.
inline omu_PrimHolder omu_Hold(omu_PrimHolder value)
{
    if (!value) {
        value.Emplace<omu_PrimNone>();
    }
    return value;
}

/// The script's dictionary, and the carrier of a call's keyword values. K is cow_String or int.
///
/// Ownership:  owns its values through copy-on-write holders; copies share them until one side writes.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: copy O(1); Put and Get as cow_Map inserts and finds; container Gets O(items); Keys, Values O(length).
///             An empty dictionary has no allocation.
/// Errors:     a Get answers with 0 and leaves its target as it is when the key is absent or the value does not fit.
///             Put throws nex_TextException for a value that is nested too deep.
/// References: values found and texts got as const char* die with the next Put or with the dictionary.
/// Example:    omu_PrimDictionary<cow_String> options; options.Put(5, "width"); int width = 1; options.Get(width, "width");
template <class K> class omu_PrimDictionary : public omu_PrimDictionaryBase
{
    static_assert(std::same_as<K, int> || std::same_as<K, cow_String>, "keys are integers or strings");

public:
    using Entries = cow_Map<K, omu_PrimHolder>;

    omu_PrimDictionary() noexcept = default;
    explicit omu_PrimDictionary(bio_Ifilter& in) : omu_PrimDictionaryBase(in) {}

    /// "dictionary with string keys" or "dictionary with integer keys".
    cow_String TypeString() const override;
    /// As the script language writes it, in the order of the keys: {'k': 1}.
    cow_String AsString(int depth) const override;
    /// Same class, same keys, equal values.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;
    char Kind() const override;

    int Length() const noexcept { return m_entries.Length(); }
    bool IsMember(const K& key) const { return m_entries.IsMember(key); }
    /// The value under `key`, or null.
    const omu_Primitive* Find(const K& key) const;
    /// The value under `key`, which must be there: its absence is reported as an assertion, and a none value returned.
    const omu_Primitive& Get(const K& key) const;
    /// In ascending order.
    cow_List<K> Keys() const;
    /// In the order of the keys; the values are shared until one side writes.
    cow_List<omu_PrimHolder> Values() const;
    /// Keys and values for iteration, in the order of the keys; no value is null.
    const Entries& GetEntries() const noexcept { return m_entries; }
    /// A dictionary with a copy of each value; as in any copy of a container, the items in them are shared until one
    /// side writes.
    omu_PrimDictionary DeepCopy() const;

    /// Puts what omu_Hold makes of `value` in place of what may be under `key`.
    template <class T>
        requires requires(const T& value) { omu_Hold(value); }
    void Put(const T& value, const K& key)
    {
        Insert(omu_Hold(value), key);
    }
    void Put(omu_PrimHolder value, const K& key) { Insert(omu_Hold(std::move(value)), key); }

    // Each Get returns 1 when the value was found and converted, else 0. Numbers: a double takes any number, an int any
    // integer, truncated; an unsigned int takes the unsigned field, which is 0 unless the number was made as one.
    int Get(double& target, const K& key) const;
    int Get(int& target, const K& key) const;
    int Get(unsigned int& target, const K& key) const;
    int Get(const char*& target, const K& key) const;
    int Get(cow_String& target, const K& key) const;
    int Get(omi_complex& target, const K& key) const;
    int Get(utl_FilePath& target, const K& key) const;
    int Get(omu_PrimPath& target, const K& key) const;
    /// A tuple, a list, or a numeric array as the tuple made from it; so also for the containers below.
    int Get(omu_PrimTuple& target, const K& key) const;
    int Get(omu_PrimArray& target, const K& key) const;
    int Get(omu_PrimEnumBase& target, const K& key) const;
    int Get(omu_PrimNone& target, const K& key) const;
    int Get(omu_PrimType& target, const K& key) const;
    int Get(omu_PrimDictionary<cow_String>& target, const K& key) const;
    int Get(omu_PrimDictionary<int>& target, const K& key) const;
    /// Borrowed: the kernel object itself where the value is a reference to one; 0 when that is gone.
    int Get(const omu_InterfaceObj*& target, const K& key) const;
    int Get(cow_List<int>& target, const K& key) const;
    int Get(cow_List<float>& target, const K& key) const;
    int Get(cow_List<cow_String>& target, const K& key) const;
    int Get(cow_1DArrayList<float, float>& target, const K& key) const;
    int Get(cow_1DArrayList<double, double>& target, const K& key) const;
    int Get(cow_1DArrayList<int, int>& target, const K& key) const;
    int Get(cow_1DArrayList<cow_String, cow_String>& target, const K& key) const;
    int Get(cow_1DArray<int>& target, const K& key) const;
    int Get(cow_2DArray<double>& target, const K& key) const;
    int Get(cow_2DArray<cow_String>& target, const K& key) const;
    int Get(cow_Map<cow_String, float>& target, const K& key) const;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, count, then key and value object of each entry in the order of the keys.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    /// What every Put does; `value` is not null.
    void Insert(omu_PrimHolder value, const K& key);
    /// What every Get does; the conversions are those of keyword values.
    template <class T> int Convert(T& target, const K& key) const;

    Entries m_entries; // no value is null
};

VEXOMU_EXTERN_TEMPLATE(omu_PrimDictionary<int>);
VEXOMU_EXTERN_TEMPLATE(omu_PrimDictionary<cow_String>);
