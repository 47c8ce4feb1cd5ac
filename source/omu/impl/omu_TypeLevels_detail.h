#pragma once

#include "omu_InterfaceObj.h"

#include <atomic>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

/// The first and the last eight bytes of a name, and its length: all that there is of a short one, and enough to tell most
/// long ones apart.
struct omu_NameKey
{
    static constexpr std::size_t WHOLE_LENGTH = 16; // names of up to this length are equal when their keys are

    omu_NameKey() = default;
    explicit omu_NameKey(std::string_view name) noexcept;

    /// For an index that is built from its own tables, so that nobody can choose names that meet.
    std::size_t Hash() const noexcept
    {
        return static_cast<std::size_t>((first ^ std::rotl(last, 29) ^ length) * 0x9E3779B97F4A7C15U >> 32);
    }
    bool operator==(const omu_NameKey&) const noexcept = default;

    std::uint64_t first = 0;
    std::uint64_t last = 0;
    std::uint64_t length = 0;
};

inline omu_NameKey::omu_NameKey(std::string_view name) noexcept : length(name.size())
{
    const char* const bytes = name.data();
    const auto take = [&]<class Word>(Word) {
        Word words[2];
        std::memcpy(&words[0], bytes, sizeof(Word));
        std::memcpy(&words[1], bytes + length - sizeof(Word), sizeof(Word));
        first = words[0];
        last = words[1];
    };
    if (length >= sizeof(std::uint64_t)) {
        take(std::uint64_t());
    } else if (length >= sizeof(std::uint32_t)) {
        take(std::uint32_t());
    } else if (length != 0) {
        take(std::uint8_t());
        first |= std::uint64_t{static_cast<unsigned char>(bytes[length / 2])} << 8;
    }
}

/// Finds the rows of static tables by name in constant time. Of rows with equal names the first one added counts.
template <class Entry> class omu_NameIndex
{
public:
    /// Adds the rows of a table closed by a row without name.
    void Add(const Entry* table);
    /// The row, or null.
    const Entry* Find(std::string_view name) const noexcept;
    /// The rows that can be found, in the order in which they were added.
    const std::vector<const Entry*>& Rows() const noexcept { return m_rows; }

private:
    struct Slot
    {
        const Entry* row = nullptr; // null: free
        omu_NameKey key;
    };

    void Rehash(std::size_t slots);
    void Place(const Entry* row) noexcept;
    std::size_t FirstPlace(const omu_NameKey& key) const noexcept { return key.Hash() & (m_slots.size() - 1); }
    std::size_t NextPlace(std::size_t place) const noexcept { return (place + 1) & (m_slots.size() - 1); }
    /// What Find does when the first place does not tell.
    const Entry* FindSlowly(std::string_view name) const noexcept;

    std::vector<const Entry*> m_rows;
    // Open addressing with linear probing; the size is a power of two and at most half of the slots are taken.
    std::vector<Slot> m_slots = std::vector<Slot>(1);
};

template <class Entry> inline const Entry* omu_NameIndex<Entry>::Find(std::string_view name) const noexcept
{
    const omu_NameKey key(name);
    const Slot& slot = m_slots[FirstPlace(key)];
    return slot.key == key && name.size() <= omu_NameKey::WHOLE_LENGTH ? slot.row : FindSlowly(name);
}

/// What one chain of DescribeType calls describes: the levels, base first, and an index over their names. Every distinct
/// chain exists once in the process and lives until it ends, so that an object carries one pointer and looks a name up
/// without walking levels.
class omu_TypeLevels
{
public:
    /// No levels.
    static const omu_TypeLevels* None();
    /// These levels with one more; the same result for the same level.
    const omu_TypeLevels* With(const omu_InterfaceObj::TypeDesc& level) const;

    bool IsNone() const noexcept { return m_levels.empty(); }
    int Depth() const noexcept { return static_cast<int>(m_levels.size()); }
    const omu_InterfaceObj::TypeDesc& Level(int index) const noexcept
    {
        return m_levels[static_cast<std::size_t>(index)];
    }
    bool HasLevel(std::string_view typeName) const noexcept;

    const omu_NameIndex<omu_MethodEntry>& Methods() const noexcept { return m_methods; }
    const omu_NameIndex<omu_MemberEntry>& Members() const noexcept { return m_members; }
    const omu_NameIndex<omu_DeprecatedMethodEntry>& DeprecatedMethods() const noexcept { return m_deprecatedMethods; }
    const omu_NameIndex<omu_DeprecatedMemberEntry>& DeprecatedMembers() const noexcept { return m_deprecatedMembers; }

private:
    omu_TypeLevels() = default;
    omu_TypeLevels(const omu_TypeLevels& base, const omu_InterfaceObj::TypeDesc& level);
    const omu_TypeLevels* FindExtension(const omu_InterfaceObj::TypeDesc& level) const noexcept;

    std::vector<omu_InterfaceObj::TypeDesc> m_levels; // base first
    omu_NameIndex<omu_MethodEntry> m_methods;         // most derived first, as the other three
    omu_NameIndex<omu_MemberEntry> m_members;
    omu_NameIndex<omu_DeprecatedMethodEntry> m_deprecatedMethods;
    omu_NameIndex<omu_DeprecatedMemberEntry> m_deprecatedMembers;

    // The chains one level longer: a list that only grows at its head, read without a lock.
    mutable std::atomic<const omu_TypeLevels*> m_extensions{nullptr};
    const omu_TypeLevels* m_nextExtension = nullptr;
};
