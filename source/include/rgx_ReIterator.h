#pragma once

#include "VEXomu_export.h"
#include "cow_1DArrayList.h"
#include "cow_String.h"

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
    /// A match of these pairs.
    rgx_ReIterator(const cow_String& subject, cow_1DArrayList<int, int> offsets) noexcept;

    bool IsMatched() const noexcept { return m_isMatched; }
    /// Number of pairs, the whole match included; groups behind the last one that took part are not counted.
    int GroupCount() const noexcept { return m_offsets.Length() / 2; }
    /// Where the whole match or a group starts; -1 for one that took no part or is not there.
    int Start(int n) const noexcept { return HasPair(n) ? m_offsets[2 * n] : -1; }
    /// Where it ends.
    int End(int n) const noexcept { return HasPair(n) ? m_offsets[2 * n + 1] : -1; }

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
    bool HasPair(int n) const noexcept { return n >= 0 && n < GroupCount(); }

    cow_String m_subject;
    int m_index = 0; // of the current pair's start in m_offsets
    cow_1DArrayList<int, int> m_offsets;
    bool m_isMatched = false;
};
