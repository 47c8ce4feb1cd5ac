#pragma once

#include "omu_InterfaceObj.h"

#include <atomic>
#include <cstdint>
#include <string_view>
#include <vector>

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
        std::uint32_t hash = 0;
        std::uint32_t length = 0; // of the name
    };

    static std::uint32_t Hash(std::string_view name) noexcept;
    void Rehash(std::size_t slots);
    void Place(const Entry* row) noexcept;

    std::vector<const Entry*> m_rows;
    // Open addressing with linear probing; the size is a power of two and at most half of the slots are taken.
    std::vector<Slot> m_slots;
};

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
