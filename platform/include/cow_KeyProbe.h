#pragma once

#include "cow_String.h"

#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>

/// A key as cow_Map looks for it: made once per search, compared with many stored keys.
///
/// References: refers to the key it was made from.
template <class K> class cow_KeyProbe
{
public:
    cow_KeyProbe(const K& key) noexcept : m_key(key) {}

    /// True when a comparison is a handful of instructions, so that sparing branches matters more than comparisons.
    static constexpr bool IsCheap() noexcept { return std::is_arithmetic_v<K> || std::is_enum_v<K>; }
    /// True when equality is cheaper to find out than order, so that few keys are looked through one by one.
    static constexpr bool IsCheaplyEqual() noexcept { return false; }
    /// The key as the map is to keep it.
    static K&& Kept(K&& key) noexcept { return std::move(key); }
    bool Equals(const K& stored) const { return m_key == stored; }
    bool IsAbove(const K& stored) const { return stored < m_key; }
    bool IsBelow(const K& stored) const { return m_key < stored; }

private:
    std::conditional_t<std::is_arithmetic_v<K>, const K, const K&> m_key;
};

/// Texts are looked for by anything that is seen as a std::string_view. The ranks alone tell how a short text stands to
/// any other.
template <> class cow_KeyProbe<cow_String>
{
public:
    cow_KeyProbe(const cow_String& text) noexcept : cow_KeyProbe(text.GetRank(), text.view()) {}
    template <std::convertible_to<std::string_view> Text>
    cow_KeyProbe(const Text& text) noexcept : cow_KeyProbe(cow_String::RankOf(text), text)
    {}

    bool IsCheap() const noexcept { return m_isCheap; }
    bool IsCheaplyEqual() const noexcept { return m_isCheap; }
    /// Without room for a longer text, so that a short one stands where Equals looks.
    static cow_String Kept(cow_String&& key)
    {
        return key.size() <= cow_String::INLINE_LENGTH ? cow_String(key.view()) : std::move(key);
    }
    bool Equals(const cow_String& stored) const noexcept
    {
        return m_isCheap ? stored.IsShortText(m_rank) : stored.view() == m_text;
    }
    bool IsAbove(const cow_String& stored) const noexcept
    {
        if (!m_isCheap) {
            return stored.view() < m_text;
        }
        // The comparison of two ranks in the fewest instructions; the sum does not wrap around, see the constructor.
        const cow_String::Rank rank = stored.GetRank();
        return rank.high < m_rank.high + (rank.low < m_rank.low ? 1 : 0);
    }
    bool IsBelow(const cow_String& stored) const noexcept
    {
        return m_isCheap ? m_rank < stored.GetRank() : m_text < stored.view();
    }

private:
    cow_KeyProbe(cow_String::Rank rank, std::string_view text) noexcept
        : m_rank(rank), m_text(text), m_isCheap(!rank.IsOfLongText() && rank.high != UINT64_MAX)
    {}

    cow_String::Rank m_rank;
    std::string_view m_text;
    bool m_isCheap;
};
