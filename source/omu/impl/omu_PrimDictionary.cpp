#include "omu_PrimDictionary.h"

#include "VEXCRT.h"
#include "omu_AccessErrorException.h"
#include "omu_Convert_detail.h"
#include "omu_PrimVisitor.h"
#include "omu_Text_detail.h"
#include "omu_TypeIds.h"

namespace
{

template <class K> constexpr bool isText = std::same_as<K, cow_String>;

template <class K> void AppendKey(std::string& text, const K& key)
{
    if constexpr (isText<K>) {
        omu_AppendQuoted(text, key);
    } else {
        text += cow_String(key).view();
    }
}

} // namespace

omu_PrimHolder omu_Hold(const omi_complex& value)
{
    return omu_PrimHolder(new omu_PrimComplex(value));
}

omu_PrimHolder omu_Hold(const utl_FilePath& value)
{
    return omu_Hold(value.PathName());
}

omu_PrimHolder omu_Hold(const cow_List<cow_String>& values)
{
    return omu_PrimHolder(new omu_PrimTuple(values));
}

template <class K> cow_String omu_PrimDictionary<K>::TypeString() const
{
    return omu_typeNames<omu_PrimDictionary>.keyword;
}

template <class K> cow_String omu_PrimDictionary<K>::AsString(int depth) const
{
    std::string text("{");
    for (const auto& [key, value] : m_entries) {
        if (text.size() > 1) {
            text += ", ";
        }
        AppendKey(text, key);
        text += ": ";
        omu_AppendText(text, *value, depth + 1);
    }
    text += "}";
    return std::string_view(text);
}

template <class K> bool omu_PrimDictionary<K>::operator==(const omu_Primitive& other) const
{
    if (!other.IsType('{') || other.DynTypeId() != TypeId()) {
        return false;
    }
    const Entries& entries = static_cast<const omu_PrimDictionary&>(other).m_entries;
    return m_entries.Length() == entries.Length() &&
           std::equal(m_entries.begin(), m_entries.end(), entries.begin(), [](const auto& left, const auto& right) {
               return left.first == right.first && *left.second == *right.second;
           });
}

template <class K> void omu_PrimDictionary<K>::Accept(omu_PrimVisitor* visitor) const
{
    if constexpr (isText<K>) {
        visitor->VisitStringDictionary(*this);
    } else {
        visitor->VisitIntDictionary(*this);
    }
}

template <class K> omu_Primitive* omu_PrimDictionary<K>::Copy() const
{
    return new omu_PrimDictionary(*this);
}

template <class K> std::uint32_t omu_PrimDictionary<K>::DynTypeId() const
{
    return TypeId();
}

template <class K> char omu_PrimDictionary<K>::Kind() const
{
    return isText<K> ? 's' : 'i';
}

template <class K> const omu_Primitive* omu_PrimDictionary<K>::Find(const K& key) const
{
    const omu_PrimHolder* const value = m_entries.Find(key);
    return value != nullptr ? value->ConstGet() : nullptr;
}

template <class K> const omu_Primitive& omu_PrimDictionary<K>::Get(const K& key) const
{
    const omu_Primitive* const value = Find(key);
    if (value == nullptr) {
        VEXCRT::_assert("dict.IsMember(key)", "source/include/omu_PrimDictionary", 652);
        return omu_SharedNone();
    }
    return *value;
}

template <class K> cow_List<K> omu_PrimDictionary<K>::Keys() const
{
    cow_List<K> keys;
    keys.Reserve(Length());
    for (const auto& [key, value] : m_entries) {
        keys.Append(key);
    }
    return keys;
}

template <class K> cow_List<omu_PrimHolder> omu_PrimDictionary<K>::Values() const
{
    cow_List<omu_PrimHolder> values;
    values.Reserve(Length());
    for (const auto& [key, value] : m_entries) {
        values.Append(value);
    }
    return values;
}

template <class K> omu_PrimDictionary<K> omu_PrimDictionary<K>::DeepCopy() const
{
    omu_PrimDictionary copy;
    for (const auto& [key, value] : m_entries) {
        copy.Put(*value, key);
    }
    return copy;
}

template <class K> void omu_PrimDictionary<K>::Insert(omu_PrimHolder value, const K& key)
{
    NoteItem(*value);
    m_entries.Insert(key, std::move(value));
}

template <class K> template <class T> int omu_PrimDictionary<K>::Convert(T& target, const K& key) const
{
    const omu_Primitive* const value = Find(key);
    try {
        return value != nullptr && omu_ConvertKeyword(*value, target) ? 1 : 0;
    } catch (const omu_AccessErrorException&) {
        return 0; // a reference to a kernel object that is gone: no Get throws
    }
}

// The Gets differ in their target alone.
#define OMU_DEFINE_GET(...)                                                                                            \
    template <class K> int omu_PrimDictionary<K>::Get(__VA_ARGS__& target, const K& key) const                         \
    {                                                                                                                  \
        return Convert(target, key);                                                                                   \
    }
OMU_DEFINE_GET(double)
OMU_DEFINE_GET(int)
OMU_DEFINE_GET(unsigned int)
OMU_DEFINE_GET(const char*)
OMU_DEFINE_GET(cow_String)
OMU_DEFINE_GET(omi_complex)
OMU_DEFINE_GET(utl_FilePath)
OMU_DEFINE_GET(omu_PrimPath)
OMU_DEFINE_GET(omu_PrimTuple)
OMU_DEFINE_GET(omu_PrimArray)
OMU_DEFINE_GET(omu_PrimEnumBase)
OMU_DEFINE_GET(omu_PrimNone)
OMU_DEFINE_GET(omu_PrimType)
OMU_DEFINE_GET(omu_PrimDictionary<cow_String>)
OMU_DEFINE_GET(omu_PrimDictionary<int>)
OMU_DEFINE_GET(const omu_InterfaceObj*)
OMU_DEFINE_GET(cow_List<int>)
OMU_DEFINE_GET(cow_List<float>)
OMU_DEFINE_GET(cow_List<cow_String>)
OMU_DEFINE_GET(cow_1DArrayList<float, float>)
OMU_DEFINE_GET(cow_1DArrayList<double, double>)
OMU_DEFINE_GET(cow_1DArrayList<int, int>)
OMU_DEFINE_GET(cow_1DArrayList<cow_String, cow_String>)
OMU_DEFINE_GET(cow_1DArray<int>)
OMU_DEFINE_GET(cow_2DArray<double>)
OMU_DEFINE_GET(cow_2DArray<cow_String>)
OMU_DEFINE_GET(cow_Map<cow_String, float>)
#undef OMU_DEFINE_GET

template <class K> std::uint32_t omu_PrimDictionary<K>::TypeId()
{
    return omu_TypeIdOf(isText<K> ? omu_PrimStrDictionaryRow : omu_PrimIntDictionaryRow);
}

template <class K> void* omu_PrimDictionary<K>::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimDictionary>(in, place);
}

template <class K> void omu_PrimDictionary<K>::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimDictionary>(object);
}

template <class K> void omu_PrimDictionary<K>::ReadData(bio_Ifilter& in, void* object)
{
    omu_PrimDictionary read;
    ReadTypeCode(in, read, "{");
    const std::uint32_t count = in.ReadCount(/*minItemBytes=*/2 * sizeof(std::uint32_t));
    K last{};
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t start = in.Offset();
        K key{};
        in >> key;
        if (i > 0 && !(last < key)) {
            in.FailAt("keys that are not in order", start);
        }
        omu_PrimHolder value;
        in >> value;
        if (!value) {
            in.FailAt("key without a value", start);
        }
        read.Insert(std::move(value), key);
        last = std::move(key);
    }
    *static_cast<omu_PrimDictionary*>(object) = read;
}

template <class K> void omu_PrimDictionary<K>::WriteData(bio_Ofilter& out, const void* object)
{
    const auto& dictionary = *static_cast<const omu_PrimDictionary*>(object);
    RequireStreamForm(dictionary);
    omu_PrimDictionaryBase::WriteData(out, object);
    out << static_cast<std::uint32_t>(dictionary.Length());
    for (const auto& [key, value] : dictionary.m_entries) {
        out << key << value.ConstGet();
    }
}

template <class K> void omu_PrimDictionary<K>::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimDictionary");
    omu_PrimDictionaryBase::PrintData(out, object);
    for (const auto& [key, value] : static_cast<const omu_PrimDictionary*>(object)->m_entries) {
        out.Field(key);
        out << *value;
    }
    out.Close();
}

template class omu_PrimDictionary<int>;
template class omu_PrimDictionary<cow_String>;
