#pragma once

#include "cow_String.h"

#include <concepts>
#include <string_view>
#include <type_traits>

/// A key as cow_Map looks for it: made once per search, compared with many stored keys.
///
/// References: refers to the key it was made from.
template <class K> class cow_KeyProbe
{
public:
    cow_KeyProbe(const K& key) noexcept : m_key(key) {}

    bool IsAbove(const K& stored) const { return stored < m_key; }
    bool IsBelow(const K& stored) const { return m_key < stored; }

private:
    std::conditional_t<std::is_arithmetic_v<K>, const K, const K&> m_key;
};

/// Texts are looked for by anything that is seen as a std::string_view; most comparisons end at the rank.
template <> class cow_KeyProbe<cow_String>
{
public:
    cow_KeyProbe(const cow_String& text) noexcept : m_rank(text.GetRank()), m_text(text.view()) {}
    template <std::convertible_to<std::string_view> Text>
    cow_KeyProbe(const Text& text) noexcept : m_rank(cow_String::RankOf(text)), m_text(text)
    {}

    bool IsAbove(const cow_String& stored) const noexcept
    {
        const cow_String::Rank rank = stored.GetRank();
        return rank == m_rank && rank.IsOfLongText() ? stored.view() < m_text : rank.IsBelow(m_rank);
    }
    bool IsBelow(const cow_String& stored) const noexcept
    {
        const cow_String::Rank rank = stored.GetRank();
        return rank == m_rank && rank.IsOfLongText() ? m_text < stored.view() : m_rank.IsBelow(rank);
    }

private:
    cow_String::Rank m_rank;
    std::string_view m_text;
};
