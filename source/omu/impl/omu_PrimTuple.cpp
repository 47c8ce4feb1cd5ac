#include "omu_PrimTuple.h"

#include "VEXCRT.h"
#include "omu_ArgNumberErrorException.h"
#include "omu_ArgTypeErrorException.h"
#include "omu_Convert_detail.h"
#include "omu_GenericTypeErrorException.h"
#include "omu_InterfaceObj.h"
#include "omu_PrimExpr.h"
#include "omu_PrimList.h"
#include "omu_PrimTuple_detail.h"
#include "omu_PrimVisitor.h"
#include "omu_Text_detail.h"
#include "omu_TypeIds.h"

#include <algorithm>
#include <string>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_PrimTuple";

/// The number, or the tuple of a sub-array, at `index`; null, reported as an assertion, for anything else.
omu_Primitive* NewElement(const omu_PrimArray& array, int index)
{
    const omu_Primitive* const item = array.Index(index);
    if (item == nullptr) {
        VEXCRT::_assert("omu_PrimTuple(omu_PrimArray&) - item is NULL", SOURCE, __LINE__);
        return nullptr;
    }
    if (array.ConstGetNumDimensions() > 1) {
        if (!item->IsType('o')) {
            VEXCRT::_assert("omu_PrimTuple(omu_PrimArray&) did not return PrimArray", SOURCE, __LINE__);
            return nullptr;
        }
        return new omu_PrimTuple(static_cast<const omu_PrimArray&>(*item));
    }
    if (!item->IsType('i') && !item->IsType('f')) {
        VEXCRT::_assert("omu_PrimTuple(omu_PrimArray&) Could not cast to PrimNumber", SOURCE, __LINE__);
        return nullptr;
    }
    const auto& number = static_cast<const omu_PrimNumber&>(*item);
    if (number.GetDataType() != omu_PrimNumber::INT32 && !omu_PrimNumber::IsFloating(number.GetDataType())) {
        VEXCRT::_assert("omu_PrimTuple(omu_PrimArray&) Numeric type in array not recognised", SOURCE, __LINE__);
        return nullptr;
    }
    return new omu_PrimNumber(number);
}

/// The value held, or a none value for a slot not filled.
const omu_Primitive& OrNone(const omu_PrimHolder& holder)
{
    const omu_Primitive* const item = holder.ConstGet();
    return item != nullptr ? *item : omu_SharedNone();
}

/// What operator== says of the values, without a virtual call for most of those that stand in place.
inline bool AreEqual(const omu_PrimHolder& left, const omu_PrimHolder& right)
{
    const char code = left.CodeInPlace();
    if (code == right.CodeInPlace()) {
        if (code == 'i' || code == 'f') {
            return static_cast<const omu_PrimNumber&>(*left).Equals(static_cast<const omu_PrimNumber&>(*right));
        }
        if (code == 's') {
            return static_cast<const omu_PrimString&>(*left).GetString() ==
                   static_cast<const omu_PrimString&>(*right).GetString();
        }
    }
    // Asked of shared items too: a NaN does not equal itself.
    return OrNone(left) == OrNone(right);
}

/// The whole tuple as a container.
template <class C> C As(const omu_PrimTuple& tuple)
{
    C items;
    if (!omu_ConvertItems(tuple, items)) {
        omu_GenericTypeErrorException().Throw(SOURCE, __LINE__);
    }
    return items;
}

} // namespace

omu_PrimTuple::omu_PrimTuple(int size) : omu_PrimSequence('('), m_size(std::max(size, 0)), m_items(m_size) {}

omu_PrimTuple::omu_PrimTuple(const omu_PrimArray& array)
    : omu_PrimTuple(array.ConstGetNumDimensions() == 0 ? 1 : array.Length())
{
    for (int i = 0; i < m_size; ++i) {
        Store(NewElement(array, i));
    }
}

omu_PrimTuple::omu_PrimTuple(const cow_List<cow_String>& texts) : omu_PrimTuple(texts.Length())
{
    for (const cow_String& text : texts) {
        Emplace<omu_PrimString>(text);
    }
}

omu_PrimTuple::omu_PrimTuple(bio_Ifilter& in) : omu_PrimSequence(in, '(') {}

omu_PrimTuple::~omu_PrimTuple() = default;

cow_String omu_PrimTuple::TypeString() const
{
    return "tuple";
}

cow_String omu_PrimTuple::AsString(int depth) const
{
    std::string text;
    AppendItems(text, depth);
    return std::string_view(text);
}

void omu_PrimTuple::AppendItems(std::string& text, int depth) const
{
    const bool isList = DynTypeId() == omu_PrimList::TypeId();
    text += isList ? '[' : '(';
    for (const omu_PrimHolder& item : *this) {
        if (&item != begin()) {
            text += ", ";
        }
        omu_AppendText(text, OrNone(item), depth + 1);
    }
    text += isList ? "]" : m_size == 1 ? ",)" : ")";
}

bool omu_PrimTuple::operator==(const omu_Primitive& other) const
{
    if (!other.IsType('(') || other.DynTypeId() != DynTypeId()) {
        return false;
    }
    const auto& tuple = static_cast<const omu_PrimTuple&>(other);
    if (tuple.m_size != m_size) {
        return false;
    }
    return std::equal(begin(), end(), tuple.begin(), AreEqual);
}

void omu_PrimTuple::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitTuple(*this);
}

omu_Primitive* omu_PrimTuple::Copy() const
{
    return new omu_PrimTuple(*this);
}

std::uint32_t omu_PrimTuple::DynTypeId() const
{
    return TypeId();
}

int omu_PrimTuple::Length() const
{
    return m_size;
}

const omu_Primitive* omu_PrimTuple::Index(int index) const
{
    return (*this)[index].ConstGet();
}

const omu_PrimHolder& omu_PrimTuple::operator[](int index) const
{
    if (index < 0 || index >= m_size) {
        static const omu_PrimHolder empty;
        VEXCRT::_assert("i < size", SOURCE, __LINE__);
        return empty;
    }
    return m_items[index];
}

const omu_Primitive& omu_PrimTuple::ItemOrNone(int index) const noexcept
{
    return OrNone(m_items[index]);
}

omu_PrimSequence* omu_PrimTuple::Slice(int low, int high) const
{
    return SliceAs<omu_PrimTuple>(low, high);
}

omu_PrimSequence* omu_PrimTuple::Repeat(int count) const
{
    return RepeatAs<omu_PrimTuple>(count);
}

omu_PrimSequence* omu_PrimTuple::Concat(omu_PrimSequence* other) const
{
    return ConcatAs<omu_PrimTuple>(other);
}

void omu_PrimTuple::PutCopy(const omu_Primitive* item)
{
    if (item == nullptr) {
        VEXCRT::_assert("Tuple Index returned NULL", SOURCE, __LINE__);
        return;
    }
    Put(omu_PrimHolder::CopyOf(*item));
}

omu_PrimHolder* omu_PrimTuple::NextSlot()
{
    if (m_cursor >= m_size) {
        VEXCRT::_assert("cursor < size", SOURCE, __LINE__);
        return nullptr;
    }
    return m_items.Write() + m_cursor;
}

inline omu_PrimHolder* omu_PrimTuple::NextFreshSlot() noexcept
{
    omu_PrimHolder* const items = m_cursor < m_size ? m_items.WriteUnshared() : nullptr;
    return items != nullptr && items[m_cursor].IsNull() ? items + m_cursor : nullptr;
}

template <omu_HeldInPlace V, class... Args> inline void omu_PrimTuple::Emplace(const Args&... args)
{
    if (omu_PrimHolder* const slot = NextFreshSlot()) {
        slot->Emplace<V>(args...);
        ++m_cursor;
    } else {
        Put(omu_PrimHolder(std::in_place_type<V>, args...));
    }
}

void omu_PrimTuple::Put(omu_PrimHolder&& item)
{
    if (item) {
        NoteItem(*item);
    }
    if (omu_PrimHolder* const fresh = NextFreshSlot()) {
        std::construct_at(fresh, std::move(item)); // over an empty holder, which has nothing to destroy
        ++m_cursor;
    } else if (omu_PrimHolder* const slot = NextSlot()) {
        *slot = std::move(item);
        ++m_cursor;
    }
}

void omu_PrimTuple::Store(omu_Primitive* value)
{
    Put(omu_PrimHolder(value));
}

void omu_PrimTuple::Put(const cow_1DArray<int>& values)
{
    auto tuple = std::make_unique<omu_PrimTuple>(values.Length());
    for (const int value : values) {
        tuple->Emplace<omu_PrimNumber>(value);
    }
    Store(tuple.release());
}

void omu_PrimTuple::Put(const cow_List<cow_String>& values)
{
    Store(new omu_PrimTuple(values));
}

void omu_PrimTuple::Put(const omu_PrimType& value)
{
    Store(value.Copy());
}

void omu_PrimTuple::Put(const omu_PrimNone&)
{
    Emplace<omu_PrimNone>();
}

void omu_PrimTuple::Put(const omu_PrimEnumBase& value)
{
    Store(value.Copy());
}

void omu_PrimTuple::Put(omu_Primitive* value)
{
    Store(value);
}

void omu_PrimTuple::Put(omu_InterfaceObj* value)
{
    Store(value);
}

void omu_PrimTuple::Put(const omu_PrimDictionary<cow_String>& value)
{
    Store(value.Copy());
}

void omu_PrimTuple::Put(const omu_PrimDictionary<int>& value)
{
    Store(value.Copy());
}

void omu_PrimTuple::Put(const omu_PrimArray& value)
{
    Store(value.Copy());
}

void omu_PrimTuple::Put(const omu_PrimTuple& value)
{
    Store(value.Copy());
}

void omu_PrimTuple::Put(const omu_PrimPath& value)
{
    Store(value.Copy());
}

void omu_PrimTuple::Put(const omu_PrimExpr& value)
{
    Store(value.Copy());
}

void omu_PrimTuple::Put(float value)
{
    Emplace<omu_PrimNumber>(value);
}

void omu_PrimTuple::Put(double value)
{
    Emplace<omu_PrimNumber>(value);
}

void omu_PrimTuple::Put(const utl_FilePath& value)
{
    Emplace<omu_PrimString>(value.PathName());
}

void omu_PrimTuple::Put(const omi_complex& value)
{
    Store(new omu_PrimComplex(value));
}

void omu_PrimTuple::Put(const cow_String& value)
{
    Emplace<omu_PrimString>(value);
}

void omu_PrimTuple::Put(unsigned int value)
{
    Emplace<omu_PrimNumber>(value);
}

void omu_PrimTuple::Put(int value)
{
    Emplace<omu_PrimNumber>(value);
}

void omu_PrimTuple::Put(short value)
{
    Emplace<omu_PrimNumber>(value, omu_PrimNumber::INT16);
}

void omu_PrimTuple::Put(char value)
{
    Emplace<omu_PrimNumber>(value, omu_PrimNumber::INT8);
}

const omu_InterfaceObj* omu_PrimTuple::Get(const char* typeName, const omu_InterfaceObj* prototype)
{
    const omu_InterfaceObj* object = prototype;
    const omu_Primitive* const item = ItemToTest();
    if (item != nullptr && !omu_ConvertObject(*item, typeName, object)) {
        SetTypeError(typeName);
    }
    IncrementCursor();
    return object;
}

void omu_PrimTuple::Get(cow_Map<cow_String, float>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_2DArray<cow_String>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_2DArray<double>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_1DArrayList<cow_String, cow_String>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_1DArrayList<int, int>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_1DArrayList<float, float>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_1DArrayList<double, double>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_1DArray<int>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_List<cow_String>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_List<float>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(cow_List<int>& values)
{
    FetchPositional(values);
}

void omu_PrimTuple::Get(omu_PrimType& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(omu_PrimNone& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(omu_PrimArray& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(omu_PrimEnumBase& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(omu_PrimDictionary<cow_String>& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(omu_PrimDictionary<int>& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(omu_PrimTuple& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(omu_PrimPath& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(utl_FilePath& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(omi_complex& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(cow_String& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(double& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(float& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(unsigned int& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(int& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(short& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(char& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Get(bool& value)
{
    FetchPositional(value);
}

void omu_PrimTuple::Begin()
{
    ResetReading();
}

void omu_PrimTuple::End(cow_String methodName)
{
    if (methodName.IsEmpty()) {
        methodName = m_defaultName;
    }
    if (m_typeErrorPosition != 0) {
        omu_ArgTypeErrorException(m_typeErrorPosition, m_expectedType, m_actualType, methodName)
            .Throw(SOURCE, __LINE__);
    }
    if (CountError()) {
        omu_ArgNumberErrorException(m_minimum, m_size, methodName).Throw(SOURCE, __LINE__);
    }
    ResetReading();
}

bool omu_PrimTuple::Alternative()
{
    if (m_typeErrorPosition == 0 || m_typeErrorPosition != m_cursor) {
        return false;
    }
    --m_cursor;
    --m_gets;
    m_minimum -= m_required;
    m_typeErrorPosition = 0;
    m_actualType.Clear();
    m_expectedType.Clear();
    return true;
}

bool omu_PrimTuple::Error() const
{
    return CountError() || m_typeErrorPosition != 0;
}

void omu_PrimTuple::SetTypeError(std::string_view expected)
{
    const omu_Primitive& item = ItemOrNone(m_cursor);
    m_typeErrorPosition = m_cursor + 1;
    m_expectedType = expected;
    m_actualType = item.IsType('c') ? item.AsString(0) : item.TypeString();
}

cow_List<int> omu_PrimTuple::AsListInt() const
{
    return As<cow_List<int>>(*this);
}

cow_List<float> omu_PrimTuple::AsListFloat() const
{
    return As<cow_List<float>>(*this);
}

cow_List<cow_String> omu_PrimTuple::AsListString() const
{
    return As<cow_List<cow_String>>(*this);
}

cow_1DArrayList<int, int> omu_PrimTuple::AsArrayInt() const
{
    return As<cow_1DArrayList<int, int>>(*this);
}

cow_1DArrayList<float, float> omu_PrimTuple::AsArrayFloat() const
{
    return As<cow_1DArrayList<float, float>>(*this);
}

cow_1DArrayList<double, double> omu_PrimTuple::AsArrayDouble() const
{
    return As<cow_1DArrayList<double, double>>(*this);
}

cow_1DArrayList<cow_String, cow_String> omu_PrimTuple::AsArrayString() const
{
    return As<cow_1DArrayList<cow_String, cow_String>>(*this);
}

cow_2DArray<double> omu_PrimTuple::As2DArrayDouble() const
{
    return As<cow_2DArray<double>>(*this);
}

cow_2DArray<cow_String> omu_PrimTuple::As2DArrayString() const
{
    return As<cow_2DArray<cow_String>>(*this);
}

cow_Map<cow_String, float> omu_PrimTuple::AsMapString2Float() const
{
    return As<cow_Map<cow_String, float>>(*this);
}

cow_1DArray<int> omu_PrimTuple::As1DArrayInt() const
{
    return As<cow_1DArray<int>>(*this);
}

std::uint32_t omu_PrimTuple::TypeId()
{
    return omu_TypeIdOf(omu_PrimTupleRow);
}

void* omu_PrimTuple::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimTuple>(in, place);
}

void omu_PrimTuple::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimTuple>(object);
}

void omu_PrimTuple::ReadData(bio_Ifilter& in, void* object)
{
    omu_PrimTuple read;
    ReadTypeCode(in, read, "(");
    const std::uint32_t count = in.ReadCount(/*minItemBytes=*/sizeof(std::uint32_t));
    read.m_items.Reserve(static_cast<int>(in.SafeReserve(count, sizeof(omu_PrimHolder))));
    for (std::uint32_t i = 0; i < count; ++i) {
        omu_PrimHolder item;
        in >> item;
        if (item) {
            read.NoteItem(*item);
            read.m_cursor = static_cast<int>(i) + 1; // as after the last Put
        }
        read.m_items.Append(std::move(item));
    }
    read.m_size = static_cast<int>(count);
    in >> read.m_defaultName;
    *static_cast<omu_PrimTuple*>(object) = read;
}

void omu_PrimTuple::WriteData(bio_Ofilter& out, const void* object)
{
    const auto& tuple = *static_cast<const omu_PrimTuple*>(object);
    RequireStreamForm(tuple);
    omu_PrimSequence::WriteData(out, object);
    out << static_cast<std::uint32_t>(tuple.m_size);
    for (const omu_PrimHolder& item : tuple) {
        out << item.ConstGet();
    }
    out << tuple.m_defaultName;
}

void omu_PrimTuple::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const auto& tuple = *static_cast<const omu_PrimTuple*>(object);
    out.Open("omu_PrimTuple");
    omu_PrimSequence::PrintData(out, object);
    out.Field(tuple.m_size);
    out.Field(tuple.m_cursor);
    out.Field(tuple.m_minimum);
    out.Field(tuple.m_gets);
    out.Field(tuple.m_required == 0);
    out.Field(tuple.m_typeErrorPosition);
    out.Field(tuple.m_actualType);
    out.Field(tuple.m_expectedType);
    out.Field(tuple.m_gets);
    for (const omu_PrimHolder& item : tuple) {
        if (item) {
            out << *item;
        } else {
            out.Field("(null)");
        }
    }
    out.Field(tuple.m_defaultName);
    out.Close();
}
