#include "omu_TypeLevels_detail.h"

#include <algorithm>
#include <mutex>

namespace
{

// Guards the growth of the chains; a chain is made once per class, so the lock is hardly ever taken.
std::mutex chainsMutex;

constexpr std::size_t FIRST_SLOTS = 8;

bool IsSameLevel(const omu_InterfaceObj::TypeDesc& a, const omu_InterfaceObj::TypeDesc& b) noexcept
{
    return a.methods == b.methods && a.members == b.members && a.deprecatedMethods == b.deprecatedMethods &&
           a.deprecatedMembers == b.deprecatedMembers && a.typeName == b.typeName;
}

} // namespace

template <class Entry> void omu_NameIndex<Entry>::Add(const Entry* table)
{
    for (const Entry* row = table; row->name != nullptr; ++row) {
        if (Find(row->name) != nullptr) {
            continue;
        }
        m_rows.push_back(row);
        if (m_slots.size() < 2 * m_rows.size()) {
            Rehash(std::max(FIRST_SLOTS, 2 * m_slots.size()));
        } else {
            Place(row);
        }
    }
}

template <class Entry> void omu_NameIndex<Entry>::Rehash(std::size_t slots)
{
    m_slots.assign(slots, Slot());
    for (const Entry* row : m_rows) {
        Place(row);
    }
}

template <class Entry> void omu_NameIndex<Entry>::Place(const Entry* row) noexcept
{
    const omu_NameKey key(row->name);
    std::size_t place = FirstPlace(key);
    while (m_slots[place].row != nullptr) {
        place = NextPlace(place);
    }
    m_slots[place] = {row, key};
}

template <class Entry> const Entry* omu_NameIndex<Entry>::FindSlowly(std::string_view name) const noexcept
{
    const omu_NameKey key(name);
    for (std::size_t place = FirstPlace(key); m_slots[place].row != nullptr; place = NextPlace(place)) {
        const Slot& slot = m_slots[place];
        if (slot.key == key && (name.size() <= omu_NameKey::WHOLE_LENGTH || slot.row->name == name)) {
            return slot.row;
        }
    }
    return nullptr;
}

template class omu_NameIndex<omu_MethodEntry>;
template class omu_NameIndex<omu_MemberEntry>;
template class omu_NameIndex<omu_DeprecatedMethodEntry>;
template class omu_NameIndex<omu_DeprecatedMemberEntry>;

omu_TypeLevels::omu_TypeLevels(const omu_TypeLevels& base, const omu_InterfaceObj::TypeDesc& level)
    : m_levels(base.m_levels)
{
    m_levels.push_back(level);
    for (auto it = m_levels.rbegin(); it != m_levels.rend(); ++it) {
        m_methods.Add(it->methods);
        m_members.Add(it->members);
        m_deprecatedMethods.Add(it->deprecatedMethods);
        m_deprecatedMembers.Add(it->deprecatedMembers);
    }
}

const omu_TypeLevels* omu_TypeLevels::None()
{
    // Never deleted: objects with static lifetime may still look names up while the process ends.
    static const omu_TypeLevels* const none = new omu_TypeLevels;
    return none;
}

const omu_TypeLevels* omu_TypeLevels::FindExtension(const omu_InterfaceObj::TypeDesc& level) const noexcept
{
    const omu_TypeLevels* chain = m_extensions.load(std::memory_order_acquire);
    while (chain != nullptr && !IsSameLevel(chain->m_levels.back(), level)) {
        chain = chain->m_nextExtension;
    }
    return chain;
}

const omu_TypeLevels* omu_TypeLevels::With(const omu_InterfaceObj::TypeDesc& level) const
{
    if (const omu_TypeLevels* known = FindExtension(level)) {
        return known;
    }
    const std::lock_guard guard(chainsMutex);
    if (const omu_TypeLevels* known = FindExtension(level)) {
        return known; // another thread was faster
    }
    auto* const longer = new omu_TypeLevels(*this, level);
    longer->m_nextExtension = m_extensions.load(std::memory_order_relaxed);
    m_extensions.store(longer, std::memory_order_release);
    return longer;
}

bool omu_TypeLevels::HasLevel(std::string_view typeName) const noexcept
{
    return std::any_of(m_levels.begin(), m_levels.end(),
                       [&](const omu_InterfaceObj::TypeDesc& level) { return level.typeName == typeName; });
}
