#pragma once

#include "cow_List.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimTuple.h"

#include <concepts>

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
/// Complexity: Put and Get O(1) for scalars plus O(log K) for keywords, Begin O(K), K keywords.
/// Errors:     fetching never throws an argument error and after the first failure writes to no target; End throws one
///             exception: omu_KeywordErrorException, omu_ArgTypeErrorException, omu_KeywordTypeErrorException or
///             omu_ArgNumberErrorException, in this order of checks.
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
    void Put(char value, const cow_String& keyword);
    void Put(short value, const cow_String& keyword);
    void Put(float value, const cow_String& keyword);
    void Put(const cow_1DArray<int>& values, const cow_String& keyword);
    void Put(const omu_InterfaceObj& value, const cow_String& keyword);
    /// Takes ownership.
    void Put(omu_Primitive* value, const cow_String& keyword);
    /// Every other value that a dictionary can hold.
    template <class T>
        requires requires(omu_PrimDictionary<cow_String> keywords, const T& value, const cow_String& key) {
            keywords.Put(value, key);
        }
    void Put(const T& value, const cow_String& keyword)
    {
        m_keywords.Put(value, keyword);
    }

    // Checking, in this order.
    void Begin() override;
    using omu_PrimTuple::Get;
    void Get(cow_1DArrayList<int, int>& values) override;
    void Get(cow_1DArray<int>& values) override;
    template <omu_KeywordTarget T> void Get(T& value, const cow_String& keyword);
    void Get(omu_PrimEnumBase& value, const cow_String& keyword);
    /// The supplied interface object when it is of class `typeName` or derived from it, else `fallback`.
    const omu_InterfaceObj* Get(const char* typeName, const cow_String& keyword, const omu_InterfaceObj* fallback);

    /// After a failed or missed Get: undoes it, so that another type or keyword can be tried, and says so.
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

    const omu_PrimDictionary<cow_String>& Keywords() const noexcept { return m_keywords; }
    /// The deprecated keywords that the call used, each once.
    const cow_List<cow_String>& DeprecatedArgumentsUsed() const noexcept { return m_deprecatedUsed; }

private:
    /// Where the value of a keyword is held.
    using KeywordSlot = const omu_PrimHolder*;

    /// What every keyword Get does: `convert(value)` takes the supplied value or says that it does not fit, and then
    /// `expected()` is what was wanted. Failures are recorded.
    template <class Convert, class Expected> void Fetch(const cow_String& keyword, Convert convert, Expected expected);
    /// The position in m_unconsumed of a keyword that was supplied and not fetched yet, or -1.
    int FindUnconsumed(const cow_String& keyword) const;
    /// The first keyword in m_unconsumed.
    cow_String FirstUnconsumed() const;
    void SetKeywordTypeError(const cow_String& keyword, const cow_String& expected, const omu_Primitive& found);
    void SetMissingKeyword(const cow_String& keyword);
    bool DeprecatedCheck(const cow_String& feature) const;
    void AddDeprecatedArgUsed(const cow_String& keyword);

    omu_PrimDictionary<cow_String> m_keywords;
    // The keywords not fetched yet, each by where m_keywords holds its value; filled by Begin. The slots are compared,
    // never followed: a Put after Begin may move them.
    cow_List<KeywordSlot> m_unconsumed;
    cow_List<cow_String> m_deprecatedUsed; // without repeats
    int m_requiredByKeyword = 0;           // required parameters supplied by keyword
    int m_keywordFailure = 0;              // parameter number of the last keyword fetch that failed, else 0
    cow_String m_currentKeyword;           // of the last failing keyword fetch, else empty
    int m_optionalMiss = 0;                // parameter number of the last optional one not supplied, else 0
};

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
