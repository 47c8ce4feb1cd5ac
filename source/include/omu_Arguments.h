#pragma once

#include "cow_List.h"
#include "omu_BrenowName.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimTuple.h"

#include <concepts>
#include <cstddef>
#include <exception>
#include <limits>
#include <string_view>

/// The types that a keyword parameter can be fetched as; constants and interface objects have forms of their own.
template <class T>
concept omu_KeywordTarget =
    std::same_as<T, bool> || std::same_as<T, int> || std::same_as<T, double> || std::same_as<T, cow_String> ||
    std::same_as<T, cow_List<int>> || std::same_as<T, cow_List<float>> || std::same_as<T, cow_List<cow_String>> ||
    std::same_as<T, cow_1DArray<int>> || std::same_as<T, cow_1DArrayList<int, int>> ||
    std::same_as<T, cow_1DArrayList<float, float>> || std::same_as<T, cow_1DArrayList<double, double>> ||
    std::same_as<T, cow_1DArrayList<cow_String, cow_String>> || std::same_as<T, cow_2DArray<double>> ||
    std::same_as<T, cow_2DArray<cow_String>> || std::same_as<T, cow_Map<cow_String, float>> ||
    std::same_as<T, omi_complex> || std::same_as<T, utl_FilePath> || std::same_as<T, omu_PrimNone> ||
    std::same_as<T, omu_PrimType> || std::same_as<T, omu_PrimTuple> || std::same_as<T, omu_PrimEnumBase> ||
    std::same_as<T, omu_PrimDictionary<int>> || std::same_as<T, omu_PrimDictionary<cow_String>> ||
    std::same_as<T, omu_PrimArray>;

/// The argument list of one call from a script: positional and keyword values, read by a fixed protocol that gives every
/// method the same errors in the same words.
///
///     arguments.Begin();
///     arguments.Get(width, "width");        // required, in the order of declaration
///     arguments.Optional();
///     arguments.Get(name, "name");          // keeps its preset value when not supplied
///     arguments.End("setWidth");
///
/// Ownership:  owns the values; what a Get hands out is a copy or, for an interface object, a borrowed pointer.
/// Threads:    one thread at a time.
/// Complexity: Put and Get O(1) for scalars by position, O(K) with a keyword; Begin O(K), K keywords, of which a call has
///             few.
/// Errors:     fetching never throws an argument error and after the first failure writes to no target; End throws one
///             exception: omu_KeywordErrorException, omu_ArgTypeErrorException, omu_KeywordTypeErrorException (or in
///             their place omu_BreNameErrorException for a string that is no legal name) or omu_ArgNumberErrorException,
///             in this order of checks.
class VEXOMU_API omu_Arguments : public omu_PrimTuple
{
public:
    /// Room for `positionalCount` positional values.
    explicit omu_Arguments(int positionalCount = 0);
    omu_Arguments(const omu_Arguments&) = default;
    omu_Arguments& operator=(const omu_Arguments&) = default;
    ~omu_Arguments() override;

    omu_Primitive* Copy() const override;
    /// As a command text writes it, so that it runs again: (1, 'a', name='x'); numbers with the shortest digits that
    /// read back equal, kernel objects by their path.
    cow_String AsString(int depth) const override;
    cow_String AsRepr() const { return AsString(0); }

    // Filling: a positional value with one argument, a keyword value with two.
    using omu_PrimTuple::Put;
    /// A copy.
    void Put(const omu_InterfaceObj& value);
    void Put(char value, const cow_String& keyword);
    void Put(short value, const cow_String& keyword);
    void Put(float value, const cow_String& keyword);
    void Put(const cow_1DArray<int>& values, const cow_String& keyword);
    void Put(const omu_InterfaceObj& value, const cow_String& keyword);
    /// Takes ownership.
    void Put(omu_Primitive* value, const cow_String& keyword);
    /// Every other value that a dictionary can hold.
    template <class T>
        requires requires(const T& value) { omu_Hold(value); }
    void Put(const T& value, const cow_String& keyword)
    {
        PutKeyword(omu_Hold(value), keyword);
    }
    void Put(const omu_BrenowName& name) { Put(name.AsString()); }
    void Put(const omu_BrenowName& name, const cow_String& keyword) { Put(name.AsString(), keyword); }
    /// None for a null holder.
    void Put(omu_PrimHolder&& value, const cow_String& keyword) { PutKeyword(std::move(value), keyword); }

    // Checking, in this order.
    void Begin() override;
    using omu_PrimTuple::Get;
    void Get(cow_1DArrayList<int, int>& values) override;
    void Get(cow_1DArray<int>& values) override;
    template <omu_KeywordTarget T> void Get(T& value, const cow_String& keyword)
    {
        if (!IsSuppliedByPosition()) {
            GetByKeyword(value, keyword);
        } else if (TakeInPlace(m_items[m_cursor], value)) {
            IncrementCursor();
        } else {
            Get(value);
        }
    }
    void Get(omu_PrimEnumBase& value, const cow_String& keyword);
    /// A string that obeys the rules for the kind of name that the target is.
    void Get(omu_BrenowName& name);
    void Get(omu_BrenowName& name, const cow_String& keyword);
    /// The supplied interface object when it is of class `typeName` or derived from it, else `fallback`.
    const omu_InterfaceObj* Get(const char* typeName, const cow_String& keyword, const omu_InterfaceObj* fallback);

    /// After a failed or missed Get: undoes it, so that another type or keyword can be tried, and says so.
    /// A call keeps its first failure only: where a Get by position before the last one failed, that one is undone
    /// instead. So look first whether what it fetched is there.
    bool Alternative();
    /// After a Get that failed or missed: tries a deprecated keyword for the same parameter, when deprecated use is
    /// permitted. `feature` names it for a reader of the calling code.
    template <class T> void DeprecatedGet(T& value, const cow_String& keyword, cow_String feature);
    const omu_InterfaceObj* DeprecatedGet(const char* typeName, const cow_String& keyword,
                                          const omu_InterfaceObj* fallback, cow_String feature);
    /// Alternative() for a retry with something deprecated: true only when that is permitted too.
    bool DeprecatedAlternative(const cow_String& feature);
    /// Throws the call's argument error, if there is one; an empty `methodName` stands for the default name.
    void End(cow_String methodName) override;

    /// True when End would throw for the state so far.
    bool Error() const;
    /// True when the last keyword fetch failed or missed.
    bool ErrorOnPrevious() const noexcept;

    /// A keyword value of the call.
    struct Keyword
    {
        using cow_Relocatable = Keyword;

        cow_String name;
        omu_PrimHolder value; // not null
        int turn; // among the keywords not fetched yet, those of a turn by their names; FETCHED: not among them
    };
    /// Keyword values, each name once. A call has few: there is room for those in the list itself.
    class VEXOMU_API KeywordList
    {
    public:
        KeywordList() noexcept : m_items(Place()) {}
        KeywordList(const KeywordList& other);
        KeywordList& operator=(KeywordList other) noexcept;
        ~KeywordList();

        int Length() const noexcept { return m_length; }
        const Keyword* begin() const noexcept { return m_items; }
        const Keyword* end() const noexcept { return m_items + m_length; }
        Keyword* begin() noexcept { return m_items; }
        Keyword* end() noexcept { return m_items + m_length; }
        /// Null when there is none.
        Keyword* Find(const cow_String& name) noexcept;
        /// Adds one of a name that is not among them.
        void Add(const cow_String& name, omu_PrimHolder&& value, int turn);

    private:
        static constexpr int ROOM_IN_PLACE = 4;

        Keyword* Place() noexcept { return reinterpret_cast<Keyword*>(m_place); }
        bool IsInPlace() const noexcept { return m_room == ROOM_IN_PLACE; }
        void Grow();

        Keyword* m_items; // in place, or in a block of the pool
        int m_length = 0;
        int m_room = ROOM_IN_PLACE;
        alignas(Keyword) std::byte m_place[ROOM_IN_PLACE * sizeof(Keyword)];
    };
    /// In the order in which they were put first.
    const KeywordList& Keywords() const noexcept { return m_keywords; }
    /// The deprecated keywords that the call used, each once.
    const cow_List<cow_String>& DeprecatedArgumentsUsed() const noexcept { return m_deprecatedUsed; }

private:
    static constexpr int FETCHED = std::numeric_limits<int>::max(); // behind every turn

    void PutKeyword(omu_PrimHolder&& value, const cow_String& keyword);
    /// Counts the Get of a parameter that is not supplied by position. The value to convert; null when there is none.
    const omu_Primitive* FetchKeyword(const cow_String& keyword);
    /// The Get of a parameter that is not supplied by position.
    template <omu_KeywordTarget T> void GetByKeyword(T& value, const cow_String& keyword);
    bool IsSuppliedByPosition() const noexcept { return m_cursor < m_size && m_typeErrorPosition == 0; }
    // What a Get by position would take from a value that stands in its holder, as most do: without a call. False when
    // that Get is to look at it.
    static bool TakeInPlace(const omu_PrimHolder& item, int& value) noexcept
    {
        if (item.CodeInPlace() != 'i') {
            return false;
        }
        const auto& number = static_cast<const omu_PrimNumber&>(*item);
        const bool fits = number.GetDataType() == omu_PrimNumber::INT32;
        value = fits ? number.GetInt() : value;
        return fits;
    }
    static bool TakeInPlace(const omu_PrimHolder& item, double& value) noexcept
    {
        const omu_PrimNumber* const number = item.NumberInPlace();
        value = number != nullptr ? number->GetValue() : value;
        return number != nullptr;
    }
    static bool TakeInPlace(const omu_PrimHolder& item, cow_String& value) noexcept
    {
        const bool fits = item.CodeInPlace() == 's';
        if (fits) {
            value = static_cast<const omu_PrimString&>(*item).GetString();
        }
        return fits;
    }
    template <class T> static bool TakeInPlace(const omu_PrimHolder&, T&) noexcept { return false; }
    /// Throws what End throws when Error() says so; returns for an error that it does not report.
    void ReportError(cow_String methodName) const;
    /// The first of the keywords not fetched yet, of which there is one.
    const cow_String& FirstUnfetched() const noexcept;
    void SetKeywordTypeError(const cow_String& keyword, std::string_view expected, const omu_Primitive& found);
    void SetMissingKeyword(const cow_String& keyword);
    /// Takes the string as a name; one that is none is recorded as the failure of the parameter `position`.
    bool ConvertName(const omu_Primitive& supplied, omu_BrenowName& name, int position);
    bool DeprecatedCheck(const cow_String& feature) const;
    void AddDeprecatedArgUsed(const cow_String& keyword);

    // Not a dictionary: what becomes of a keyword stands beside its value, and comparing the few names of a call is
    // cheaper than any order of them.
    KeywordList m_keywords;
    int m_unfetched = 0; // keywords with a turn; Begin gives the same, the first, to all of them
    int m_nextTurn = 0;
    cow_List<cow_String> m_deprecatedUsed; // without repeats
    int m_requiredByKeyword = 0;           // required parameters supplied by keyword
    int m_keywordFailure = 0;              // parameter number of the last keyword fetch that failed, else 0
    cow_String m_currentKeyword;           // of the last failing keyword fetch, else empty
    int m_optionalMiss = 0;                // parameter number of the last optional one not supplied, else 0
    std::exception_ptr m_nameError;        // of the failed fetch, when it was that of an illegal name
};

// What the member Get with a keyword does, for targets that it does not have, and for two that it has.
VEXOMU_API void omu_Get(omu_Arguments& arguments, cow_1DArray<double>& values, const cow_String& keyword);
VEXOMU_API void omu_Get(omu_Arguments& arguments, cow_1DArray<int>& values, const cow_String& keyword);
VEXOMU_API void omu_Get(omu_Arguments& arguments, cow_1DArray<cow_String>& values, const cow_String& keyword);
VEXOMU_API void omu_Get(omu_Arguments& arguments, cow_2DArray<double>& values, const cow_String& keyword);

template <class T> void omu_Arguments::DeprecatedGet(T& value, const cow_String& keyword, cow_String feature)
{
    if (!DeprecatedCheck(feature) || !Alternative()) {
        return;
    }
    Get(value, keyword);
    if (!ErrorOnPrevious()) {
        AddDeprecatedArgUsed(keyword);
    }
}
