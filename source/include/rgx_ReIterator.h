#pragma once

#include "VEXomu_export.h"
#include "cow_1DArrayList.h"
#include "cow_String.h"

#include <array>
#include <cstddef>

/// The result of a match: the subject, and where in it the whole match (pair 0) and the groups (pairs 1...) stand. The
/// default one means no match.
///
/// Ownership:  an ordinary value; copies share the subject and the offsets.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: O(text returned).
/// Errors:     none; a pair that is not there reads as the empty text.
/// Example:    const rgx_ReIterator match = rgx_match("(\\w+)=(\\w+)", line);
///             if (match.IsMatched()) { values.Insert(match.NthString(1), match.NthString(2)); }
class VEXOMU_API rgx_ReIterator
{
public:
    /// Pairs that are parts of a text beside the groups, as replacement texts name them.
    static constexpr int BEFORE = -2; // $`
    static constexpr int AFTER = -1;  // $'

    rgx_ReIterator() noexcept = default;
    /// A match of `count` pairs; copies the offsets and deletes them (delete[]).
    rgx_ReIterator(const cow_String& subject, int* offsets, int count);
    /// A match of `count` pairs as the matching library has them: the greatest number is no place.
    rgx_ReIterator(const cow_String& subject, const std::size_t* offsets, int count);

    bool IsMatched() const noexcept { return m_isMatched; }
    /// Number of pairs, the whole match included; groups behind the last one that took part are not counted.
    int GroupCount() const noexcept { return m_pairs; }
    /// Where the whole match or a group starts; -1 for one that took no part or is not there.
    int Start(int n) const noexcept { return HasPair(n) ? Offsets()[2 * n] : -1; }
    /// Where it ends.
    int End(int n) const noexcept { return HasPair(n) ? Offsets()[2 * n + 1] : -1; }

    /// Makes the next pair the current one; false, and nothing changes, at the last.
    bool Next() noexcept;
    /// The text of the current pair.
    cow_String String() const;
    /// The current pair read as a group reference: "&" is 0, "'" AFTER, "`" BEFORE, digits their number (the greatest
    /// int if it is greater), anything else 0.
    int StringAsGroupNum() const;

    /// The text of pair n, the subject before the whole match for BEFORE, the subject after it for AFTER.
    cow_String NthString(int n) const;

private:
    static constexpr int NEAR_PAIRS = 4; // more are rare, and cost a block of memory

    bool HasPair(int n) const noexcept { return n >= 0 && n < GroupCount(); }
    const int* Offsets() const noexcept { return m_pairs <= NEAR_PAIRS ? m_near.data() : m_far.data(); }
    /// Takes this many pairs and gives the place to write them to.
    int* Reset(int pairs);

    cow_String m_subject;
    bool m_isMatched = false;
    int m_current = 0; // pair
    int m_pairs = 0;
    std::array<int, 2 * NEAR_PAIRS> m_near{};
    cow_1DArrayList<int, int> m_far; // those of a match of more pairs than m_near has room for
};
