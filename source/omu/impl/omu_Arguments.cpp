#include "omu_Arguments.h"

#include "omi_Singleton.h"
#include "omi_complex.h"
#include "omu_ArgNumberErrorException.h"
#include "omu_ArgTypeErrorException.h"
#include "omu_BackwardCompat.h"
#include "omu_BreNameErrorException.h"
#include "omu_CommandText_detail.h"
#include "omu_Convert_detail.h"
#include "omu_InterfaceObj.h"
#include "omu_KeywordErrorException.h"
#include "omu_KeywordTypeErrorException.h"
#include "omu_PrimArray.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimNone.h"
#include "omu_PrimType.h"
#include "utl_BlockPool.h"
#include "utl_FilePath.h"

#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_Arguments";

/// Stands for the type names of a keyword that was not supplied; End then reports a wrong count, not a wrong type.
constexpr const char* UNDETERMINED = "Undetermined";

constexpr const char* SEQUENCE_OF_INTEGERS = "sequence of Integers";

/// Fetches the items of `values` as an array list, with which they share their memory.
template <class T> void GetAsArrayList(omu_Arguments& arguments, cow_1DArray<T>& values, const cow_String& keyword)
{
    cow_1DArrayList<T, T> items;
    static_cast<cow_Sequence<T>&>(items) = values;
    arguments.Get(items, keyword);
    static_cast<cow_Sequence<T>&>(values) = items;
}

} // namespace

omu_Arguments::omu_Arguments(int positionalCount) : omu_PrimTuple(positionalCount) {}

omu_Arguments::~omu_Arguments() = default;

omu_Primitive* omu_Arguments::Copy() const
{
    return new omu_Arguments(*this);
}

cow_String omu_Arguments::AsString(int) const
{
    return omu_ArgumentsCommandText(*this);
}

void omu_Arguments::Put(const omu_InterfaceObj& value)
{
    Put(value.Copy());
}

void omu_Arguments::Put(char value, const cow_String& keyword)
{
    PutKeyword(omu_PrimHolder(std::in_place_type<omu_PrimNumber>, value, omu_PrimNumber::INT8), keyword);
}

void omu_Arguments::Put(short value, const cow_String& keyword)
{
    PutKeyword(omu_PrimHolder(std::in_place_type<omu_PrimNumber>, value, omu_PrimNumber::INT16), keyword);
}

void omu_Arguments::Put(float value, const cow_String& keyword)
{
    PutKeyword(omu_PrimHolder(std::in_place_type<omu_PrimNumber>, value), keyword);
}

void omu_Arguments::Put(const cow_1DArray<int>& values, const cow_String& keyword)
{
    omu_PrimTuple tuple(values.Length());
    for (const int value : values) {
        tuple.Put(value);
    }
    Put(tuple, keyword);
}

void omu_Arguments::Put(const omu_InterfaceObj& value, const cow_String& keyword)
{
    Put(value.Copy(), keyword);
}

void omu_Arguments::Put(omu_Primitive* value, const cow_String& keyword)
{
    PutKeyword(omu_PrimHolder(value), keyword);
}

omu_Arguments::KeywordList::KeywordList(const KeywordList& other) : KeywordList()
{
    for (const Keyword& keyword : other) {
        Add(keyword.name, omu_PrimHolder(keyword.value), keyword.turn);
    }
}

omu_Arguments::KeywordList& omu_Arguments::KeywordList::operator=(KeywordList other) noexcept
{
    static_assert(cow_BitwiseMovable<Keyword>);
    std::swap(m_place, other.m_place);
    std::swap(m_items, other.m_items);
    std::swap(m_room, other.m_room);
    std::swap(m_length, other.m_length);
    for (KeywordList* const list : {this, &other}) {
        list->m_items = list->IsInPlace() ? list->Place() : list->m_items;
    }
    return *this;
}

omu_Arguments::KeywordList::~KeywordList()
{
    std::destroy(begin(), end());
    if (!IsInPlace()) {
        utl_BlockPool::Free(m_items, static_cast<std::size_t>(m_room) * sizeof(Keyword));
    }
}

inline omu_Arguments::Keyword* omu_Arguments::KeywordList::Find(const cow_String& name) noexcept
{
    for (Keyword& keyword : *this) {
        if (keyword.name == name) {
            return &keyword;
        }
    }
    return nullptr;
}

inline void omu_Arguments::KeywordList::Add(const cow_String& name, omu_PrimHolder&& value, int turn)
{
    if (m_length == m_room) {
        Grow();
    }
    ::new (static_cast<void*>(end())) Keyword{name, std::move(value), turn};
    ++m_length;
}

[[gnu::noinline]] void omu_Arguments::KeywordList::Grow()
{
    KeywordList larger;
    larger.m_items =
        static_cast<Keyword*>(utl_BlockPool::Allocate(2 * static_cast<std::size_t>(m_room) * sizeof(Keyword)));
    larger.m_room = 2 * m_room;
    cow_Relocate(m_items, static_cast<std::size_t>(m_length), larger.m_items);
    std::swap(m_items, larger.m_items);
    std::swap(m_room, larger.m_room);
}

void omu_Arguments::PutKeyword(omu_PrimHolder&& value, const cow_String& keyword)
{
    if (!value) {
        value.Emplace<omu_PrimNone>();
    }
    NoteItem(*value);
    if (Keyword* const known = m_keywords.Find(keyword)) {
        known->value = std::move(value);
    } else {
        m_keywords.Add(keyword, std::move(value), FETCHED);
    }
}

void omu_Arguments::Begin()
{
    ResetReading();
    m_unfetched = m_keywords.Length();
    m_nextTurn = 1;
    for (Keyword& keyword : m_keywords) {
        keyword.turn = 0;
    }
    m_requiredByKeyword = 0;
    m_keywordFailure = 0;
    m_currentKeyword.Clear();
    m_optionalMiss = 0;
    if (m_nameError != nullptr) {
        m_nameError = nullptr;
    }
}

// The tuple's own name of these targets is "sequence of Ints"; both texts are promised.
void omu_Arguments::Get(cow_1DArrayList<int, int>& values)
{
    FetchPositional(values, SEQUENCE_OF_INTEGERS);
}

void omu_Arguments::Get(cow_1DArray<int>& values)
{
    FetchPositional(values, SEQUENCE_OF_INTEGERS);
}

inline const omu_Primitive* omu_Arguments::FetchKeyword(const cow_String& keyword)
{
    ++m_gets;
    m_minimum += m_required;
    Keyword* const supplied = m_unfetched != 0 ? m_keywords.Find(keyword) : nullptr;
    if (supplied == nullptr || supplied->turn == FETCHED) {
        if (m_typeErrorPosition == 0) {
            SetMissingKeyword(keyword);
        }
        return nullptr;
    }
    supplied->turn = FETCHED;
    --m_unfetched;
    m_requiredByKeyword += m_required;
    return m_typeErrorPosition == 0 ? supplied->value.ConstGet() : nullptr;
}

template <omu_KeywordTarget T> void omu_Arguments::GetByKeyword(T& value, const cow_String& keyword)
{
    const omu_Primitive* const supplied = FetchKeyword(keyword);
    if (supplied != nullptr && !omu_ConvertKeyword(*supplied, value)) {
        SetKeywordTypeError(keyword, omu_KeywordTypeName<T>(), *supplied);
    }
}

template VEXOMU_API void omu_Arguments::GetByKeyword(bool&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(int&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(double&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_String&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_List<int>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_List<float>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_List<cow_String>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_1DArray<int>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_1DArrayList<int, int>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_1DArrayList<float, float>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_1DArrayList<double, double>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_1DArrayList<cow_String, cow_String>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_2DArray<double>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_2DArray<cow_String>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(cow_Map<cow_String, float>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(omi_complex&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(utl_FilePath&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(omu_PrimNone&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(omu_PrimType&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(omu_PrimTuple&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(omu_PrimDictionary<int>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(omu_PrimDictionary<cow_String>&, const cow_String&);
template VEXOMU_API void omu_Arguments::GetByKeyword(omu_PrimArray&, const cow_String&);

void omu_Arguments::Get(omu_PrimEnumBase& value, const cow_String& keyword)
{
    if (IsSuppliedByPosition()) {
        Get(value);
        return;
    }
    const omu_Primitive* const supplied = FetchKeyword(keyword);
    if (supplied != nullptr && !omu_Convert(*supplied, value)) {
        SetKeywordTypeError(keyword, value.TypeString(), *supplied);
    }
}

bool omu_Arguments::ConvertName(const omu_Primitive& supplied, omu_BrenowName& name, int position)
{
    if (!supplied.IsType('s')) {
        return false;
    }
    try {
        name = omu_BrenowName(static_cast<const omu_PrimString&>(supplied).GetString(), name.Kind());
    } catch (const omu_BreNameErrorException&) {
        m_nameError = std::current_exception();
        m_typeErrorPosition = position;
        m_expectedType = m_actualType = UNDETERMINED;
    }
    return true;
}

void omu_Arguments::Get(omu_BrenowName& name)
{
    const omu_Primitive* const item = ItemToTest();
    if (item != nullptr && !ConvertName(*item, name, m_cursor + 1)) {
        SetTypeError(omu_typeNames<cow_String>.positional);
    }
    IncrementCursor();
}

void omu_Arguments::Get(omu_BrenowName& name, const cow_String& keyword)
{
    if (IsSuppliedByPosition()) {
        Get(name);
        return;
    }
    const omu_Primitive* const supplied = FetchKeyword(keyword);
    if (supplied == nullptr) {
        return;
    }
    if (!ConvertName(*supplied, name, m_gets)) {
        SetKeywordTypeError(keyword, omu_KeywordTypeName<cow_String>(), *supplied);
    } else if (m_nameError != nullptr) {
        m_keywordFailure = m_gets;
        m_currentKeyword = keyword;
    }
}

const omu_InterfaceObj* omu_Arguments::Get(const char* typeName, const cow_String& keyword,
                                           const omu_InterfaceObj* fallback)
{
    if (IsSuppliedByPosition()) {
        return Get(typeName, fallback);
    }
    const omu_InterfaceObj* object = fallback;
    const omu_Primitive* const supplied = FetchKeyword(keyword);
    if (supplied != nullptr && !omu_ConvertObject(*supplied, typeName, object)) {
        SetKeywordTypeError(keyword, typeName, *supplied);
    }
    return object;
}

bool omu_Arguments::Alternative()
{
    if (!ErrorOnPrevious()) {
        if (m_keywordFailure != 0 || m_gets > m_size) {
            return false;
        }
        if (!omu_PrimTuple::Alternative()) {
            return false;
        }
        m_nameError = nullptr;
        return true;
    }
    m_nameError = nullptr;
    m_minimum -= m_required;
    m_optionalMiss = 0;
    m_keywordFailure = 0;
    m_typeErrorPosition = 0;
    m_actualType.Clear();
    m_expectedType.Clear();
    if (Keyword* const supplied = m_keywords.Find(m_currentKeyword)) {
        m_requiredByKeyword -= m_required;
        m_unfetched += supplied->turn == FETCHED ? 1 : 0;
        supplied->turn = m_nextTurn++;
    }
    m_currentKeyword.Clear();
    --m_gets;
    return true;
}

const omu_InterfaceObj* omu_Arguments::DeprecatedGet(const char* typeName, const cow_String& keyword,
                                                     const omu_InterfaceObj* fallback, cow_String feature)
{
    if (!DeprecatedCheck(feature) || !Alternative()) {
        return fallback;
    }
    const omu_InterfaceObj* const object = Get(typeName, keyword, fallback);
    if (!ErrorOnPrevious()) {
        AddDeprecatedArgUsed(keyword);
    }
    return object;
}

bool omu_Arguments::DeprecatedAlternative(const cow_String& feature)
{
    return Alternative() && DeprecatedCheck(feature);
}

void omu_Arguments::End(cow_String methodName)
{
    m_optionalMiss = 0;
    if (Error()) {
        ReportError(std::move(methodName));
    }
}

void omu_Arguments::ReportError(cow_String methodName) const
{
    if (methodName.IsEmpty()) {
        methodName = m_defaultName;
    }
    // The order of the checks and the lines they report are promised.
    if (m_unfetched != 0) {
        omu_KeywordErrorException(FirstUnfetched(), methodName).Throw(SOURCE, 256);
    }
    if (m_typeErrorPosition != 0) {
        if (m_nameError != nullptr) {
            std::rethrow_exception(m_nameError);
        }
        if (m_currentKeyword.IsEmpty()) {
            omu_ArgTypeErrorException(m_typeErrorPosition, m_expectedType, m_actualType, methodName).Throw(SOURCE, 262);
        }
        if (m_expectedType != UNDETERMINED && m_actualType != UNDETERMINED) {
            omu_KeywordTypeErrorException(m_currentKeyword, m_expectedType, m_actualType, methodName)
                .Throw(SOURCE, 268);
        }
    }
    const int supplied = m_size + m_requiredByKeyword;
    if (supplied < m_minimum) {
        omu_ArgNumberErrorException(m_minimum, supplied, methodName).Throw(SOURCE, 276);
    }
    const int total = m_size + m_keywords.Length();
    if (total > m_gets) {
        omu_ArgNumberErrorException(m_gets, total, methodName).Throw(SOURCE, 282);
    }
}

bool omu_Arguments::Error() const
{
    return m_unfetched != 0 || m_typeErrorPosition != 0 || m_size + m_requiredByKeyword < m_minimum ||
           m_size + m_keywords.Length() > m_gets;
}

bool omu_Arguments::ErrorOnPrevious() const noexcept
{
    return m_gets != 0 && (m_keywordFailure == m_gets || m_optionalMiss == m_gets);
}

const cow_String& omu_Arguments::FirstUnfetched() const noexcept
{
    const auto place = [](const Keyword& keyword) { return std::tie(keyword.turn, keyword.name); };
    return std::ranges::min_element(m_keywords, {}, place)->name;
}

void omu_Arguments::SetKeywordTypeError(const cow_String& keyword, std::string_view expected,
                                        const omu_Primitive& found)
{
    m_typeErrorPosition = m_keywordFailure = m_gets;
    m_expectedType = expected;
    m_actualType = omu_ElementAwareTypeName(found);
    m_currentKeyword = keyword;
}

void omu_Arguments::SetMissingKeyword(const cow_String& keyword)
{
    m_expectedType = m_actualType = UNDETERMINED;
    m_currentKeyword = keyword;
    if (m_required == 0) {
        m_optionalMiss = m_gets;
    } else {
        m_typeErrorPosition = m_keywordFailure = m_gets;
    }
}

bool omu_Arguments::DeprecatedCheck(const cow_String&) const
{
    return omi_Singleton<omu_BackwardCompat>::Instance().IsOn();
}

void omu_Arguments::AddDeprecatedArgUsed(const cow_String& keyword)
{
    if (!m_deprecatedUsed.IsMember(keyword)) {
        m_deprecatedUsed.Append(keyword);
    }
}

void omu_Get(omu_Arguments& arguments, cow_1DArray<double>& values, const cow_String& keyword)
{
    GetAsArrayList(arguments, values, keyword);
}

void omu_Get(omu_Arguments& arguments, cow_1DArray<int>& values, const cow_String& keyword)
{
    arguments.Get(values, keyword);
}

void omu_Get(omu_Arguments& arguments, cow_1DArray<cow_String>& values, const cow_String& keyword)
{
    GetAsArrayList(arguments, values, keyword);
}

void omu_Get(omu_Arguments& arguments, cow_2DArray<double>& values, const cow_String& keyword)
{
    arguments.Get(values, keyword);
}
